// Circles by the integer midpoint rule, and filled ones as horizontal runs.
#include "draw/run.h"
#include "draw/walk.h"
#include "pixel/truncate.h"
#include "zrdraw/zrdraw.h"

#include <cmath>
#include <type_traits>

namespace {

template <typename Pen>
void drawCircle(const Pen& pen, int cx, int cy, int radius) {
    int y = radius, d = 1 - radius;
    // By contract: pixels on the axes and the diagonals are written twice.
    for (int x = 0; x <= y;) {
        pen.put(cx + y, cy + x);
        pen.put(cx + x, cy + y);
        pen.put(cx - x, cy + y);
        pen.put(cx - y, cy + x);
        pen.put(cx - y, cy - x);
        pen.put(cx - x, cy - y);
        pen.put(cx + x, cy - y);
        pen.put(cx + y, cy - x);
        ++x;
        if (d > 0) {
            --y;
            d += 2 * (x - y) + 1;
        } else {
            d += 2 * x + 1;
        }
    }
}

} // namespace

int ZRDraw::Circle(int cx, int cy, int radius) {
    if (radius < 0)
        return -1;
    if (radius == 0)
        return PutPixel(cx, cy, true);
    withPlotter(*this, [=](const auto& plotter) {
        if constexpr (std::decay_t<decltype(plotter)>::isDirect) {
            if (plotter.covers(cx - radius, cy - radius, cx + radius, cy + radius))
                return drawCircle(plotter.pen(), cx, cy, radius);
        }
        drawCircle(plotter, cx, cy, radius);
    });
    return 0;
}

int ZRDraw::FillCircle(int cx, int cy, int radius) {
    if (radius < 0)
        return 0;
    // By contract: a row that reaches over the left or right edge is lost whole.
    walk(-radius, radius, 1, [&](int i) {
        const int half = truncateToInt(std::sqrt(static_cast<double>(radius * radius - i * i)));
        LineHoriz(cx - half, cy + i, cx + half);
    });
    return 0;
}
