// The element zrmux: composes two streams for display.
#include "mux_element.h"

#include "black_picture.h"
#include "common/mux_modes.h"
#include "debug.h"
#include "formats.h"
#include "names.h"
#include "working_picture.h"

#include <cstring>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace {

struct Settings : MuxSettings {
    gint flipA = 0, flipB = 0; // bits of muxFlipType
    gint channel = -1;
    guint gridPercent = 0, gridWidth = 0, gridHeight = 0;
};

struct State {
    std::mutex mutex; // of the settings
    Settings settings;

    WorkingPicture a, b, result;
    BlackPicture black;
    bool toldOfGrid = false;
};

constexpr int mostPixels = std::numeric_limits<gint16>::max();

} // namespace

struct _ZrMux {
    ZrPair parent;
    State* state;
};

G_DEFINE_FINAL_TYPE(ZrMux, zr_mux, ZR_TYPE_PAIR)

namespace {

State& stateOf(gpointer element) {
    return *ZR_MUX(element)->state;
}

// A property: what it is, and how it comes from and goes to the settings.
struct Row {
    GParamSpec* (*make)(GParamFlags flags);
    void (*set)(Settings& settings, const GValue& value);
    void (*get)(const Settings& settings, GValue& value);
};

template <auto member>
void setInt(Settings& settings, const GValue& value) {
    settings.*member = g_value_get_int(&value);
}
template <auto member>
void getInt(const Settings& settings, GValue& value) {
    g_value_set_int(&value, settings.*member);
}
template <auto member>
void setUint(Settings& settings, const GValue& value) {
    settings.*member = g_value_get_uint(&value);
}
template <auto member>
void getUint(const Settings& settings, GValue& value) {
    g_value_set_uint(&value, settings.*member);
}
template <auto member>
void setEnum(Settings& settings, const GValue& value) {
    settings.*member =
        static_cast<std::remove_reference_t<decltype(settings.*member)>>(g_value_get_enum(&value));
}
template <auto member>
void getEnum(const Settings& settings, GValue& value) {
    g_value_set_enum(&value, static_cast<gint>(settings.*member));
}
template <auto member>
void setFlag(Settings& settings, const GValue& value) {
    settings.*member = g_value_get_boolean(&value) != FALSE;
}
template <auto member>
void getFlag(const Settings& settings, GValue& value) {
    g_value_set_boolean(&value, settings.*member);
}

const Row rows[] = {
    {[](GParamFlags flags) {
         return g_param_spec_enum("mode", "Mode", "What is shown of sink_0 and sink_1",
                                  muxModeType(), zrMuxSplit, flags);
     },
     setEnum<&Settings::mode>, getEnum<&Settings::mode>},
    {[](GParamFlags flags) {
         return g_param_spec_enum("code", "Code", "The transition of the mode wipe", wipeCodeType(),
                                  zrWipeHorizontal, flags);
     },
     setEnum<&Settings::code>, getEnum<&Settings::code>},
    {[](GParamFlags flags) {
         return g_param_spec_double("position", "Position", "Of the modes mix and wipe", 0.0, 1.0,
                                    0.5, flags);
     },
     [](Settings& settings, const GValue& value) {
         settings.position = g_value_get_double(&value);
     },
     [](const Settings& settings, GValue& value) {
         g_value_set_double(&value, settings.position);
     }},
    {[](GParamFlags flags) {
         return g_param_spec_int("split", "Split",
                                 "Column or line of the split and window modes; -1 is the middle",
                                 -1, mostPixels, -1, flags);
     },
     setInt<&Settings::split>, getInt<&Settings::split>},
    {[](GParamFlags flags) {
         return g_param_spec_boolean("divider", "Divider", "A grey line at the split", FALSE,
                                     flags);
     },
     setFlag<&Settings::divider>, getFlag<&Settings::divider>},
    {[](GParamFlags flags) {
         return g_param_spec_boolean("swap", "Swap", "Exchange the sources", FALSE, flags);
     },
     setFlag<&Settings::swap>, getFlag<&Settings::swap>},
    {[](GParamFlags flags) {
         return g_param_spec_int("gain", "Gain", "Of the mode difference", 1, 255, 1, flags);
     },
     setInt<&Settings::gain>, getInt<&Settings::gain>},
    {[](GParamFlags flags) {
         return g_param_spec_int("threshold", "Threshold", "Of the mode key", 0, 255, 16, flags);
     },
     setInt<&Settings::threshold>, getInt<&Settings::threshold>},
    {[](GParamFlags flags) {
         return g_param_spec_int("block", "Block", "Side of the squares of the mode blocks, pixels",
                                 1, 100, 16, flags);
     },
     setInt<&Settings::block>, getInt<&Settings::block>},
    {[](GParamFlags flags) {
         return g_param_spec_int("channel", "Channel",
                                 "Byte of a pixel that the mode channel shows; -1 is the mean of "
                                 "three",
                                 -1, 3, -1, flags);
     },
     setInt<&Settings::channel>, getInt<&Settings::channel>},
    {[](GParamFlags flags) {
         return g_param_spec_enum("flip-a", "Flip A", "How sink_0 is flipped", muxFlipType(), 0,
                                  flags);
     },
     setEnum<&Settings::flipA>, getEnum<&Settings::flipA>},
    {[](GParamFlags flags) {
         return g_param_spec_enum("flip-b", "Flip B", "How sink_1 is flipped", muxFlipType(), 0,
                                  flags);
     },
     setEnum<&Settings::flipB>, getEnum<&Settings::flipB>},
    {[](GParamFlags flags) {
         return g_param_spec_uint("grid-percent", "Grid percent",
                                  "A grid in steps of so many hundredths of the picture; 0: none",
                                  0, 100, 0, flags);
     },
     setUint<&Settings::gridPercent>, getUint<&Settings::gridPercent>},
    {[](GParamFlags flags) {
         return g_param_spec_uint("grid-width", "Grid width",
                                  "A grid of so many pixels a column; needs grid-height", 0,
                                  mostPixels, 0, flags);
     },
     setUint<&Settings::gridWidth>, getUint<&Settings::gridWidth>},
    {[](GParamFlags flags) {
         return g_param_spec_uint("grid-height", "Grid height",
                                  "A grid of so many pixels a line; needs grid-width", 0,
                                  mostPixels, 0, flags);
     },
     setUint<&Settings::gridHeight>, getUint<&Settings::gridHeight>},
};

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec*) {
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    rows[id - 1].set(state.settings, *value);
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec*) {
    State& state = stateOf(object);
    const std::lock_guard lock(state.mutex);
    rows[id - 1].get(state.settings, *value);
}

