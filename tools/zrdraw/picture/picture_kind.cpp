#include "picture/picture_kind.h"

#include "picture/pixel_formats.h"

extern "C" {
#include <libavutil/imgutils.h>
}

namespace {

AVPixelFormat withoutRange(AVPixelFormat format) {
    switch (format) {
    case AV_PIX_FMT_YUVJ411P:
        return AV_PIX_FMT_YUV411P;
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    default:
        return format;
    }
}

// BT.470 BG and SMPTE 170M are both BT.601.
AVColorSpace oneName(AVColorSpace space) {
    return space == AVCOL_SPC_BT470BG ? AVCOL_SPC_SMPTE170M : space;
}

bool isFull(const Colors& colors) {
    return colors.range == AVCOL_RANGE_JPEG;
}

} // namespace

PictureKind kindOf(const AVFrame& picture, const CanvasShape& shape, const Colors& otherwise) {
    const auto format = picture.format == barePixels ? pixelFormatOf(*shape.layout)
                                                     : static_cast<AVPixelFormat>(picture.format);
    PictureKind kind{withoutRange(format),
                     {picture.colorspace, picture.color_range},
                     picture.chroma_location,
                     hasChromaByFields(picture, format)};
    if (hasFlag(format, AV_PIX_FMT_FLAG_RGB))
        return kind;
    AVColorSpace& space = kind.colors.space;
    if (space == AVCOL_SPC_UNSPECIFIED)
        space = otherwise.space;
    if (space == AVCOL_SPC_UNSPECIFIED || space == AVCOL_SPC_RGB)
        space = usualSpace(shape.height);
    AVColorRange& range = kind.colors.range;
    if (isFullRangeByName(format))
        range = AVCOL_RANGE_JPEG;
    if (range == AVCOL_RANGE_UNSPECIFIED)
        range = isGray(format) ? AVCOL_RANGE_JPEG : otherwise.range;
    return kind;
}

Colors canvasColors(const CanvasShape& shape, const AVFrame& picture, const PictureKind& kind) {
    if (!isYCbCr(*shape.layout))
        return {kind.colors.space, AVCOL_RANGE_JPEG};
    const bool kept = picture.format == barePixels || !countsAsRgb(kind.format);
    return kept ? kind.colors : Colors{usualSpace(shape.height), AVCOL_RANGE_MPEG};
}

bool areAlike(const Colors& a, const Colors& b) {
    return isFull(a) == isFull(b) && oneName(a.space) == oneName(b.space);
}

bool areAlike(const PictureKind& a, const PictureKind& b) {
    const auto isRgb = [](const PictureKind& kind) {
        return hasFlag(kind.format, AV_PIX_FMT_FLAG_RGB);
    };
    // Grey of the full range is RGB with three samples that are one.
    if (isRgb(a) || isRgb(b))
        return (isRgb(a) || (isGray(a.format) && isFull(a.colors))) &&
               (isRgb(b) || (isGray(b.format) && isFull(b.colors)));
    return areAlike(a.colors, b.colors);
}

bool hasPixels(const AVFrame& picture) {
    return picture.data[0] != nullptr;
}

void copyPicture(const AVFrame& from, AVFrame& to) {
    const Planes planes = planesOf(from);
    const std::uint8_t* data[4] = {planes.data[0], planes.data[1], planes.data[2], planes.data[3]};
    av_image_copy(to.data, to.linesize, data, from.linesize, static_cast<AVPixelFormat>(to.format),
                  to.width, to.height);
}

Planes planesOf(const AVFrame& picture) {
    Planes planes{{}, {}, picture.height};
    for (int i = 0; i < 4; ++i) {
        planes.data[i] = picture.data[i];
        planes.pitch[i] = picture.linesize[i];
    }
    return planes;
}

Planes fieldOf(const AVFrame& picture, int field) {
    Planes planes = planesOf(picture);
    planes.height = (picture.height + 1 - field) / 2;
    for (int i = 0; i < 4; ++i) {
        if (!planes.data[i] ||
            (i == 1 && hasFlag(static_cast<AVPixelFormat>(picture.format), AV_PIX_FMT_FLAG_PAL)))
            continue;
        planes.data[i] += std::ptrdiff_t{picture.linesize[i]} * field;
        planes.pitch[i] *= 2;
    }
    return planes;
}
