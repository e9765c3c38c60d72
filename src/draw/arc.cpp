// Arcs, ellipses and pies: polygons with one chord a degree, whatever the radius.
#include "pixel/truncate.h"
#include "zrdraw/arc_ends.h"
#include "zrdraw/zrdraw.h"

#include <array>
#include <atomic>
#include <cmath>
#include <optional>

int xStartArc = 0;
int yStartArc = 0;
int xEndArc = 0;
int yEndArc = 0;

namespace {

// By contract: pi is 3.14 in both directions.
constexpr double radiansPerDegree = 0.017444444444444446;
constexpr double degreesPerRadian = 57.324840764331206;

struct Ends {
    _POINT first, last;
};

// The arc that this thread drew last. The exported ends may be another thread's by the time a pie
// reads them.
thread_local std::optional<Ends> lastArc;

// Any thread may draw an arc at any time, so that the exported ends are written as single words.
void exportPoint(const _POINT& point, int& x, int& y) {
    std::atomic_ref(x).store(point.x, std::memory_order_relaxed);
    std::atomic_ref(y).store(point.y, std::memory_order_relaxed);
}

Ends exportedEnds() {
    const auto get = [](int& from) {
        return std::atomic_ref(from).load(std::memory_order_relaxed);
    };
    return {{get(xStartArc), get(yStartArc)}, {get(xEndArc), get(yEndArc)}};
}

struct Direction {
    float cosine, sine;
};

// Of whole degrees within a turn either way; worked out once.
const Direction& directionOf(int degrees) {
    constexpr int most = 359;
    static const auto directions = [] {
        std::array<Direction, 2 * most + 1> all{};
        for (int i = -most; Direction & direction : all) {
            const double radians = i++ * radiansPerDegree;
            direction = {static_cast<float>(std::cos(radians)),
                         static_cast<float>(std::sin(radians))};
        }
        return all;
    }();
    return directions[static_cast<std::size_t>(degrees) + most];
}

// Draws the chords between the points of whole degrees, both ends included. `begin` is told the
// first point before there is a chord.
template <typename PointAt, typename Begin>
Ends drawChords(ZRDraw& draw, int start, int end, PointAt pointAt, Begin begin) {
    while (end < start)
        end += 360;
    Ends ends{};
    for (int degrees = start;; ++degrees) {
        const Direction& direction = directionOf(degrees % 360);
        const _POINT point = pointAt(direction.cosine, direction.sine);
        if (degrees == start)
            begin(ends.first = point);
        else
            draw.Line(ends.last.x, ends.last.y, point.x, point.y);
        ends.last = point;
        if (degrees == end)
            return ends;
    }
}

// An ellipse in single precision; y is subtracted, so angles run counter-clockwise.
Ends drawAngleArc(ZRDraw& draw, int cx, int cy, float rx, float ry, float startAngle,
                  float endAngle) {
    const float x0 = static_cast<float>(cx);
    const float y0 = static_cast<float>(cy);
    const auto pointAt = [=](float cosine, float sine) {
        return _POINT{truncateToInt(cosine * rx + x0), truncateToInt(y0 - sine * ry)};
    };
    return drawChords(draw, truncateToInt(startAngle), truncateToInt(endAngle), pointAt,
                      [](const _POINT&) {});
}

// The angle in degrees at which a point is seen from the centre; none for the centre itself.
// By contract: straight below is 90 and straight above 270, the reverse of where arcs draw them.
std::optional<double> angleOf(double px, double py, double cx, double cy) {
    const float down = static_cast<float>(py - cy);
    const float right = static_cast<float>(px - cx);
    const auto degrees = [](float quotient) {
        return std::atan(static_cast<double>(quotient)) * degreesPerRadian;
    };
    if (py > cy) {
        if (px == cx)
            return 90.0;
        return px > cx ? degrees(-down / right)
                       : 180 - degrees(-down / static_cast<float>(cx - px));
    }
    if (py < cy) {
        if (px == cx)
            return 270.0;
        return px > cx ? 360 - degrees(down / right)
                       : degrees(down / static_cast<float>(cx - px)) + 180;
    }
    if (px == cx)
        return std::nullopt;
    return px > cx ? 0.0 : 180.0;
}

} // namespace

int ZRDraw::AngleArc(int cx, int cy, unsigned int radius, float startAngle, float endAngle) {
    const float r = static_cast<float>(radius);
    drawAngleArc(*this, cx, cy, r, r, startAngle, endAngle);
    return 0;
}

int ZRDraw::AngleArcTo(int cx, int cy, int rx, int ry, float startAngle, float endAngle) {
    const Ends ends = drawAngleArc(*this, cx, cy, static_cast<float>(rx), static_cast<float>(ry),
                                   startAngle, endAngle);
    currentX = ends.last.x;
    currentY = ends.last.y;
    return 0;
}

int ZRDraw::Ellipse(int cx, int cy, int rx, int ry) {
    AngleArcTo(cx, cy, rx, ry, 0.0F, 360.0F);
    return 0;
}

int ZRDraw::Arc(int left, int top, int right, int bottom, int xStart, int yStart, int xEnd,
                int yEnd) {
    if (bottom <= top || right <= left)
        return -1;
    const double rx = (right - left) * 0.5;
    const double ry = (bottom - top) * 0.5;
    const double cx = right - rx;
    const double cy = bottom - ry;
    const std::optional<double> start = angleOf(xStart, yStart, cx, cy);
    const std::optional<double> end = angleOf(xEnd, yEnd, cx, cy);
    if (!start || !end)
        return -1;
    // Products in single precision, sums in double.
    const auto pointAt = [=](float cosine, float sine) {
        const float dx = cosine * static_cast<float>(rx);
        const float dy = sine * static_cast<float>(ry);
        return _POINT{truncateToInt(dx + cx), truncateToInt(cy - dy)};
    };
    const auto begin = [](const _POINT& point) { exportPoint(point, xStartArc, yStartArc); };
    lastArc = drawChords(*this, truncateToInt(*start), truncateToInt(*end), pointAt, begin);
    exportPoint(lastArc->last, xEndArc, yEndArc);
    return 0;
}

// By contract: ArcTo and Pie exchange the two coordinates of the start point.
int ZRDraw::ArcTo(int left, int top, int right, int bottom, int xStart, int yStart, int xEnd,
                  int yEnd) {
    Arc(left, top, right, bottom, yStart, xStart, xEnd, yEnd);
    currentX = xEnd;
    currentY = yEnd;
    return 0;
}

int ZRDraw::Pie(int left, int top, int right, int bottom, int xStart, int yStart, int xEnd,
                int yEnd) {
    lastArc.reset();
    Arc(left, top, right, bottom, yStart, xStart, xEnd, yEnd);
    const int mx = (left + right) / 2;
    const int my = (top + bottom) / 2;
    // By contract: after a refused arc these are the radii of the arc before, on whatever object.
    const Ends ends = lastArc ? *lastArc : exportedEnds();
    Line(ends.first.x, ends.first.y, mx, my);
    Line(ends.last.x, ends.last.y, mx, my);
    return 0;
}
