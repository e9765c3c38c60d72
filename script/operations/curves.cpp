// Commands for circles, arcs and Bezier curves.
#include "script/operations/operation_rows.h"

#include <fmt/format.h>

using namespace rows;

namespace {

Parameters centre() {
    return coordinates({"cx", "cy"});
}

// A box and two points that are seen from its centre at the angles of the ends.
Parameters arcInBox() {
    return with(box(), coordinates({"xs", "ys", "xe", "ye"}));
}

std::string chainFault(const Arguments& a) {
    const std::size_t count = a.points(0).size();
    if (count >= 4 && count % 3 == 1)
        return "";
    return fmt::format("expected 4, 7, 10 or another 3n + 1 points, got {}", count);
}

} // namespace

std::vector<Operation> curveOperations() {
    return {
        {"circle",
         with(centre(), {length("r")}),
         "circle by centre and radius",
         call<&ZRDraw::Circle>,
         {},
         edgeFault<2>},
        {"ellipse",
         with(centre(), {length("rx", Role::Width), length("ry", Role::Height)}),
         "ellipse by centre and radii",
         call<&ZRDraw::Ellipse>,
         {},
         edgeFault<2, 3>},
        {"arc", arcInBox(), "counter-clockwise part of an ellipse in a box", call<&ZRDraw::Arc>,
         "its box is empty or a point is its centre"},
        {"arcto", arcInBox(), "as arc with XS and YS exchanged; moves to the end",
         call<&ZRDraw::ArcTo>},
        {"anglearc",
         with(centre(), {length("r"), angle("start"), angle("end")}),
         "arc between two angles in degrees",
         call<&ZRDraw::AngleArc>,
         {},
         edgeFault<2>},
        {"anglearcto",
         with(centre(), {length("rx", Role::Width), length("ry", Role::Height), angle("start"),
                         angle("end")}),
         "as anglearc; moves to the end",
         call<&ZRDraw::AngleArcTo>,
         {},
         edgeFault<2, 3>},
        {"bezier", coordinates({"x1", "y1", "x2", "y2", "x3", "y3", "x4", "y4"}),
         "cubic curve from 1 to 4; 2 and 3 pull it", call<&ZRDraw::Bezier>, "its ends coincide"},
        {"polybezier",
         {points()},
         "curves end to end, 3n + 1 points",
         through<&ZRDraw::PolyBezier>,
         {},
         chainFault},
        {"polybezierto",
         {points()},
         "as polybezier; moves to the last point",
         through<&ZRDraw::PolyBezierTo>,
         {},
         chainFault},
        {"pie", arcInBox(), "as arcto, joined to the middle of the box", call<&ZRDraw::Pie>},
    };
}
