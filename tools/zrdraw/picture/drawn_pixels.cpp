#include "picture/drawn_pixels.h"

#include "picture/chroma_lines.h"
#include "zrdraw/v210.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

using Part = DrawnPixels::Part;

// Pixels of whole bytes.
template <int bytes, Part part>
void comparePixels(const std::uint8_t* a, const std::uint8_t* b, std::uint8_t* parts, int width) {
    for (int x = 0; x < width; ++x)
        parts[x] = std::memcmp(a + bytes * x, b + bytes * x, bytes) != 0 ? part : Part::None;
}

void put(std::uint8_t* parts, int x, int width, unsigned part) {
    if (x < width)
        parts[x] = static_cast<std::uint8_t>(parts[x] | part);
}

void comparePairs(const zrPairOrder& order, const std::uint8_t* a, const std::uint8_t* b,
                  std::uint8_t* parts, int width) {
    std::fill_n(parts, width, Part::None);
    const auto differ = [&](int place) { return a[place] != b[place]; };
    for (int x = 0; x < width; x += 2, a += 4, b += 4) {
        const unsigned chroma = differ(order.cb) || differ(order.cr) ? Part::Chroma : Part::None;
        put(parts, x, width, chroma | (differ(order.y0) ? Part::Luma : Part::None));
        put(parts, x + 1, width, chroma | (differ(order.y1) ? Part::Luma : Part::None));
    }
}

void compareV210(const std::uint8_t* a, const std::uint8_t* b, std::uint8_t* parts, int width) {
    constexpr int groupPixels = zrV210::groupPixels;
    constexpr std::size_t words = zrV210::groupBytes / zrV210::wordBytes;
    std::fill_n(parts, width, Part::None);
    for (int x = 0; x < width; x += groupPixels, a += zrV210::groupBytes, b += zrV210::groupBytes) {
        std::array<std::uint32_t, words> before, after;
        std::memcpy(before.data(), a, sizeof before);
        std::memcpy(after.data(), b, sizeof after);
        if (before == after)
            continue;
        const auto differs = [&](const zrV210::Place& place) {
            return ((before[place.word] ^ after[place.word]) >> place.bit & zrV210::sampleMask) !=
                   0;
        };
        for (unsigned i = 0; i < zrV210::groupPixels; ++i) {
            const bool chroma = differs(zrV210::cb[i / 2]) || differs(zrV210::cr[i / 2]);
            put(parts, x + static_cast<int>(i), width,
                (differs(zrV210::luma[i]) ? Part::Luma : Part::None) |
                    (chroma ? Part::Chroma : Part::None));
        }
    }
}

// Two samples of twelve bits in three bytes.
void compareMosaic(const std::uint8_t* a, const std::uint8_t* b, std::uint8_t* parts, int width) {
    for (int x = 0; x < width; x += 2, a += 3, b += 3) {
        parts[x] = a[0] != b[0] || (a[1] ^ b[1]) >> 4 != 0 ? Part::All : Part::None;
        parts[x + 1] = ((a[1] ^ b[1]) & 0xF) != 0 || a[2] != b[2] ? Part::All : Part::None;
    }
}

// Where the alpha of a pixel begins, and its bytes; none in most layouts.
struct AlphaPlace {
    int offset;
    int bytes;
    std::uint16_t opaque;
};

AlphaPlace alphaOf(const zrLayout& layout) {
    if (layout.code == ptARGB64)
        return {0, 2, 0xFFFF};
    if (layout.code == ptRGBAHalf)
        return {6, 2, 0x3C00};
    return {layout.bytes.a, layout.bytes.a < 0 ? 0 : 1, 0xFF};
}

constexpr std::uint16_t untouched =
    1; // drawing makes 0, or more than what is left out as too faint

void putAlpha(const AlphaPlace& place, std::uint8_t* pixel, std::uint16_t alpha) {
    std::memcpy(pixel + place.offset, &alpha, static_cast<std::size_t>(place.bytes));
}

int wholeBytes(const AVComponentDescriptor& component) {
    return (component.shift + component.depth + 7) / 8;
}

} // namespace

bool hasAlpha(const zrLayout& layout) {
    return alphaOf(layout).bytes != 0;
}

void markUntouched(const zrLayout& layout, std::uint8_t* line, int width) {
    const AlphaPlace place = alphaOf(layout);
    const unsigned bytes = layout.line.groupBytes;
    for (int x = 0; x < width; ++x, line += bytes)
        putAlpha(place, line, untouched);
}

DrawnPixels::DrawnPixels(const CanvasShape& shape)
    : m_shape(shape),
      m_parts(static_cast<std::size_t>(shape.width) * static_cast<std::size_t>(shape.height)),
      m_isDrawn(static_cast<std::size_t>(shape.height)),
      m_marked(static_cast<std::size_t>(shape.lineBytes)),
      m_touched(static_cast<std::size_t>(shape.width)) {}

