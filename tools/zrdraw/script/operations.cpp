#include "script/operations.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <iterator>

namespace {

using Kind = Parameter::Kind;
using Words = std::vector<std::string_view>;

// The matrix modes 1 to 7, in their order.
const Words matrixNames = {"rec601",  "rec601full",  "rec709",   "rec709full",
                           "rec2020", "rec2020full", "rec2020cl"};

Parameter coordinate(std::string_view name) {
    return {Kind::Whole, name, -coordinateLimit, coordinateLimit};
}

Parameter count(std::string_view name, double low, double high) {
    return {Kind::Whole, name, low, high};
}

Parameter component(std::string_view name) {
    return {Kind::Number, name, 0, 1};
}

Parameter optionalComponent(std::string_view name) {
    return {Kind::Number, name, 0, 1, {}, true};
}

Parameter numberOr(std::string_view name, std::string_view word) {
    return {Kind::Number, name, 0, 1, {word}};
}

Parameter choice(std::string_view name, const Words& words) {
    return {Kind::Choice, name, 0, 0, words};
}

Parameter onOff() {
    return choice("switch", {"off", "on"});
}
Parameter text(std::string_view name) {
    return {Kind::Text, name};
}
Parameter points() {
    return {Kind::Points, "points", -coordinateLimit, coordinateLimit};
}
Parameter flag(std::string_view name) {
    return {Kind::Flag, name, 0, 0, {}, true};
}

std::vector<Parameter> onePoint() {
    return {coordinate("x"), coordinate("y")};
}

std::vector<Parameter> twoPoints() {
    return {coordinate("x0"), coordinate("y0"), coordinate("x1"), coordinate("y1")};
}

std::vector<Parameter> with(std::vector<Parameter> first, const std::vector<Parameter>& more) {
    first.insert(first.end(), more.begin(), more.end());
    return first;
}

std::vector<Parameter> rgba() {
    return {component("r"), component("g"), component("b"), optionalComponent("a")};
}

std::vector<Parameter> ycbcr() {
    return {component("y"), component("cb"), component("cr")};
}

template <bool foreground>
int setColor(ZRDraw& draw, const Arguments& a) {
    return draw.SetColorRGBA(a.number(0), a.number(1), a.number(2), a.numberOr(3, 1.0), foreground);
}

template <bool foreground>
int setYCbCr(ZRDraw& draw, const Arguments& a) {
    return draw.SetColorYCbCr(a.number(0), a.number(1), a.number(2), 1.0, foreground);
}

int setMatrix(ZRDraw& draw, const Arguments& a) {
    return draw.SetYCbCrMode(static_cast<cmYCbCr>(a.word(0) + 1));
}

int setTransparency(ZRDraw& draw, const Arguments& a) {
    const bool on = a.word(0) == Argument::noWord;
    draw.SetTransparency(on);
    if (on) {
        draw.SetTransparency(a.number(0), true);
        draw.SetTransparency(a.number(0), false);
    }
    return 0;
}

int setAdditive(ZRDraw& draw, const Arguments& a) {
    draw.SetAlphaAdditive(a.word(0) == 1);
    return 0;
}

int setAntiAlias(ZRDraw& draw, const Arguments& a) {
    draw.antiAlias = a.word(0) == 1;
    return 0;
}

int setPixel(ZRDraw& draw, const Arguments& a) {
    return draw.SetPixel(a.whole(0), a.whole(1), a.number(2), a.number(3), a.number(4), a.number(5),
                         true);
}

// A position off the canvas is as good as any other, so moving is never refused.
int moveTo(ZRDraw& draw, const Arguments& a) {
    draw.MoveTo(a.whole(0), a.whole(1));
    return 0;
}

int dash(ZRDraw& draw, const Arguments& a) {
    return draw.Dash(a.whole(0), a.whole(1), a.whole(2), a.whole(3), a.whole(4), a.whole(5));
}

template <int (ZRDraw::*operation)(int, int)>
int drawTo(ZRDraw& draw, const Arguments& a) {
    return (draw.*operation)(a.whole(0), a.whole(1));
}

template <int (ZRDraw::*operation)(int, int, int)>
int drawRun(ZRDraw& draw, const Arguments& a) {
    return (draw.*operation)(a.whole(0), a.whole(1), a.whole(2));
}

template <int (ZRDraw::*operation)(int, int, int, int)>
int drawBetween(ZRDraw& draw, const Arguments& a) {
    return (draw.*operation)(a.whole(0), a.whole(1), a.whole(2), a.whole(3));
}

int polyline(ZRDraw& draw, const Arguments& a) {
    return draw.Polyline(a.points(0).data(), static_cast<unsigned>(a.points(0).size()));
}

// The library takes the new position from one element behind the points it draws.
int polylineTo(ZRDraw& draw, const Arguments& a) {
    std::vector<_POINT> points = a.points(0);
    points.push_back(points.back());
    return draw.PolylineTo(points.data(), static_cast<unsigned>(points.size() - 1));
}

int point(ZRDraw& draw, const Arguments& a) {
    return draw.Point(a.whole(0), a.whole(1), !a.given(2));
}

int setScale(ZRDraw& draw, const Arguments& a) {
    return draw.LabelFont(0U, a.whole(0));
}

int label(ZRDraw& draw, const Arguments& a) {
    return draw.Label(a.whole(0), a.whole(1), a.text(2).c_str(), a.given(3), a.given(4));
}

std::vector<Operation> makeOperations() {
    return {
        {"color", rgba(), "foreground colour, numbers 0 to 1", setColor<true>},
        {"backcolor", rgba(), "background colour", setColor<false>},
        {"ycbcr", ycbcr(), "foreground colour by the matrix in force", setYCbCr<true>},
        {"backycbcr", ycbcr(), "background colour by the matrix in force", setYCbCr<false>},
        {"matrix",
         {choice("name", matrixNames)},
         fmt::format("colour matrix: {}", fmt::join(matrixNames, ", ")),
         setMatrix},
        {"transparency", {numberOr("t", "off")}, "of both colours, 0 opaque to 1", setTransparency},
        {"additive", {onOff()}, "add colours to what is there", setAdditive},
        {"antialias", {onOff()}, "smooth the lines of line and lineto", setAntiAlias},
        {"point", with(onePoint(), {flag("back")}), "one pixel; moves there", point},
        {"pixel",
         with(onePoint(), {component("c0"), component("c1"), component("c2"), component("c3")}),
         "one pixel in a colour that stays", setPixel},
        {"move", onePoint(), "set the current position", moveTo},
        {"lineto", onePoint(), "line from the current position, which moves along",
         drawTo<&ZRDraw::LineTo>},
        {"line", twoPoints(), "line with both ends", drawBetween<&ZRDraw::Line>},
        {"wuto", onePoint(), "as lineto, anti-aliased", drawTo<&ZRDraw::LineWuTo>},
        {"wu", twoPoints(), "as line, anti-aliased", drawBetween<&ZRDraw::LineWu>},
        {"vert",
         {coordinate("x"), coordinate("y0"), coordinate("y1")},
         "vertical run, wholly on the canvas",
         drawRun<&ZRDraw::LineVert>},
        {"horiz",
         {coordinate("x0"), coordinate("y"), coordinate("x1")},
         "horizontal run, wholly on the canvas",
         drawRun<&ZRDraw::LineHoriz>},
        {"dash",
         with(twoPoints(), {count("on", 1, coordinateLimit), count("off", 0, coordinateLimit)}),
         "line of ON pixels drawn and OFF skipped, in turn", dash},
        {"polyline", {points()}, "lines through two or more points", polyline},
        {"polylineto", {points()}, "as polyline; moves to the last point", polylineTo},
        {"scale", {count("n", 1, 64)}, "size of labels", setScale},
        {"label", with(onePoint(), {text("text"), flag("inverse"), flag("opaque")}),
         "text from its top left corner on", label},
    };
}

std::string upper(std::string_view name) {
    std::string result(name);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

std::string show(const Parameter& parameter) {
    switch (parameter.kind) {
    case Kind::Flag:
        return std::string(parameter.name);
    case Kind::Text:
        return fmt::format("\"{}\"", upper(parameter.name));
    case Kind::Points:
        return "X0 Y0 X1 Y1 ...";
    case Kind::Choice:
        return parameter.words.size() > 2 ? upper(parameter.name)
                                          : fmt::format("{}", fmt::join(parameter.words, "|"));
    case Kind::Whole:
    case Kind::Number:
        break;
    }
    std::string result = upper(parameter.name);
    for (const auto word : parameter.words)
        result += fmt::format("|{}", word);
    return result;
}

} // namespace

const std::vector<Operation>& operations() {
    static const std::vector<Operation> table = makeOperations();
    return table;
}

std::string usage(const Operation& operation) {
    std::string result(operation.name);
    for (const Parameter& parameter : operation.parameters)
        result +=
            parameter.optional ? fmt::format(" [{}]", show(parameter)) : ' ' + show(parameter);
    return result;
}

std::string listOperations() {
    std::string result;
    for (const Operation& operation : operations())
        fmt::format_to(std::back_inserter(result), "  {:<38} {}\n", usage(operation),
                       operation.help);
    return result;
}
