// The time code of each frame of a stream.
#pragma once

#include <string>

#include <gst/video/video.h>

struct FrameCode {
    unsigned frames; // since 00:00:00:00
    unsigned type;   // of zrTimeCode
};

class FrameClock {
public:
    // Begins anew for a stream. What is wrong with the start, which is a time code such as
    // 10:00:00:00, or with ';' before the frames for drop-frame; empty for nothing.
    std::string start(const GstVideoInfo& info, const std::string& timeCode);

    // By the buffer's own time code, else counted from the start on by the stream's time; frames
    // without one follow each other.
    FrameCode of(GstBuffer* buffer, GstClockTime streamTime);

    double framesPerSecond() const { return static_cast<double>(m_rate) / m_scale; }
    GstClockTime duration() const { return gst_util_uint64_scale_int(GST_SECOND, m_scale, m_rate); }

private:
    int m_rate = 25;
    int m_scale = 1;
    unsigned m_type = 0;
    unsigned m_start = 0;
    unsigned m_next = 0; // frame from the start on
};
