// Alpha of frames that are drawn on: opaque where something was drawn, and as it was elsewhere. The
// drawing itself leaves alpha of its own, which would show as holes.
#pragma once

#include "common/picture_view.h"

#include <cstdint>
#include <vector>

#include <gst/video/video.h>

class DrawnAlpha {
public:
    // Before drawing. Does nothing in formats without alpha.
    void mark(const PictureView& picture, GstVideoFormat format);
    // Behind it.
    void settle(const PictureView& picture);

private:
    bool m_active = false;
    std::vector<std::uint8_t> m_bytes;  // of 8-bit pixels
    std::vector<std::uint16_t> m_words; // of 16-bit ones
};
