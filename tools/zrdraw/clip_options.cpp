#include "clip_options.h"

#include "common/layout_names.h"
#include "common/numbers.h"
#include "common/tool_error.h"
#include "media/output_file.h"
#include "media/sequence.h"
#include "option_values.h"
#include "picture/nearest_layout.h"
#include "sound/sound_codec.h"

extern "C" {
#include <libavutil/parseutils.h>
}

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>

#include <unistd.h>

namespace {

constexpr struct {
    const char* name;
    Streams streams;
} streamsNames[] = {{"all", Streams::All}, {"av", Streams::AudioAndVideo}, {"v", Streams::Video}};

Streams streamsNamed(const std::string& name) {
    for (const auto& row : streamsNames)
        if (name == row.name)
            return row.streams;
    throw UsageError(fmt::format("--streams: expected all, av or v, got '{}'", name));
}

std::optional<AVRational> parseRate(const std::string& text) {
    if (text.empty())
        return std::nullopt;
    AVRational rate;
    if (av_parse_video_rate(&rate, text.c_str()) < 0)
        throw UsageError(fmt::format(
            "--rate: expected frames a second such as 25 or 30000/1001, got '{}'", text));
    return rate;
}

std::pair<std::string, std::string> parseEncoderOption(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == text.npos || equals == 0 || equals + 1 == text.size())
        throw UsageError(fmt::format("--encoder-option: expected OPTION=VALUE, got '{}'", text));
    return {text.substr(0, equals), text.substr(equals + 1)};
}

bool readFrameNumber(std::string_view text, std::int64_t& value) {
    const auto number = numberIn<std::int64_t>(text);
    value = number.value_or(-1);
    return value >= 0 && value < FrameRange::open;
}

} // namespace

std::optional<FrameRange> framesOf(const ClipOptions& options) {
    const std::string_view text = options.frames;
    if (text.empty())
        return std::nullopt;
    FrameRange range;
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

void addClipOptions(CLI::App& command, ClipOptions& options) {
    command
        .add_option("IN", options.input,
                    "Picture, clip, or pictures with numbers as in%04d.png; - is standard input")
        ->type_name(valueName::file)
        ->required();
    command.add_option("OUT", options.output, "The same; - is standard output")
        ->type_name(valueName::file)
        ->required();
    addOutputOptions(command, options);
}

void addOutputOptions(CLI::App& command, ClipOptions& options) {
    command
        .add_option("--format", options.format, "Output format instead of the name's: y4m, raw...")
        ->type_name("FORMAT");
    command
        .add_option("--codec", options.codec,
                    "Encoder; the source's own, or the format's, unless told")
        ->type_name("ENCODER");
    command
        .add_option("--audio-codec", options.audioCodec,
                    "Encoder of the sound, such as aac or pcm_s24le; without it sound that passes "
                    "stays as it is")
        ->type_name("ENCODER");
    command.add_option("--crf", options.crf, "Quality of encoders that take it, such as 18")
        ->type_name("QUALITY");
    command.add_option("--bitrate", options.bitRate, "Bits a second, such as 20M")
        ->type_name("BITS");
    command.add_option("--preset", options.preset, "The encoder's preset, such as fast")
        ->type_name("PRESET");
    command.add_option("--profile", options.profile, "The encoder's profile")->type_name("PROFILE");
    takeRange(command.add_option("--threads", options.threads, "Threads of the encoder"), 1, 256);
    command
        .add_option("--encoder-option", options.encoderOptions, "Any other option of the encoder")
        ->type_name("OPTION=VALUE")
        ->allow_extra_args(false);
    command
        .add_option("--streams", options.streams,
                    "What passes beside the pictures: all, av (sound and other video) or v")
        ->type_name(oneOfNames(streamsNames))
        ->capture_default_str();
    command
        .add_option("--rate", options.rate,
                    "Frames a second: frames are repeated or left out to keep it; of pictures with "
                    "numbers, their rate")
        ->type_name("RATE");
    takeCount(
        command.add_option("--start-number", options.startNumber,
                           "Of pictures with numbers: the first one in, and the first one out"));
    command.add_option("--raw", options.raw, "IN holds bare frames of the layout")
        ->type_name("WxH[@RATE]");
    command.add_flag("--keep-going", options.keepGoing,
                     "Work on what is whole of a damaged or cut input");
    CLI::Option* progress = command.add_flag("--progress", options.progress,
                                             "Report as key=value lines on standard error");
    command.add_flag("--quiet", options.quiet, "Print nothing but errors")->excludes(progress);
    command.add_flag("--force", options.force, "Replace an existing output");
}

void addFramesOption(CLI::App& command, ClipOptions& options) {
    command
        .add_option("--frames", options.frames,
                    "Work on and write only the frames A up to but excluding B, counted from 0, "
                    "with their sound: A:B, A:, :B, or N alone")
        ->type_name("A:B");
}

void checkOptions(const ClipOptions& options) {
    if (!options.layout.empty())
        layoutNamed(options.layout);
    readOptions(options, nullptr);
    writeOptions(options);
    framesOf(options);
    if (!isSequenceName(options.output))
        OutputFile::checkPath(options.output, options.force);
}

LayoutChoice chooseLayout(const ClipOptions& options, std::span<const unsigned> codes) {
    if (!options.layout.empty())
        return always(layoutNamed(options.layout));
    if (!options.raw.empty())
        throw UsageError("--raw: bare frames do not tell what they hold; add --layout");
    return [codes](AVPixelFormat source, int) -> const zrLayout& {
        return nearestLayout(source, codes);
    };
}

ReadOptions readOptions(const ClipOptions& options, const LayoutChoice& layout) {
    ReadOptions read{layout};
    read.raw = parseRaw(options.raw);
    read.damage = options.keepGoing ? Damage::Skip : Damage::Fail;
    read.startNumber = options.startNumber;
    read.rate = parseRate(options.rate);
    return read;
}

WriteOptions writeOptions(const ClipOptions& options) {
    WriteOptions write;
    write.path = options.output;
    write.format = options.format;
    write.encoder = {options.codec,  options.crf,     options.bitRate,
                     options.preset, options.profile, options.threads};
    for (const std::string& text : options.encoderOptions)
        write.encoder.others.push_back(parseEncoderOption(text));
    write.streams = streamsNamed(options.streams);
    if (!options.audioCodec.empty())
        soundEncoderNamed(options.audioCodec);
    write.audioCodec = options.audioCodec;
    write.force = options.force;
    write.firstNumber = options.startNumber.value_or(1);
    return write;
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

std::int64_t framesToCome(const StreamInfo& info, const FrameRange& range, bool onlyOne) {
    if (onlyOne)
        return 1;
    if (info.frameCount == 0)
        return range.end == FrameRange::open ? 0 : range.end - range.first;
    return std::max<std::int64_t>(std::min(range.end, info.frameCount) - range.first, 0);
}
