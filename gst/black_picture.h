// A black picture, which stands in for a source that has none.
#pragma once

#include "common/picture_view.h"

#include <optional>
#include <vector>

#include <gst/video/video.h>

class BlackPicture {
public:
    // In the format and size of a frame, at wordPitch() unless another one is needed.
    PictureView like(const GstVideoFrame& frame, int pitch);

private:
    std::vector<unsigned char> m_pixels;
    PictureView m_view{};
    std::optional<cmYCbCr> m_mode;
};
