// The element zrlevels: passes sound untouched and tells an overlay or a script how loud it is.
#include "levels_element.h"

#include "debug.h"
#include "guard.h"
#include "level_track.h"
#include "overlay_element.h"
#include "script_element.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace {

struct State {
    std::mutex mutex;
    std::string overlayName;

    GstElement* shower = nullptr; // of the sound, from start to stop, with a reference
    LevelTrack* track = nullptr;  // its own
    GstClockTime next = 0;        // running time behind the last block
    std::vector<guint8> unpacked;
};

} // namespace

struct _ZrLevels {
    GstAudioFilter parent;
    State* state;
};

G_DEFINE_FINAL_TYPE(ZrLevels, zr_levels, GST_TYPE_AUDIO_FILTER)

namespace {

enum Property : guint { OverlayName = 1 };

State& stateOf(gpointer element) {
    return *ZR_LEVELS(element)->state;
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    if (id != OverlayName) {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
        return;
    }
    const std::lock_guard lock(state.mutex);
    const char* name = g_value_get_string(value);
    state.overlayName = name ? name : "";
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    if (id != OverlayName) {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
        return;
    }
    const std::lock_guard lock(state.mutex);
    g_value_set_string(value, state.overlayName.c_str());
}

// In the outermost bin that the element is in, and all within it. The caller owns the result.
GstElement* findElement(GstElement* from, const char* name) {
    GstObject* top = GST_OBJECT(gst_object_ref(from));
    while (GstObject* parent = gst_object_get_parent(top)) {
        gst_object_unref(top);
        top = parent;
    }
    GstElement* found = GST_IS_BIN(top) ? gst_bin_get_by_name(GST_BIN(top), name) : nullptr;
    gst_object_unref(top);
    return found;
}

// Null for an element that shows no sound.
LevelTrack* trackOf(GstElement* element) {
    if (element && ZR_IS_OVERLAY(element))
        return &zrOverlayLevels(ZR_OVERLAY(element));
    return element && ZR_IS_SCRIPT(element) ? &zrScriptLevels(ZR_SCRIPT(element)) : nullptr;
}

gboolean start(GstBaseTransform* base) {
    State& state = stateOf(base);
    std::string name;
    {
        const std::lock_guard lock(state.mutex);
        name = state.overlayName;
    }
    if (name.empty())
        return TRUE;
    GstElement* found = findElement(GST_ELEMENT(base), name.c_str());
    LevelTrack* track = trackOf(found);
    if (!track) {
        g_clear_pointer(&found, gst_object_unref);
        GST_ELEMENT_ERROR(
            base, LIBRARY, SETTINGS,
            ("There is no zroverlay or zrscript named '%s' in the pipeline.", name.c_str()),
            ("name one by zroverlay name=%s", name.c_str()));
        return FALSE;
    }
    if (!track->begin()) {
        gst_object_unref(found);
        GST_ELEMENT_ERROR(base, LIBRARY, SETTINGS,
                          ("Another zrlevels brings the sound of '%s' already.", name.c_str()),
                          (nullptr));
        return FALSE;
    }
    state.shower = found;
    state.track = track;
    state.next = 0;
    return TRUE;
}

gboolean stop(GstBaseTransform* base) {
    State& state = stateOf(base);
    if (state.track)
        state.track->leave();
    state.track = nullptr;
    g_clear_pointer(&state.shower, gst_object_unref);
    return TRUE;
}

gboolean sinkEvent(GstBaseTransform* base, GstEvent* event) {
    State& state = stateOf(base);
    if (state.track) {
        LevelTrack& track = *state.track;
        if (GST_EVENT_TYPE(event) == GST_EVENT_EOS)
            track.end();
        else if (GST_EVENT_TYPE(event) == GST_EVENT_FLUSH_STOP) {
            track.reset();
        } else if (GST_EVENT_TYPE(event) == GST_EVENT_GAP) {
            GstClockTime time = 0, duration = 0;
            gst_event_parse_gap(event, &time, &duration);
            if (GST_CLOCK_TIME_IS_VALID(duration))
                time += duration;
            const GstClockTime running =
                gst_segment_to_running_time(&base->segment, GST_FORMAT_TIME, time);
            if (GST_CLOCK_TIME_IS_VALID(running))
                track.skipTo(running);
        }
    }
    return GST_BASE_TRANSFORM_CLASS(zr_levels_parent_class)->sink_event(base, event);
}

template <class Sample>
void readAmplitudes(const guint8* bytes, double full, std::vector<std::uint16_t>& amplitudes) {
    const auto* samples = reinterpret_cast<const Sample*>(bytes);
    for (std::size_t i = 0; i < amplitudes.size(); ++i)
        amplitudes[i] =
            static_cast<std::uint16_t>(meterLevel(static_cast<double>(samples[i]) / full));
}

// Any format, by way of the one that GStreamer unpacks it to.
std::vector<std::uint16_t> amplitudesOf(State& state, const GstAudioFormatInfo& format,
                                        const guint8* bytes, std::size_t count) {
    const GstAudioFormatInfo& unpacked = *gst_audio_format_get_info(format.unpack_format);
    state.unpacked.resize(count * static_cast<std::size_t>(unpacked.width) / 8);
    format.unpack_func(&format, GST_AUDIO_PACK_FLAG_NONE, state.unpacked.data(),
                       const_cast<guint8*>(bytes), static_cast<gint>(count));
    std::vector<std::uint16_t> amplitudes(count);
    if (format.unpack_format == GST_AUDIO_FORMAT_F64)
        readAmplitudes<double>(state.unpacked.data(), 1.0, amplitudes);
    else
        readAmplitudes<gint32>(state.unpacked.data(), 0x1p31, amplitudes);
    return amplitudes;
}

// Backwards the last sample of a block is heard first.
void reverse(LevelBlock& block) {
    std::reverse(block.amplitudes.begin(), block.amplitudes.end());
    for (std::size_t i = 0; i < block.amplitudes.size(); i += block.channels)
        std::reverse(block.amplitudes.begin() + static_cast<std::ptrdiff_t>(i),
                     block.amplitudes.begin() + static_cast<std::ptrdiff_t>(i + block.channels));
}

// A buffer without a time follows the one before.
GstClockTime beginOf(GstBaseTransform* base, GstBuffer* buffer, std::size_t frames) {
    const GstSegment& segment = base->segment;
    GstClockTime time = GST_BUFFER_PTS(buffer);
    if (!GST_CLOCK_TIME_IS_VALID(time))
        return stateOf(base).next;
    if (segment.rate < 0)
        time += gst_util_uint64_scale_int(frames, GST_SECOND,
                                          GST_AUDIO_INFO_RATE(GST_AUDIO_FILTER_INFO(base)));
    return gst_segment_to_running_time(&segment, GST_FORMAT_TIME, time);
}

void measure(GstBaseTransform* base, GstBuffer* buffer) {
    State& state = stateOf(base);
    const GstAudioInfo& info = *GST_AUDIO_FILTER_INFO(base);
    GstMapInfo map;
    if (!gst_buffer_map(buffer, &map, GST_MAP_READ))
        return;
    const auto channels = static_cast<unsigned>(GST_AUDIO_INFO_CHANNELS(&info));
    const std::size_t frames = map.size / static_cast<std::size_t>(GST_AUDIO_INFO_BPF(&info));
    LevelBlock block{beginOf(base, buffer, frames),
                     GST_AUDIO_INFO_RATE(&info) * std::abs(base->segment.rate), channels,
                     amplitudesOf(state, *info.finfo, map.data, frames * channels)};
    gst_buffer_unmap(buffer, &map);
    if (frames == 0 || !GST_CLOCK_TIME_IS_VALID(block.begin))
        return;
    if (base->segment.rate < 0)
        reverse(block);
    state.next = block.end();
    state.track->feed(std::move(block));
}

GstFlowReturn transform(GstBaseTransform* base, GstBuffer* buffer) {
    return guarded(
        base,
        [&] {
            if (stateOf(base).track)
                measure(base, buffer);
            return GST_FLOW_OK;
        });
}

void finalize(GObject* object) {
    const std::unique_ptr<State> state(std::exchange(ZR_LEVELS(object)->state, nullptr));
    G_OBJECT_CLASS(zr_levels_parent_class)->finalize(object);
}

} // namespace

