// Operations of the interface that this version does not offer yet: they refuse with -1 and leave
// canvas and state alone.
#include "zrdraw/zrdraw.h"

namespace {
constexpr int refused = -1;
}

int ZRDraw::Circle(int, int, int) {
    return refused;
}
int ZRDraw::Ellipse(int, int, int, int) {
    return refused;
}
int ZRDraw::FillCircle(int, int, int) {
    return refused;
}
int ZRDraw::Arc(int, int, int, int, int, int, int, int) {
    return refused;
}
int ZRDraw::ArcTo(int, int, int, int, int, int, int, int) {
    return refused;
}
int ZRDraw::AngleArc(int, int, unsigned int, float, float) {
    return refused;
}
int ZRDraw::AngleArcTo(int, int, int, int, float, float) {
    return refused;
}
int ZRDraw::Bezier(int, int, int, int, int, int, int, int) {
    return refused;
}
int ZRDraw::PolyBezier(const _POINT*, unsigned int) {
    return refused;
}
int ZRDraw::PolyBezierTo(const _POINT*, unsigned int) {
    return refused;
}
int ZRDraw::FillRect(const RECT*) {
    return refused;
}
int ZRDraw::Rectangle(int, int, int, int) {
    return refused;
}
int ZRDraw::RoundRect(int, int, int, int, int, int) {
    return refused;
}
int ZRDraw::Pie(int, int, int, int, int, int, int, int) {
    return refused;
}
int ZRDraw::EraseCanvas(bool) {
    return refused;
}
int ZRDraw::Fill(int, int, double) {
    return refused;
}
int ZRDraw::GradientRect(int, int, int, int, int) {
    return refused;
}
int ZRDraw::EMFOpen(const char*) {
    return refused;
}
int ZRDraw::EMFGetSize(int&, int&) {
    return refused;
}
int ZRDraw::EMFDraw(int, int, int, int, bool) {
    return refused;
}
int ZRDraw::EMFClose() {
    return refused;
}
int ZRDraw::DrawText(const char*, int, RECT*, unsigned int) {
    return refused;
}
int ZRDraw::ZRDrawText(const char*, int, RECT*, unsigned int) {
    return refused;
}
int ZRDraw::ExtractBMPData(const char*) {
    return refused;
}
int ZRDraw::ExtractPNGData(const char*) {
    return refused;
}
