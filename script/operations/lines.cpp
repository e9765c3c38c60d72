// Commands for single pixels and straight lines.
#include "script/operations/operation_rows.h"

using namespace rows;

namespace {

// The one of Line's forms that takes numbers.
constexpr int (ZRDraw::*line)(int, int, int, int) = &ZRDraw::Line;

int point(Scene& scene, const Arguments& a) {
    return scene.draw.Point(a.whole(0), a.whole(1), !a.given(2));
}

int setPixel(Scene& scene, const Arguments& a) {
    return scene.draw.SetPixel(a.whole(0), a.whole(1), a.number(2), a.number(3), a.number(4),
                               a.number(5), true);
}

// A position off the canvas is as good as any other, so moving is never refused.
int moveTo(Scene& scene, const Arguments& a) {
    scene.draw.MoveTo(a.whole(0), a.whole(1));
    return 0;
}

// The library takes the new position from one element behind the points it draws.
int polylineTo(Scene& scene, const Arguments& a) {
    std::vector<_POINT> points = a.points(0);
    points.push_back(points.back());
    return scene.draw.PolylineTo(points.data(), static_cast<unsigned>(points.size() - 1));
}

} // namespace

std::vector<Operation> lineOperations() {
    return {
        {"point", with(onePoint(), {flag("back")}), "one pixel; moves there", point},
        {"pixel",
         with(onePoint(), {component("c0"), component("c1"), component("c2"), component("c3")}),
         "one pixel in a colour that stays", setPixel},
        {"move", onePoint(), "set the current position", moveTo},
        {"lineto", onePoint(), "line from the current position, which moves along",
         call<&ZRDraw::LineTo>},
        {"line", twoPoints(), "line with both ends", call<line>},
        {"wuto", onePoint(), "as lineto, anti-aliased", call<&ZRDraw::LineWuTo>},
        {"wu", twoPoints(), "as line, anti-aliased", call<&ZRDraw::LineWu>},
        {"vert",
         {coordinate("x", Role::X), coordinate("y0", Role::Y), coordinate("y1", Role::Bottom)},
         "vertical run, wholly on the canvas",
         call<&ZRDraw::LineVert>},
        {"horiz",
         {coordinate("x0", Role::X), coordinate("y", Role::Y), coordinate("x1", Role::Right)},
         "horizontal run, wholly on the canvas",
         call<&ZRDraw::LineHoriz>},
        {"dash", with(twoPoints(), {length("on", Role::Length, 1), length("off")}),
         "line of ON pixels drawn and OFF skipped, in turn", call<&ZRDraw::Dash>},
        {"polyline", {points()}, "lines through two or more points", through<&ZRDraw::Polyline>},
        {"polylineto", {points()}, "as polyline; moves to the last point", polylineTo},
    };
}
