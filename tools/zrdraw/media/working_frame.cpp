#include "media/working_frame.h"

#include "error.h"
#include "zrdraw/layouts.h"

#include <fmt/format.h>

#include <cstring>
#include <new>

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
}

namespace {

constexpr int alignment = 64;
constexpr int wordBytes = 4;

struct Converter {
    unsigned code;
    AVPixelFormat format;
};

constexpr Converter converters[] = {
    {ptRGBA32, AV_PIX_FMT_RGBA}, {ptARGB32, AV_PIX_FMT_ARGB}, {ptBGRA32, AV_PIX_FMT_BGRA},
    {ptABGR32, AV_PIX_FMT_ABGR}, {ptRGB24, AV_PIX_FMT_RGB24}, {ptBGR24, AV_PIX_FMT_BGR24},
};

bool hasFlag(AVPixelFormat format, unsigned flag) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && (description->flags & flag);
}

bool isFullRangeByName(AVPixelFormat format) {
    return format == AV_PIX_FMT_YUVJ420P || format == AV_PIX_FMT_YUVJ422P ||
           format == AV_PIX_FMT_YUVJ444P || format == AV_PIX_FMT_YUVJ440P ||
           format == AV_PIX_FMT_YUVJ411P;
}

bool isGray(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && description->nb_components <= 2;
}

template <typename Number>
Number roundedUp(Number bytes, Number unit) {
    return (bytes + unit - 1) / unit * unit;
}

SwsContext* converter(SwsPtr& cached, int width, int height, AVPixelFormat from, AVPixelFormat to) {
    constexpr int flags = SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT;
    cached.reset(sws_getCachedContext(cached.release(), width, height, from, width, height, to,
                                      flags, nullptr, nullptr, nullptr));
    if (!cached)
        throw Failure(fmt::format("pictures in {} cannot be converted to {}",
                                  av_get_pix_fmt_name(from), av_get_pix_fmt_name(to)));
    return cached.get();
}

} // namespace

std::optional<AVPixelFormat> workingPixelFormat(unsigned code) {
    for (const Converter& row : converters) {
        if (row.code == code)
            return row.format;
    }
    return std::nullopt;
}

WorkingFrame::WorkingFrame(AVPixelFormat format, int width, int height)
    : m_format(format), m_width(width), m_height(height) {
    const int lineBytes = av_image_get_linesize(format, width, 0);
    if (lineBytes <= 0 || height <= 0 ||
        av_image_check_size2(static_cast<unsigned>(width), static_cast<unsigned>(height), INT64_MAX,
                             format, 0, nullptr) < 0)
        throw Failure(fmt::format("pictures of {}x{} cannot be drawn on", width, height));
    // Whole words and no more: operations that fill the whole canvas take its lines for contiguous.
    m_pitch = roundedUp(lineBytes, wordBytes);
    // The scaler writes behind the last pixel, and in 24-bit layouts the library addresses all but
    // plain foreground pixels as if they had four bytes.
    const int overrun = alignment + wordBytes * width;
    const std::size_t bytes = roundedUp<std::size_t>(static_cast<std::size_t>(m_pitch) *
                                                             static_cast<std::size_t>(height) +
                                                         static_cast<std::size_t>(overrun),
                                                     alignment);
    m_pixels.reset(static_cast<std::uint8_t*>(std::aligned_alloc(alignment, bytes)));
    if (!m_pixels)
        throw std::bad_alloc();
    std::memset(m_pixels.get(), 0, bytes);
}

void WorkingFrame::load(const AVFrame& decoded) {
    requireSameSize(decoded);
    m_loaded = propertiesOf(decoded, {});
    const Planes canvas = planes();
    const auto format = static_cast<AVPixelFormat>(decoded.format);
    if (format == m_format) {
        av_image_copy_plane(canvas.data[0], m_pitch, decoded.data[0], decoded.linesize[0],
                            av_image_get_linesize(m_format, m_width, 0), m_height);
        return;
    }
    SwsContext* sws = converter(m_loader, m_width, m_height, format, m_format);
    const int* matrix = sws_getCoefficients(m_loaded.space);
    sws_setColorspaceDetails(sws, matrix, m_loaded.range == AVCOL_RANGE_JPEG, matrix, 1, 0, 1 << 16,
                             1 << 16);
    sws_scale(sws, decoded.data, decoded.linesize, 0, m_height, canvas.data, canvas.pitch);
}

void WorkingFrame::store(AVFrame& target) {
    requireSameSize(target);
    if ((target.buf[0] ? av_frame_make_writable(&target) : av_frame_get_buffer(&target, 0)) < 0)
        throw std::bad_alloc();
    const Properties wanted = propertiesOf(target, m_loaded);
    target.interlaced_frame = m_loaded.interlaced;
    target.top_field_first = m_loaded.topFieldFirst;
    target.sample_aspect_ratio = m_loaded.sampleAspect;
    const Planes canvas = planes();
    const auto format = static_cast<AVPixelFormat>(target.format);
    if (format == m_format) {
        av_image_copy_plane(target.data[0], target.linesize[0], canvas.data[0], m_pitch,
                            av_image_get_linesize(m_format, m_width, 0), m_height);
        return;
    }
    SwsContext* sws = converter(m_storer, m_width, m_height, m_format, format);
    const int* matrix = sws_getCoefficients(wanted.space);
    sws_setColorspaceDetails(sws, matrix, 1, matrix, wanted.range == AVCOL_RANGE_JPEG, 0, 1 << 16,
                             1 << 16);
    sws_scale(sws, canvas.data, canvas.pitch, 0, m_height, target.data, target.linesize);
}

WorkingFrame::Properties WorkingFrame::propertiesOf(const AVFrame& frame,
                                                    const Properties& otherwise) const {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    Properties result{frame.colorspace, frame.color_range, frame.sample_aspect_ratio,
                      frame.interlaced_frame, frame.top_field_first};
    if (hasFlag(format, AV_PIX_FMT_FLAG_RGB))
        return result;
    if (result.space == AVCOL_SPC_UNSPECIFIED)
        result.space = otherwise.space;
    // Custom, where nobody says: large pictures are BT.709, small ones BT.601.
    if (result.space == AVCOL_SPC_UNSPECIFIED || result.space == AVCOL_SPC_RGB)
        result.space = m_height >= 720 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    if (isFullRangeByName(format))
        result.range = AVCOL_RANGE_JPEG;
    if (result.range == AVCOL_RANGE_UNSPECIFIED)
        result.range = isGray(format) ? AVCOL_RANGE_JPEG : otherwise.range;
    return result;
}

void WorkingFrame::requireSameSize(const AVFrame& frame) const {
    if (frame.width != m_width || frame.height != m_height)
        throw Failure(fmt::format("a picture of {}x{} does not fit the canvas of {}x{}",
                                  frame.width, frame.height, m_width, m_height));
}

WorkingFrame::Planes WorkingFrame::planes() {
    return {{m_pixels.get(), nullptr, nullptr, nullptr}, {m_pitch, 0, 0, 0}};
}
