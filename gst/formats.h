// GStreamer's raw video formats and the layouts that have the same bytes.
#pragma once

#include "common/picture_view.h"
#include "zrdraw/types.h"

#include <optional>
#include <string>

#include <gst/video/video.h>

// The layout of a format's bytes; null for a format that no layout has.
const zrLayout* layoutOf(GstVideoFormat format);

// All formats that a layout of the predicate has, as caps list them: "{ BGRA, BGRx }".
std::string formatList(bool (*isWanted)(const zrLayout& layout));

// Raw video in these formats, of any size, rate and interlace mode, in memory.
GstCaps* videoCaps(const std::string& formats);

// The library's matrix mode for pictures in Y, Cb and Cr; nothing for others, and for colours whose
// matrix the library does not know.
std::optional<cmYCbCr> matrixModeOf(const GstVideoInfo& info);

// Lines of one buffer: half the picture's where each field has a buffer of its own.
inline int linesOf(const GstVideoInfo& info) {
    return GST_VIDEO_INFO_FIELD_HEIGHT(&info);
}
