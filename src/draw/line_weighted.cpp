#include "draw/line_weighted.h"

#include "draw/run.h"
#include "pixel/rgba.h"

namespace {

Rgba foreground(ZRDraw& draw) {
    Rgba c{};
    readColor(draw, c, true);
    return c;
}

// Black off the canvas.
Rgba pixelAt(ZRDraw& draw, int x, int y) {
    Rgba c{};
    if (!readsUntested(draw) || draw.GetPixel(x, y) != nullptr)
        readPixel(draw, x, y, c);
    return c;
}

// By contract: colours are taken as 0 to 255 although they are 0 to 1, so what is written comes
// out nearly black.
void setForeground(ZRDraw& draw, const Rgba& c) {
    setColor(draw, {c.r / 255.0, c.g / 255.0, c.b / 255.0, c.a / 255.0}, true);
}

Rgba mix(double weight1, const Rgba& c1, double weight2, const Rgba& c2) {
    return {weight1 * c1.r + weight2 * c2.r, weight1 * c1.g + weight2 * c2.g,
            weight1 * c1.b + weight2 * c2.b, weight1 * c1.a + weight2 * c2.a};
}

} // namespace

int drawWeightedLine(ZRDraw& draw, const _POINT& p, const _POINT& q) {
    Rgba color = foreground(draw);
    setForeground(draw, color);
    draw.PutPixel(p.x, p.y, true);
    draw.PutPixel(q.x, q.y, true);

    const int dx = q.x - p.x;
    const unsigned int columns = magnitude(dx);
    const unsigned int lines = static_cast<unsigned int>(q.y - p.y);
    const int sideways = dx > 0 ? 1 : -1;
    const bool tall = columns < lines;
    const unsigned int major = tall ? lines : columns;
    // Both differences are non-zero here. NOLINTNEXTLINE(clang-analyzer-core.DivideZero)
    const unsigned int step = ((tall ? columns : lines) << 16) / major;
    unsigned int position = 0;
    for (unsigned int i = 1; i < major; ++i) {
        position += step;
        const int along = static_cast<int>(i);
        const int across = static_cast<int>(position >> 16);
        const int x = p.x + sideways * (tall ? across : along);
        const int y = p.y + (tall ? along : across);
        const double weight = ((position >> 8) & 0xFF) / 255.0;
        // Both pixels are mixed with what lies under the first one.
        const Rgba under = pixelAt(draw, x, y);
        color = foreground(draw);
        setForeground(draw, mix(weight, under, 1 - weight, color));
        draw.PutPixel(x, y, true);
        setForeground(draw, mix(1 - weight, under, weight, color));
        draw.PutPixel(tall ? x + sideways : x, tall ? y : y + 1, true);
        setForeground(draw, color);
    }
    setForeground(draw, color);
    return 0;
}