unsigned flips(gint bits, unsigned horizontal, unsigned vertical) {
    return ((bits & 1) != 0 ? horizontal : 0) | ((bits & 2) != 0 ? vertical : 0);
}

// A picture smaller than its grid has no step to draw it by.
void setGrid(ZrMux* self, const Settings& settings, const PictureView& shape, MuxParameters& p) {
    const bool byPixels = settings.gridWidth != 0 && settings.gridHeight != 0;
    if (settings.gridPercent == 0 && !byPixels)
        return;
    const int parts = byPixels ? 1 : static_cast<int>(100 / settings.gridPercent);
    if (shape.width >= parts && shape.height >= parts) {
        p.gridMode = byPixels ? 2 : 1;
        p.gridX = byPixels ? settings.gridWidth : settings.gridPercent;
        p.gridY = settings.gridHeight;
    } else if (!std::exchange(stateOf(self).toldOfGrid, true)) {
        GST_ELEMENT_WARNING(self, STREAM, FORMAT,
                            ("Frames of %dx%d cannot be cut into %d parts: there is no grid.",
                             shape.width, shape.height, parts),
                            (nullptr));
    }
}

MuxParameters parametersFor(ZrMux* self, Settings settings, const PictureView& shape) {
    settings.flips = flips(settings.flipA, zrMuxFlipAHorizontal, zrMuxFlipAVertical) |
                     flips(settings.flipB, zrMuxFlipBHorizontal, zrMuxFlipBVertical);
    settings.channels = settings.channel < 0 ? 0 : 0xFFU << 8 * settings.channel;
    // At the right edge it would be written behind the lines.
    settings.divider =
        settings.divider && !(settings.mode == zrMuxSplit && settings.split == shape.width);
    MuxParameters p = parametersOf(settings);
    setGrid(self, settings, shape, p);
    return p;
}

void compose(ZrPair* pair, const PairFrames& frames) {
    ZrMux* self = ZR_MUX(pair);
    State& state = stateOf(self);
    Settings settings;
    {
        const std::lock_guard lock(state.mutex);
        settings = state.settings;
    }
    const PictureView shape = viewOf(*frames.result);
    const MemoryNeeds needs{wordPitch(*shape.layout, shape.width), 0};
    const MuxParameters parameters = parametersFor(self, settings, shape);
    // Flips change the sources.
    const auto source = [&](WorkingPicture& working, const GstVideoFrame* frame, gint flip) {
        return frame ? working.take(*frame, needs, flip != 0)
                     : state.black.like(*frames.result, needs.pitch);
    };
    const PictureView result = state.result.take(*frames.result, needs);
    // What a mode leaves is not of an older frame.
    std::memset(result.data, 0,
                static_cast<std::size_t>(result.pitch) * static_cast<std::size_t>(result.height));
    composeMux(parameters, source(state.a, frames.a, settings.flipA),
               source(state.b, frames.b, settings.flipB), result);
    state.result.giveBack(*frames.result);
}

void finalize(GObject* object) {
    const std::unique_ptr<State> state(std::exchange(ZR_MUX(object)->state, nullptr));
    G_OBJECT_CLASS(zr_mux_parent_class)->finalize(object);
}

} // namespace

static void zr_mux_init(ZrMux* self) {
    self->state = std::make_unique<State>().release(); // until finalize
}

static void zr_mux_class_init(ZrMuxClass* mux) {
    GObjectClass* object = G_OBJECT_CLASS(mux);
    object->set_property = setProperty;
    object->get_property = getProperty;
    object->finalize = finalize;
    const auto flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_LAX_VALIDATION |
                                                G_PARAM_STATIC_STRINGS | GST_PARAM_CONTROLLABLE |
                                                GST_PARAM_MUTABLE_PLAYING);
    guint id = 1;
    for (const Row& row : rows)
        g_object_class_install_property(object, id++, row.make(flags));
    installPairTemplates(GST_ELEMENT_CLASS(mux),
                         formatList([](const zrLayout& layout) { return layout.bytes.a >= 0; }));
    gst_element_class_set_static_metadata(
        GST_ELEMENT_CLASS(mux), "ZRDraw mux", "Filter/Editor/Video/Compositor",
        "Composes two streams for display: split, difference, mix, windows and more",
        "The ZRDraw authors");
    ZR_PAIR_CLASS(mux)->compose = compose;
}
