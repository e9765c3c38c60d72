// The element zrscript: runs a drawing script on each frame.
#include "script_element.h"

#include "common/tool_error.h"
#include "debug.h"
#include "drawn_alpha.h"
#include "formats.h"
#include "frame_levels.h"
#include "guard.h"
#include "picture_clip.h"
#include "script/language/script_file.h"
#include "script/player.h"
#include "script_stream.h"
#include "working_picture.h"

#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

// What is to be played, as the properties have it.
struct Wish {
    std::string text, file, program;
    gint64 instructions = LuaLimits{}.instructions;
    bool operator==(const Wish&) const = default;
};

struct State {
    LevelTrack levels;

    std::mutex mutex; // of what follows, up to the empty line
    Wish wish;
    std::string startTimeCode;
    GstClockTime levelsWait = usualLevelsWait;

    // Of the streaming thread alone.
    ScriptStream stream;
    std::optional<Wish> played; // what the player plays
    std::unique_ptr<ScriptPlayer> player;
    bool hasBlending = false;
    bool wantsLevels = false;
    bool toldOfBlending = false;
    bool waits = false; // for sound
    WorkingPicture working;
    DrawnAlpha alpha;

    template <class T>
    T locked(const T State::*member) {
        const std::lock_guard lock(mutex);
        return this->*member;
    }
};

struct Release {
    void operator()(ZRDraw* draw) const { ReleaseDraw(draw); }
};

} // namespace

struct _ZrScript {
    GstVideoFilter parent;
    State* state;
};

G_DEFINE_FINAL_TYPE(ZrScript, zr_script, GST_TYPE_VIDEO_FILTER)

