// What a script can ask of a GStreamer stream.
#pragma once

#include "frame_clock.h"
#include "script/frame_facts.h"

#include <string>

#include <gst/base/gstbasetransform.h>
#include <gst/video/video.h>

class ScriptStream {
public:
    // What is wrong with the time code of its beginning; empty for nothing.
    std::string start(const GstVideoInfo& info, const std::string& timeCode);
    // Another stream begins.
    void forget();
    void restart();

    // Takes what the tags tell; the rest stays.
    void readTags(const GstTagList* tags);

    // `upstream` is asked for the name of the file.
    StreamFacts facts(GstPad* upstream, unsigned soundChannels) const;
    const std::map<std::string, std::string>& tags() const { return m_tags; }

    // Of a frame at a stream time, which may be none.
    FrameFacts factsOf(GstBuffer* buffer, GstClockTime time);

    GstClockTime frameDuration() const { return m_clock.duration(); }

private:
    GstVideoInfo m_info{};
    FrameClock m_clock;
    std::map<std::string, std::string> m_tags;
    std::int64_t m_next = 0; // frame without a time
};
