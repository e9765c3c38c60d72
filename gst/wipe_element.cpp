// The element zrwipe: a transition between two streams.
#include "wipe_element.h"

#include "black_picture.h"
#include "common/tool_error.h"
#include "common/transition.h"
#include "debug.h"
#include "formats.h"
#include "names.h"
#include "working_picture.h"
#include "zrdraw/wipes.h"

#include <cmath>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace {

struct Settings {
    unsigned code = zrWipeDissolve;
    double position = 0.0;
    bool swap = false;
};

struct State {
    std::mutex mutex; // of the settings
    Settings settings;

    std::optional<Transition> transition; // for what follows
    Settings made;
    PictureView shape{};
    WorkingPicture a, b, result;
    BlackPicture black;
};

} // namespace

struct _ZrWipe {
    ZrPair parent;
    State* state;
};

G_DEFINE_FINAL_TYPE(ZrWipe, zr_wipe, ZR_TYPE_PAIR)

namespace {

enum Property : guint { Code = 1, Position, Swap };

State& stateOf(gpointer element) {
    return *ZR_WIPE(element)->state;
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    switch (id) {
    case Code:
        state.settings.code = static_cast<unsigned>(g_value_get_enum(value));
        break;
    case Position:
        state.settings.position = g_value_get_double(value);
        break;
    case Swap:
        state.settings.swap = g_value_get_boolean(value) != FALSE;
        break;
    default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
    }
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* parameter) {
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    switch (id) {
    case Code:
        return g_value_set_enum(value, static_cast<gint>(state.settings.code));
    case Position:
        return g_value_set_double(value, state.settings.position);
    case Swap:
        return g_value_set_boolean(value, state.settings.swap);
    default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, parameter);
    }
}

// The one that was made, or a new one where settings or frames have changed.
const Transition& transitionFor(State& state, const Settings& settings, const PictureView& shape) {
    const bool same = state.transition && state.made.code == settings.code &&
                      state.made.swap == settings.swap && state.shape.layout == shape.layout &&
                      state.shape.width == shape.width && state.shape.height == shape.height;
    if (!same)
        state.transition.emplace(*shape.layout, shape.width, shape.height, settings.code,
                                 settings.swap, false);
    state.made = settings;
    state.shape = shape;
    return *state.transition;
}

void compose(ZrPair* pair, const PairFrames& frames) {
    State& state = stateOf(pair);
    Settings settings;
    {
        const std::lock_guard lock(state.mutex);
        settings = state.settings;
    }
    const int pitch = transitionFor(state, settings, viewOf(*frames.result)).neededPitch();
    const auto source = [&](WorkingPicture& working, const GstVideoFrame* frame) {
        return frame ? working.take(*frame, {pitch, 0}) : state.black.like(*frames.result, pitch);
    };
    const PictureView result = state.result.take(*frames.result, {pitch, 0});
    const PictureView a = source(state.a, frames.a), b = source(state.b, frames.b);
    state.transition->draw(
        a, b, result, static_cast<unsigned>(std::lround(settings.position * Transition::scale)));
    state.result.giveBack(*frames.result);
}

void finalize(GObject* object) {
    const std::unique_ptr<State> state(std::exchange(ZR_WIPE(object)->state, nullptr));
    G_OBJECT_CLASS(zr_wipe_parent_class)->finalize(object);
}

void installProperties(GObjectClass* object) {
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_LAX_VALIDATION |
                                                G_PARAM_STATIC_STRINGS | GST_PARAM_CONTROLLABLE |
                                                GST_PARAM_MUTABLE_PLAYING);
    g_object_class_install_property(object, Code,
                                    g_param_spec_enum("code", "Code",
                                                      "The transition from sink_0 to sink_1",
                                                      wipeCodeType(), zrWipeDissolve, flags));
    g_object_class_install_property(
        object, Position,
        g_param_spec_double("position", "Position",
                            "How far the transition is: 0 is sink_0 alone, 1 sink_1", 0.0, 1.0, 0.0,
                            flags));
    g_object_class_install_property(
        object, Swap,
        g_param_spec_boolean("swap", "Swap", "Exchange what leaves and what comes", FALSE, flags));
}

} // namespace

static void zr_wipe_init(ZrWipe* self) {
    self->state = std::make_unique<State>().release(); // until finalize
}

static void zr_wipe_class_init(ZrWipeClass* wipe) {
    GObjectClass* object = G_OBJECT_CLASS(wipe);
    object->set_property = setProperty;
    object->get_property = getProperty;
    object->finalize = finalize;
    installProperties(object);
    installPairTemplates(GST_ELEMENT_CLASS(wipe), formatList(Transition::isKnown));
    gst_element_class_set_static_metadata(
        GST_ELEMENT_CLASS(wipe), "ZRDraw wipe", "Filter/Editor/Video/Compositor",
        "Shows a SMPTE wipe, dissolve or slide between two streams", "The ZRDraw authors");
    ZR_PAIR_CLASS(wipe)->compose = compose;
}
