#include "frame_levels.h"

#include <algorithm>
#include <cmath>

bool isLive(GstBaseTransform* base) {
    GstQuery* query = gst_query_new_latency();
    gboolean live = FALSE;
    if (gst_pad_peer_query(GST_BASE_TRANSFORM_SINK_PAD(base), query))
        gst_query_parse_latency(query, &live, nullptr, nullptr);
    gst_query_unref(query);
    return live;
}

LevelTrack::Patience patienceOf(GstBaseTransform* base, GstClockTime most) {
    GST_OBJECT_LOCK(base);
    const bool plays = GST_STATE(base) == GST_STATE_PLAYING;
    GST_OBJECT_UNLOCK(base);
    return {std::chrono::nanoseconds(most), !plays};
}

MeterLevels levelsOf(GstBaseTransform* base, GstBuffer* buffer, GstClockTime usual,
                     LevelTrack& levels, const LevelTrack::Patience& patience) {
    const GstSegment& segment = base->segment;
    const GstClockTime duration =
        GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : usual;
    GstClockTime time = GST_BUFFER_PTS(buffer);
    if (segment.rate < 0 && GST_CLOCK_TIME_IS_VALID(time))
        time += duration; // where it begins to be shown
    const GstClockTime begin = gst_segment_to_running_time(&segment, GST_FORMAT_TIME, time);
    if (!GST_CLOCK_TIME_IS_VALID(begin))
        return {};
    const auto shown = static_cast<GstClockTime>(static_cast<double>(duration) /
                                                 std::max(std::abs(segment.rate), 1e-3));
    return levels.between(begin, begin + shown, patience);
}

void followFlush(LevelTrack& levels, GstEvent* event) {
    if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_START)
        levels.setImpatient(true);
    else if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP)
        levels.setImpatient(false);
}

void followState(LevelTrack& levels, GstStateChange transition) {
    if (transition == GST_STATE_CHANGE_PAUSED_TO_READY)
        levels.setImpatient(true);
}

void installLevelsWait(GObjectClass* object, guint id) {
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                GST_PARAM_MUTABLE_PLAYING);
    g_object_class_install_property(
        object, id,
        g_param_spec_uint64("levels-wait", "Levels wait",
                            "How long a frame waits for the sound that its meters show, "
                            "nanoseconds; live streams never wait",
                            0, 3600 * GST_SECOND, usualLevelsWait, flags));
}
