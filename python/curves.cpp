// Circles, ellipses, arcs and Bezier curves.
#include "python/canvas.h"

using namespace py::literals;

namespace {

// A radius both ways.
auto byRadius(int (ZRDraw::*operation)(int, int, int)) {
    return [operation](Canvas& canvas, Coordinate cx, Coordinate cy, Length radius) {
        requireEdge(cx, radius);
        requireEdge(cy, radius);
        return canvas.run(
            [=](ZRDraw& draw) { return (draw.*operation)(cx.value, cy.value, radius.value); });
    };
}

bool ellipse(Canvas& canvas, Coordinate cx, Coordinate cy, Length rx, Length ry) {
    requireEdge(cx, rx);
    requireEdge(cy, ry);
    return canvas.run(
        [=](ZRDraw& draw) { return draw.Ellipse(cx.value, cy.value, rx.value, ry.value); });
}

bool angleArc(Canvas& canvas, Coordinate cx, Coordinate cy, Length radius, Degrees start,
              Degrees end) {
    requireEdge(cx, radius);
    requireEdge(cy, radius);
    return canvas.run([=](ZRDraw& draw) {
        return draw.AngleArc(cx.value, cy.value, static_cast<unsigned>(radius.value), start.value,
                             end.value);
    });
}

bool angleArcTo(Canvas& canvas, Coordinate cx, Coordinate cy, Length rx, Length ry, Degrees start,
                Degrees end) {
    requireEdge(cx, rx);
    requireEdge(cy, ry);
    return canvas.run([=](ZRDraw& draw) {
        return draw.AngleArcTo(cx.value, cy.value, rx.value, ry.value, start.value, end.value);
    });
}

void bindRound(CanvasClass& canvas) {
    canvas
        .def("circle", byRadius(&ZRDraw::Circle), "cx"_a, "cy"_a, "radius"_a,
             "A circle's outline. With radius 0 one pixel, and False where that is off the frame.")
        .def("fill_circle", byRadius(&ZRDraw::FillCircle), "cx"_a, "cy"_a, "radius"_a,
             "A filled circle. A row that reaches over the left or right edge is left out whole.")
        .def("ellipse", &ellipse, "cx"_a, "cy"_a, "rx"_a, "ry"_a,
             "An ellipse's outline by centre and radii; the current position becomes (cx + rx, "
             "cy).");
}

void bindArcs(CanvasClass& canvas) {
    canvas
        .def("arc", byCoordinates(&ZRDraw::Arc), "left"_a, "top"_a, "right"_a, "bottom"_a,
             "x_start"_a, "y_start"_a, "x_end"_a, "y_end"_a,
             "Part of the ellipse in a box, counter-clockwise from the angle of one point to that "
             "of another. False for an empty box and for a point that is its centre.")
        .def("arc_to", byCoordinates(&ZRDraw::ArcTo), "left"_a, "top"_a, "right"_a, "bottom"_a,
             "x_start"_a, "y_start"_a, "x_end"_a, "y_end"_a,
             "As arc with x_start and y_start exchanged; the end point becomes the current "
             "position.")
        .def("pie", byCoordinates(&ZRDraw::Pie), "left"_a, "top"_a, "right"_a, "bottom"_a,
             "x_start"_a, "y_start"_a, "x_end"_a, "y_end"_a,
             "As arc_to, with lines from its ends to the middle of the box.")
        .def("angle_arc", &angleArc, "cx"_a, "cy"_a, "radius"_a, "start"_a, "end"_a,
             "An arc between two angles in degrees, of which the whole ones count, counter-"
             "clockwise with 0 at the right.")
        .def("angle_arc_to", &angleArcTo, "cx"_a, "cy"_a, "rx"_a, "ry"_a, "start"_a, "end"_a,
             "As angle_arc with two radii; its end becomes the current position.");
}

} // namespace

void bindCurves(CanvasClass& canvas) {
    bindRound(canvas);
    bindArcs(canvas);
    canvas
        .def("bezier", byCoordinates(&ZRDraw::Bezier), "x1"_a, "y1"_a, "x2"_a, "y2"_a, "x3"_a,
             "y3"_a, "x4"_a, "y4"_a,
             "A cubic Bezier curve from point 1 to point 4. False where those two coincide.")
        .def("poly_bezier", byPoints(&ZRDraw::PolyBezier), "points"_a,
             "Bezier curves end to end, through 4, 7, 10 or more points. False for another count.")
        .def("poly_bezier_to", byPoints(&ZRDraw::PolyBezierTo), "points"_a,
             "As poly_bezier; the last point becomes the current position.");
}
