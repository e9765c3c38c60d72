// Commands that set colours and modes.
#include "common/picture_color.h"
#include "script/operations/operation_rows.h"

#include <fmt/format.h>

using namespace rows;

namespace {

// The matrix modes 1 to 7, in their order.
const Words& matrixNames() {
    static const Words names = {"rec601",  "rec601full",  "rec709",   "rec709full",
                                "rec2020", "rec2020full", "rec2020cl"};
    return names;
}

Parameter onOff() {
    return choice("switch", {"off", "on"});
}

Parameters rgba() {
    return {component("r"), component("g"), component("b"), optionalComponent("a")};
}

Parameters ycbcr() {
    return {component("y"), component("cb"), component("cr")};
}

template <bool foreground>
int setColor(Scene& scene, const Arguments& a) {
    return setPictureColor(scene.draw, a.number(0), a.number(1), a.number(2), a.numberOr(3, 1.0),
                           foreground);
}

template <bool foreground>
int setYCbCr(Scene& scene, const Arguments& a) {
    return scene.draw.SetColorYCbCr(a.number(0), a.number(1), a.number(2), 1.0, foreground);
}

int setMatrix(Scene& scene, const Arguments& a) {
    return scene.draw.SetYCbCrMode(static_cast<cmYCbCr>(a.word(0) + 1));
}

int setTransparency(Scene& scene, const Arguments& a) {
    const bool on = a.word(0) == Argument::noWord;
    scene.draw.SetTransparency(on);
    if (on) {
        scene.draw.SetTransparency(a.number(0), true);
        scene.draw.SetTransparency(a.number(0), false);
    }
    return 0;
}

int setAdditive(Scene& scene, const Arguments& a) {
    scene.draw.SetAlphaAdditive(a.word(0) == 1);
    return 0;
}

int setAntiAlias(Scene& scene, const Arguments& a) {
    scene.draw.antiAlias = a.word(0) == 1;
    return 0;
}

} // namespace

std::vector<Operation> stateOperations() {
    return {
        {"color", rgba(), "foreground colour, numbers 0 to 1", setColor<true>},
        {"backcolor", rgba(), "background colour", setColor<false>},
        {"ycbcr", ycbcr(), "foreground colour by the matrix in force", setYCbCr<true>},
        {"backycbcr", ycbcr(), "background colour by the matrix in force", setYCbCr<false>},
        {"matrix",
         {choice("name", matrixNames())},
         fmt::format("colour matrix: {}", fmt::join(matrixNames(), ", ")),
         setMatrix},
        {"transparency",
         {{Kind::Number, "t", 0, 1, {"off"}}},
         "of both colours, 0 opaque to 1; draws in bgra unless --layout says otherwise",
         setTransparency,
         {},
         nullptr,
         true},
        {"additive",
         {onOff()},
         "add colours to what is there; draws in bgra unless --layout says otherwise",
         setAdditive,
         {},
         nullptr,
         true},
        {"antialias", {onOff()}, "smooth the lines of line and lineto", setAntiAlias},
    };
}
