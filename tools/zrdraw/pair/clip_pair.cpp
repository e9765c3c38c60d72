#include "pair/clip_pair.h"

#include "common/tool_error.h"
#include "option_values.h"
#include "picture/picture_kind.h"
#include "picture/pixel_formats.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <cmath>
#include <new>

namespace {

std::string scanName(const StreamInfo& info) {
    return isInterlaced(info.fieldOrder) ? "interlaced" : "progressive";
}

[[noreturn]] void failToMatch(const char* what, const std::string& first, const std::string& second,
                              const char* mend) {
    throw Failure(fmt::format("the two differ in {}: {} is {} and {} is {}{}", what, "the first",
                              first, "the second", second, mend));
}

void requireMatch(const StreamInfo& a, const StreamInfo& b, bool scale) {
    const auto size = [](const StreamInfo& info) {
        return fmt::format("{}x{}", info.width, info.height);
    };
    const auto rate = [](const StreamInfo& info) {
        return fmt::format("{:.6g} frames a second", av_q2d(info.frameRate));
    };
    if (!scale && (a.width != b.width || a.height != b.height))
        failToMatch("size", size(a), size(b), "; use --scale to bring the second to the first's");
    if (a.picture || b.picture)
        return;
    if (av_cmp_q(a.frameRate, b.frameRate) != 0)
        failToMatch("rate", rate(a), rate(b), "; use --rate to bring both to one");
    if (isInterlaced(a.fieldOrder) != isInterlaced(b.fieldOrder))
        failToMatch("scan", scanName(a), scanName(b), "; bring them to one scan first");
}

// One canvas is made of both: their numbers must stand for the same colours.
ReadOptions likeFirst(ReadOptions options, const Reader& first) {
    options.colors = first.colors();
    return options;
}

std::string useRate(const Reader& clip) {
    return fmt::format("use --rate {:.6g} to repeat or leave out frames",
                       av_q2d(clip.info().frameRate));
}

double secondsFromStart(const ClipFrames& clip) {
    const StreamInfo& info = clip.reader().info();
    return static_cast<double>(clip.frame().time - info.start) * av_q2d(info.timeBase);
}

} // namespace

void addPairOptions(CLI::App& command, PairOptions& options) {
    command.add_option("A", options.input, "The first picture or clip")->type_name(valueName::file);
    command.add_option("B", options.second, "The second")->type_name(valueName::file);
    command.add_option("OUT", options.output, "Picture or clip; - is standard output")
        ->type_name(valueName::file);
    command.add_flag("--scale", options.scale, "Bring B to the size of A");
    command.add_flag("--list", options.list, "Tell all names and end");
    addOutputOptions(command, options);
}

void requireNames(const PairOptions& options) {
    if (options.output.empty())
        throw UsageError("expected A, B and OUT, three names; --list needs none");
    if (options.input == "-" && options.second == "-")
        throw UsageError("standard input can be one of A and B only");
}

void tellNotes(const PairOptions& options, const Writer& writer, Progress& progress) {
    if (options.quiet)
        return;
    for (const std::string& note : writer.notes())
        progress.say("zrdraw: warning: " + note);
}

ClipPair::ClipPair(const PairOptions& options, const LayoutChoice& layout)
    : m_first(options.input, readOptions(options, layout)),
      m_second(options.second, likeFirst(readOptions(options, always(m_first.layout())), m_first)),
      m_alike(::areAlike(m_first.kind(), m_second.kind())) {
    const StreamInfo &a = m_first.info(), &b = m_second.info();
    requireMatch(a, b, options.scale);
    if (options.scale)
        m_second.scaleTo(a.width, a.height);
    m_secondLeads = a.picture && b.width == a.width && b.height == a.height;
}

bool ClipFrames::next() {
    while (!m_ended) {
        std::optional<Item> item = m_lane.next();
        if (!item) {
            m_ended = true;
        } else if (auto* packet = std::get_if<PacketPtr>(&*item)) {
            m_pass(std::move(*packet));
        } else {
            m_frame = std::get<std::unique_ptr<Frame>>(std::move(*item));
            return true;
        }
    }
    if (!m_frame)
        throw Failure("a clip has no frame");
    return false;
}

std::unique_ptr<Frame> ClipFrames::again() const {
    auto frame = std::make_unique<Frame>(m_frame->canvas.share());
    const AVFrame& picture = *m_frame->picture;
    frame->picture = propertiesOf(picture);
    if (picture.buf[0])
        frame->picture.reset(av_frame_clone(&picture));
    if (!frame->picture)
        throw std::bad_alloc();
    return frame;
}

void requireEven(const Reader& clip) {
    if (clip.info().unevenRate)
        throw Failure(fmt::format("the frames of {} are not evenly spaced in time: {}",
                                  clip.input().name(), useRate(clip)));
}

void requireEven(const ClipFrames& clip) {
    const StreamInfo& info = clip.reader().info();
    const double length = 1 / av_q2d(info.frameRate);
    const double off = secondsFromStart(clip) - static_cast<double>(clip.frame().number) * length;
    // Less is a clock's trembling.
    if (!info.picture && std::abs(off) > length / 4 + av_q2d(info.timeBase))
        throw Failure(fmt::format("frame {} of {} stands {:.3f} s off the even spacing: {}",
                                  clip.frame().number, clip.reader().input().name(), off,
                                  useRate(clip.reader())));
}

void requireSameTime(const ClipFrames& a, const ClipFrames& b) {
    if (a.reader().info().picture || b.reader().info().picture)
        return;
    const double first = secondsFromStart(a), second = secondsFromStart(b);
    if (std::abs(first - second) > 0.5 / av_q2d(a.reader().info().frameRate))
        throw Failure(fmt::format("frame {} stands at {:.3f} s in the first and at {:.3f} s in the "
                                  "second: {}",
                                  a.frame().number, first, second, useRate(a.reader())));
}

FramePtr propertiesOf(const AVFrame& picture) {
    FramePtr properties = newFrame();
    if (av_frame_copy_props(properties.get(), &picture) < 0)
        throw std::bad_alloc();
    properties->format = picture.format;
    properties->width = picture.width;
    properties->height = picture.height;
    return properties;
}
