// How the samples of a picture are to be understood.
#pragma once

#include "picture/canvas.h"

#include <cstdint>

struct PictureKind {
    AVPixelFormat format = AV_PIX_FMT_NONE; // none that says its range by its name
    Colors colors;
    AVChromaLocation chromaPlace = AVCHROMA_LOC_UNSPECIFIED;
    bool fields = false; // whether a line of chroma belongs to lines of one field

    bool operator==(const PictureKind&) const = default;
};

// Where nobody says: by the height, and in studio range.
inline constexpr Colors usualColors{AVCOL_SPC_UNSPECIFIED, AVCOL_RANGE_MPEG};

// What pictures of a kind have in common with canvases of a shape: where a picture says nothing of
// its colours it has those of `otherwise`, else what is usual. A bare one is in the format that
// stands for the layout.
PictureKind kindOf(const AVFrame& picture, const CanvasShape& shape,
                   const Colors& otherwise = usualColors);

// The colours of a canvas in the layout that such a picture is loaded into.
Colors canvasColors(const CanvasShape& shape, const AVFrame& picture, const PictureKind& kind);

// Whether the numbers stand for the same colours.
bool areAlike(const Colors& a, const Colors& b); // as Y, Cb and Cr
bool areAlike(const PictureKind& a, const PictureKind& b);

bool hasPixels(const AVFrame& picture);

// Between pictures of one format and size.
void copyPicture(const AVFrame& from, AVFrame& to);

// The planes of a picture, or of the lines of one of its fields.
struct Planes {
    std::uint8_t* data[4];
    int pitch[4];
    int height;
};

Planes planesOf(const AVFrame& picture);
Planes fieldOf(const AVFrame& picture, int field);

// The lines of a picture as such a kind has them: all, or those of two fields.
template <typename Convert>
void byFields(bool fields, const AVFrame& from, AVFrame& to, Convert convert) {
    if (!fields)
        return convert(planesOf(from), planesOf(to), 0);
    for (int field : {0, 1})
        convert(fieldOf(from, field), fieldOf(to, field), field);
}
