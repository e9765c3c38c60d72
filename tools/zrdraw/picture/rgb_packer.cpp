#include "picture/rgb_packer.h"

#include "picture/pixel_formats.h"
#include "picture/rgb_lines.h"
#include "picture/samples.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <vector>

namespace {

constexpr int alphaChannel = 3;

template <typename Sample>
void swapBytes(Sample* samples, int count) {
    if constexpr (sizeof(Sample) == 2)
        for (int x = 0; x < count; ++x)
            samples[x] = __builtin_bswap16(samples[x]);
}

// By the weights of BT.601; grey stays what it is.
template <typename Sample>
void makeLuma(Sample* red, const Sample* green, const Sample* blue, int width) {
    for (int x = 0; x < width; ++x)
        red[x] = static_cast<Sample>(
            (19595U * red[x] + 38470U * green[x] + 7471U * blue[x] + 32768U) >> 16);
}

// How a format stands to layouts with such samples.
template <typename Sample>
struct Shape {
    explicit Shape(AVPixelFormat pixels)
        : format(*av_pix_fmt_desc_get(pixels)), alpha((format.flags & AV_PIX_FMT_FLAG_ALPHA) != 0),
          colors(format.nb_components - (alpha ? 1 : 0)),
          bigEndian((format.flags & AV_PIX_FMT_FLAG_BE) != 0) {
        constexpr int bytes = sizeof(Sample);
        const AVComponentDescriptor& first = format.comp[0];
        whole = first.depth == 8 * bytes;
        inPlace = whole && first.step == bytes && (bytes == 1 || !bigEndian);
        const bool packed = whole && colors == 3 && (format.flags & AV_PIX_FMT_FLAG_PLANAR) == 0;
        samples = packed ? first.step / bytes : 0;
    }

    int channelOf(int component) const { return component < colors ? component : alphaChannel; }

    const AVPixFmtDescriptor& format;
    bool alpha;
    int colors; // components of colour
    bool bigEndian;
    bool whole;   // samples fill their bytes
    bool inPlace; // lines of samples are lines of the picture
    int samples;  // of a packed pixel, else 0
};

template <typename Sample>
class RgbPacker : public Packer {
    static constexpr int depth = 8 * sizeof(Sample);
    static constexpr Sample opaque = static_cast<Sample>((1U << depth) - 1);

public:
    RgbPacker(const zrLayout& layout, AVPixelFormat format, int width, int height)
        : m_order(channelOrder(layout)), m_shape(format), m_width(width), m_height(height),
          m_samples(buffers * static_cast<std::size_t>(width)),
          m_words(static_cast<std::size_t>(width)) {}

    bool isExact() const override {
        const bool held = !m_shape.alpha || m_order.hasAlpha();
        return held && m_shape.format.comp[0].depth <= depth;
    }

    void pack(const AVFrame& picture, CanvasLines canvas) override {
        std::fill_n(buffer(alphaChannel), m_width, opaque);
        for (int y = 0; y < m_height; ++y) {
            const Lines<Sample> channels = take(picture, y);
            weave(inOrder(channels, m_order), m_order.samples,
                  reinterpret_cast<Sample*>(canvas.line(y)), m_width);
        }
    }

    void unpack(CanvasLines canvas, AVFrame& picture) override {
        std::fill_n(buffer(alphaChannel), m_width, opaque);
        for (int y = 0; y < m_height; ++y) {
            const Lines<Sample> channels = placesFor(picture, y);
            unweave(reinterpret_cast<const Sample*>(canvas.line(y)), m_order.samples,
                    inOrder(channels, m_order), m_width);
            put(channels, picture, y);
        }
    }

private:
    static constexpr int dropped = 4; // for what the format does not have
    static constexpr int buffers = 5;

    Sample* buffer(int index) {
        return m_samples.data() + static_cast<std::ptrdiff_t>(index) * m_width;
    }
    Sample* lineIn(const AVFrame& picture, int component, int y) const {
        const int plane = m_shape.format.comp[component].plane;
        return reinterpret_cast<Sample*>(picture.data[plane] +
                                         std::ptrdiff_t{picture.linesize[plane]} * y);
    }

    // Of red, green, blue and alpha; grey is all of the first three.
    Lines<Sample> take(const AVFrame& picture, int y) {
        Lines<Sample> channels{buffer(0), buffer(1), buffer(2), buffer(alphaChannel)};
        const AVPixFmtDescriptor& format = m_shape.format;
        if (m_shape.samples != 0) {
            unweave(lineIn(picture, 0, y), m_shape.samples, packedChannels(channels), m_width);
            for (int i = 0; i < format.nb_components && m_shape.bigEndian; ++i)
                swapBytes(buffer(m_shape.channelOf(i)), m_width);
            return channels;
        }
        for (int i = 0; i < format.nb_components; ++i) {
            Sample*& line = channels[static_cast<unsigned>(m_shape.channelOf(i))];
            if (m_shape.inPlace)
                line = lineIn(picture, i, y);
            else
                read(picture, i, y, line);
        }
        if (m_shape.colors == 1)
            channels[1] = channels[2] = channels[0];
        return channels;
    }

