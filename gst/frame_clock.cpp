#include "frame_clock.h"

#include "zrdraw/zrhost.h"

#include <fmt/format.h>

#include <algorithm>

namespace {

// One that there always is.
unsigned typeOf(int rate, int scale, int drop) {
    if (const unsigned type = zrTimeCodeType(rate, scale, drop))
        return type;
    const unsigned usual = zrTimeCodeType(rate, scale, -1);
    return usual != 0 ? usual : unsigned{zrTimeCode30};
}

} // namespace

std::string FrameClock::start(const GstVideoInfo& info, const std::string& timeCode) {
    constexpr int rateWithoutOne = 25;
    m_rate = GST_VIDEO_INFO_FPS_N(&info);
    m_scale = GST_VIDEO_INFO_FPS_D(&info);
    if (m_rate <= 0 || m_scale <= 0) { // it varies
        m_rate = rateWithoutOne;
        m_scale = 1;
    }
    const int drop = timeCode.empty() ? -1 : timeCode.find(';') != std::string::npos;
    m_type = typeOf(m_rate, m_scale, drop);
    constexpr int rateWithoutTimeCode = 30; // that of zrTimeCode30
    m_counted = zrTimeCodeType(m_rate, m_scale, -1) != 0 ? m_rate : rateWithoutTimeCode * m_scale;
    // Both fields of a frame that come one by one have its time code.
    const bool fields = GST_VIDEO_INFO_INTERLACE_MODE(&info) == GST_VIDEO_INTERLACE_MODE_ALTERNATE;
    m_early = fields ? duration() / 4 : 0;
    m_start = 0;
    if (timeCode.empty() || zrTimeCodeFrames(timeCode.c_str(), m_type, &m_start) == 0)
        return "";
    return fmt::format("start-timecode '{}' cannot be at {}/{} frames a second{}: use one such as "
                       "01:00:00:00",
                       timeCode, m_rate, m_scale,
                       zrTimeCodeIsDrop(m_type) != 0 ? " drop-frame" : "");
}

FrameCode FrameClock::of(GstBuffer* buffer, GstClockTime streamTime) {
    if (GST_CLOCK_TIME_IS_VALID(streamTime))
        m_next = static_cast<unsigned>(gst_util_uint64_scale_round(
            streamTime - std::min(streamTime, m_early), static_cast<guint64>(m_counted),
            static_cast<guint64>(m_scale) * GST_SECOND));
    const FrameCode counted{m_start + m_next, m_type};
    ++m_next;
    const GstVideoTimeCodeMeta* meta = gst_buffer_get_video_time_code_meta(buffer);
    if (!meta || !gst_video_time_code_is_valid(&meta->tc))
        return counted;
    const GstVideoTimeCodeConfig& config = meta->tc.config;
    const bool drop = (config.flags & GST_VIDEO_TIME_CODE_FLAGS_DROP_FRAME) != 0;
    return {static_cast<unsigned>(gst_video_time_code_frames_since_daily_jam(&meta->tc)),
            typeOf(static_cast<int>(config.fps_n), static_cast<int>(config.fps_d), drop ? 1 : 0)};
}
