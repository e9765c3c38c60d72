// What a mode of the mux works on: the two sources as A and B, and the parameters.
#pragma once

#include "zrdraw/mux.h"

#include <cstddef>
#include <cstring>

struct MuxArgs {
    unsigned char* a;
    unsigned char* b;
    unsigned char* dst;
    unsigned int size1, size2;
    unsigned int flags, wipeCode, position, param, splitX, splitY;
    unsigned int width, height, pitch;

    static constexpr unsigned int pixelBytes = 4;

    bool has(unsigned int bit) const { return (flags & bit) != 0; }
    bool isEmpty() const { return width == 0 || height == 0; }

    // Line offsets are 32-bit products that wrap.
    std::size_t line(unsigned int y) const { return y * pitch; }
    std::size_t packedLine(unsigned int y) const { return y * width * pixelBytes; }
    std::size_t wholeBytes() const { return width * height * pixelBytes; }
};

inline unsigned int loadPixel(const unsigned char* at) {
    unsigned int pixel;
    std::memcpy(&pixel, at, sizeof pixel);
    return pixel;
}

inline void storePixel(unsigned char* at, unsigned int pixel) {
    std::memcpy(at, &pixel, sizeof pixel);
}

inline void copyPixels(unsigned char* to, const unsigned char* from, unsigned int pixels) {
    std::memmove(to, from, std::size_t{pixels} * MuxArgs::pixelBytes);
}
