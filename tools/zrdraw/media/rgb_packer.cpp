#include "media/rgb_packer.h"

#include "media/pixel_formats.h"
#include "media/samples.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int alphaChannel = 3;

// Where the channels of a pixel stand, counted in samples; -1 where there is none.
struct Order {
    int place[4];
    int samples; // of a pixel
    int depth;
};

Order orderOf(const zrLayout& layout) {
    if (layout.code == ptRGB48)
        return {{0, 1, 2, -1}, 3, 16};
    if (layout.code == ptARGB64)
        return {{1, 2, 3, 0}, 4, 16};
    const zrByteOrder& bytes = layout.bytes;
    return {{bytes.r, bytes.g, bytes.b, bytes.a}, static_cast<int>(layout.line.groupBytes), 8};
}

template <typename Sample, int samples>
void interleave(const std::uint16_t* const channels[], const Order& order, std::uint8_t* line,
                int width) {
    for (int channel = 0; channel < 4; ++channel) {
        if (order.place[channel] < 0)
            continue;
        const std::uint16_t* from = channels[channel];
        std::uint8_t* to = line + sizeof(Sample) * static_cast<unsigned>(order.place[channel]);
        for (int x = 0; x < width; ++x) {
            const auto sample = static_cast<Sample>(from[x]);
            std::memcpy(to + std::ptrdiff_t{x} * samples * static_cast<int>(sizeof sample), &sample,
                        sizeof sample);
        }
    }
}

template <typename Sample, int samples>
void separate(const std::uint8_t* line, const Order& order, std::uint16_t* const channels[],
              int width) {
    for (int channel = 0; channel < 4; ++channel) {
        if (order.place[channel] < 0)
            continue;
        std::uint16_t* to = channels[channel];
        const std::uint8_t* from =
            line + sizeof(Sample) * static_cast<unsigned>(order.place[channel]);
        for (int x = 0; x < width; ++x) {
            Sample sample;
            std::memcpy(&sample,
                        from + std::ptrdiff_t{x} * samples * static_cast<int>(sizeof sample),
                        sizeof sample);
            to[x] = sample;
        }
    }
}

// By the weights of BT.601; grey stays what it is.
void makeLuma(std::uint16_t* red, const std::uint16_t* green, const std::uint16_t* blue,
              int width) {
    for (int x = 0; x < width; ++x)
        red[x] = static_cast<std::uint16_t>(
            (19595U * red[x] + 38470U * green[x] + 7471U * blue[x] + 32768U) >> 16);
}

} // namespace

bool RgbPacker::knows(const zrLayout& layout, AVPixelFormat format) {
    const bool rgb = layout.bytes.r >= 0 || layout.code == ptRGB48 || layout.code == ptARGB64;
    return rgb && (isGray(format) || hasFlag(format, AV_PIX_FMT_FLAG_RGB)) && hasOwnBytes(format);
}

RgbPacker::RgbPacker(const zrLayout& layout, AVPixelFormat format, int width, int height)
    : m_layout(layout), m_format(format), m_width(width), m_height(height),
      m_samples(4 * static_cast<std::size_t>(width)) {}

void RgbPacker::pack(const AVFrame& picture, CanvasLines canvas) {
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(m_format);
    const bool bigEndian = format.flags & AV_PIX_FMT_FLAG_BE;
    const bool alpha = format.flags & AV_PIX_FMT_FLAG_ALPHA;
    const int colors = format.nb_components - (alpha ? 1 : 0);
    const Order order = orderOf(m_layout);
    const std::uint16_t* channels[4] = {channel(0), channel(colors > 1 ? 1 : 0),
                                        channel(colors > 1 ? 2 : 0), channel(alphaChannel)};
    std::fill_n(channel(alphaChannel), m_width,
                static_cast<std::uint16_t>((1U << order.depth) - 1));
    for (int y = 0; y < m_height; ++y) {
        for (int i = 0; i < format.nb_components; ++i) {
            std::uint16_t* samples = channel(i < colors ? i : alphaChannel);
            readSamples(picture, format.comp[i], bigEndian, y, samples, m_width);
            changeDepth(samples, m_width, format.comp[i].depth, order.depth);
        }
        if (order.depth == 8 && order.samples == 4)
            interleave<std::uint8_t, 4>(channels, order, canvas.line(y), m_width);
        else if (order.depth == 8)
            interleave<std::uint8_t, 3>(channels, order, canvas.line(y), m_width);
        else if (order.samples == 4)
            interleave<std::uint16_t, 4>(channels, order, canvas.line(y), m_width);
        else
            interleave<std::uint16_t, 3>(channels, order, canvas.line(y), m_width);
    }
}

void RgbPacker::unpack(CanvasLines canvas, AVFrame& picture) {
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(m_format);
    const bool bigEndian = format.flags & AV_PIX_FMT_FLAG_BE;
    const bool alpha = format.flags & AV_PIX_FMT_FLAG_ALPHA;
    const int colors = format.nb_components - (alpha ? 1 : 0);
    const Order order = orderOf(m_layout);
    std::uint16_t* channels[4] = {channel(0), channel(1), channel(2), channel(alphaChannel)};
    for (int y = 0; y < m_height; ++y) {
        if (order.place[alphaChannel] < 0)
            std::fill_n(channel(alphaChannel), m_width,
                        static_cast<std::uint16_t>((1U << order.depth) - 1));
        if (order.depth == 8 && order.samples == 4)
            separate<std::uint8_t, 4>(canvas.line(y), order, channels, m_width);
        else if (order.depth == 8)
            separate<std::uint8_t, 3>(canvas.line(y), order, channels, m_width);
        else if (order.samples == 4)
            separate<std::uint16_t, 4>(canvas.line(y), order, channels, m_width);
        else
            separate<std::uint16_t, 3>(canvas.line(y), order, channels, m_width);
        if (colors == 1)
            makeLuma(channel(0), channel(1), channel(2), m_width);
        for (int i = 0; i < format.nb_components; ++i) {
            std::uint16_t* samples = channel(i < colors ? i : alphaChannel);
            changeDepth(samples, m_width, order.depth, format.comp[i].depth);
            writeSamples(samples, picture, format.comp[i], bigEndian, y, m_width);
        }
    }
}

bool RgbPacker::isExact() const {
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(m_format);
    const bool held = !hasFlag(m_format, AV_PIX_FMT_FLAG_ALPHA) || orderOf(m_layout).place[3] >= 0;
    return held && format.comp[0].depth <= orderOf(m_layout).depth;
}
