// Where a pixel of the RGB layouts stands. Every writer and reader of them goes through here.
#pragma once

#include "zrdraw/zrpixel.h"

// Whether (x, y) is on the canvas. A coordinate equal to the width or the height is pulled back
// onto the last pixel or line. Signed numbers: a height that is negative as one refuses all.
inline bool pullOntoCanvas(const ZRPixel& pixel, int& x, int& y) {
    const int columns = static_cast<int>(pixel.width);
    const int lines = static_cast<int>(pixel.height);
    if (pixel.canvas == nullptr || x < 0 || y < 0 || columns == 0 || lines == 0) [[unlikely]]
        return false;
    if (x >= columns || y >= lines) [[unlikely]] {
        if (x > columns || y > lines)
            return false;
        x = x == columns ? columns - 1 : x;
        y = y == lines ? lines - 1 : y;
    }
    return true;
}

inline bool isRgb32(unsigned int pixelType) {
    return pixelType >= ptRGBA32 && pixelType <= ptABGR32;
}

inline bool isRgb24(unsigned int pixelType) {
    return pixelType == ptRGB24 || pixelType == ptBGR24;
}

// Offset of a line, a product that wraps at 32 bits.
inline unsigned int lineOffset(const ZRPixel& pixel, int y) {
    return static_cast<unsigned int>(y) * pixel.pitch;
}

// By contract: a line starts at a multiple of four bytes, whatever the pitch.
inline char* wordAddress(const ZRPixel& pixel, int x, int y) {
    const unsigned long word = static_cast<unsigned long>(lineOffset(pixel, y) / 4);
    return pixel.canvas + 4 * (word + static_cast<unsigned long>(x));
}

inline char* rgb24Address(const ZRPixel& pixel, int x, int y) {
    return pixel.canvas + lineOffset(pixel, y) + 3 * static_cast<unsigned long>(x);
}
