#include "pair/clip_pair.h"

#include "interrupt.h"
#include "media/packing.h"
#include "media/pixel_formats.h"
#include "tool_error.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

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
        failToMatch("rate", rate(a), rate(b), "; bring them to one rate first");
    if (isInterlaced(a.fieldOrder) != isInterlaced(b.fieldOrder))
        failToMatch("scan", scanName(a), scanName(b), "; bring them to one scan first");
}

} // namespace

void addPairOptions(CLI::App& command, PairOptions& options) {
    command.add_option("A", options.input, "The first picture or clip");
    command.add_option("B", options.second, "The second");
    command.add_option("OUT", options.output, "Picture or clip; - is standard output");
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

ClipReader::ClipReader(const std::string& path, const LayoutChoice& layout,
                       const std::optional<RawFormat>& raw)
    : m_source(path, layout, raw, interruptReads), m_frame(newFrame()) {
    m_source.packets().dropAudio();
}

void ClipReader::scaleTo(int width, int height) {
    if (width == info().width && height == info().height)
        return;
    m_scaled = newFrame();
    m_scaled->width = width;
    m_scaled->height = height;
}

bool ClipReader::next(WorkingFrame& canvas) {
    if (m_ended || !m_source.read(*m_frame)) {
        m_ended = true;
        return false;
    }
    canvas.load(m_scaled ? scaled(*m_frame) : *m_frame);
    return true;
}

const AVFrame& ClipReader::scaled(const AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    if (format == barePixels)
        throw Failure("frames that are read as they are cannot be scaled: use another --layout");
    const int width = m_scaled->width, height = m_scaled->height;
    m_scaler.reset(sws_getCachedContext(m_scaler.release(), frame.width, frame.height, format,
                                        width, height, format, SWS_BICUBIC | SWS_ACCURATE_RND,
                                        nullptr, nullptr, nullptr));
    if (!m_scaler)
        throw Failure(fmt::format("pictures of {}x{} cannot be brought to {}x{}", frame.width,
                                  frame.height, width, height));
    av_frame_unref(m_scaled.get());
    m_scaled->width = width;
    m_scaled->height = height;
    m_scaled->format = format;
    if (av_frame_get_buffer(m_scaled.get(), 0) < 0 ||
        av_frame_copy_props(m_scaled.get(), &frame) < 0)
        throw std::bad_alloc();
    sws_scale(m_scaler.get(), frame.data, frame.linesize, 0, frame.height, m_scaled->data,
              m_scaled->linesize);
    return *m_scaled;
}

ClipPair::ClipPair(const PairOptions& options, const LayoutChoice& layout,
                   const std::optional<RawFormat>& raw)
    : m_first(options.input, layout, raw), m_second(options.second, always(m_first.layout()), raw) {
    requireMatch(m_first.info(), m_second.info(), options.scale);
    if (options.scale)
        m_second.scaleTo(m_first.info().width, m_first.info().height);
}

// Of the clip, where one of the two is a picture.
const StreamInfo& ClipPair::info() const {
    return m_first.info().picture && m_second.info().width == m_first.info().width &&
                   m_second.info().height == m_first.info().height
               ? m_second.info()
               : m_first.info();
}
