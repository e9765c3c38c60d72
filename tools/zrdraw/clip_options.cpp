#include "clip_options.h"

#include "tool_error.h"

extern "C" {
#include <libavutil/parseutils.h>
}

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include <unistd.h>

void addClipOptions(CLI::App& command, ClipOptions& options) {
    command.add_option("IN", options.input, "Picture or clip; - is standard input")->required();
    command.add_option("OUT", options.output, "Picture or clip; - is standard output")->required();
    addOutputOptions(command, options);
}

void addOutputOptions(CLI::App& command, ClipOptions& options) {
    command.add_option("--format", options.format,
                       "Output format instead of the name's: y4m, raw...");
    command.add_option("--codec", options.codec, "Encoder instead of the format's own");
    command.add_option("--raw", options.raw, "IN holds bare frames of the layout: WxH[@RATE]");
    CLI::Option* progress = command.add_flag("--progress", options.progress,
                                             "Report as key=value lines on standard error");
    command.add_flag("--quiet", options.quiet, "Print nothing but errors")->excludes(progress);
    command.add_flag("--force", options.force, "Replace an existing output");
}

Progress::Mode progressMode(const ClipOptions& options) {
    if (options.progress)
        return Progress::Mode::Blocks;
    const bool watched = !options.quiet && isatty(STDERR_FILENO) != 0;
    return watched ? Progress::Mode::Line : Progress::Mode::Silent;
}

std::optional<RawFormat> parseRaw(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    RawFormat raw;
    const std::size_t at = text.find('@');
    const bool valid =
        av_parse_video_size(&raw.width, &raw.height, text.substr(0, at).c_str()) >= 0 &&
        (at == text.npos || av_parse_video_rate(&raw.frameRate, text.substr(at + 1).c_str()) >= 0);
    if (!valid)
        throw UsageError(fmt::format(
            "--raw: expected WIDTHxHEIGHT or WIDTHxHEIGHT@RATE such as 640x480@25, got '{}'",
            text));
    return raw;
}

std::int64_t framesToCome(const StreamInfo& info, std::int64_t first, std::int64_t end) {
    if (info.frameCount == 0)
        return end == std::numeric_limits<std::int64_t>::max() ? 0 : end - first;
    return std::max<std::int64_t>(std::min(end, info.frameCount) - first, 0);
}
