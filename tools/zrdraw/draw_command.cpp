// `zrdraw draw`: runs a script on the frames of a picture or clip.
#include "clip_options.h"
#include "draw_object.h"
#include "interrupt.h"
#include "layout_names.h"
#include "media/frame_sink.h"
#include "media/frame_source.h"
#include "media/output_file.h"
#include "media/working_frame.h"
#include "numbers.h"
#include "script/parser.h"
#include "subcommand.h"
#include "tool_error.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <optional>
#include <set>
#include <string_view>

namespace {

struct Options : ClipOptions {
    std::vector<std::string> expressions;
    std::string scriptFile;
    std::string frames; // empty: all
};

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    for (char part[4096]; file.read(part, sizeof part), file.gcount() > 0;)
        text.append(part, static_cast<std::size_t>(file.gcount()));
    if (!file.is_open() || file.bad())
        throw Failure(fmt::format("cannot read script '{}': {}", path, std::strerror(errno)));
    return text;
}

// The script file comes first, so that -e can add to it.
Script readScripts(const Options& options) {
    Script script;
    const auto append = [&script](const std::string& text, const std::string& source) {
        Script more = parseScript(text, source);
        std::move(more.begin(), more.end(), std::back_inserter(script));
    };
    if (!options.scriptFile.empty())
        append(readFile(options.scriptFile), options.scriptFile);
    for (std::size_t i = 0; i < options.expressions.size(); ++i)
        append(options.expressions[i], i == 0 ? "-e" : fmt::format("-e {}", i + 1));
    return script;
}

// The frames from `first` up to but excluding `end`, counted from 0.
struct FrameRange {
    std::int64_t first = 0;
    std::int64_t end = std::numeric_limits<std::int64_t>::max();
};

bool readFrameNumber(std::string_view text, std::int64_t& value) {
    const auto number = numberIn<std::int64_t>(text);
    value = number.value_or(-1);
    return value >= 0 && value < FrameRange{}.end;
}

FrameRange parseFrameRange(std::string_view text) {
    FrameRange range;
    if (text.empty())
        return range;
    const std::size_t colon = text.find(':');
    const std::string_view first = text.substr(0, colon);
    const std::string_view end = colon == text.npos ? "" : text.substr(colon + 1);
    const bool alone = colon == text.npos;
    const bool valid = ((first.empty() && !alone) || readFrameNumber(first, range.first)) &&
                       (end.empty() || readFrameNumber(end, range.end));
    if (!valid)
        throw UsageError(
            fmt::format("--frames: expected A:B, A:, :B or N, counted from 0, got '{}'", text));
    if (alone)
        range.end = range.first + 1;
    if (range.first >= range.end)
        throw Failure(fmt::format("--frames {} selects no frame", text));
    return range;
}

// Runs the script on canvases. Each gets a drawing object of its own, so that no colour or position
// passes from one frame to the next.
class ScriptRunner {
public:
    ScriptRunner(const Script& script, bool quiet, Progress& progress)
        : m_script(script), m_quiet(quiet), m_progress(progress) {}

    void run(WorkingFrame& frame) {
        const DrawPtr draw = makeDraw(frame);
        for (const Command& command : m_script)
            if (command.run(*draw) == -1 && m_refused.insert(&command).second && !m_quiet)
                warn(command, frame);
    }

private:
    void warn(const Command& command, const WorkingFrame& frame) {
        const Operation& operation = *command.operation;
        std::string reason(operation.refusal);
        if (reason.empty())
            reason = fmt::format("it does not lie wholly on the {}x{} canvas", frame.width(),
                                 frame.height());
        m_progress.say(fmt::format("zrdraw: warning: {}: {} was refused: {}", command.place,
                                   operation.name, reason));
    }

    const Script& m_script;
    bool m_quiet;
    Progress& m_progress;
    std::set<const Command*> m_refused; // warned of already
};

void passAudio(FrameSource& source, FrameSink& sink) {
    while (const PacketPtr packet = source.packets().takeAudio())
        sink.writeAudio(*packet);
}

// Draws on every frame of the range and writes it. Returns how many those were.
std::int64_t drawFrames(FrameSource& source, FrameSink& sink, FrameRange range,
                        WorkingFrame& canvas, ScriptRunner& runner, Progress& progress) {
    const FramePtr decoded = newFrame();
    if (sink.takesOneFrame())
        range.end = std::min(range.end, range.first + 1);
    std::int64_t written = 0;
    for (std::int64_t i = 0; i < range.end && source.read(*decoded); ++i) {
        stopIfInterrupted();
        if (i < range.first)
            continue;
        canvas.load(*decoded);
        runner.run(canvas);
        const FramePtr result = sink.makeFrame();
        canvas.store(*result);
        result->pts = written++;
        sink.write(*result);
        passAudio(source, sink);
        progress.advance(written);
    }
    passAudio(source, sink);
    stopIfInterrupted();
    return written;
}

void drawClip(const Options& options, const Script& script, FrameRange range,
              const zrLayout& layout, const std::optional<RawFormat>& raw) {
    FrameSource source(options.input, layout, raw, interruptReads);
    const StreamInfo& info = source.info();
    WorkingFrame canvas(layout, info.width, info.height);
    // A part of a clip would need a part of its sound.
    SinkOptions wanted{options.format, options.codec, options.force};
    if (options.frames.empty())
        wanted.audio = source.packets().keepAudio();
    else
        source.packets().dropAudio();
    FrameSink sink(options.output, wanted, info, layout);
    const std::int64_t frames =
        sink.takesOneFrame() ? 1 : framesToCome(info, range.first, range.end);
    Progress progress(progressMode(options), frames);
    ScriptRunner runner(script, options.quiet, progress);
    if (drawFrames(source, sink, range, canvas, runner, progress) == 0)
        throw Failure(fmt::format("'{}' has no frame {}", options.input,
                                  options.frames.empty() ? "at all" : "in " + options.frames));
    sink.finish();
    progress.end();
}

void addOptions(CLI::App& command, Options& options) {
    addClipOptions(command, options);
    command.add_option("-e", options.expressions, "Commands; may be given more than once")
        ->allow_extra_args(false);
    command.add_option("--script", options.scriptFile, "File of commands, run before those of -e");
    command.add_option("--layout", options.layout, "Layout to draw in, see zrdraw types")
        ->capture_default_str();
    command.add_option("--frames", options.frames,
                       "Draw and write only the frames A up to but excluding B, counted from 0: "
                       "A:B, A:, :B, or N alone");
    command.footer(fmt::format("Commands, one a line or separated by ';', # starts a comment:\n{}",
                               listOperations()));
}

std::string run(const Options& options) {
    const Script script = readScripts(options);
    const FrameRange range = parseFrameRange(options.frames);
    const zrLayout& layout = layoutNamed(options.layout);
    const std::optional<RawFormat> raw = parseRaw(options.raw);
    OutputFile::checkPath(options.output, options.force);

    runInterruptible([&] { drawClip(options, script, range, layout, raw); });
    return "";
}

} // namespace

Subcommand drawCommand() {
    return makeSubcommand("draw", "Draw on a picture or on every frame of a clip", addOptions, run);
}
