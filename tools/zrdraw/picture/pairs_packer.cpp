#include "picture/pairs_packer.h"

#include "picture/chroma_lines.h"
#include "picture/samples.h"
#include "picture/v210_lines.h"

#include <libyuv.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {

constexpr int components = 3;

// Lines of ten bits.
struct V210Lines {
    using Sample = std::uint16_t;
    static constexpr int depth = 10;

    void pack(const Sample* y, const Sample* cb, const Sample* cr, std::uint8_t* line,
              int width) const {
        packV210({y, cb, cr}, line, width);
    }
    void unpack(const std::uint8_t* line, Sample* y, Sample* cb, Sample* cr, int width) const {
        unpackV210(line, {y, cb, cr}, width);
    }
};

// Lines of bytes in any order of the pair.
class ByteLines {
public:
    using Sample = std::uint8_t;
    static constexpr int depth = 8;

    explicit ByteLines(const zrPairOrder& order)
        : m_lumaFirst(order.y0 == 0), m_exchanged(order.cr < order.cb) {}

    void pack(const Sample* y, const Sample* cb, const Sample* cr, std::uint8_t* line,
              int width) const {
        if (m_exchanged)
            std::swap(cb, cr);
        const auto packRow = m_lumaFirst ? libyuv::I422ToYUY2 : libyuv::I422ToUYVY;
        packRow(y, 0, cb, 0, cr, 0, line, 0, width, 1);
    }
    void unpack(const std::uint8_t* line, Sample* y, Sample* cb, Sample* cr, int width) const {
        if (m_exchanged)
            std::swap(cb, cr);
        const auto unpackRow = m_lumaFirst ? libyuv::YUY2ToI422 : libyuv::UYVYToI422;
        unpackRow(line, 0, y, 0, cb, 0, cr, 0, width, 1);
    }

private:
    bool m_lumaFirst;
    bool m_exchanged;
};

// The order of the pairs of a packed format of bytes.
const zrPairOrder* orderOf(AVPixelFormat format) {
    const auto* layout =
        std::find_if(std::begin(zrLayouts), std::end(zrLayouts), [format](const zrLayout& row) {
            return row.isPairs() && isMemoryOf(row, format);
        });
    return layout == std::end(zrLayouts) ? nullptr : &layout->pair;
}

// Packed pairs in one order as those in another.
class PairsExchanger : public Packer {
public:
    PairsExchanger(const zrPairOrder& canvas, const zrPairOrder& picture, int width, int height)
        : m_canvas(canvas), m_picture(picture), m_width(width), m_height(height),
          m_samples(components * static_cast<std::size_t>(width)) {}

    bool isExact() const override { return true; }

    void pack(const AVFrame& picture, CanvasLines canvas) override {
        for (int y = 0; y < m_height; ++y)
            exchange(m_picture, lineIn(picture, y), m_canvas, canvas.line(y));
    }
    void unpack(CanvasLines canvas, AVFrame& picture) override {
        for (int y = 0; y < m_height; ++y)
            exchange(m_canvas, canvas.line(y), m_picture, lineIn(picture, y));
    }

private:
    static std::uint8_t* lineIn(const AVFrame& picture, int y) {
        return picture.data[0] + std::ptrdiff_t{picture.linesize[0]} * y;
    }
    void exchange(const ByteLines& in, const std::uint8_t* from, const ByteLines& out,
                  std::uint8_t* to) {
        std::uint8_t *luma = m_samples.data(), *cb = luma + m_width, *cr = cb + m_width;
        in.unpack(from, luma, cb, cr, m_width);
        out.pack(luma, cb, cr, to, m_width);
    }

    ByteLines m_canvas, m_picture;
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_samples;
};

// To and from the depth of the lines by powers of two, as YCbCr of any depth is understood.
template <typename Sample>
void changeScale(Sample* samples, int count, int from, int to) {
    const int full = (1 << to) - 1, left = to - from, right = from - to;
    if (left > 0)
        for (int x = 0; x < count; ++x)
            samples[x] = static_cast<Sample>(samples[x] << left);
    if (right > 0)
        for (int x = 0; x < count; ++x)
            samples[x] =
                static_cast<Sample>(std::min((samples[x] + (1 << right >> 1)) >> right, full));
}

template <typename Sample>
void average(Sample* samples, const Sample* others, int count) {
    for (int x = 0; x < count; ++x)
        samples[x] = static_cast<Sample>((samples[x] + others[x] + 1) >> 1);
}

// Chroma of 4:2:0 stands at both lines that share it, and is the average of both on the way back.
template <class Lines>
class PairsPacker : public Packer {
    using Sample = typename Lines::Sample;

public:
    PairsPacker(const Lines& lines, AVPixelFormat format, int width, int height)
        : m_lines(lines), m_format(format), m_description(*av_pix_fmt_desc_get(format)),
          m_width(width), m_height(height), m_inPlace(isInPlace(m_description)),
          m_samples(buffers * static_cast<std::size_t>(width)) {}

