// Cubic Bezier curves by recursive subdivision on whole coordinates.
#include "pixel/truncate.h"
#include "zrdraw/zrdraw.h"

namespace {

// The coordinates of one axis of a curve, split at the parameter 0.5. Sums are of integers.
struct Split {
    int first[3];  // controls and end of the first half
    int second[2]; // controls of the second half
};

Split split(int p1, int p2, int p3, int p4) {
    const double s12 = p1 + p2;
    const double s23 = p2 + p3;
    const double s34 = p3 + p4;
    return {{truncateToInt(s12 * 0.5), truncateToInt((s12 + s23) * 0.25),
             truncateToInt((s12 + 2 * s23 + s34) * 0.125)},
            {truncateToInt((s23 + s34) * 0.25), truncateToInt(s34 * 0.5)}};
}

void drawChain(ZRDraw& draw, const _POINT* points, unsigned int segments) {
    for (unsigned int i = 0; i < segments; ++i, points += 3)
        draw.Bezier(points[0].x, points[0].y, points[1].x, points[1].y, points[2].x, points[2].y,
                    points[3].x, points[3].y);
}

} // namespace

int ZRDraw::Bezier(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4) {
    // By contract: a piece whose ends coincide leaves no pixel.
    if (x1 == x4 && y1 == y4)
        return -1;
    // The chord's equation is a * x + b * y + c = 0; its length squared is a * a + b * b.
    const double a = y4 - y1;
    const double b = x1 - x4;
    const double c = (x4 - x1) * y1 - (y4 - y1) * x1;
    const double length = a * a + b * b;
    const double d2 = a * x2 + b * y2 + c;
    const double d3 = a * x3 + b * y3 + c;
    if (length > d2 * d2 && length > d3 * d3) {
        // By contract: the position becomes the start of the last piece drawn.
        ZRDraw::MoveTo(x1, y1);
        Line(x1, y1, x4, y4);
        return 0;
    }
    const Split x = split(x1, x2, x3, x4);
    const Split y = split(y1, y2, y3, y4);
    Bezier(x1, y1, x.first[0], y.first[0], x.first[1], y.first[1], x.first[2], y.first[2]);
    Bezier(x.first[2], y.first[2], x.second[0], y.second[0], x.second[1], y.second[1], x4, y4);
    return 0;
}

int ZRDraw::PolyBezier(const _POINT* points, unsigned int count) {
    if (points == nullptr || count < 4 || (count - 4) % 3 != 0)
        return -1;
    drawChain(*this, points, (count - 1) / 3);
    return 0;
}

int ZRDraw::PolyBezierTo(const _POINT* points, unsigned int count) {
    const int status = PolyBezier(points, count);
    if (status == 0)
        ZRDraw::MoveTo(points[count - 1].x, points[count - 1].y);
    return status;
}
