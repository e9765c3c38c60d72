// The command that puts pictures on frames.
#include "script/operations/operation_rows.h"
#include "script/pictures/picture_shelf.h"

#include <algorithm>
#include <cstdint>

using namespace rows;

namespace {

constexpr double longestTime = 1e6; // seconds

// A picture is scaled as a whole: this is half a gigabyte.
constexpr std::int64_t mostPixels = std::int64_t{8192} * 8192;

int image(Scene& scene, const Arguments& a) {
    const PictureShelf::Wish wish{a.text(2), a.numberOr(8, 0.0)};
    const auto picture = scene.pictures.picture(wish, scene.frame.time);
    // A picture's own pixels are as large as the grid's.
    const auto size = [&](std::size_t i, int own, Role role) {
        const double pixels = scene.place.pixels(own, role);
        return a.given(4) ? a.whole(i) : static_cast<int>(std::clamp(pixels, 1.0, coordinateLimit));
    };
    const int width = size(5, picture->width, Role::Width);
    const int height = size(6, picture->height, Role::Height);
    const bool isScaled = width != picture->width || height != picture->height;
    if (isScaled && std::int64_t{width} * height > mostPixels)
        return -1;
    const int x = a.whole(0) - anchorOffset(a, 10, width);
    const int y = a.whole(1) - anchorOffset(a, 11, height);
    scene.pictures.put(scene.draw, scene.picture, wish, picture, {x, y, width, height},
                       a.numberOr(3, 1.0));
    return 0;
}

} // namespace

std::vector<Operation> pictureOperations() {
    Parameters parameters = with(onePoint(), {{Kind::File, "file"}, optionalComponent("opacity")});
    parameters = with(
        parameters, {flag("scale", 2), length("w", Role::Width, 1), length("h", Role::Height, 1)});
    parameters =
        with(parameters, {flag("since", 1), {Kind::Number, "t", -longestTime, longestTime}});
    return {
        {"image", with(parameters, anchor()), "a picture, or a clip that begins at second 0, or T",
         image, "it would be scaled to more than 8192 times 8192 pixels"},
    };
}
