// The three ways to write a run: words, copies of an encoded pixel, or pixel by pixel.
#include "draw/run.h"

#include "zrdraw/platform/memory.h"
#include "zrdraw/span.h"

namespace {

constexpr unsigned int widestPixel = 16;

// Whether a slot writes without a look at what is there.
bool isOpaque(const ZRPixel& pixel, bool selector) {
    return !pixel.transparency ||
           (selector ? pixel.foreTransparency : pixel.backTransparency) <= 0.0;
}

// Whether runs are copies of their first pixel. By contract: the additive switch decides nothing.
bool isPacked(const ZRPixel& pixel, bool selector) {
    return zrdraw_packed_pixel_bytes(pixel.pixelType) != 0 && isOpaque(pixel, selector);
}

// The format class encodes the first pixel, and the run repeats its bytes. False when the pixel
// has no address.
bool drawPackedRun(ZRPixel& pixel, int left, int right, int y) {
    pixel.PutPixel(left, y, true);
    char* const first = pixel.GetPixel(left, y);
    if (first == nullptr)
        return false;
    const unsigned int bytes = zrdraw_packed_pixel_bytes(pixel.pixelType);
    zrdraw_fill_pattern(first + bytes, first, bytes, static_cast<unsigned int>(right - left));
    return true;
}

// The same for every line of the canvas, from the pixel in its corner.
bool drawPackedCanvas(ZRPixel& pixel, bool selector) {
    if (pixel.canvas == nullptr || pixel.width == 0)
        return false;
    const unsigned int bytes = zrdraw_packed_pixel_bytes(pixel.pixelType);
    pixel.PutPixel(0, 0, selector);
    const char* const first = pixel.GetPixel(0, 0);
    if (first == nullptr || bytes > widestPixel)
        return false;
    char pattern[widestPixel];
    std::memcpy(pattern, first, bytes);
    for (unsigned long y = 0; y < pixel.height; ++y)
        zrdraw_fill_pattern(pixel.canvas + y * pixel.pitch, pattern, bytes, pixel.width);
    return true;
}

} // namespace

bool linesAreApart(const ZRPixel& pixel) {
    const zrLayout* layout = zrFindLayout(pixel.pixelType);
    if (layout == nullptr)
        return false;
    const unsigned int columns = layout->isPairs() ? (pixel.width + 1) & ~1U : pixel.width;
    return pixel.pitch >= zrLineBytes(layout->line, columns) &&
           static_cast<unsigned long>(pixel.height) * pixel.pitch <= 0xFFFFFFFFUL;
}

void drawRun(ZRPixel& pixel, int left, int right, int y) {
    if (isRgb32(pixel.pixelType)) { // by contract always opaque
        const unsigned int more = static_cast<unsigned int>(right - left);
        SetMemoryFast(wordAddress(pixel, left, y), pixel.foreColor, more * 4 + 4);
        return;
    }
    const auto direct = [=](const auto& plotter, const auto&) {
        plotter.pen().run(left, y, right - left + 1);
    };
    if (useDirect(pixel, Slots::Foreground, direct))
        return;
    if (isPacked(pixel, true) && drawPackedRun(pixel, left, right, y))
        return;
    for (int x = left; x <= right; ++x)
        pixel.PutPixel(x, y, true);
}

// By contract: the canvas is taken for contiguous rows; the pitch is not looked at.
void drawCanvasWords(const ZRPixel& pixel, unsigned int color) {
    const unsigned long pixels = static_cast<unsigned long>(pixel.width) * pixel.height;
    if (pixel.canvas != nullptr)
        SetMemoryFast(pixel.canvas, color, pixels * 4);
}

void drawCanvas(ZRPixel& pixel, bool selector) {
    if (isRgb32(pixel.pixelType))
        return drawCanvasWords(pixel, selector ? pixel.foreColor : pixel.backColor);
    if (isPacked(pixel, selector) && drawPackedCanvas(pixel, selector))
        return;
    const int columns = static_cast<int>(pixel.width);
    const int lines = static_cast<int>(pixel.height);
    withPlotters(pixel, selector ? Slots::Foreground : Slots::Background,
                 [=](const auto& plotter, const auto&) {
                     for (int y = 0; y < lines; ++y)
                         plotter.run(0, y, columns);
                 });
}
