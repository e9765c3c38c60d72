// Commands for rectangles and filled areas.
#include "script/operations/operation_rows.h"

using namespace rows;

namespace {

int fillRect(Scene& scene, const Arguments& a) {
    const RECT rect{a.whole(0), a.whole(1), a.whole(2), a.whole(3)};
    return scene.draw.FillRect(&rect);
}

int fill(Scene& scene, const Arguments& a) {
    return scene.draw.Fill(a.whole(0), a.whole(1), a.numberOr(2, 0.0));
}

int erase(Scene& scene, const Arguments& a) {
    return scene.draw.EraseCanvas(a.given(0));
}

// The row of B is not filled.
Parameters filledBox() {
    Parameters parameters = box();
    parameters.back().role = Role::Y;
    return parameters;
}

} // namespace

std::vector<Operation> areaOperations() {
    return {
        {"fillcircle",
         with(coordinates({"cx", "cy"}), {length("r")}),
         "filled circle",
         call<&ZRDraw::FillCircle>,
         {},
         edgeFault<2>},
        {"rect", box(), "outline of a rectangle", call<&ZRDraw::Rectangle>},
        {"fillrect", filledBox(), "filled rectangle with column R, without row B", fillRect},
        {"roundrect", with(box(), {length("cw", Role::Width), length("ch", Role::Height)}),
         "outline; CW by CH is the size of two corners", call<&ZRDraw::RoundRect>,
         "its corners do not fit"},
        {"gradient", with(box(), {whole("angle", -angleLimit, angleLimit)}),
         "blend from foreground to background colour", call<&ZRDraw::GradientRect>},
        {"fill", with(onePoint(), {optionalComponent("tolerance")}),
         "flood what has the colour at X Y", fill, "its start is off the canvas"},
        {"erase", {flag("back")}, "paint the whole canvas", erase},
    };
}
