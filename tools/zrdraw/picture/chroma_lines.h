// Which lines of a picture share a line of chroma.
#pragma once

#include "picture/pixel_formats.h"

struct ChromaLines {
    ChromaLines(const AVFrame& picture, AVPixelFormat format)
        : shift(av_pix_fmt_desc_get(format)->log2_chroma_h),
          fields(hasChromaByFields(picture, format)) {}

    int shift;
    bool fields;

    int of(int y) const { return fields ? y / 4 * 2 + y % 2 : y >> shift; }

    // Of a line of chroma: its first line, and how far it is from each to the next.
    int first(int chroma) const { return fields ? chroma / 2 * 4 + chroma % 2 : chroma << shift; }
    int step() const { return fields ? 2 : 1; }
    int count() const { return 1 << shift; }
};
