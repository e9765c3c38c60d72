// `zrdraw mux`: composes two clips or pictures for display.
#include "common/layout_names.h"
#include "common/mux_modes.h"
#include "common/numbers.h"
#include "common/tool_error.h"
#include "common/wipe_names.h"
#include "interrupt.h"
#include "option_values.h"
#include "pair/clip_pair.h"
#include "picture/nearest_layout.h"
#include "subcommand.h"
#include "zrdraw/mux.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>

namespace {

struct Options : PairOptions {
    std::string mode = "split";
    std::string position = "0.5";
    std::string code = "horizontal";
    std::string grid; // N% or XxY
    std::string flipA, flipB;
    std::string sound; // empty: that of the one which moves
    std::string channel;
    int split = -1;
    int gain = 1;
    int threshold = 16;
    int block = 16;
    bool divider = false;
    bool swap = false;
};

unsigned flips(const std::string& text, const char* option, unsigned horizontal,
               unsigned vertical) {
    const bool known = text.empty() || text == "h" || text == "v" || text == "hv" || text == "vh";
    if (!known)
        throw UsageError(fmt::format("{}: expected h, v or hv, got '{}'", option, text));
    return (text.find('h') != text.npos ? horizontal : 0) |
           (text.find('v') != text.npos ? vertical : 0);
}

unsigned channelMask(const std::string& text) {
    if (text.empty())
        return 0; // the mean
    return 0xFFU << 8 * numberIn<unsigned>(text, "--channel", 0, 3);
}

// "10%", or "64x48" pixels.
void setGrid(const std::string& text, MuxParameters& p) {
    constexpr unsigned most = 1'000'000;
    if (text.empty())
        return;
    const std::size_t cross = text.find('x');
    if (text.back() == '%') {
        p.gridMode = 1;
        p.gridX =
            numberIn<unsigned>(std::string_view(text).substr(0, text.size() - 1), "--grid", 1, 100);
    } else if (cross != text.npos) {
        p.gridMode = 2;
        p.gridX = numberIn<unsigned>(std::string_view(text).substr(0, cross), "--grid", 1, most);
        p.gridY = numberIn<unsigned>(std::string_view(text).substr(cross + 1), "--grid", 1, most);
    } else {
        throw UsageError(
            fmt::format("--grid: expected N% or XxY such as 10% or 64x48, got '{}'", text));
    }
}

MuxParameters parametersOf(const Options& options) {
    MuxSettings settings;
    settings.mode = muxModeNamed(options.mode).mode;
    settings.code = wipeCodeOf(options.code);
    settings.position = numberIn(options.position, "--position", 0.0, 1.0);
    settings.split = options.split;
    settings.gain = options.gain;
    settings.threshold = options.threshold;
    settings.block = options.block;
    settings.channels = channelMask(options.channel);
    settings.flips = flips(options.flipA, "--flip-a", zrMuxFlipAHorizontal, zrMuxFlipAVertical) |
                     flips(options.flipB, "--flip-b", zrMuxFlipBHorizontal, zrMuxFlipBVertical);
    settings.divider = options.divider;
    settings.swap = options.swap;
    MuxParameters p = parametersOf(settings);
    setGrid(options.grid, p);
    return p;
}

// A picture smaller than its grid has no step to draw it by.
void requireGridFits(const MuxParameters& p, const StreamInfo& info) {
    const unsigned parts = p.gridMode == 1 ? 100 / p.gridX : 1;
    if (static_cast<unsigned>(info.height) < parts || static_cast<unsigned>(info.width) < parts)
        throw UsageError(fmt::format("--grid {}%: a picture of {}x{} cannot be cut into {} parts",
                                     p.gridX, info.width, info.height, parts));
}

const zrLayout& wishedLayout(const std::string& name, MuxPieces pieces, const MuxParameters& p,
                             int width) {
    const zrLayout& layout = layoutNamed(name);
    if (!canMuxIn(layout, pieces, p, width))
        throw UsageError(fmt::format("such pictures are composed in 32-bit RGB, not in {}: use "
                                     "bgra, rgba, argb or abgr",
                                     name));
    return layout;
}

// 32-bit RGB, or where pieces of the sources are moved as they are the nearest to A's.
LayoutChoice layoutFor(const Options& options, const MuxParameters& p) {
    const MuxPieces pieces = muxModeNamed(options.mode).pieces;
    return [=, &options](AVPixelFormat pixels, int width) -> const zrLayout& {
        if (!options.layout.empty())
            return wishedLayout(options.layout, pieces, p, width);
        const zrLayout& nearest = nearestLayout(pixels, pairLayouts);
        return canMuxIn(nearest, pieces, p, width) ? nearest : layoutNamed("bgra");
    };
}

constexpr struct {
    const char* name;
    bool first, second;
} soundNames[] = {
    {"a", true, false}, {"b", false, true}, {"both", true, true}, {"none", false, false}};

const auto& soundNamed(const std::string& name) {
    for (const auto& row : soundNames)
        if (name == row.name)
            return row;
    throw UsageError(fmt::format("--sound: expected a, b, both or none, got '{}'", name));
}

// A picture has no sound of its own.
WriteOptions writeOptionsOf(const Options& options, ClipPair& pair) {
    WriteOptions write = writeOptions(options);
    const bool firstLeads = &pair.leading() == &pair.first();
    const auto& sound = soundNamed(!options.sound.empty() ? options.sound : firstLeads ? "a" : "b");
    write.sourceSound = firstLeads ? sound.first : sound.second;
    if (firstLeads && sound.second)
        write.soundBeside = &pair.second();
    return write;
}

class Run {
public:
    Run(const Options& options, const MuxParameters& parameters)
        : m_parameters(parameters), m_pair(options, layoutFor(options, parameters)),
          m_shape(m_pair.first().shape()), m_pool(m_shape), m_copyA(m_shape), m_copyB(m_shape),
          m_writer(writeOptionsOf(options, m_pair), m_pair.leading(), m_pair.leading().info()),
          m_progress(progressMode(options),
                     framesToCome(m_pair.leading().info(), {}, m_writer.takesOneFrame())) {
        requireGridFits(parameters, m_pair.first().info());
        tellNotes(options, m_writer, m_progress);
    }

