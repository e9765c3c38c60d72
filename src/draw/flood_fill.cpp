// The four-connected flood fill, breadth first.
#include "draw/run.h"
#include "pixel/byte_order.h"
#include "span/bit_runs.h"
#include "span/match_words.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>
#include <vector>

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

// The same on a canvas of plain bytes. Values are near from one on up to another, as a distance
// grows in both directions.
class ByteMatch {
public:
    ByteMatch(const ZRPixel& pixel, const Match& match) : m_pixel(pixel) {
        const zrByteOrder& order = byteOrderOf(pixel.pixelType);
        const Rgba& seed = match.seed();
        m_ranges.span[order.a] = 0xFF;
        for (const auto& [at, value] :
             {std::pair{order.r, seed.r}, {order.g, seed.g}, {order.b, seed.b}}) {
            const auto isNear = [&, of = value](double other) { return match.isNear(of, other); };
            const auto* first = std::find_if(unitValues.begin(), unitValues.end(), isNear);
            const auto* end = std::find_if_not(first, unitValues.end(), isNear);
            m_isEmpty = m_isEmpty || first == end;
            m_ranges.least[at] = static_cast<unsigned char>(first - unitValues.begin());
            m_ranges.span[at] = static_cast<unsigned char>(end - first - 1);
        }
    }

    std::uint64_t operator()(int x, int y, int count) const {
        return m_isEmpty ? 0 : matchWords(wordAddress(m_pixel, x, y), count, m_ranges);
    }

private:
    const ZRPixel& m_pixel;
    ByteRanges m_ranges{};
    bool m_isEmpty = false;
};

// Where what a pixel reads depends on that pixel alone, the region is the same in whatever order it
// is filled: by runs then, fill(x, y, count).
template <typename Match, typename Fill>
void floodBySpans(const Match& match, int columns, int lines, int x, int y, Fill fill) {
    struct Span {
        int begin, end, y; // where there may be more
    };
    BitRuns candidates(match, columns, lines); // that are not filled yet
    std::vector<Span> spans{{x, x + 1, y}};
    while (!spans.empty()) {
        const Span span = spans.back();
        spans.pop_back();
        for (int at = candidates.next(span.begin, span.y); at < span.end;
             at = candidates.next(at, span.y)) {
            const int begin = candidates.beginOf(at, span.y);
            const int end = candidates.endOf(at, span.y);
            candidates.remove(begin, end, span.y);
            fill(begin, span.y, end - begin);
            if (span.y > 0)
                spans.push_back({begin, end, span.y - 1});
            if (span.y + 1 < lines)
                spans.push_back({begin, end, span.y + 1});
            at = end;
        }
    }
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
        if constexpr (std::decay_t<decltype(plotter)>::readsAlone) {
            const auto fill = [&](int left, int line, int count) {
                plotter.run(left, line, count);
            };
            if (linesAreApart(*this) && isRgb32(pixelType))
                return floodBySpans(ByteMatch(*this, match), columns, lines, x, y, fill);
            if (linesAreApart(*this))
                return floodBySpans(match, columns, lines, x, y, fill);
        }
        Flood(plotter, columns, lines, match).from(x, y);
    });
    return 0;
}
