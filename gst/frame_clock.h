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
    // Takes a stream's rate and the time code of its beginning, such as 10:00:00:00, or with ';'
    // before the frames for drop-frame. What is wrong with that; empty for nothing.
    std::string start(const GstVideoInfo& info, const std::string& timeCode);

    // Frames without a time are counted from the start on again.
    void restart() { m_next = 0; }

    // By the buffer's own time code, else counted from the start on by the stream's time; frames
    // without one follow each other.
    FrameCode of(GstBuffer* buffer, GstClockTime streamTime);

    unsigned type() const { return m_type; } // of frames without a time code of their own
    double framesPerSecond() const { return static_cast<double>(m_rate) / m_scale; }
    GstClockTime duration() const { return gst_util_uint64_scale_int(GST_SECOND, m_scale, m_rate); }

private:
    int m_rate = 25;
    int m_scale = 1;
    int m_counted = 25; // in `m_scale` seconds: another number where no time code has the rate
    GstClockTime m_early = 0;
    unsigned m_type = 0;
    unsigned m_start = 0;
    unsigned m_next = 0; // frame from the start on
};
