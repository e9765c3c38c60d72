// The element zroverlay: burns the library's overlay into the frames that pass.
#include "overlay_element.h"

#include "common/peak_hold.h"
#include "common/tool_error.h"
#include "debug.h"
#include "drawn_alpha.h"
#include "formats.h"
#include "frame_clock.h"
#include "frame_levels.h"
#include "guard.h"
#include "live_overlay.h"
#include "overlay_commands.h"
#include "overlay_properties.h"
#include "source_names.h"
#include "working_picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

namespace {

// All that the element is beside its base.
struct State {
    LiveOverlay overlay;
    LevelTrack levels;

    std::mutex mutex; // of what follows
    std::string store;
    std::string startTimeCode;
    GstClockTime levelsWait = usualLevelsWait;

    // Of the streaming thread alone.
    FrameClock clock;
    FrameCode code{}; // of the frame at hand
    PeakHold peaks;
    WorkingPicture working;
    DrawnAlpha alpha;
    SourceNames source;
    bool waits = false; // for sound

    template <class T>
    T locked(const T State::*member) {
        const std::lock_guard lock(mutex);
        return this->*member;
    }
};

} // namespace

struct _ZrOverlay {
    GstVideoFilter parent;
    State* state;
};

G_DEFINE_FINAL_TYPE(ZrOverlay, zr_overlay, GST_TYPE_VIDEO_FILTER)

