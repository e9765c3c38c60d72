// The command that puts pictures on frames.
#include "script/operations/operation_rows.h"
#include "script/pictures/picture_shelf.h"

using namespace rows;

namespace {

constexpr double longestTime = 1e6; // seconds

int image(Scene& scene, const Arguments& a) {
    const PictureShelf::Wish wish{a.text(2), a.numberOr(8, 0.0)};
    const auto picture = scene.pictures.picture(wish, scene.frame.time);
    // A picture's own pixels are as large as the grid's.
    const auto size = [&](std::size_t i, int own, Role role) {
        return a.given(4) ? a.whole(i)
                          : std::max(static_cast<int>(scene.place.pixels(own, role)), 1);
    };
    const int width = size(5, picture->width, Role::Width);
    const int height = size(6, picture->height, Role::Height);
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
         image},
    };
}
