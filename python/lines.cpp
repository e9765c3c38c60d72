// Straight lines and chains of them.
#include "python/canvas.h"

#include <tuple>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

// The forms of Line and MoveTo that take numbers.
constexpr int (ZRDraw::*lineOfNumbers)(int, int, int, int) = &ZRDraw::Line;

void moveTo(Canvas& canvas, Coordinate x, Coordinate y) {
    canvas.with([=](ZRDraw& draw) { return draw.MoveTo(x.value, y.value); });
}

std::tuple<int, int> position(Canvas& canvas) {
    return canvas.with([](const ZRDraw& draw) { return std::tuple(draw.currentX, draw.currentY); });
}

// The library takes the new position from one element behind the points it draws.
bool polylineTo(Canvas& canvas, Points points) {
    const auto count = static_cast<unsigned>(points.points.size());
    if (count != 0)
        points.points.push_back(points.points.back());
    return canvas.run([&](ZRDraw& draw) { return draw.PolylineTo(points.points.data(), count); });
}

bool dash(Canvas& canvas, Coordinate x0, Coordinate y0, Coordinate x1, Coordinate y1, Whole on,
          Whole off) {
    const int drawn = withinRange(on, "on", 1, farthest);
    const int skipped = withinRange(off, "off", 0, farthest);
    return canvas.run([=](ZRDraw& draw) {
        return draw.Dash(x0.value, y0.value, x1.value, y1.value, drawn, skipped);
    });
}

void bindPosition(CanvasClass& canvas) {
    canvas
        .def("move_to", &moveTo, "x"_a, "y"_a,
             "Set the current position, on the frame or off, and write that pixel where it is on.")
        .def_property_readonly("position", &position,
                               "The current position, from which line_to and its like go on.")
        .def("line_to", byCoordinates(&ZRDraw::LineTo), "x"_a, "y"_a,
             "Line from the current position, which moves along.")
        .def("line_wu_to", byCoordinates(&ZRDraw::LineWuTo), "x"_a, "y"_a,
             "As line_to, anti-aliased.");
}

void bindChains(CanvasClass& canvas) {
    canvas
        .def("polyline", byPoints(&ZRDraw::Polyline), "points"_a,
             "Lines through two or more points, pairs of numbers or an array of shape (n, 2). "
             "False for fewer.")
        .def("polyline_to", &polylineTo, "points"_a,
             "As polyline; the last point becomes the current position.");
}

} // namespace

void bindLines(CanvasClass& canvas) {
    bindPosition(canvas);
    canvas
        .def("line", byCoordinates(lineOfNumbers), "x0"_a, "y0"_a, "x1"_a, "y1"_a,
             "A straight line with both ends, the same pixels in either direction.")
        .def("line_wu", byCoordinates(&ZRDraw::LineWu), "x0"_a, "y0"_a, "x1"_a, "y1"_a,
             "An anti-aliased line by Wu's algorithm. The alpha of the foreground colour, in which "
             "coverage travels, is left as that of the last pixel.")
        .def("line_vert", byCoordinates(&ZRDraw::LineVert), "x"_a, "y0"_a, "y1"_a,
             "A vertical run with both ends. False where any of it is off the frame.")
        .def("line_horiz", byCoordinates(&ZRDraw::LineHoriz), "x0"_a, "y"_a, "x1"_a,
             "A horizontal run with both ends; the row stands between the columns. False where any "
             "of it is off the frame.")
        .def("dash", &dash, "x0"_a, "y0"_a, "x1"_a, "y1"_a, "on"_a, "off"_a,
             "A dashed line: `on` pixels drawn, 1 or more, and `off` skipped, in turn.");
    bindChains(canvas);
}
