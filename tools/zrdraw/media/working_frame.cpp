#include "media/working_frame.h"

#include "media/pixel_formats.h"
#include "tool_error.h"

#include <fmt/format.h>

#include <cstring>
#include <new>
#include <vector>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace {

constexpr int alignment = 64;
constexpr int wordBytes = 4;

template <typename Number>
Number roundedUp(Number bytes, Number unit) {
    return (bytes + unit - 1) / unit * unit;
}

void makeOpaque(AVFrame& frame) {
    const auto format = static_cast<AVPixelFormat>(frame.format);
    if (!hasFlag(format, AV_PIX_FMT_FLAG_ALPHA) || hasFlag(format, AV_PIX_FMT_FLAG_PAL) ||
        hasFlag(format, AV_PIX_FMT_FLAG_FLOAT))
        return;
    const AVPixFmtDescriptor* layout = av_pix_fmt_desc_get(format);
    const int alpha = layout->nb_components - 1;
    const auto opaque = static_cast<std::uint16_t>((1U << layout->comp[alpha].depth) - 1);
    const std::vector<std::uint16_t> line(static_cast<std::size_t>(frame.width), opaque);
    for (int y = 0; y < frame.height; ++y)
        av_write_image_line2(line.data(), frame.data, frame.linesize, layout, 0, y, alpha,
                             frame.width, sizeof(line[0]));
}

SwsContext* converter(SwsPtr& cached, int width, int height, AVPixelFormat from, AVPixelFormat to) {
    // Between formats in Y, Cb and Cr chroma is repeated and picked, not filtered: what was not
    // drawn on then comes back as it was.
    const bool kept = !countsAsRgb(from) && !countsAsRgb(to);
    const int flags = (kept ? SWS_POINT : SWS_BILINEAR) | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT;
    cached.reset(sws_getCachedContext(cached.release(), width, height, from, width, height, to,
                                      flags, nullptr, nullptr, nullptr));
    if (!cached)
        throw Failure(fmt::format("pictures in {} cannot be converted to {}",
                                  av_get_pix_fmt_name(from), av_get_pix_fmt_name(to)));
    return cached.get();
}

} // namespace

WorkingFrame::WorkingFrame(const zrLayout& layout, int width, int height)
    : m_layout(layout), m_format(pixelFormatOf(layout)), m_width(width), m_height(height),
      m_lineBytes(wholeLineBytes(layout, width)), m_picture(newFrame()) {
    if (width <= 0 || height <= 0 ||
        av_image_check_size2(static_cast<unsigned>(width), static_cast<unsigned>(height), INT64_MAX,
                             m_format, 0, nullptr) < 0)
        throw Failure(fmt::format("pictures of {}x{} cannot be drawn on", width, height));
    requireFit(layout, width, height);
    // Whole words and no more: operations that fill the whole canvas take its lines for contiguous.
    m_pitch = roundedUp(m_lineBytes, wordBytes);
    // The scaler writes behind the last pixel as well, up to a vector.
    const std::size_t bytes = roundedUp<std::size_t>(
        zrFrameRoom(layout, width, height, m_pitch) + std::size_t{alignment}, alignment);
    m_pixels.reset(static_cast<std::uint8_t*>(std::aligned_alloc(alignment, bytes)));
    if (!m_pixels)
        throw std::bad_alloc();
    std::memset(m_pixels.get(), 0, bytes);
    m_packer = makePacker(layout, width, height);
    m_picture->format = m_format;
    m_picture->width = width + width % 2; // some codecs take even widths only
    m_picture->height = height;
    if (!m_packer) {
        m_picture->data[0] = m_pixels.get();
        m_picture->linesize[0] = m_pitch;
        return;
    }
    if (av_frame_get_buffer(m_picture.get(), 0) < 0)
        throw std::bad_alloc();
    // Mid grey, which is the luma of a chroma plane that no picture was loaded into.
    for (const AVBufferRef* plane : m_picture->buf)
        if (plane)
            std::memset(plane->data, 0x80, plane->size);
}

std::optional<cmYCbCr> WorkingFrame::matrixMode() const {
    if (!isYCbCr(m_layout))
        return std::nullopt;
    const bool full = m_colors.range == AVCOL_RANGE_JPEG;
    switch (m_colors.space) {
    case AVCOL_SPC_BT709:
        return full ? cmRec709Full : cmRec709;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return full ? cmRec601Full : cmRec601;
    case AVCOL_SPC_BT2020_NCL:
        return full ? cmRec2020Full : cmRec2020;
    default:
        return std::nullopt;
    }
}

void WorkingFrame::load(const AVFrame& decoded) {
    requireSameSize(decoded);
    m_loaded = propertiesOf(decoded, {});
    m_colors = colorsFor(decoded);
    if (decoded.format == barePixels) {
        av_image_copy_plane(m_pixels.get(), m_pitch, decoded.data[0], decoded.linesize[0],
                            m_lineBytes, m_height);
        return;
    }
    if (decoded.format == m_format)
        copyPlanes(decoded, *m_picture);
    else
        convertIn(decoded);
    if (m_packer)
        m_packer->pack(*m_picture, lines());
}

