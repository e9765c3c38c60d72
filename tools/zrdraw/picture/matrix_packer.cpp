#include "picture/matrix_packer.h"

#include "picture/chroma_lines.h"
#include "picture/matrix_lines.h"
#include "picture/rgb_lines.h"
#include "picture/samples.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int alpha = 3;

class MatrixPacker : public Packer {
public:
    MatrixPacker(const zrLayout& layout, const PictureKind& kind, const MatrixNumbers& numbers,
                 int width, int height)
        : m_order(channelOrder(layout)), m_kind(kind), m_format(*av_pix_fmt_desc_get(kind.format)),
          m_numbers(numbers), m_width(width), m_height(height),
          m_columns(AV_CEIL_RSHIFT(width, m_format.log2_chroma_w)),
          m_between(kind.chromaPlace == AVCHROMA_LOC_CENTER ||
                    kind.chromaPlace == AVCHROMA_LOC_TOP ||
                    kind.chromaPlace == AVCHROMA_LOC_BOTTOM),
          m_bytes(buffers * roomOf(width)), m_sums(sumBuffers * roomOf(width)) {}

    void pack(const AVFrame& picture, CanvasLines canvas) override {
        const ChromaLines chroma(picture, m_kind.format);
        std::fill_n(buffer(Alpha), m_width, std::uint8_t{255});
        for (int y = 0; y < m_height; ++y) {
            const std::uint8_t* luma = take(picture, 0, y, buffer(Luma), m_width);
            const std::uint8_t* cb = chromaFor(picture, 1, y, chroma);
            const std::uint8_t* cr = chromaFor(picture, 2, y, chroma);
            toRgb(luma, cb, cr, rgb(0), m_width, m_numbers);
            if (m_format.nb_components > alpha)
                take(picture, alpha, y, buffer(Alpha), m_width);
            weaveChannels({buffer(Red), buffer(Green), buffer(Blue), alphaLine()}, m_order,
                          canvas.line(y), m_width);
        }
    }

    void unpack(CanvasLines canvas, AVFrame& picture) override {
        const ChromaLines chroma(picture, m_kind.format);
        std::fill_n(buffer(Alpha), m_width, std::uint8_t{255});
        for (int c = 0; c < AV_CEIL_RSHIFT(m_height, chroma.shift); ++c) {
            const int first = chroma.first(c), second = first + chroma.step();
            const bool two = chroma.count() == 2 && second < m_height;
            unpackLine(canvas, first, picture, 0);
            if (two)
                unpackLine(canvas, second, picture, 1);
            const RgbLines a = rgb(0), b = rgb(two ? 1 : 0);
            addUp(a.red, b.red, 0);
            addUp(a.green, b.green, 1);
            addUp(a.blue, b.blue, 2);
            std::uint8_t* cb = placeFor(picture, 1, c, buffer(Cb));
            std::uint8_t* cr = placeFor(picture, 2, c, buffer(Cr));
            toChroma({sums(3), sums(4), sums(5)}, cb, cr, m_columns, m_numbers);
            put(cb, picture, 1, c, m_columns);
            put(cr, picture, 2, c, m_columns);
        }
    }

private:
    enum Buffer {
        Red,
        Green,
        Blue,
        Red2,
        Green2,
        Blue2,
        Alpha,
        Luma,
        Cb,
        Cr,
        Far,
        Mixed,
        Wide,
        Wide2,
        buffers
    };
    static constexpr int sumBuffers = 6;
    static constexpr int margin = 32; // for what is read and written beside a line

    static std::size_t roomOf(int width) { return static_cast<std::size_t>(width) + 2 * margin; }
    std::uint8_t* buffer(int index) {
        return m_bytes.data() + static_cast<std::size_t>(index) * roomOf(m_width) + margin;
    }
    std::int16_t* sums(int index) {
        return m_sums.data() + static_cast<std::size_t>(index) * roomOf(m_width) + margin;
    }
    RgbLines rgb(int line) {
        return line == 0 ? RgbLines{buffer(Red), buffer(Green), buffer(Blue)}
                         : RgbLines{buffer(Red2), buffer(Green2), buffer(Blue2)};
    }

    // Null, for what is opaque, where that is faster.
    std::uint8_t* alphaLine() {
        return m_format.nb_components > alpha || m_order.place[alpha] != alpha ? buffer(Alpha)
                                                                               : nullptr;
    }

    bool isInPlace(int component) const { return m_format.comp[component].step == 1; }

    std::uint8_t* placeFor(const AVFrame& picture, int component, int y, std::uint8_t* otherwise) {
        const int plane = m_format.comp[component].plane;
        return isInPlace(component)
                   ? picture.data[plane] + std::ptrdiff_t{picture.linesize[plane]} * y
                   : otherwise;
    }

