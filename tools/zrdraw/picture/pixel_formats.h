// What is to be known of the media libraries' frames: pixel formats, colours and scan.
#pragma once

#include "media/av.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

inline bool hasFlag(AVPixelFormat format, unsigned flag) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && (description->flags & flag);
}

inline bool isGray(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && description->nb_components <= 2;
}

// Whether a frame is RGB, or is treated like it because it has few colours.
inline bool countsAsRgb(AVPixelFormat format) {
    return isGray(format) || hasFlag(format, AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_PAL);
}

// Formats that say by their name that they use the whole range.
inline bool isFullRangeByName(AVPixelFormat format) {
    return format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P ||
           format == AV_PIX_FMT_YUVJ444P || format == AV_PIX_FMT_YUVJ440P ||
           format == AV_PIX_FMT_YUVJ411P;
}

// Whether the chroma of a picture is that of its two fields. Where four does not divide the height
// fairly the second field has no line of chroma for its last one: such lines count as those of a
// progressive picture.
inline bool hasChromaByFields(const AVFrame& picture, AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return picture.interlaced_frame && description && description->log2_chroma_h == 1 &&
           picture.height % 4 != 2 && picture.height > 2;
}

inline bool isInterlaced(AVFieldOrder order) {
    return order != AV_FIELD_UNKNOWN && order != AV_FIELD_PROGRESSIVE;
}

// Custom, where nobody says: large pictures are BT.709, small ones BT.601.
inline AVColorSpace usualSpace(int height) {
    return height >= 720 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
}
