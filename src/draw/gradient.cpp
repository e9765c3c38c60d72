// The linear blend of a rectangle from the foreground to the background colour.
#include "draw/run.h"
#include "draw/walk.h"
#include "pixel/byte_order.h"
#include "pixel/rgba.h"
#include "span/ramp.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>

namespace {

// Coordinates behind the edge stay there, and PutPixel refuses them.
int ontoCanvas(int coordinate, unsigned int extent) {
    return std::max(pullEdge(coordinate, extent), 0);
}

// A blend along a direction, from one colour to another.
struct Blend {
    Rgba from, span;
    double c, s; // of the direction
    double low, range;

    Rgba colorAt(int x, int y) const {
        const double t = std::clamp((x * c + y * s - low) / range, 0.0, 1.0);
        return {span.r * t + from.r, span.g * t + from.g, span.b * t + from.b, span.a * t + from.a};
    }
};

Ramp rampOf(const Blend& blend, const zrByteOrder& order) {
    const Rgba &from = blend.from, &span = blend.span;
    return {{{from.r, span.r, 8 * order.r},
             {from.g, span.g, 8 * order.g},
             {from.b, span.b, 8 * order.b},
             {from.a, span.a, 8 * order.a}},
            blend.c,
            blend.low,
            blend.range};
}

// The part of a rectangle that is on a canvas of plain words.
class PlainPart {
public:
    PlainPart(const ZRDraw& draw, const Blend& blend, int left, int top, int right, int bottom)
        : m_draw(draw), m_ramp(rampOf(blend, byteOrderOf(draw.pixelType))), m_down(blend.s),
          m_left(left), m_top(top),
          m_count(std::min(right, static_cast<int>(draw.width) - 1) - left + 1),
          m_bottom(std::min(bottom, static_cast<int>(draw.height) - 1)) {
        if (draw.canvas == nullptr || m_count <= 0 || m_bottom < top) {
            m_count = 0;
            return;
        }
        write(m_top);
        write(m_bottom);
        m_linesAreAlike = std::memcmp(at(m_top), at(m_bottom), bytes()) == 0;
    }

    // The number of pixels of the line that were written.
    int line(int y) const {
        if (y > m_bottom)
            return 0;
        if (!m_linesAreAlike)
            write(y);
        else if (y != m_top && m_count > 0)
            std::memcpy(at(y), at(m_top), bytes());
        return m_count;
    }

private:
    char* at(int y) const { return wordAddress(m_draw, m_left, y); }
    std::size_t bytes() const { return 4 * static_cast<std::size_t>(m_count); }
    void write(int y) const {
        if (m_count > 0)
            writeRamp(at(y), m_ramp, m_left, y * m_down, m_count);
    }

    const ZRDraw& m_draw;
    Ramp m_ramp;
    double m_down;
    int m_left, m_top, m_count, m_bottom;
    bool m_linesAreAlike = false;
};

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
    const double s = std::sin(radians), c = std::cos(radians);
    const double low = xMin * c + yMin * s;
    // By contract: an angle that projects the rectangle backwards gives a range of 1.0, and the
    // blend saturates at once.
    const double projected = xMax * c + yMax * s - low;
    const double range = projected <= 0 ? 1.0 : projected;
    const Blend blend{from, span, c, s, low, range};
    std::optional<PlainPart> part;
    if (isPlainRgba32(*this) && isPlainWord(*this, true) && linesAreApart(*this))
        part.emplace(*this, blend, xMin, yMin, xMax, yMax);
    walk(yMin, yMax, 1, [&](int y) {
        const int written = part ? part->line(y) : 0;
        if (written > xMax - xMin)
            return;
        walk(xMin + written, xMax, 1, [&](int x) {
            setColor(*this, blend.colorAt(x, y), true);
            PutPixel(x, y, true);
        });
    });
    if (part) // by contract, the foreground is left as the last pixel's colour
        setColor(*this, blend.colorAt(xMax, yMax), true);
    return 0;
}
