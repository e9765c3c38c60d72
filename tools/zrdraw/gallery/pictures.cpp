#include "gallery/pictures.h"

#include "gallery/cell_sheet.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int barsHeight = 88;
constexpr int barCount = 8;
constexpr int pixelBytes = 4;

struct Color {
    double r, g, b;
};

// A picture from a colour for each pixel.
template <typename ColorAt>
FramePtr makePicture(ColorAt colorAt) {
    FramePtr picture = newFrame(AV_PIX_FMT_BGRA, cellWidth, cellHeight);
    const auto byte = [](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255.0));
    };
    for (int y = 0; y < cellHeight; ++y) {
        std::uint8_t* pixel = picture->data[0] + std::ptrdiff_t{picture->linesize[0]} * y;
        for (int x = 0; x < cellWidth; ++x, pixel += pixelBytes) {
            const Color color = colorAt(x, y);
            pixel[0] = byte(color.b);
            pixel[1] = byte(color.g);
            pixel[2] = byte(color.r);
            pixel[3] = 255;
        }
    }
    return picture;
}

Color mixed(const Color& a, const Color& b, double weight) {
    return {a.r + (b.r - a.r) * weight, a.g + (b.g - a.g) * weight, a.b + (b.b - a.b) * weight};
}

} // namespace

FramePtr makeBars() {
    constexpr double level = 0.75;
    return makePicture([](int x, int y) -> Color {
        const double ramp = static_cast<double>(x) / (cellWidth - 1);
        if (y >= barsHeight)
            return {ramp, ramp, ramp};
        const int bar = barCount - 1 - x * barCount / cellWidth; // its bits: green, red, blue
        const auto channel = [bar](int bit) { return (bar & bit) != 0 ? level : 0.0; };
        return {channel(2), channel(4), channel(1)};
    });
}

FramePtr makeLandscape() {
    return makePicture([](int x, int y) -> Color {
        constexpr Color zenith{0.25, 0.45, 0.8}, horizon{0.95, 0.8, 0.6};
        constexpr Color near{0.15, 0.35, 0.2}, far{0.35, 0.45, 0.55};
        const double farHill = 62 + 10 * std::sin(x * 0.045) + 4 * std::sin(x * 0.13);
        const double nearHill = 88 + 12 * std::sin(x * 0.03 + 2.0) + 3 * std::sin(x * 0.21);
        if (y > nearHill)
            return mixed(near, {0.4, 0.5, 0.2}, (y - nearHill) / 50.0);
        if (y > farHill)
            return far;
        return mixed(zenith, horizon, y / farHill);
    });
}
