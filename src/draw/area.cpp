// Areas made of runs, and outlines made of lines and arcs.
#include "draw/span_route.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/zrdraw.h"

#include <cstring>

namespace {

constexpr unsigned int widestPixel = 16;

// By contract: the canvas is taken for contiguous rows; the pitch is not looked at.
int fillCanvas(const ZRPixel& pixel, unsigned int color) {
    const unsigned long pixels = static_cast<unsigned long>(pixel.width) * pixel.height;
    SetMemoryFast(pixel.canvas, color, pixels * 4);
    return 0;
}

// Repeats the first pixel of the canvas, encoded by the format class, over every row. False when
// it has no address.
bool fillPackedCanvas(ZRPixel& pixel, bool selector) {
    if (pixel.canvas == nullptr || pixel.width == 0)
        return false;
    const unsigned int bytes = zrdraw_packed_pixel_bytes(pixel.pixelType);
    pixel.PutPixel(0, 0, selector);
    const char* first = pixel.GetPixel(0, 0);
    if (first == nullptr || bytes > widestPixel)
        return false;
    char pattern[widestPixel];
    std::memcpy(pattern, first, bytes);
    for (unsigned long y = 0; y < pixel.height; ++y)
        zrdraw_fill_pattern(pixel.canvas + y * pixel.pitch, pattern, bytes, pixel.width);
    return true;
}

} // namespace

int ZRDraw::FillRect(const RECT* rect) {
    // By contract: the position of a rectangle of the canvas' size is not looked at.
    if (isRgb32(pixelType) && rect->right - rect->left == static_cast<int>(width) &&
        rect->bottom - rect->top == static_cast<int>(height))
        return fillCanvas(*this, foreColor);
    // By contract: the right column belongs to the rectangle, the bottom row does not.
    for (int y = rect->top; y < rect->bottom; ++y)
        LineHoriz(rect->left, y, rect->right);
    return 0;
}

int ZRDraw::EraseCanvas(bool useBackground) {
    const bool selector = !useBackground;
    const SpanRoute route = spanRoute(*this, selector);
    if (route == SpanRoute::Words)
        return fillCanvas(*this, selector ? foreColor : backColor);
    if (route == SpanRoute::Packed && fillPackedCanvas(*this, selector))
        return 0;
    const int columns = static_cast<int>(width);
    const int lines = static_cast<int>(height);
    for (int y = 0; y < lines; ++y)
        for (int x = 0; x < columns; ++x)
            PutPixel(x, y, selector);
    return 0;
}

int ZRDraw::Rectangle(int left, int top, int right, int bottom) {
    Line(left, top, right, top);
    Line(left, top, left, bottom);
    Line(left, bottom, right, bottom);
    Line(right, top, right, bottom);
    return 0;
}

int ZRDraw::RoundRect(int left, int top, int right, int bottom, int cornerWidth, int cornerHeight) {
    if (right - left < cornerWidth || bottom - top < cornerHeight)
        return -1;
    const int hw = cornerWidth / 2;
    const int hh = cornerHeight / 2;
    Line(left + hw, top, right - hw, top);
    Line(left, top + hh, left, bottom - hh);
    Line(left + hw, bottom, right - hw, bottom);
    Line(right, top + hh, right, bottom - hh);
    AngleArcTo(left + hw, top + hh, hw, hh, 90, 180);
    AngleArcTo(left + hw, bottom - hh, hw, hh, 180, 270);
    AngleArcTo(right - hw, bottom - hh, hw, hh, 270, 360);
    AngleArcTo(right - hw, top + hh, hw, hh, 0, 90);
    return 0;
}