namespace {

enum Property : guint { Store = 1, StartTimeCode, LevelsWait, Watermark, FirstSetting };

State& stateOf(gpointer element) {
    return *ZR_OVERLAY(element)->state;
}

void warnOfWatermark(ZrOverlay* self) {
    const std::string path = stateOf(self).overlay.watermark();
    GST_ELEMENT_WARNING(self, RESOURCE, READ,
                        ("The watermark '%s' cannot be read as a picture.", path.c_str()),
                        ("frames go on without it"));
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* parameter) {
    ZrOverlay* self = ZR_OVERLAY(object);
    State& state = stateOf(self);
    const auto textOf = [value] {
        const char* text = g_value_get_string(value);
        return std::string(text ? text : "");
    };
    if (id >= FirstSetting)
        return setSettingProperty(state.overlay, id - FirstSetting, *value);
    if (id == Watermark) {
        if (!state.overlay.setWatermark(textOf()))
            warnOfWatermark(self);
        return;
    }
    const std::lock_guard lock(state.mutex);
    switch (id) {
    case Store:
        state.store = textOf();
        break;
    case StartTimeCode:
        state.startTimeCode = textOf();
        break;
    case LevelsWait:
        state.levelsWait = g_value_get_uint64(value);
        break;
    default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
    }
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    if (id >= FirstSetting)
        return getSettingProperty(state.overlay, id - FirstSetting, *value);
    switch (id) {
    case Store:
        return g_value_set_string(value, state.locked(&State::store).c_str());
    case StartTimeCode:
        return g_value_set_string(value, state.locked(&State::startTimeCode).c_str());
    case LevelsWait:
        return g_value_set_uint64(value, state.locked(&State::levelsWait));
    case Watermark:
        return g_value_set_string(value, state.overlay.watermark().c_str());
    default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
    }
}

// The action signal.
GstStructure* runCommand(ZrOverlay* self, const GstStructure* command) {
    State& state = stateOf(self);
    if (!command)
        return nullptr;
    const std::vector<unsigned> before = state.overlay.numbers();
    std::string problem;
    GstStructure* answer = runOverlayCommand(state.overlay, *command, problem);
    if (!answer) {
        GST_ELEMENT_WARNING(self, LIBRARY, SETTINGS, ("%s.", problem.c_str()), (nullptr));
        return nullptr;
    }
    notifyChangedSettings(G_OBJECT(self), before, state.overlay.numbers());
    return answer;
}

gboolean start(GstBaseTransform* base) {
    ZrOverlay* self = ZR_OVERLAY(base);
    State& state = stateOf(self);
    state.levels.setImpatient(false);
    state.clock.restart();
    const std::string store = state.locked(&State::store);
    if (store.empty())
        return TRUE;
    try {
        const std::vector<unsigned> before = state.overlay.numbers();
        state.overlay.loadStore(store);
        notifyChangedSettings(G_OBJECT(self), before, state.overlay.numbers());
    } catch (const ToolError& error) {
        GST_ELEMENT_ERROR(self, RESOURCE, SETTINGS, ("%s.", error.what()), (nullptr));
        return FALSE;
    }
    return TRUE;
}

void forgetSource(State& state) {
    state.source = {};
    state.overlay.setSource(state.source);
}

gboolean stop(GstBaseTransform* base) {
    State& state = stateOf(base);
    state.levels.reset();
    forgetSource(state);
    return TRUE;
}

bool isInterlaced(const GstVideoInfo& info) {
    const GstVideoInterlaceMode mode = GST_VIDEO_INFO_INTERLACE_MODE(&info);
    return mode != GST_VIDEO_INTERLACE_MODE_PROGRESSIVE &&
           mode != GST_VIDEO_INTERLACE_MODE_ALTERNATE; // whose buffers are fields
}

gboolean setInfo(GstVideoFilter* filter, GstCaps*, GstVideoInfo* info, GstCaps*, GstVideoInfo*) {
    ZrOverlay* self = ZR_OVERLAY(filter);
    State& state = stateOf(self);
    const std::string problem = state.clock.start(*info, state.locked(&State::startTimeCode));
    if (!problem.empty()) {
        GST_ELEMENT_ERROR(self, LIBRARY, SETTINGS, ("%s.", problem.c_str()), (nullptr));
        return FALSE;
    }
    state.peaks = PeakHold(state.clock.framesPerSecond());
    state.waits = !isLive(GST_BASE_TRANSFORM(filter));
    const OverlayStream stream{layoutOf(GST_VIDEO_INFO_FORMAT(info)),
                               GST_VIDEO_INFO_WIDTH(info),
                               linesOf(*info),
                               GST_VIDEO_INFO_FPS_N(info),
                               GST_VIDEO_INFO_FPS_D(info),
                               isInterlaced(*info)};
    if (!state.overlay.describe(stream))
        warnOfWatermark(self);
    return TRUE;
}

gboolean sinkEvent(GstBaseTransform* base, GstEvent* event) {
    State& state = stateOf(base);
    followFlush(state.levels, event);
    switch (GST_EVENT_TYPE(event)) {
    case GST_EVENT_TAG: {
        GstTagList* tags = nullptr;
        gst_event_parse_tag(event, &tags);
        readSourceNames(tags, state.source);
        state.overlay.setSource(state.source);
        break;
    }
    case GST_EVENT_STREAM_START:
        forgetSource(state);
        break;
    case GST_EVENT_FLUSH_STOP:
        state.peaks = PeakHold(state.clock.framesPerSecond());
        break;
    default:
        break;
    }
    return GST_BASE_TRANSFORM_CLASS(zr_overlay_parent_class)->sink_event(base, event);
}

GstStateChangeReturn changeState(GstElement* element, GstStateChange transition) {
    followState(stateOf(element).levels, transition);
    return GST_ELEMENT_CLASS(zr_overlay_parent_class)->change_state(element, transition);
}

// Properties that a controller drives take their values before the frame. Frames pass untouched
// while the overlay is off, and are counted all the same.
void beforeTransform(GstBaseTransform* base, GstBuffer* buffer) {
    State& state = stateOf(base);
    const GstClockTime time =
        gst_segment_to_stream_time(&base->segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    if (GST_CLOCK_TIME_IS_VALID(time))
        gst_object_sync_values(GST_OBJECT(base), time);
    state.code = state.clock.of(buffer, time);
    static const SettingKey& enabled = settingKeyNamed("Enabled");
    gst_base_transform_set_passthrough(base, state.overlay.number(enabled) == 0);
}

MeterLevels levelsOf(GstBaseTransform* base, GstBuffer* buffer) {
    State& state = stateOf(base);
    const LevelTrack::Patience patience =
        state.waits ? patienceOf(base, state.locked(&State::levelsWait)) : LevelTrack::Patience{};
    return levelsOf(base, buffer, state.clock.duration(), state.levels, patience);
}

void burnInto(GstVideoFrame& frame, GstBaseTransform* base) {
    State& state = stateOf(base);
    const MeterLevels levels = levelsOf(base, frame.buffer);
    state.overlay.setSoundChannels(state.levels.channels());
    const zrLayout& layout = *layoutOf(GST_VIDEO_FRAME_FORMAT(&frame));
    // The overlay takes lines for packed.
    const int width = GST_VIDEO_FRAME_WIDTH(&frame), height = linesOf(frame.info);
    const int pitch = static_cast<int>(zrLineBytes(layout.line, static_cast<unsigned>(width)));
    const PictureView picture =
        state.working.take(frame, {pitch, zrFrameRoom(layout, width, height, 0)});
    state.alpha.mark(picture, GST_VIDEO_FRAME_FORMAT(&frame));
    state.overlay.burn(picture, state.code.frames, state.code.type, levels,
                       state.peaks.next(levels));
    state.alpha.settle(picture);
    state.working.giveBack(frame);
}

GstFlowReturn transformFrame(GstVideoFilter* filter, GstVideoFrame* frame) {
    return guarded(
        filter,
        [&] {
            burnInto(*frame, GST_BASE_TRANSFORM(filter));
            return GST_FLOW_OK;
        });
}

void finalize(GObject* object) {
    const std::unique_ptr<State> state(std::exchange(ZR_OVERLAY(object)->state, nullptr));
    G_OBJECT_CLASS(zr_overlay_parent_class)->finalize(object);
}

void installProperties(GObjectClass* object) {
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
    const auto readyFlags = static_cast<GParamFlags>(flags | GST_PARAM_MUTABLE_READY);
    const auto playingFlags = static_cast<GParamFlags>(flags | GST_PARAM_MUTABLE_PLAYING);
    g_object_class_install_property(
        object, Store,
        g_param_spec_string("settings-store", "Settings store",
                            "File of stored settings, as zrdraw config makes it; properties that "
                            "are set win over it",
                            nullptr, readyFlags));
    g_object_class_install_property(
        object, StartTimeCode,
        g_param_spec_string("start-timecode", "Start time code",
                            "Time code of stream time 0 where buffers have none, such as "
                            "10:00:00:00, or 10:00:00;00 for drop-frame",
                            nullptr, readyFlags));
    installLevelsWait(object, LevelsWait);
    g_object_class_install_property(
        object, Watermark,
        g_param_spec_string("watermark", "Watermark",
                            "Picture file that is laid over frames; setting it switches the "
                            "watermark on",
                            nullptr, playingFlags));
    installSettingProperties(object, FirstSetting);
}

void installTemplates(GstElementClass* element) {
    const std::string formats = formatList([](const zrLayout& layout) {
        return std::find(std::begin(overlayLayouts), std::end(overlayLayouts), layout.code) !=
               std::end(overlayLayouts);
    });
    GstCaps* caps = videoCaps(formats);
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
}

} // namespace

static void zr_overlay_init(ZrOverlay* self) {
    self->state = std::make_unique<State>().release(); // until finalize
}

static void zr_overlay_class_init(ZrOverlayClass* overlay) {
    GObjectClass* object = G_OBJECT_CLASS(overlay);
    object->set_property = setProperty;
    object->get_property = getProperty;
    object->finalize = finalize;
    installProperties(object);

    GstElementClass* element = GST_ELEMENT_CLASS(overlay);
    element->change_state = changeState;
    installTemplates(element);
    gst_element_class_set_static_metadata(
        element, "ZRDraw overlay", "Filter/Effect/Video",
        "Burns time code, texts, the source's format, audio meters and a watermark into frames",
        "The ZRDraw authors");

    GstBaseTransformClass* base = GST_BASE_TRANSFORM_CLASS(overlay);
    base->start = start;
    base->stop = stop;
    base->sink_event = sinkEvent;
    base->before_transform = beforeTransform;
    base->transform_ip_on_passthrough = FALSE;

    GstVideoFilterClass* filter = GST_VIDEO_FILTER_CLASS(overlay);
    filter->set_info = setInfo;
    filter->transform_frame_ip = transformFrame;

    g_signal_new_class_handler("command", G_TYPE_FROM_CLASS(overlay),
                               static_cast<GSignalFlags>(G_SIGNAL_RUN_LAST | G_SIGNAL_ACTION),
                               G_CALLBACK(runCommand), nullptr, nullptr, nullptr,
                               GST_TYPE_STRUCTURE, 1, GST_TYPE_STRUCTURE);
}

LevelTrack& zrOverlayLevels(ZrOverlay* overlay) {
    return overlay->state->levels;
}
