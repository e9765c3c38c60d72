#include "operations.h"

#include <tuple>
#include <vector>

namespace {

// Arguments come from the input, each by its type.
template <typename T>
T take(Session& s);

template <>
int take(Session& s) {
    return s.input.coordinate();
}
template <>
unsigned int take(Session& s) {
    return static_cast<unsigned int>(s.input.below(200));
}
template <>
float take(Session& s) {
    return static_cast<float>(s.input.angle());
}
template <>
double take(Session& s) {
    return s.input.component();
}
template <>
bool take(Session& s) {
    return s.slot();
}

template <typename Class, typename Result, typename... Args>
void invoke(Session& s, Result (Class::*operation)(Args...)) {
    const std::tuple<Args...> arguments{take<Args>(s)...};
    std::apply([&](Args... values) { (s.draw().*operation)(values...); }, arguments);
}

template <auto operation>
void call(Session& s) {
    invoke(s, operation);
}

// Picks one of several operations of a name, by its arguments.
template <typename... Args>
using Form = int (ZRDraw::*)(Args...);

// Up to 13 points, and one more for the operations that look behind the last.
template <Form<const _POINT*, unsigned int> operation>
void callChain(Session& s) {
    std::vector<_POINT> points(static_cast<std::size_t>(s.input.below(14) + 1));
    for (_POINT& point : points)
        point = s.input.point();
    (s.draw().*operation)(points.data(), static_cast<unsigned int>(points.size() - 1));
}

void readAnywhere(Session& s) {
    if (!s.mayReadAnywhere())
        return;
    const _POINT p = s.input.point();
    double a = 0, b = 0, c = 0, d = 0;
    s.draw().GetPixelRGBA(p.x, p.y, a, b, c, d);
    s.draw().GetPixelHSV(p.x, p.y, a, b, c, d);
}

void readOnCanvas(Session& s) {
    _POINT p{};
    if (!s.pixelOnCanvas(p))
        return;
    unsigned char c8[4] = {};
    unsigned int c10[4] = {};
    s.draw().GetPixelYCbCr8(p.x, p.y, c8[0], c8[1], c8[2], c8[3]);
    s.draw().GetPixelYCbCr10(p.x, p.y, c10[0], c10[1], c10[2], c10[3]);
    s.draw().GetLuma(p.x, p.y);
}

// Of the canvas' own size one time in two, which has a way of its own.
void fillRect(Session& s) {
    RECT r = s.input.rect();
    const int width = static_cast<int>(s.draw().width), height = static_cast<int>(s.draw().height);
    if (s.input.flag())
        r = {r.left, r.top, r.left + width, r.top + height};
    if (r.right - r.left == width && r.bottom - r.top == height)
        s.notePaintedWhole();
    s.draw().FillRect(&r);
}

void eraseCanvas(Session& s) {
    s.notePaintedWhole();
    s.draw().EraseCanvas(!s.slot());
}

void label(Session& s) {
    s.draw().LabelFont(0U, s.input.between(0, 5));
    const _POINT p = s.input.point();
    const bool inverse = !s.slot();
    s.draw().Label(p.x, p.y, s.input.text().c_str(), inverse, !s.slot());
}

void drawText(Session& s) {
    s.draw().textTransparent = s.slot();
    RECT r = s.input.rect();
    // A rectangle of every height gives every scale, and the largest take long.
    r.bottom = r.top + (r.bottom - r.top) / 3;
    const auto format = static_cast<unsigned int>(s.input.byte() | s.input.below(8) << 8);
    const int count = s.input.between(-5, 40);
    s.draw().DrawText(s.input.text().c_str(), count, &r, format);
}

void setState(Session& s) {
    s.draw().SetTransparency(s.mixing());
    s.draw().SetAlphaAdditive(s.mixing());
    s.draw().antiAlias = s.input.flag();
    const int raw = s.input.flag() ? 1000 : 0;
    s.draw().SetYCbCrMode(static_cast<cmYCbCr>(s.input.below(11) + raw));
}

void setCanvas(Session& s) {
    s.changeFrame();
}

using Five = Form<int, int, int, int, int>;

constexpr Operation table[] = {
    call<&ZRDraw::PutPixel>,
    call<&ZRDraw::SetPixel>,
    call<&ZRDraw::Point>,
    readAnywhere,
    readOnCanvas,
    call<Form<int, int, int, int>{&ZRDraw::Line}>,
    call<&ZRDraw::LineTo>,
    call<&ZRDraw::LineWu>,
    call<&ZRDraw::LineWuTo>,
    call<&ZRDraw::LineVert>,
    call<&ZRDraw::LineHoriz>,
    call<&ZRDraw::Dash>,
    callChain<&ZRDraw::Polyline>,
    callChain<&ZRDraw::PolylineTo>,
    call<&ZRDraw::Circle>,
    call<&ZRDraw::FillCircle>,
    call<&ZRDraw::Ellipse>,
    call<&ZRDraw::Arc>,
    call<&ZRDraw::ArcTo>,
    call<&ZRDraw::Pie>,
    call<&ZRDraw::AngleArc>,
    call<&ZRDraw::AngleArcTo>,
    call<&ZRDraw::Bezier>,
    callChain<&ZRDraw::PolyBezier>,
    callChain<&ZRDraw::PolyBezierTo>,
    fillRect,
    call<&ZRDraw::Rectangle>,
    call<&ZRDraw::RoundRect>,
    eraseCanvas,
    call<&ZRDraw::Fill>,
    call<Five{&ZRDraw::GradientRect}>,
    label,
    drawText,
    call<&ZRDraw::SetColorRGBA>,
    call<&ZRDraw::SetColorYCbCr>,
    call<static_cast<int (ZRPixel::*)(double, bool)>(&ZRPixel::SetTransparency)>,
    setState,
    setCanvas,
};

} // namespace

std::span<const Operation> operations() {
    return table;
}
