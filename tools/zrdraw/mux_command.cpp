// `zrdraw mux`: composes two clips or pictures for display.
#include "interrupt.h"
#include "layout_names.h"
#include "media/frame_sink.h"
#include "media/output_file.h"
#include "numbers.h"
#include "pair/clip_pair.h"
#include "pair/mux_modes.h"
#include "pair/wipe_names.h"
#include "subcommand.h"
#include "tool_error.h"
#include "zrdraw/mux.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

struct Options : PairOptions {
    std::string mode = "split";
    std::string position = "0.5";
    std::string code = "horizontal";
    std::string grid; // N% or XxY
    std::string flipA, flipB;
    std::string channel;
    int split = -1;
    int gain = 1;
    int threshold = 16;
    int block = 16;
    bool divider = false;
    bool swap = false;
};

constexpr double scale = 65536.0;

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
    MuxParameters p;
    const unsigned mode = muxModeNamed(options.mode).mode;
    p.flags = mode | (options.divider ? unsigned{zrMuxDivider} : 0) |
              (options.swap ? zrMuxSwap : 0) |
              flips(options.flipA, "--flip-a", zrMuxFlipAHorizontal, zrMuxFlipAVertical) |
              flips(options.flipB, "--flip-b", zrMuxFlipBHorizontal, zrMuxFlipBVertical);
    p.wipeCode = wipeCodeOf(options.code);
    p.position = static_cast<unsigned>(
        std::lround(numberIn(options.position, "--position", 0.0, 1.0) * scale));
    if (mode == zrMuxBlocks)
        p.position = static_cast<unsigned>(options.block) << 8;
    p.param = mode == zrMuxDifference ? static_cast<unsigned>(options.gain)
              : mode == zrMuxChannel  ? channelMask(options.channel)
                                      : static_cast<unsigned>(options.threshold);
    if (options.split >= 0)
        p.splitX = p.splitY = static_cast<unsigned>(options.split);
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

const zrLayout& rgb32Layout(const std::string& name) {
    const zrLayout& layout = layoutNamed(name);
    if (layout.bytes.a < 0)
        throw UsageError(fmt::format("pictures are composed in 32-bit RGB, not in {}: use bgra, "
                                     "rgba, argb or abgr",
                                     name));
    return layout;
}

class Run {
public:
    Run(const Options& options, const MuxParameters& parameters)
        : m_parameters(parameters),
          m_pair(options, always(rgb32Layout(options.layout)), parseRaw(options.raw)),
          m_a(m_pair.layout(), m_pair.info().width, m_pair.info().height),
          m_b(m_pair.layout(), m_pair.info().width, m_pair.info().height),
          m_result(m_pair.layout(), m_pair.info().width, m_pair.info().height),
          m_sink(options.output, {options.format, options.codec, options.force}, m_pair.info(),
                 m_pair.layout()),
          m_progress(progressMode(options),
                     framesToCome(m_pair.info(), 0, std::numeric_limits<std::int64_t>::max())) {
        requireGridFits(parameters, m_pair.info());
    }

    // To the end of the longer one.
    void frames() {
        std::int64_t written = 0;
        while (nextPair()) {
            stopIfInterrupted();
            composeMux(m_parameters, m_a, m_b, m_result);
            m_result.describeAs(m_a);
            const FramePtr frame = m_sink.makeFrame();
            m_result.store(*frame);
            frame->pts = written++;
            m_sink.write(*frame);
            m_progress.advance(written);
            if (m_sink.takesOneFrame())
                break;
        }
        m_sink.finish();
        m_progress.end();
    }

private:
    // Flips change the canvases, so a frame that comes again is put back first.
    bool nextPair() {
        const bool a = next(m_pair.first(), m_a, m_keptA);
        const bool b = next(m_pair.second(), m_b, m_keptB);
        return a || b;
    }

    static bool next(ClipReader& clip, WorkingFrame& canvas, std::string& kept) {
        const std::size_t bytes =
            static_cast<std::size_t>(canvas.pitch()) * static_cast<std::size_t>(canvas.height());
        if (clip.next(canvas)) {
            kept.assign(canvas.data(), bytes);
            return true;
        }
        std::copy(kept.begin(), kept.end(), canvas.data());
        return false;
    }

    const MuxParameters& m_parameters;
    ClipPair m_pair;
    WorkingFrame m_a;
    WorkingFrame m_b;
    WorkingFrame m_result;
    FrameSink m_sink;
    Progress m_progress;
    std::string m_keptA;
    std::string m_keptB;
};

void addOptions(CLI::App& command, Options& options) {
    addPairOptions(command, options);
    command.add_option("--mode", options.mode, "How; see --list")->capture_default_str();
    command.add_option("--position", options.position, "Of mix and wipe, 0 to 1")
        ->capture_default_str();
    command.add_option("--code", options.code, "Of wipe: see zrdraw wipe --list")
        ->capture_default_str();
    command.add_option("--split", options.split, "Column or line of split and windows; the middle")
        ->check(CLI::NonNegativeNumber);
    command.add_option("--gain", options.gain, "Of difference, 1 to 255")
        ->check(CLI::Range(1, 255))
        ->capture_default_str();
    command.add_option("--threshold", options.threshold, "Of key, 0 to 255")
        ->check(CLI::Range(0, 255))
        ->capture_default_str();
    command.add_option("--block", options.block, "Of blocks, 1 to 100 pixels")
        ->check(CLI::Range(1, 100))
        ->capture_default_str();
    command.add_option("--channel", options.channel,
                       "Of channel, byte 0 to 3; the mean unless told");
    command.add_option("--grid", options.grid, "A grid over it: N%, or XxY pixels");
    command.add_option("--flip-a", options.flipA, "Flip A first: h, v or hv");
    command.add_option("--flip-b", options.flipB, "Flip B first: h, v or hv");
    command.add_flag("--divider", options.divider, "A grey line at the split");
    command.add_flag("--swap", options.swap, "Exchange A and B");
    command.add_option("--layout", options.layout, "Layout to work in: bgra, rgba, argb or abgr")
        ->capture_default_str();
}

std::string run(const Options& options) {
    if (options.list)
        return listMuxModes();
    requireNames(options);
    const MuxParameters parameters = parametersOf(options);
    OutputFile::checkPath(options.output, options.force);
    runInterruptible([&] { Run(options, parameters).frames(); });
    return "";
}

} // namespace

Subcommand muxCommand() {
    return makeSubcommand("mux", "Compose two pictures or clips for display", addOptions, run);
}
