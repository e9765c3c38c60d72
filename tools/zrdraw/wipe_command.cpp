// `zrdraw wipe`: a clip of the transition between two clips or pictures.
#include "interrupt.h"
#include "layout_names.h"
#include "media/frame_sink.h"
#include "media/output_file.h"
#include "media/packing.h"
#include "numbers.h"
#include "overlay/burner.h"
#include "pair/clip_pair.h"
#include "pair/transition.h"
#include "pair/wipe_names.h"
#include "subcommand.h"
#include "tool_error.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cmath>

namespace {

struct Options : PairOptions {
    std::string code = "dissolve";
    int frames = 25;
    int hold = 0;
    std::string position; // of a single frame, 0 to 1; empty for all
    bool swap = false;
    bool frontEnd = false;
};

// Without a wish, pictures in Y, Cb and Cr stay so.
LayoutChoice chooseLayout(const Options& options) {
    return options.layout.empty() ? LayoutChoice(overlayLayout)
                                  : always(layoutNamed(options.layout));
}

unsigned onScale(double position) {
    return static_cast<unsigned>(std::lround(position * Transition::scale));
}

class Run {
public:
    Run(const Options& options, unsigned code)
        : m_options(options), m_pair(options, chooseLayout(options), parseRaw(options.raw)),
          m_from(m_pair.layout(), m_pair.info().width, m_pair.info().height),
          m_to(m_pair.layout(), m_pair.info().width, m_pair.info().height),
          m_result(m_pair.layout(), m_pair.info().width, m_pair.info().height),
          m_transition(m_pair.layout(), m_pair.info().width, m_pair.info().height, code,
                       options.swap, options.frontEnd),
          m_sink(options.output, {options.format, options.codec, options.force}, m_pair.info(),
                 m_pair.layout()),
          m_progress(progressMode(options), options.frames + 2 * options.hold) {}

    void frames() {
        takeFirst(m_pair.first(), m_from);
        takeFirst(m_pair.second(), m_to);
        if (!m_options.position.empty())
            transition(onScale(numberIn(m_options.position, "--position", 0.0, 1.0)));
        else if (m_sink.takesOneFrame())
            throw UsageError("a picture shows one position: add --position, or name a clip");
        else
            clip();
        m_sink.finish();
        m_progress.end();
    }

private:
    void clip() {
        for (int i = 0; i < m_options.hold; ++i) {
            write(m_from);
            m_pair.first().next(m_from);
        }
        for (int i = 0; i < m_options.frames; ++i) {
            const int last = std::max(m_options.frames - 1, 1);
            transition(onScale(static_cast<double>(i) / last));
            m_pair.first().next(m_from);
            m_pair.second().next(m_to);
        }
        for (int i = 0; i < m_options.hold; ++i) {
            write(m_to);
            m_pair.second().next(m_to);
        }
    }

    static void takeFirst(ClipReader& clip, WorkingFrame& canvas) {
        if (!clip.next(canvas))
            throw Failure("a clip has no frame");
    }

    void transition(unsigned position) {
        m_transition.draw(m_from, m_to, m_result, position);
        write(m_result);
    }

    void write(WorkingFrame& canvas) {
        stopIfInterrupted();
        if (&canvas == &m_result)
            m_result.describeAs(m_from);
        const FramePtr frame = m_sink.makeFrame();
        canvas.store(*frame);
        frame->pts = m_written++;
        m_sink.write(*frame);
        m_progress.advance(m_written);
    }

    const Options& m_options;
    ClipPair m_pair;
    WorkingFrame m_from;
    WorkingFrame m_to;
    WorkingFrame m_result;
    Transition m_transition;
    FrameSink m_sink;
    Progress m_progress;
    std::int64_t m_written = 0;
};

void addOptions(CLI::App& command, Options& options) {
    options.layout.clear();
    addPairOptions(command, options);
    command.add_option("--code", options.code, "The transition, by name or number; see --list")
        ->capture_default_str();
    command.add_option("--frames", options.frames, "Frames of the transition")
        ->check(CLI::Range(2, 1'000'000))
        ->capture_default_str();
    command.add_option("--hold", options.hold, "Frames of A before it and of B behind it")
        ->check(CLI::Range(0, 1'000'000))
        ->capture_default_str();
    command.add_option("--position", options.position, "One frame of it only, 0 to 1");
    command.add_flag("--swap", options.swap, "Exchange what leaves and what comes");
    command.add_option("--layout", options.layout,
                       "Layout to work in; the nearest of bgra, uyvy and v210 unless told");
    command.add_flag("--front-end", options.frontEnd,
                     "v210 by the library's own way, which drops the two low bits");
    command.footer(
        "v210 is worked on at full precision: away from an edge every sample is that of its "
        "source.\nThe last frame of a clip that ends stays.");
}

std::string run(const Options& options) {
    if (options.list)
        return listWipes();
    requireNames(options);
    const unsigned code = wipeCodeOf(options.code);
    OutputFile::checkPath(options.output, options.force);
    runInterruptible([&] { Run(options, code).frames(); });
    return "";
}

} // namespace

Subcommand wipeCommand() {
    return makeSubcommand("wipe", "Make the transition between two pictures or clips", addOptions,
                          run);
}