    Lines<Sample> placesFor(const AVFrame& picture, int y) {
        Lines<Sample> channels{buffer(0), buffer(1), buffer(2),
                               buffer(m_shape.alpha ? alphaChannel : dropped)};
        if (m_shape.inPlace && m_shape.colors == 3)
            for (int i = 0; i < m_shape.format.nb_components; ++i)
                channels[static_cast<unsigned>(m_shape.channelOf(i))] = lineIn(picture, i, y);
        if (m_shape.alpha && !m_order.hasAlpha())
            std::fill_n(channels[alphaChannel], m_width, opaque);
        return channels;
    }

    void put(const Lines<Sample>& channels, AVFrame& picture, int y) {
        const AVPixFmtDescriptor& format = m_shape.format;
        if (m_shape.samples != 0) {
            for (int i = 0; i < format.nb_components && m_shape.bigEndian; ++i)
                swapBytes(buffer(m_shape.channelOf(i)), m_width);
            weave(packedChannels(channels), m_shape.samples, lineIn(picture, 0, y), m_width);
            return;
        }
        if (m_shape.inPlace && m_shape.colors == 3)
            return;
        if (m_shape.colors == 1)
            makeLuma(channels[0], channels[1], channels[2], m_width);
        for (int i = 0; i < format.nb_components; ++i)
            write(channels[static_cast<unsigned>(m_shape.channelOf(i))], picture, i, y);
    }

    // In the order of a packed pixel.
    Lines<Sample> packedChannels(const Lines<Sample>& channels) {
        Lines<Sample> samples{buffer(dropped), buffer(dropped), buffer(dropped), buffer(dropped)};
        for (int i = 0; i < m_shape.format.nb_components; ++i)
            samples[static_cast<unsigned>(m_shape.format.comp[i].offset) / sizeof(Sample)] =
                channels[static_cast<unsigned>(m_shape.channelOf(i))];
        return samples;
    }

    // Where words of the picture need no more than another depth.
    std::uint16_t* wordsIn(const AVFrame& picture, const AVComponentDescriptor& component, int y) {
        const bool words = component.depth > 8 && component.step == 2 && component.shift == 0;
        return words && !m_shape.bigEndian
                   ? reinterpret_cast<std::uint16_t*>(
                         picture.data[component.plane] +
                         std::ptrdiff_t{picture.linesize[component.plane]} * y)
                   : nullptr;
    }

    void read(const AVFrame& picture, int component, int y, Sample* line) {
        const AVComponentDescriptor& from = m_shape.format.comp[component];
        const std::uint16_t* words = wordsIn(picture, from, y);
        if (!words) {
            readSamples(picture, from, m_shape.bigEndian, y, m_words.data(), m_width);
            words = m_words.data();
        }
        changeDepth(words, from.depth, line, depth, m_width);
    }

    void write(const Sample* line, AVFrame& picture, int component, int y) {
        const AVComponentDescriptor& to = m_shape.format.comp[component];
        std::uint16_t* words = wordsIn(picture, to, y);
        std::uint16_t* changed = words ? words : m_words.data();
        if constexpr (sizeof(Sample) == sizeof(std::uint16_t)) {
            changeDepth(line, depth, changed, to.depth, m_width);
        } else {
            std::copy_n(line, m_width, m_words.data());
            changeDepth(m_words.data(), depth, changed, to.depth, m_width);
        }
        if (!words)
            writeSamples(changed, picture, to, m_shape.bigEndian, y, m_width);
    }

    ChannelOrder m_order;
    Shape<Sample> m_shape;
    int m_width;
    int m_height;
    std::vector<Sample> m_samples;
    std::vector<std::uint16_t> m_words;
};

} // namespace

std::unique_ptr<Packer> makeRgbPacker(const zrLayout& layout, AVPixelFormat format, int width,
                                      int height) {
    if (!hasOwnBytes(format) || !(isGray(format) || hasFlag(format, AV_PIX_FMT_FLAG_RGB)))
        return nullptr;
    if (layout.bytes.r >= 0)
        return std::make_unique<RgbPacker<std::uint8_t>>(layout, format, width, height);
    if (layout.code == ptRGB48 || layout.code == ptARGB64)
        return std::make_unique<RgbPacker<std::uint16_t>>(layout, format, width, height);
    return nullptr;
}
