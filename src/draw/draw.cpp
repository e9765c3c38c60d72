// ZRDraw itself: its state, the current position, and what is in the interface but does nothing.
#include "zrdraw/font.h"
#include "zrdraw/kept_names.h"
#include "zrdraw/zrdraw.h"

#include <cstddef>

void* mpEdgeBuffer = nullptr;
unsigned int fp[3] = {};

namespace {
constexpr ZRDraw::TextColor white{1.0, 1.0, 1.0, 1.0};
constexpr ZRDraw::TextColor dimmed{0.6, 0.6, 0.6, 0.6};
} // namespace

ZRDraw::ZRDraw(unsigned int)
    : metaFile(0), reservedWord(0), metaHeader(nullptr), placeableHeader(nullptr), currentX(0),
      currentY(0), reservedBlock{}, textColor0(white), textColor1(dimmed), textColor2(white),
      textColor3(dimmed), textTransparent(true), labelFont(gFont8x10), labelWidth(zrFontWidth),
      labelHeight(zrFontHeight), labelScale(1), useDefaultFont(false) {
    antiAlias = false;
    reservedFlag = false;
}

ZRDraw::~ZRDraw() = default;

int ZRDraw::Point(int x, int y, bool selector) {
    ZRDraw::MoveTo(x, y);
    return PutPixel(x, y, selector);
}

int ZRDraw::MoveTo(int x, int y) {
    currentX = x;
    currentY = y;
    return 0;
}

int ZRDraw::MoveTo(int x, int y, _POINT* previous) {
    if (previous != nullptr)
        *previous = {currentX, currentY};
    return ZRDraw::MoveTo(x, y);
}

int ZRDraw::SetBrush(unsigned char*, int, int) {
    return 0;
}

int ZRDraw::SymGradientRect(int, int, int, int, int) {
    return 0;
}

int ZRDraw::CornerGradientRect(int, int, int, int, int) {
    return 0;
}

int ZRDraw::CenterGradientRect(int, int, int, int) {
    return 0;
}

int ZRDraw::RadialGradientFill(int, int, int, int, int, int) {
    return 0;
}

int ZRDraw::PatternFill(int, int, int, int, int, int, unsigned char*) {
    return 0;
}

int ZRDraw::RoundRectButton(int, int, int, int, int, int) {
    return 0;
}

int ZRDraw::CopyRect(RECT*, const RECT*, ZRDraw*) {
    return 0;
}

int ZRDraw::Filter(zrFilterType, int, int, int, int) {
    return 0;
}

int ZRDraw::Scale(zrScaleType, ZRDraw*, RECT*, ZRDraw*, RECT*) {
    return 0;
}

int ZRDraw::Arrow(int, int, int, int, bool) {
    return 0;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(ZRDraw, metaFile) == 8 && offsetof(ZRDraw, metaHeader) == 24);
static_assert(offsetof(ZRDraw, currentX) == 40 && offsetof(ZRDraw, textColor0) == 64);
static_assert(offsetof(ZRDraw, textTransparent) == 192 && offsetof(ZRDraw, labelFont) == 200);
static_assert(offsetof(ZRDraw, labelScale) == 216 && offsetof(ZRDraw, useDefaultFont) == 220);
#pragma GCC diagnostic pop