    // Into the buffer, or where it lies if that will do.
    const std::uint8_t* take(const AVFrame& picture, int component, int y, std::uint8_t* to,
                             int count) {
        if (component != alpha && isInPlace(component))
            return placeFor(picture, component, y, to);
        readSamples(picture, m_format.comp[component], false, y, to, count);
        return to;
    }

    void put(const std::uint8_t* line, AVFrame& picture, int component, int y, int count) {
        if (!isInPlace(component))
            writeSamples(line, picture, m_format.comp[component], false, y, count);
    }

    const std::uint8_t* chromaFor(const AVFrame& picture, int component, int y,
                                  const ChromaLines& chroma) {
        const int near = chroma.of(y);
        const std::uint8_t* line = take(picture, component, near, buffer(Cb), m_columns);
        if (chroma.shift == 1) {
            const int far = beyond(near, y, chroma);
            const std::uint8_t* other = take(picture, component, far, buffer(Far), m_columns);
            mixLines(line, other, buffer(Mixed), m_columns);
            line = buffer(Mixed);
        }
        if (m_columns == m_width)
            return line == buffer(Mixed) || line == buffer(Cb) ? keep(line, component) : line;
        if (line != buffer(Mixed))
            std::copy_n(line, m_columns, buffer(Mixed));
        buffer(Mixed)[m_columns] = buffer(Mixed)[m_columns - 1];
        std::uint8_t* wide = buffer(component == 1 ? Wide : Wide2);
        widenLine(buffer(Mixed), wide, m_width, m_between);
        return wide;
    }

    const std::uint8_t* keep(const std::uint8_t* line, int component) {
        std::uint8_t* kept = buffer(component == 1 ? Wide : Wide2);
        std::copy_n(line, m_width, kept);
        return kept;
    }

    // The line of chroma on the other side of a line of pixels.
    int beyond(int near, int y, const ChromaLines& chroma) const {
        const bool upper = (chroma.fields ? y / 2 : y) % 2 == 0;
        const int far = near + (upper ? -1 : 1) * chroma.step();
        return far < 0 || far >= AV_CEIL_RSHIFT(m_height, 1) ? near : far;
    }

    void unpackLine(CanvasLines canvas, int y, AVFrame& picture, int line) {
        const RgbLines to = rgb(line);
        const bool own = m_format.nb_components > alpha;
        std::uint8_t* opacity = own ? placeFor(picture, alpha, y, buffer(Alpha)) : alphaLine();
        if (own && !m_order.hasAlpha())
            std::fill_n(opacity, m_width, std::uint8_t{255});
        unweaveChannels(canvas.line(y), m_order, {to.red, to.green, to.blue, opacity}, m_width);
        if (own)
            put(opacity, picture, alpha, y, m_width);
        std::uint8_t* luma = placeFor(picture, 0, y, buffer(Luma));
        toLuma(to, luma, m_width, m_numbers);
        put(luma, picture, 0, y, m_width);
    }

    void addUp(const std::uint8_t* first, const std::uint8_t* second, int channel) {
        std::int16_t* lines = sums(channel);
        std::int16_t* result = sums(3 + channel);
        addLines(first, second, lines, m_width);
        if (m_columns == m_width) {
            for (int x = 0; x < m_width; ++x)
                result[x] = static_cast<std::int16_t>(lines[x] * 4);
            return;
        }
        lines[-1] = lines[0];
        lines[m_width] = lines[m_width - 1];
        narrowSums(lines, result, m_width, m_between);
    }

    ChannelOrder m_order;
    PictureKind m_kind;
    const AVPixFmtDescriptor& m_format;
    MatrixNumbers m_numbers;
    int m_width;
    int m_height;
    int m_columns; // of chroma
    bool m_between;
    std::vector<std::uint8_t> m_bytes;
    std::vector<std::int16_t> m_sums;
};

} // namespace

std::unique_ptr<Packer> makeMatrixPacker(const zrLayout& layout, const PictureKind& kind, int width,
                                         int height) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(kind.format);
    if (layout.bytes.r < 0 || !format || format->nb_components < 3 ||
        hasFlag(kind.format, AV_PIX_FMT_FLAG_RGB) || !hasOwnBytes(kind.format) ||
        format->comp[0].depth != 8 || format->log2_chroma_w > 1 || format->log2_chroma_h > 1)
        return nullptr;
    const std::optional<MatrixNumbers> numbers = matrixNumbers(kind.colors);
    if (!numbers)
        return nullptr;
    return std::make_unique<MatrixPacker>(layout, kind, *numbers, width, height);
}