void WorkingFrame::convertIn(const AVFrame& decoded) {
    SwsContext* sws = converter(m_loader, m_width, m_height,
                                static_cast<AVPixelFormat>(decoded.format), m_format);
    sws_setColorspaceDetails(sws, sws_getCoefficients(m_loaded.space),
                             m_loaded.range == AVCOL_RANGE_JPEG,
                             sws_getCoefficients(m_colors.space),
                             m_colors.range == AVCOL_RANGE_JPEG, 0, 1 << 16, 1 << 16);
    sws_scale(sws, decoded.data, decoded.linesize, 0, m_height, m_picture->data,
              m_picture->linesize);
}

void WorkingFrame::describeAs(const WorkingFrame& other) {
    m_loaded = other.m_loaded;
    m_colors = other.m_colors;
}

void WorkingFrame::store(AVFrame& target) {
    requireSameSize(target);
    target.interlaced_frame = m_loaded.interlaced;
    target.top_field_first = m_loaded.topFieldFirst;
    target.sample_aspect_ratio = m_loaded.sampleAspect;
    if (target.format == barePixels) {
        av_image_copy_plane(target.data[0], target.linesize[0], m_pixels.get(), m_pitch,
                            m_lineBytes, m_height);
        return;
    }
    if ((target.buf[0] ? av_frame_make_writable(&target) : av_frame_get_buffer(&target, 0)) < 0)
        throw std::bad_alloc();
    if (m_packer)
        m_packer->unpack(lines(), *m_picture);
    if (target.format == m_format)
        copyPlanes(*m_picture, target);
    else
        convertOut(target);
    if (!m_loaded.hasAlpha)
        makeOpaque(target);
}

void WorkingFrame::convertOut(AVFrame& target) {
    const Properties wanted = propertiesOf(target, m_loaded);
    SwsContext* sws =
        converter(m_storer, m_width, m_height, m_format, static_cast<AVPixelFormat>(target.format));
    const AVColorSpace space = isYCbCr(m_layout) ? m_colors.space : wanted.space;
    sws_setColorspaceDetails(sws, sws_getCoefficients(space), m_colors.range == AVCOL_RANGE_JPEG,
                             sws_getCoefficients(wanted.space), wanted.range == AVCOL_RANGE_JPEG, 0,
                             1 << 16, 1 << 16);
    sws_scale(sws, m_picture->data, m_picture->linesize, 0, m_height, target.data, target.linesize);
}

void WorkingFrame::copyPlanes(const AVFrame& from, AVFrame& to) const {
    const std::uint8_t* planes[4] = {from.data[0], from.data[1], from.data[2], from.data[3]};
    av_image_copy(to.data, to.linesize, planes, from.linesize, m_format, m_width, m_height);
}

WorkingFrame::Properties WorkingFrame::propertiesOf(const AVFrame& frame,
                                                    const Properties& otherwise) const {
    const bool bare = frame.format == barePixels;
    const auto format = bare ? m_format : static_cast<AVPixelFormat>(frame.format);
    Properties result{frame.colorspace,          frame.color_range,
                      frame.sample_aspect_ratio, frame.interlaced_frame,
                      frame.top_field_first,     bare || hasFlag(format, AV_PIX_FMT_FLAG_ALPHA)};
    if (hasFlag(format, AV_PIX_FMT_FLAG_RGB))
        return result;
    if (result.space == AVCOL_SPC_UNSPECIFIED)
        result.space = otherwise.space;
    if (result.space == AVCOL_SPC_UNSPECIFIED || result.space == AVCOL_SPC_RGB)
        result.space = usualSpace(m_height);
    if (isFullRangeByName(format))
        result.range = AVCOL_RANGE_JPEG;
    if (result.range == AVCOL_RANGE_UNSPECIFIED)
        result.range = isGray(format) ? AVCOL_RANGE_JPEG : otherwise.range;
    return result;
}

WorkingFrame::Colors WorkingFrame::colorsFor(const AVFrame& loaded) const {
    if (!isYCbCr(m_layout))
        return {m_loaded.space, AVCOL_RANGE_JPEG};
    const bool kept =
        loaded.format == barePixels || !countsAsRgb(static_cast<AVPixelFormat>(loaded.format));
    return kept ? Colors{m_loaded.space, m_loaded.range}
                : Colors{usualSpace(m_height), AVCOL_RANGE_MPEG};
}

void WorkingFrame::requireSameSize(const AVFrame& frame) const {
    if (frame.width != m_width || frame.height != m_height)
        throw Failure(fmt::format("a picture of {}x{} does not fit the canvas of {}x{}",
                                  frame.width, frame.height, m_width, m_height));
}