bool DrawnPixels::findInLine(const std::uint8_t* before, const std::uint8_t* after, int y) {
    std::uint8_t& drawn = m_isDrawn[static_cast<std::size_t>(y)];
    drawn = std::memcmp(before, after, static_cast<std::size_t>(m_shape.lineBytes)) != 0;
    if (!drawn)
        return false;
    const zrLayout& layout = *m_shape.layout;
    const int width = m_shape.width;
    if (layout.isPairs())
        comparePairs(layout.pair, before, after, line(y), width);
    else if (layout.code == ptV210)
        compareV210(before, after, line(y), width);
    else if (layout.isMosaic())
        compareMosaic(before, after, line(y), width);
    else if (layout.code == ptUV8)
        comparePixels<2, Chroma>(before, after, line(y), width);
    else if (layout.code == ptUV16)
        comparePixels<4, Chroma>(before, after, line(y), width);
    else if (layout.line.groupBytes == 3)
        comparePixels<3, All>(before, after, line(y), width);
    else if (layout.line.groupBytes == 4)
        comparePixels<4, All>(before, after, line(y), width);
    else if (layout.line.groupBytes == 6)
        comparePixels<6, All>(before, after, line(y), width);
    else
        comparePixels<8, All>(before, after, line(y), width);
    return true;
}

void DrawnPixels::find(CanvasLines before, CanvasLines after) {
    for (int y = 0; y < m_shape.height; ++y)
        findInLine(before.line(y), after.line(y), y);
}

void DrawnPixels::findByAlpha(CanvasLines before, CanvasLines after) {
    const AlphaPlace place = alphaOf(*m_shape.layout);
    const std::size_t bytes = m_shape.layout->line.groupBytes;
    for (int y = 0; y < m_shape.height; ++y) {
        std::copy_n(before.line(y), m_shape.lineBytes, m_marked.begin());
        markUntouched(*m_shape.layout, m_marked.data(), m_shape.width);
        if (!findInLine(m_marked.data(), after.line(y), y))
            continue;
        std::uint8_t* to = before.line(y);
        const std::uint8_t* from = after.line(y);
        for (int x = 0; x < m_shape.width; ++x, to += bytes, from += bytes) {
            if (line(y)[x] == None)
                continue;
            std::memcpy(to, from, bytes);
            putAlpha(place, to, place.opaque);
        }
    }
}

// Samples of a picture that stand at equal distances in a plane.
struct DrawnPixels::Samples {
    int plane;
    int offset; // bytes
    int bytes;
    int step; // bytes
    int widthShift;
    Part touchedBy;
    bool touched = false; // any of the line
};

void DrawnPixels::keepOthers(const AVFrame& source, AVFrame& target,
                             const PictureKind& kind) const {
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(kind.format);
    const bool colored = (format.flags & AV_PIX_FMT_FLAG_RGB) != 0 || format.nb_components <= 2;
    const bool packed = colored && (format.flags & AV_PIX_FMT_FLAG_PLANAR) == 0;
    const bool alpha = (format.flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
    const int count = packed ? 1 : format.nb_components;
    const ChromaLines chroma(target, kind.format);
    for (int i = 0; i < count; ++i) {
        const AVComponentDescriptor& component = format.comp[i];
        const bool isChroma = !colored && (i == 1 || i == 2);
        const bool isAlpha = alpha && i == format.nb_components - 1;
        Samples samples{component.plane,
                        packed ? 0 : component.offset,
                        packed ? component.step : wholeBytes(component),
                        component.step,
                        isChroma ? format.log2_chroma_w : 0,
                        colored || isAlpha ? All
                        : isChroma         ? Chroma
                                           : Luma};
        // Cb and Cr side by side count as one sample.
        if (isChroma && i == 1 && format.comp[2].plane == component.plane &&
            component.step == 2 * samples.bytes) {
            samples.offset = 0;
            samples.bytes = component.step;
            ++i;
        }
        const int lines = isChroma ? AV_CEIL_RSHIFT(m_shape.height, chroma.shift) : m_shape.height;
        for (int y = 0; y < lines; ++y) {
            if (isChroma)
                findTouched(samples, chroma.first(y), chroma.step(), chroma.count());
            else
                findTouched(samples, y, 1, 1);
            keepLine(samples,
                     source.data[component.plane] +
                         std::ptrdiff_t{y} * source.linesize[component.plane],
                     target.data[component.plane] +
                         std::ptrdiff_t{y} * target.linesize[component.plane]);
        }
    }
}

// Of one line of samples, by the lines of pixels that it covers.
void DrawnPixels::findTouched(Samples& samples, int first, int step, int count) const {
    samples.touched = false;
    for (int y = first; y < first + count * step && y < m_shape.height; y += step) {
        if (!m_isDrawn[static_cast<std::size_t>(y)])
            continue;
        if (!samples.touched)
            std::fill(m_touched.begin(), m_touched.end(), None);
        samples.touched = true;
        const std::uint8_t* parts = line(y);
        for (int x = 0; x < m_shape.width; ++x) {
            std::uint8_t& touched = m_touched[static_cast<std::size_t>(x >> samples.widthShift)];
            touched = static_cast<std::uint8_t>(touched | (parts[x] & samples.touchedBy));
        }
    }
}

void DrawnPixels::keepLine(const Samples& samples, const std::uint8_t* from,
                           std::uint8_t* to) const {
    const int count = AV_CEIL_RSHIFT(m_shape.width, samples.widthShift);
    from += samples.offset;
    to += samples.offset;
    if (!samples.touched && samples.bytes == samples.step) {
        std::memcpy(to, from,
                    static_cast<std::size_t>(count) * static_cast<std::size_t>(samples.bytes));
        return;
    }
    for (int x = 0; x < count; ++x)
        if (!samples.touched || !m_touched[static_cast<std::size_t>(x)])
            std::memcpy(to + std::ptrdiff_t{x} * samples.step,
                        from + std::ptrdiff_t{x} * samples.step,
                        static_cast<std::size_t>(samples.bytes));
}
