// The element zrscript: runs a drawing script on each frame.
#include "script_element.h"

#include "common/tool_error.h"
#include "debug.h"
#include "drawn_alpha.h"
#include "formats.h"
#include "guard.h"
#include "script/runner.h"
#include "script/script_file.h"
#include "working_picture.h"

#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

// A script with what was told of it.
struct Running {
    Running(Script commands, ScriptRunner::Warn warn)
        : script(std::move(commands)), runner(script, std::move(warn)) {}

    Script script;
    ScriptRunner runner;
    bool toldOfBlending = false;
};

struct State {
    std::mutex mutex; // of what follows, up to the empty line
    std::string text;
    std::string file;
    std::shared_ptr<Running> running; // null: to be read anew

    WorkingPicture working;
    DrawnAlpha alpha;
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

enum Property : guint { ScriptText = 1, ScriptFile };

State& stateOf(gpointer element) {
    return *ZR_SCRIPT(element)->state;
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* parameter) {
    if (id != ScriptText && id != ScriptFile) {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
        return;
    }
    State& state = stateOf(object);
    const char* text = g_value_get_string(value);
    const std::lock_guard lock(state.mutex);
    (id == ScriptText ? state.text : state.file) = text ? text : "";
    state.running = nullptr;
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* parameter) {
    if (id != ScriptText && id != ScriptFile) {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
        return;
    }
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    g_value_set_string(value, (id == ScriptText ? state.text : state.file).c_str());
}

// The file comes first, so that the text can add to it.
Script readScript(const std::string& file, const std::string& text) {
    Script script;
    if (!file.empty())
        script = parseScript(readScriptFile(file), file);
    Script more = parseScript(text, "script");
    std::move(more.begin(), more.end(), std::back_inserter(script));
    return script;
}

// The script as the properties have it now; null, with the element's error posted, for one that is
// wrong. Nothing is locked while files are read and messages posted, whose handlers may ask for
// properties.
std::shared_ptr<Running> runningScript(ZrScript* self) {
    State& state = stateOf(self);
    std::unique_lock lock(state.mutex);
    if (state.running)
        return state.running;
    const std::string file = state.file, text = state.text;
    lock.unlock();
    std::shared_ptr<Running> made;
    try {
        made = std::make_shared<Running>(
            readScript(file, text),
            [self](const std::string& message) {
                GST_ELEMENT_WARNING(self, STREAM, FAILED, ("%s.", message.c_str()), (nullptr));
            });
    } catch (const Failure& error) {
        GST_ELEMENT_ERROR(self, RESOURCE, OPEN_READ, ("%s.", error.what()), (nullptr));
    } catch (const ToolError& error) {
        GST_ELEMENT_ERROR(self, LIBRARY, SETTINGS, ("%s.", error.what()), (nullptr));
    }
    lock.lock();
    if (state.file == file && state.text == text)
        state.running = made;
    return made;
}

// A file is read anew.
gboolean start(GstBaseTransform* base) {
    State& state = stateOf(base);
    {
        const std::lock_guard lock(state.mutex);
        state.running = nullptr;
    }
    return runningScript(ZR_SCRIPT(base)) ? TRUE : FALSE;
}

void tellOfBlending(ZrScript* self, Running& running, const zrLayout& layout) {
    if (running.toldOfBlending || !blends(running.script) || layout.bytes.r >= 0)
        return;
    running.toldOfBlending = true;
    GST_ELEMENT_WARNING(self, STREAM, FORMAT,
                        ("The script is drawn without transparency, which only 8 bits of RGB have: "
                         "put videoconvert ! video/x-raw,format=BGRA before the element."),
                        (nullptr));
}

void drawOn(GstVideoFrame& frame, ZrScript* self, Running& running) {
    State& state = stateOf(self);
    const zrLayout& layout = *layoutOf(GST_VIDEO_FRAME_FORMAT(&frame));
    tellOfBlending(self, running, layout);
    const int width = GST_VIDEO_FRAME_WIDTH(&frame), height = linesOf(frame.info);
    const PictureView picture = state.working.take(frame, drawingNeeds(layout, width, height));
    ZRDraw* made = nullptr;
    if (GetDraw(layout.code, width, height, picture.pitch, reinterpret_cast<char*>(picture.data),
                made) != 0)
        throw std::runtime_error("there is no drawing object for the frames' format");
    const std::unique_ptr<ZRDraw, Release> draw(made);
    if (const std::optional<cmYCbCr> mode = matrixModeOf(frame.info))
        draw->SetYCbCrMode(*mode);
    state.alpha.mark(picture, GST_VIDEO_FRAME_FORMAT(&frame));
    running.runner.run(*draw, width, height);
    state.alpha.settle(picture);
    state.working.giveBack(frame);
}

GstFlowReturn transformFrame(GstVideoFilter* filter, GstVideoFrame* frame) {
    ZrScript* self = ZR_SCRIPT(filter);
    return guarded(self, [&] {
        const std::shared_ptr<Running> running = runningScript(self);
        if (!running)
            return GST_FLOW_ERROR;
        drawOn(*frame, self, *running);
        return GST_FLOW_OK;
    });
}

void finalize(GObject* object) {
    const std::unique_ptr<State> state(std::exchange(ZR_SCRIPT(object)->state, nullptr));
    G_OBJECT_CLASS(zr_script_parent_class)->finalize(object);
}

void installProperties(GObjectClass* object) {
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                                GST_PARAM_MUTABLE_PLAYING);
    g_object_class_install_property(
        object, ScriptText,
        g_param_spec_string("script", "Script",
                            "Drawing commands, one a line or separated by ';', run behind those "
                            "of script-file; zrdraw draw --help lists them",
                            nullptr, flags));
    g_object_class_install_property(object, ScriptFile,
                                    g_param_spec_string("script-file", "Script file",
                                                        "File of drawing commands", nullptr,
                                                        flags));
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
    GstCaps* caps = videoCaps(formatList([](const zrLayout&) { return true; }));
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, caps));
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
    gst_element_class_set_static_metadata(element, "ZRDraw script", "Filter/Effect/Video",
                                          "Draws on frames in their own pixel format",
                                          "The ZRDraw authors");

    GST_BASE_TRANSFORM_CLASS(script)->start = start;
    GST_VIDEO_FILTER_CLASS(script)->transform_frame_ip = transformFrame;
}
