// The picture of a mapped frame, as the library can work on it.
#pragma once

#include "common/picture_view.h"

#include <vector>

#include <gst/video/video.h>

// What work asks of the memory of a picture.
struct MemoryNeeds {
    int pitch;        // 0: any that holds a line
    std::size_t room; // bytes from the first one on, which may be read and written
};

// What drawing asks of it.
MemoryNeeds drawingNeeds(const zrLayout& layout, int width, int height);

// Keeps the memory of a copy from frame to frame.
class WorkingPicture {
public:
    // The frame's own memory, or a copy where that does not have what is needed, which is told in
    // the debug log once, or where a copy is asked for.
    PictureView take(const GstVideoFrame& frame, const MemoryNeeds& needs, bool asCopy = false);

    // Writes a copy back.
    void giveBack(const GstVideoFrame& frame) const;

private:
    std::vector<unsigned char> m_copy;
    PictureView m_view{};
    bool m_isCopy = false;
    bool m_told = false;
};

// The frame's own memory.
PictureView viewOf(const GstVideoFrame& frame);
