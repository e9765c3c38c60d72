// The four-connected flood fill, breadth first.
#include "draw/flood_spans.h"
#include "draw/run.h"
#include "pixel/byte_order.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

#include <immintrin.h>

namespace {

// Which pixels are near enough to the seed. Alpha is not compared.
class Match {
public:
    Match(ZRPixel& pixel, const Rgba& seed, double tolerance)
        : m_pixel(pixel), m_seed(seed), m_tolerance(tolerance) {}

    bool operator()(int x, int y) const {
        Rgba c{};
        return readPixel(m_pixel, x, y, c) && isNear(m_seed.r, c.r) && isNear(m_seed.g, c.g) &&
               isNear(m_seed.b, c.b);
    }

    std::uint64_t operator()(int x, int y, int count) const {
        std::uint64_t bits = 0;
        for (int i = 0; i < count; ++i)
            bits |= std::uint64_t{(*this)(x + i, y)} << i;
        return bits;
    }

    bool isNear(double seed, double value) const { return std::fabs(seed - value) <= m_tolerance; }

    const Rgba& seed() const { return m_seed; }

private:
    ZRPixel& m_pixel;
    Rgba m_seed;
    double m_tolerance;
};

// The same on a canvas of plain bytes, for which each channel has a range of values.
class ByteMatch {
public:
    ByteMatch(const ZRPixel& pixel, const Match& match) : m_pixel(pixel) {
        const zrByteOrder& order = byteOrderOf(pixel.pixelType);
        const Rgba& seed = match.seed();
        std::memset(m_span, 0xFF, sizeof m_span); // alpha
        for (const auto& [at, value] :
             {std::pair{order.r, seed.r}, {order.g, seed.g}, {order.b, seed.b}})
            setRange(at, value, match);
    }

    std::uint64_t operator()(int x, int y, int count) const {
        const char* at = wordAddress(m_pixel, x, y);
        const __m128i least = _mm_set1_epi32(loadAs<int>(m_least));
        const __m128i span = _mm_set1_epi32(loadAs<int>(m_span));
        std::uint64_t bits = 0;
        int i = 0;
        for (; i + 4 <= count; i += 4, at += sizeof least)
            bits |= std::uint64_t{near(loadAs<__m128i>(at), least, span)} << i;
        for (; i < count; ++i, at += 4)
            bits |= std::uint64_t{near(_mm_set1_epi32(loadAs<int>(at)), least, span) & 1U} << i;
        return m_isEmpty ? 0 : bits;
    }

private:
    // Values are near from one on up to another, as a distance grows in both directions.
    void setRange(signed char at, double seed, const Match& match) {
        const auto isNear = [&](double value) { return match.isNear(seed, value); };
        const auto first = std::find_if(unitValues.begin(), unitValues.end(), isNear);
        const auto end = std::find_if_not(first, unitValues.end(), isNear);
        m_isEmpty = m_isEmpty || first == end;
        m_least[at] = static_cast<unsigned char>(first - unitValues.begin());
        m_span[at] = static_cast<unsigned char>(end - first - 1);
    }

    // A bit for each of four pixels.
    static unsigned int near(__m128i pixels, __m128i least, __m128i span) {
        const __m128i above = _mm_sub_epi8(pixels, least);
        const __m128i within = _mm_cmpeq_epi8(_mm_min_epu8(above, span), above);
        const __m128i all = _mm_cmpeq_epi32(within, _mm_set1_epi32(-1));
        return static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(all)));
    }

    const ZRPixel& m_pixel;
    unsigned char m_least[4] = {}, m_span[4];
    bool m_isEmpty = false;
};

// Whether what a pixel reads is not changed by writes of others.
bool readsAlone(const ZRPixel& pixel) {
    if (!linesAreApart(pixel))
        return false;
    if (const auto* draw = exactly<CDrawRGB24>(pixel))
        return isRgb24(pixel.pixelType) && isDirect(*draw, true);
    return isPlainRgba32(pixel) || (pixel.pixelType == ptRGB48 && isExactly<CDrawRGB48>(pixel)) ||
           (pixel.pixelType == ptARGB64 && isExactly<CDrawARGB64>(pixel)) ||
           (pixel.pixelType == ptRGBHalf48 && isExactly<CDrawRGBHalf48>(pixel)) ||
           (pixel.pixelType == ptRGBAHalf && isExactly<CDrawRGBAHalf>(pixel));
}

template <typename Plotter>
class Flood {
public:
    Flood(const Plotter& plotter, int columns, int lines, const Match& match)
        : m_plotter(plotter), m_columns(columns), m_lines(lines), m_match(match),
          m_entered(static_cast<std::size_t>(columns) * static_cast<std::size_t>(lines)) {}

    // Pixels at one distance from the start are a frontier, and visiting them in turn collects the
    // next one. The order is that of a first-in, first-out queue, of which two frontiers are kept.
    void from(int x, int y) {
        std::vector<_POINT> frontier;
        for (enter(x, y); !m_next.empty();) {
            frontier.swap(m_next);
            m_next.clear();
            for (const _POINT& at : frontier)
                visit(at.x, at.y);
        }
    }

private:
    void visit(int x, int y) {
        if (!m_match(x, y))
            return;
        m_plotter.put(x, y);
        if (x + 1 < m_columns)
            enter(x + 1, y);
        if (x > 0)
            enter(x - 1, y);
        if (y + 1 < m_lines)
            enter(x, y + 1);
        if (y > 0)
            enter(x, y - 1);
    }

    // A pixel is marked when it enters, so that none stands in a frontier twice.
    void enter(int x, int y) {
        unsigned char& mark =
            m_entered[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_columns) +
                      static_cast<std::size_t>(x)];
        if (mark == 0) {
            mark = 1;
            m_next.push_back({x, y});
        }
    }

    const Plotter& m_plotter;
    int m_columns, m_lines;
    const Match& m_match;
    std::vector<unsigned char> m_entered;
    std::vector<_POINT> m_next;
};

} // namespace

int ZRDraw::Fill(int x, int y, double tolerance) {
    const int columns = static_cast<int>(width);
    const int lines = static_cast<int>(height);
    if (columns < 1 || lines < 1)
        return -1;
    x = pullEdge(x, width);
    y = pullEdge(y, height);
    if (x < 0 || y < 0 || x > columns || y > lines)
        return -1;
    if (canvas == nullptr && readsUntested(*this))
        return -1;
    Rgba seed{};
    if (!readPixel(*this, x, y, seed))
        return -1;
    const Match match(*this, seed, tolerance < 0 ? 0.0 : tolerance);
    withPlotter(*this, [&](const auto& plotter) {
        const auto fill = [&](int left, int line, int count) { plotter.run(left, line, count); };
        if (!readsAlone(*this))
            Flood(plotter, columns, lines, match).from(x, y);
        else if (isRgb32(pixelType))
            floodBySpans(ByteMatch(*this, match), columns, lines, x, y, fill);
        else
            floodBySpans(match, columns, lines, x, y, fill);
    });
    return 0;
}