    // To the end of the longer one.
    void frames() {
        WriteLane out(m_writer);
        const bool firstLeads = &m_pair.leading() == &m_pair.first();
        const auto passFrom = [&](int firstIndex) {
            return [&out, firstIndex](PacketPtr packet) {
                packet->stream_index += firstIndex;
                out.push(std::move(packet));
            };
        };
        ClipFrames a(m_pair.first(), passFrom(0));
        ClipFrames b(m_pair.second(), passFrom(firstLeads ? m_writer.firstIndexBeside() : 0));
        ClipFrames& leading = firstLeads ? a : b;
        std::int64_t written = 0, end = 0;
        for (;;) {
            const bool aMoved = a.next(), bMoved = b.next();
            if (aMoved && bMoved)
                requireSameTime(a, b);
            if (!(aMoved || bMoved) || (m_writer.takesOneFrame() && written > 0))
                break;
            std::unique_ptr<Frame> frame = compose(a.frame(), b.frame());
            const Frame& model = leading.frame();
            frame->picture = propertiesOf(*model.picture);
            frame->time = leading.hasEnded() ? end : model.time;
            frame->duration = model.duration;
            frame->number = frame->clock = written++;
            end = frame->time + frame->duration;
            out.push(std::move(frame));
            m_progress.advance(written);
        }
        out.finish();
        m_progress.end();
    }

private:
    std::unique_ptr<Frame> compose(Frame& a, Frame& b) {
        auto result = std::make_unique<Frame>(m_pool.take());
        composeMux(m_parameters,
                   unflipped(a.canvas, m_copyA, zrMuxFlipAHorizontal | zrMuxFlipAVertical).view(),
                   unflipped(b.canvas, m_copyB, zrMuxFlipBHorizontal | zrMuxFlipBVertical).view(),
                   result->canvas.view());
        result->canvas.colors = a.canvas.colors;
        return result;
    }

    // Flips change the sources, and a frame may come again.
    Canvas& unflipped(Canvas& canvas, Canvas& copy, unsigned flips) const {
        if ((m_parameters.flags & flips) == 0)
            return canvas;
        const auto bytes =
            static_cast<std::size_t>(canvas.pitch()) * static_cast<std::size_t>(canvas.height());
        std::copy_n(canvas.data(), bytes, copy.data());
        return copy;
    }

    const MuxParameters& m_parameters;
    ClipPair m_pair;
    CanvasShape m_shape;
    CanvasPool m_pool;
    Canvas m_copyA, m_copyB;
    Writer m_writer;
    Progress m_progress;
};

void addOptions(CLI::App& command, Options& options) {
    addPairOptions(command, options);
    command.add_option("--mode", options.mode, "How; see --list")
        ->type_name(valueName::mode)
        ->capture_default_str();
    command.add_option("--position", options.position, "How far mix and wipe have come")
        ->type_name(valueName::fraction)
        ->capture_default_str();
    command.add_option("--code", options.code, "The transition of wipe; see zrdraw wipe --list")
        ->type_name(valueName::transition)
        ->capture_default_str();
    takeCount(command.add_option("--split", options.split,
                                 "Column or line of split and windows; the middle unless told"));
    takeRange(command.add_option("--gain", options.gain, "What difference is multiplied by"), 1,
              255)
        ->capture_default_str();
    takeRange(command.add_option("--threshold", options.threshold,
                                 "How far B may be from A for key to show it"),
              0, 255)
        ->capture_default_str();
    takeRange(command.add_option("--block", options.block, "Pixels of a side of blocks"), 1, 100)
        ->capture_default_str();
    command
        .add_option("--channel", options.channel, "Byte that channel shows; the mean unless told")
        ->type_name("0|1|2|3");
    command.add_option("--grid", options.grid, "A grid over it: parts of the picture, or pixels")
        ->type_name("N%|XxY");
    command.add_option("--flip-a", options.flipA, "Flip A first")->type_name("h|v|hv");
    command.add_option("--flip-b", options.flipB, "Flip B first")->type_name("h|v|hv");
    command
        .add_option("--sound", options.sound,
                    "Whose sound passes: both is A's first; A's unless told, or B's where A is a "
                    "picture")
        ->type_name(oneOfNames(soundNames));
    command.add_flag("--divider", options.divider, "A grey line at the split");
    command.add_flag("--swap", options.swap, "Exchange A and B");
    command
        .add_option("--layout", options.layout,
                    "Layout to work in: bgra, rgba, argb or abgr; bgra unless told, or where a "
                    "mode moves lines, or parts, as they are, the nearest to A's")
        ->type_name(valueName::layout);
}

std::string run(const Options& options) {
    if (options.list)
        return listMuxModes();
    requireNames(options);
    const MuxParameters parameters = parametersOf(options);
    if (!options.sound.empty())
        soundNamed(options.sound);
    checkOptions(options);
    runInterruptible([&] { Run(options, parameters).frames(); });
    return "";
}

} // namespace

Subcommand muxCommand() {
    return makeSubcommand(
        "mux", "Compose two pictures or clips for display",
        "Clips run to the end of the longer one; a picture, and the last frame of "
        "the shorter one, stays.\nFlips come first and the grid last. Bytes of a "
        "pixel count from the lowest address.",
        addOptions, run);
}
