#include "script_stream.h"

#include "formats.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

struct FreeText {
    void operator()(gchar* text) const { g_free(text); }
};
using Text = std::unique_ptr<gchar, FreeText>;

// The last part of what the source of the stream is called; empty where it has no name.
std::string fileOf(GstPad* pad) {
    GstQuery* query = gst_query_new_uri();
    gchar* uri = nullptr;
    if (gst_pad_peer_query(pad, query))
        gst_query_parse_uri(query, &uri);
    gst_query_unref(query);
    const Text owned(uri);
    if (!uri || !gst_uri_is_valid(uri))
        return "";
    const Text path(gst_uri_get_location(uri));
    const Text name(path ? g_path_get_basename(path.get()) : nullptr);
    return name ? name.get() : "";
}

void takeTag(const GstTagList* tags, const gchar* name, gpointer data) {
    auto& all = *static_cast<std::map<std::string, std::string>*>(data);
    const GValue* value = gst_tag_list_get_value_index(tags, name, 0);
    if (G_VALUE_HOLDS_STRING(value))
        all[name] = g_value_get_string(value);
    else if (const Text text{gst_value_serialize(value)})
        all[name] = text.get();
}

} // namespace

std::string ScriptStream::start(const GstVideoInfo& info, const std::string& timeCode) {
    m_info = info;
    return m_clock.start(info, timeCode);
}

void ScriptStream::forget() {
    m_tags.clear();
    restart();
}

void ScriptStream::restart() {
    m_clock.restart();
    m_next = 0;
}

void ScriptStream::readTags(const GstTagList* tags) {
    gst_tag_list_foreach(tags, takeTag, &m_tags);
}

StreamFacts ScriptStream::facts(GstPad* upstream, unsigned soundChannels) const {
    StreamFacts facts;
    facts.width = GST_VIDEO_INFO_WIDTH(&m_info);
    facts.height = linesOf(m_info);
    facts.framesPerSecond = m_clock.framesPerSecond();
    facts.sampleAspect = static_cast<double>(GST_VIDEO_INFO_PAR_N(&m_info)) /
                         std::max(GST_VIDEO_INFO_PAR_D(&m_info), 1);
    facts.timeCodeType = m_clock.type();
    facts.channels = soundChannels;
    facts.file = fileOf(upstream);
    facts.tags = m_tags;
    return facts;
}

FrameFacts ScriptStream::factsOf(GstBuffer* buffer, GstClockTime time) {
    if (GST_CLOCK_TIME_IS_VALID(time))
        m_next = std::llround(static_cast<double>(time) * m_clock.framesPerSecond() /
                              static_cast<double>(GST_SECOND));
    FrameFacts facts;
    facts.number = m_next;
    facts.time = GST_CLOCK_TIME_IS_VALID(time)
                     ? static_cast<double>(time) / static_cast<double>(GST_SECOND)
                     : static_cast<double>(m_next) / m_clock.framesPerSecond();
    ++m_next;
    const FrameCode code = m_clock.of(buffer, time);
    facts.timeCode = code.frames;
    facts.timeCodeType = code.type;
    return facts;
}
