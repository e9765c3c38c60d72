// A picture in memory that is somebody else's.
#pragma once

#include "zrdraw/layouts.h"

#include <cstddef>

struct PictureView {
    const zrLayout* layout;
    unsigned char* data;
    int width;
    int height;
    int pitch; // bytes from line to line

    unsigned char* line(int y) const { return data + static_cast<std::ptrdiff_t>(y) * pitch; }
};

// Bytes of a line, whole pixel pairs at the end of an odd width included.
constexpr int wholeLineBytes(const zrLayout& layout, int width) {
    const int columns = layout.isPairs() ? width + width % 2 : width;
    return static_cast<int>(zrLineBytes(layout.line, static_cast<unsigned>(columns)));
}

// Where lines follow each other: whole words and no more, because operations that fill a whole
// canvas take its lines for contiguous.
constexpr int wordPitch(const zrLayout& layout, int width) {
    constexpr int wordBytes = 4;
    return (wholeLineBytes(layout, width) + wordBytes - 1) / wordBytes * wordBytes;
}