    bool isExact() const override { return m_description.comp[0].depth <= Lines::depth; }

    void pack(const AVFrame& picture, CanvasLines canvas) override {
        const ChromaLines chroma(picture, m_format);
        for (int y = 0; y < m_height; ++y) {
            const int c = chroma.of(y);
            m_lines.pack(take(picture, 0, y), take(picture, 1, c), take(picture, 2, c),
                         canvas.line(y), m_width);
        }
    }

    void unpack(CanvasLines canvas, AVFrame& picture) override {
        const ChromaLines chroma(picture, m_format);
        for (int c = 0; c < AV_CEIL_RSHIFT(m_height, chroma.shift); ++c) {
            Sample* cb = placeFor(picture, 1, c);
            Sample* cr = placeFor(picture, 2, c);
            const int first = chroma.first(c), second = first + chroma.step();
            unpackLine(canvas, first, picture, cb, cr);
            if (chroma.count() == 2 && second < m_height) {
                unpackLine(canvas, second, picture, buffer(3), buffer(4));
                average(cb, buffer(3), columns(1));
                average(cr, buffer(4), columns(1));
            }
            put(cb, picture, 1, c);
            put(cr, picture, 2, c);
        }
    }

private:
    static constexpr int buffers = components + 2; // the chroma of a second line too

    // Whether the samples of the format are those of the lines.
    static bool isInPlace(const AVPixFmtDescriptor& format) {
        return (format.flags & AV_PIX_FMT_FLAG_BE) == 0 &&
               std::all_of(
                   format.comp, format.comp + components,
                   [](const AVComponentDescriptor& component) {
                       return component.depth == Lines::depth && component.shift == 0 &&
                              component.step == int{sizeof(Sample)};
                   });
    }

    int columns(int component) const { return component == 0 ? m_width : (m_width + 1) / 2; }
    bool isBigEndian() const { return (m_description.flags & AV_PIX_FMT_FLAG_BE) != 0; }
    Sample* buffer(int index) {
        return m_samples.data() + static_cast<std::ptrdiff_t>(index) * m_width;
    }

    Sample* lineIn(const AVFrame& picture, int component, int y) const {
        const int plane = m_description.comp[component].plane;
        return reinterpret_cast<Sample*>(picture.data[plane] +
                                         std::ptrdiff_t{picture.linesize[plane]} * y);
    }

    const Sample* take(const AVFrame& picture, int component, int y) {
        if (m_inPlace)
            return lineIn(picture, component, y);
        const AVComponentDescriptor& from = m_description.comp[component];
        readSamples(picture, from, isBigEndian(), y, buffer(component), columns(component));
        changeScale(buffer(component), columns(component), from.depth, Lines::depth);
        return buffer(component);
    }

    Sample* placeFor(AVFrame& picture, int component, int y) {
        return m_inPlace ? lineIn(picture, component, y) : buffer(component);
    }

    void put(Sample* samples, AVFrame& picture, int component, int y) const {
        if (m_inPlace)
            return;
        const AVComponentDescriptor& to = m_description.comp[component];
        changeScale(samples, columns(component), Lines::depth, to.depth);
        writeSamples(samples, picture, to, isBigEndian(), y, columns(component));
    }

    void unpackLine(CanvasLines canvas, int y, AVFrame& picture, Sample* cb, Sample* cr) {
        Sample* luma = placeFor(picture, 0, y);
        m_lines.unpack(canvas.line(y), luma, cb, cr, m_width);
        put(luma, picture, 0, y);
    }

    Lines m_lines;
    AVPixelFormat m_format;
    const AVPixFmtDescriptor& m_description;
    int m_width;
    int m_height;
    bool m_inPlace;
    std::vector<Sample> m_samples;
};

} // namespace

std::unique_ptr<Packer> makePairsPacker(const zrLayout& layout, AVPixelFormat format, int width,
                                        int height) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    if (!description || (description->flags & AV_PIX_FMT_FLAG_RGB) != 0 ||
        description->nb_components != components || description->log2_chroma_w != 1 ||
        description->log2_chroma_h > 1 || !hasOwnBytes(format))
        return nullptr;
    const zrPairOrder* order = orderOf(format);
    if (order && layout.isPairs())
        return std::make_unique<PairsExchanger>(layout.pair, *order, width, height);
    if (layout.code == ptV210)
        return std::make_unique<PairsPacker<V210Lines>>(V210Lines(), format, width, height);
    if (layout.isPairs() && description->comp[0].depth <= ByteLines::depth)
        return std::make_unique<PairsPacker<ByteLines>>(ByteLines(layout.pair), format, width,
                                                        height);
    return nullptr;
}
