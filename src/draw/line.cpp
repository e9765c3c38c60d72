// Straight lines between integer end points: plain, dashed, axis-parallel, and chains of them.
#include "draw/fixed_point.h"
#include "draw/line_weighted.h"
#include "draw/run.h"
#include "draw/walk.h"
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <limits>

namespace {

// As a signed number, in which the distances of a line are compared.
int distance(int difference) {
    return static_cast<int>(magnitude(difference));
}

// Whether the numbers of its pixels are within those of int.
bool isShort(const _POINT& p, const _POINT& q) {
    constexpr long most = std::numeric_limits<int>::max() - 1;
    const long dx = static_cast<long>(q.x) - p.x;
    return dx < most && dx > -most;
}

bool isOffCanvas(const ZRPixel& pixel, int low, int high, unsigned int extent) {
    return pixel.canvas == nullptr || pixel.width == 0 || pixel.height == 0 || low < 0 ||
           high > static_cast<int>(extent);
}

// From the upper end p to the lower end q.
template <typename Put>
void walkLine(const _POINT& p, const _POINT& q, Put put) {
    const int dx = q.x - p.x, dy = q.y - p.y;
    if (dy > distance(dx)) {
        const int step = fixed::slope(dx, dy);
        int f = fixed::fromInt(p.x) + fixed::half;
        walk(p.y, q.y, 1, [&, step](int y) {
            put(fixed::floorToInt(f), y);
            f += step;
        });
        return;
    }
    const int direction = dx < 0 ? -1 : 1;
    const int step = direction * fixed::slope(dy, dx);
    int f = fixed::fromInt(p.y) + fixed::half;
    walk(p.x, q.x, direction, [&, step](int x) {
        put(x, fixed::floorToInt(f));
        f += step;
    });
}

template <typename Plotter>
void drawLine(const Plotter& plotter, const _POINT& p, const _POINT& q) {
    if constexpr (Plotter::isDirect) {
        if (p.y == q.y && isShort(p, q))
            return plotter.run(std::min(p.x, q.x), fixed::lineOf(p.y), distance(q.x - p.x) + 1);
        // Between its ends a line does not leave the rectangle that they span.
        if (plotter.covers(p.x, p.y, q.x, q.y) && fixed::holds(std::max({p.x, p.y, q.x, q.y})))
            return walkLine(p, q, [pen = plotter.pen()](int x, int y) { pen.put(x, y); });
    }
    walkLine(p, q, [&](int x, int y) { plotter.put(x, y); });
}

} // namespace

int ZRDraw::Line(_POINT& from, _POINT& to) {
    return Line(from.x, from.y, to.x, to.y);
}

int ZRDraw::Line(int x0, int y0, int x1, int y1) {
    // From the upper end to the lower one; a horizontal line keeps its direction.
    const bool upwards = y0 > y1;
    const _POINT p = upwards ? _POINT{x1, y1} : _POINT{x0, y0};
    const _POINT q = upwards ? _POINT{x0, y0} : _POINT{x1, y1};
    const int dx = q.x - p.x;
    const int dy = q.y - p.y;
    if (antiAlias && dx != 0 && dy != 0 && distance(dx) != dy)
        return drawWeightedLine(*this, p, q);

    withPlotter(*this, [&](const auto& plotter) { drawLine(plotter, p, q); });
    return 0;
}

int ZRDraw::LineTo(int x, int y) {
    const int status = Line(currentX, currentY, x, y);
    ZRDraw::MoveTo(x, y);
    return status;
}

int ZRDraw::LineVert(int x, int y0, int y1) {
    if (isOffCanvas(*this, std::min(y0, y1), std::max(y0, y1), height) ||
        isOffCanvas(*this, x, x, width))
        return -1;
    x = pullEdge(x, width);
    const int top = pullEdge(std::min(y0, y1), height);
    const int bottom = pullEdge(std::max(y0, y1), height);
    withPlotter(*this, [=](const auto& plotter) {
        for (int y = top; y <= bottom; ++y)
            plotter.put(x, y);
    });
    return 0;
}

int ZRDraw::LineHoriz(int x0, int y, int x1) {
    if (isOffCanvas(*this, y, y, height) ||
        isOffCanvas(*this, std::min(x0, x1), std::max(x0, x1), width))
        return -1;
    y = pullEdge(y, height);
    drawRun(*this, pullEdge(std::min(x0, x1), width), pullEdge(std::max(x0, x1), width), y);
    return 0;
}

int ZRDraw::Dash(int x0, int y0, int x1, int y1, int on, int off) {
    int onLeft = on;
    int offLeft = off;
    // Whether this position is drawn; moves the pattern on by one.
    const auto inked = [&] {
        const bool ink = onLeft > 0;
        if (ink)
            --onLeft;
        else if (offLeft > 0)
            --offLeft;
        if (offLeft == 0) {
            onLeft = on;
            offLeft = off;
        }
        return ink;
    };
    const auto dashes = [&](int first, int last, int minor, int step, auto put) {
        const int direction = last > first ? 1 : -1;
        int f = fixed::fromInt(minor) | fixed::half;
        walk(
            first, last, direction,
            [&](int at) {
                if (inked())
                    put(at, fixed::floorToInt(f));
                f += direction * step;
            });
    };
    withPlotter(*this, [&](const auto& plotter) {
        if (distance(y0 - y1) <= distance(x0 - x1))
            dashes(x0, x1, y0, fixed::slope(y1 - y0, x1 - x0),
                   [&](int x, int y) { plotter.put(x, y); });
        else
            dashes(y0, y1, x0, fixed::slope(x1 - x0, y1 - y0),
                   [&](int y, int x) { plotter.put(x, y); });
    });
    return 0;
}

int ZRDraw::Polyline(const _POINT* points, unsigned int count) {
    if (count < 2)
        return -1;
    // By contract: a count that is negative as a signed number draws nothing and succeeds.
    for (int i = 1; i < static_cast<int>(count); ++i)
        Line(points[i - 1].x, points[i - 1].y, points[i].x, points[i].y);
    return 0;
}

int ZRDraw::PolylineTo(const _POINT* points, unsigned int count) {
    const int status = Polyline(points, count);
    // By contract: the element after the last vertex becomes the current position.
    if (status == 0)
        ZRDraw::MoveTo(points[count].x, points[count].y);
    return status;
}
