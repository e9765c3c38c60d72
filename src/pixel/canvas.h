// Where a pixel of the RGB layouts stands. Every writer and reader of them goes through here.
#pragma once

#include "span/words.h"
#include "zrdraw/zrpixel.h"

// A coordinate equal to the width or the height is that of the last pixel or line.
inline int pullEdge(int coordinate, unsigned int extent) {
    return coordinate == static_cast<int>(extent) ? coordinate - 1 : coordinate;
}

// Without the sign; that of the least number is lost.
inline unsigned int magnitude(int value) {
    return static_cast<unsigned int>(value < 0 ? -value : value);
}

// The part of pullOntoCanvas that pixels inside the canvas do not need.
[[gnu::noinline, gnu::cold]] bool pullEdgeOntoCanvas(const ZRPixel& pixel, int& x, int& y);

// Whether (x, y) is on the canvas. A coordinate equal to the width or the height is pulled back
// onto the last pixel or line. Signed numbers: a height that is negative as one refuses all.
inline bool pullOntoCanvas(const ZRPixel& pixel, int& x, int& y) {
    const bool inside = pixel.canvas != nullptr && x < static_cast<int>(pixel.width) &&
                        y < static_cast<int>(pixel.height) && (x | y) >= 0;
    if (inside) [[likely]]
        return true;
    return pullEdgeOntoCanvas(pixel, x, y);
}

inline bool isRgb32(unsigned int pixelType) {
    return pixelType >= ptRGBA32 && pixelType <= ptABGR32;
}

inline bool isRgb24(unsigned int pixelType) {
    return pixelType - ptRGB24 <= ptBGR24 - ptRGB24;
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

inline unsigned int loadWord(const char* address) {
    return loadAs<unsigned int>(address);
}

inline void storeWord(char* address, unsigned int word) {
    storeAs(address, word);
}