static void zr_levels_init(ZrLevels* self) {
    self->state = std::make_unique<State>().release(); // until finalize
    gst_base_transform_set_passthrough(GST_BASE_TRANSFORM(self), TRUE);
}

static void zr_levels_class_init(ZrLevelsClass* levels) {
    GObjectClass* object = G_OBJECT_CLASS(levels);
    object->set_property = setProperty;
    object->get_property = getProperty;
    object->finalize = finalize;
    g_object_class_install_property(
        object, OverlayName,
        g_param_spec_string("overlay", "Overlay",
                            "Name of the zroverlay in the same pipeline whose meters show this "
                            "sound, or of the zrscript that asks for its peaks",
                            nullptr,
                            static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                     GST_PARAM_MUTABLE_READY)));

    GstCaps* caps =
        gst_caps_from_string(GST_AUDIO_CAPS_MAKE(GST_AUDIO_FORMATS_ALL) ", layout = interleaved");
    gst_audio_filter_class_add_pad_templates(GST_AUDIO_FILTER_CLASS(levels), caps);
    gst_caps_unref(caps);
    gst_element_class_set_static_metadata(
        GST_ELEMENT_CLASS(levels), "ZRDraw levels", "Filter/Analyzer/Audio",
        "Measures the peaks of each video frame's sound for a zroverlay or zrscript",
        "The ZRDraw authors");

    GstBaseTransformClass* base = GST_BASE_TRANSFORM_CLASS(levels);
    base->start = start;
    base->stop = stop;
    base->sink_event = sinkEvent;
    base->transform_ip = transform;
}