namespace {

enum Property : guint { ScriptText = 1, ScriptFile, LuaFile, LuaLimit, StartTimeCode, LevelsWait };

State& stateOf(gpointer element) {
    return *ZR_SCRIPT(element)->state;
}

// The text that a property is; null for those that are numbers.
std::string* textOf(State& state, guint id) {
    switch (id) {
    case ScriptText:
        return &state.wish.text;
    case ScriptFile:
        return &state.wish.file;
    case LuaFile:
        return &state.wish.program;
    case StartTimeCode:
        return &state.startTimeCode;
    default:
        return nullptr;
    }
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    if (std::string* text = textOf(state, id)) {
        const char* given = g_value_get_string(value);
        *text = given ? given : "";
    } else if (id == LuaLimit) {
        state.wish.instructions = g_value_get_int64(value);
    } else if (id == LevelsWait) {
        state.levelsWait = g_value_get_uint64(value);
    } else {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
    }
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    if (const std::string* text = textOf(state, id))
        g_value_set_string(value, text->c_str());
    else if (id == LuaLimit)
        g_value_set_int64(value, state.wish.instructions);
    else if (id == LevelsWait)
        g_value_set_uint64(value, state.levelsWait);
    else
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
}

// The file comes first, so that the text can add to it.
ScriptSource readSource(const Wish& wish) {
    ScriptSource source;
    if (!wish.file.empty())
        source.script.readFile(wish.file);
    source.script.read(wish.text, "script");
    if (!wish.program.empty())
        source.program = std::make_unique<LuaProgram>(wish.program, readScriptFile(wish.program),
                                                      LuaLimits{wish.instructions});
    return source;
}

// Does what may find the script wrong; false, with the element's error posted, if it is. What is
// ended by a flush is no error. Nothing is locked meanwhile, as handlers of messages may ask for
// properties.
template <class Work>
bool isSound(ZrScript* self, Work work) {
    try {
        work();
        return true;
    } catch (const Failure& error) {
        if (stateOf(self).levels.isImpatient())
            return false;
        GST_ELEMENT_ERROR(self, RESOURCE, OPEN_READ, ("%s.", error.what()), (nullptr));
    } catch (const ToolError& error) {
        GST_ELEMENT_ERROR(self, LIBRARY, SETTINGS, ("%s.", error.what()), (nullptr));
    }
    return false;
}

void makePlayer(ZrScript* self, const Wish& wish) {
    State& state = stateOf(self);
    ScriptSource source = readSource(wish);
    state.hasBlending = blends(source.script);
    state.wantsLevels = source.wantsLevels();
    state.toldOfBlending = false;
    const auto isStopped = [&state] { return state.levels.isImpatient(); };
    const ScriptHost host{
        [self](const std::string& message) {
            GST_ELEMENT_WARNING(self, STREAM, FAILED, ("%s.", message.c_str()), (nullptr));
        },
        [isStopped](const std::string& path) { return openPictureClip(path, isStopped); },
        isStopped};
    state.player = std::make_unique<ScriptPlayer>(
        std::move(source),
        state.stream.facts(GST_BASE_TRANSFORM_SINK_PAD(self), state.levels.channels()), host);
    state.played = wish;
}

// Plays what the properties have now; false for what is wrong.
bool updatePlayer(ZrScript* self) {
    State& state = stateOf(self);
    const Wish wish = state.locked(&State::wish);
    if (state.player && state.played == wish)
        return true;
    return isSound(self, [&] { makePlayer(self, wish); });
}

// Files are read anew. What is wrong is told before any frame comes.
gboolean start(GstBaseTransform* base) {
    State& state = stateOf(base);
    state.levels.setImpatient(false);
    state.stream.restart();
    state.player = nullptr;
    return isSound(ZR_SCRIPT(base), [&] { readSource(state.locked(&State::wish)); }) ? TRUE : FALSE;
}

gboolean stop(GstBaseTransform* base) {
    State& state = stateOf(base);
    state.levels.reset();
    state.stream.forget();
    state.player = nullptr;
    return TRUE;
}

gboolean setInfo(GstVideoFilter* filter, GstCaps*, GstVideoInfo* info, GstCaps*, GstVideoInfo*) {
    State& state = stateOf(filter);
    const std::string problem = state.stream.start(*info, state.locked(&State::startTimeCode));
    if (!problem.empty()) {
        GST_ELEMENT_ERROR(filter, LIBRARY, SETTINGS, ("%s.", problem.c_str()), (nullptr));
        return FALSE;
    }
    state.waits = !isLive(GST_BASE_TRANSFORM(filter));
    state.player = nullptr;
    return TRUE;
}

gboolean sinkEvent(GstBaseTransform* base, GstEvent* event) {
    State& state = stateOf(base);
    followFlush(state.levels, event);
    switch (GST_EVENT_TYPE(event)) {
    case GST_EVENT_TAG: {
        GstTagList* tags = nullptr;
        gst_event_parse_tag(event, &tags);
        state.stream.readTags(tags);
        if (state.player)
            state.player->setTags(state.stream.tags());
        break;
    }
    case GST_EVENT_STREAM_START:
        state.stream.forget();
        state.player = nullptr;
        break;
    default:
        break;
    }
    return GST_BASE_TRANSFORM_CLASS(zr_script_parent_class)->sink_event(base, event);
}

GstStateChangeReturn changeState(GstElement* element, GstStateChange transition) {
    followState(stateOf(element).levels, transition);
    return GST_ELEMENT_CLASS(zr_script_parent_class)->change_state(element, transition);
}

void tellOfBlending(ZrScript* self, const zrLayout& layout) {
    State& state = stateOf(self);
    if (state.toldOfBlending || !state.hasBlending || layout.bytes.r >= 0)
        return;
    state.toldOfBlending = true;
    GST_ELEMENT_WARNING(self, STREAM, FORMAT,
                        ("The script is drawn without transparency, which only 8 bits of RGB have: "
                         "put videoconvert ! video/x-raw,format=BGRA before the element."),
                        (nullptr));
}

FrameFacts factsOf(ZrScript* self, GstBuffer* buffer) {
    State& state = stateOf(self);
    GstBaseTransform* base = GST_BASE_TRANSFORM(self);
    const GstClockTime time =
        gst_segment_to_stream_time(&base->segment, GST_FORMAT_TIME, GST_BUFFER_PTS(buffer));
    FrameFacts facts = state.stream.factsOf(buffer, time);
    if (!state.wantsLevels)
        return facts;
    const LevelTrack::Patience patience =
        state.waits ? patienceOf(base, state.locked(&State::levelsWait)) : LevelTrack::Patience{};
    facts.levels = levelsOf(base, buffer, state.stream.frameDuration(), state.levels, patience);
    state.player->setSoundChannels(state.levels.channels());
    return facts;
}

// Pictures blend with the alpha that the frame is to have.
void guardAlpha(State& state, const PictureView& picture, GstVideoFormat format) {
    PictureShelf& pictures = state.player->pictures();
    const bool hasAlpha = GST_VIDEO_FORMAT_INFO_HAS_ALPHA(gst_video_format_get_info(format));
    pictures.alpha = hasAlpha ? FrameAlpha::Counts : FrameAlpha::Unused;
    pictures.before = [&state, picture] { state.alpha.settle(picture); };
    pictures.after = [&state, picture, format] { state.alpha.mark(picture, format); };
}

void drawOn(GstVideoFrame& frame, ZrScript* self) {
    State& state = stateOf(self);
    const FrameFacts facts = factsOf(self, frame.buffer);
    const GstVideoFormat format = GST_VIDEO_FRAME_FORMAT(&frame);
    const zrLayout& layout = *layoutOf(format);
    tellOfBlending(self, layout);
    const int width = GST_VIDEO_FRAME_WIDTH(&frame), height = linesOf(frame.info);
    const PictureView picture = state.working.take(frame, drawingNeeds(layout, width, height));
    ZRDraw* made = nullptr;
    if (GetDraw(layout.code, width, height, picture.pitch, reinterpret_cast<char*>(picture.data),
                made) != 0)
        throw std::runtime_error("there is no drawing object for the frames' format");
    const std::unique_ptr<ZRDraw, Release> draw(made);
    if (const std::optional<cmYCbCr> mode = matrixModeOf(frame.info))
        draw->SetYCbCrMode(*mode);
    state.alpha.mark(picture, format);
    guardAlpha(state, picture, format);
    state.player->play(*draw, picture, facts);
    state.alpha.settle(picture);
    state.working.giveBack(frame);
}

GstFlowReturn transformFrame(GstVideoFilter* filter, GstVideoFrame* frame) {
    ZrScript* self = ZR_SCRIPT(filter);
    return guarded(self, [&] {
        const bool sound = updatePlayer(self) && isSound(self, [&] { drawOn(*frame, self); });
        if (sound)
            return GST_FLOW_OK;
        return stateOf(self).levels.isImpatient() ? GST_FLOW_FLUSHING : GST_FLOW_ERROR;
    });
}

void finalize(GObject* object) {
    const std::unique_ptr<State> state(std::exchange(ZR_SCRIPT(object)->state, nullptr));
    G_OBJECT_CLASS(zr_script_parent_class)->finalize(object);
}

void installProperties(GObjectClass* object) {
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
    const auto playingFlags = static_cast<GParamFlags>(flags | GST_PARAM_MUTABLE_PLAYING);
    const auto readyFlags = static_cast<GParamFlags>(flags | GST_PARAM_MUTABLE_READY);
    const auto text = [object](guint id, const char* name, const char* nick, const char* blurb,
                               GParamFlags when) {
        g_object_class_install_property(object, id,
                                        g_param_spec_string(name, nick, blurb, nullptr, when));
    };
    text(ScriptText, "script", "Script",
         "Drawing commands, one a line or separated by ';', run behind those of script-file; "
         "zrdraw draw --help lists them",
         playingFlags);
    text(ScriptFile, "script-file", "Script file", "File of drawing commands", playingFlags);
    text(LuaFile, "lua-file", "Lua file",
         "Program in Lua whose frame(d) draws each frame, behind all commands", playingFlags);
    text(StartTimeCode, "start-timecode", "Start time code",
         "Time code of stream time 0 where buffers have none, such as 10:00:00:00, or 10:00:00;00 "
         "for drop-frame",
         readyFlags);
    g_object_class_install_property(
        object, LuaLimit,
        g_param_spec_int64("lua-limit", "Lua limit",
                           "Instructions of Lua that setup and each frame may take", 1, G_MAXINT64,
                           LuaLimits{}.instructions, playingFlags));
    installLevelsWait(object, LevelsWait);
}

} // namespace

static void zr_script_init(ZrScript* self) {
    self->state = std::make_unique<State>().release(); // until finalize
}

static void zr_script_class_init(ZrScriptClass* script) {
    GObjectClass* object = G_OBJECT_CLASS(script);
    object->set_property = setProperty;
    object->get_property = getProperty;
    object->finalize = finalize;
    installProperties(object);

    GstElementClass* element = GST_ELEMENT_CLASS(script);
    element->change_state = changeState;
    GstCaps* caps = videoCaps(formatList([](const zrLayout&) { return true; }));
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
    gst_element_class_set_static_metadata(element, "ZRDraw script", "Filter/Effect/Video",
                                          "Draws on frames in their own pixel format",
                                          "The ZRDraw authors");

    GstBaseTransformClass* base = GST_BASE_TRANSFORM_CLASS(script);
    base->start = start;
    base->stop = stop;
    base->sink_event = sinkEvent;
    GST_VIDEO_FILTER_CLASS(script)->set_info = setInfo;
    GST_VIDEO_FILTER_CLASS(script)->transform_frame_ip = transformFrame;
}

LevelTrack& zrScriptLevels(ZrScript* script) {
    return script->state->levels;
}
