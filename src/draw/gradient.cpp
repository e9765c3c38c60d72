// The linear blend of a rectangle from the foreground to the background colour.
#include "draw/walk.h"
#include "pixel/canvas.h"
#include "pixel/rgba.h"
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Coordinates behind the edge stay there, and PutPixel refuses them.
int ontoCanvas(int coordinate, unsigned int extent) {
    return std::max(pullEdge(coordinate, extent), 0);
}

} // namespace

int ZRDraw::GradientRect(int left, int top, int right, int bottom, int angle) {
    if (static_cast<int>(width) < 1 || static_cast<int>(height) < 1)
        return -1;
    const int x0 = ontoCanvas(left, width), x1 = ontoCanvas(right, width);
    const int y0 = ontoCanvas(top, height), y1 = ontoCanvas(bottom, height);
    const int xMin = std::min(x0, x1), xMax = std::max(x0, x1);
    const int yMin = std::min(y0, y1), yMax = std::max(y0, y1);
    Rgba from{}, to{};
    if (!readColor(*this, from, true) || !readColor(*this, to, false))
        return -1;
    const Rgba span{to.r - from.r, to.g - from.g, to.b - from.b, to.a - from.a};

    const double radians = angle * std::numbers::pi / 180;
    const double s = std::sin(radians);
    const double c = std::cos(radians);
    const double low = xMin * c + yMin * s;
    // By contract: an angle that projects the rectangle backwards gives a range of 1.0, and the
    // blend saturates at once.
    const double projected = xMax * c + yMax * s - low;
    const double range = projected <= 0 ? 1.0 : projected;
    walk(yMin, yMax, 1, [&](int y) {
        const double row = y * s;
        walk(xMin, xMax, 1, [&](int x) {
            const double t = std::clamp((x * c + row - low) / range, 0.0, 1.0);
            // By contract: the foreground is left as the last pixel's colour.
            setColor(*this,
                     {span.r * t + from.r, span.g * t + from.g, span.b * t + from.b,
                      span.a * t + from.a},
                     true);
            PutPixel(x, y, true);
        });
    });
    return 0;
}
