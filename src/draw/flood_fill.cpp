// The four-connected flood fill, breadth first.
#include "draw/run.h"
#include "pixel/byte_order.h"

#include <array>
#include <cmath>
#include <vector>

namespace {

// Which pixels are near enough to the seed. Alpha is not compared.
class Match {
public:
    Match(ZRPixel& pixel, const Rgba& seed, double tolerance)
        : m_pixel(pixel), m_seed(seed), m_tolerance(tolerance), m_plain(isPlainRgba32(pixel)),
          m_order(byteOrderOf(pixel.pixelType)) {
        for (std::size_t byte = 0; byte < unitValues.size(); ++byte) {
            const double value = unitValues[byte];
            m_near[byte] = static_cast<unsigned char>(isNear(seed.r, value) * nearR +
                                                      isNear(seed.g, value) * nearG +
                                                      isNear(seed.b, value) * nearB);
        }
    }

    // On a canvas of plain bytes by table, with the answer that reading the pixel gives.
    bool operator()(int x, int y) const {
        if (m_plain) {
            const auto* bytes = reinterpret_cast<const unsigned char*>(wordAddress(m_pixel, x, y));
            return (m_near[bytes[m_order.r]] & nearR) != 0 &&
                   (m_near[bytes[m_order.g]] & nearG) != 0 &&
                   (m_near[bytes[m_order.b]] & nearB) != 0;
        }
        Rgba c{};
        return readPixel(m_pixel, x, y, c) && isNear(m_seed.r, c.r) && isNear(m_seed.g, c.g) &&
               isNear(m_seed.b, c.b);
    }

private:
    static constexpr int nearR = 1, nearG = 2, nearB = 4;

    bool isNear(double seed, double value) const { return std::fabs(seed - value) <= m_tolerance; }

    ZRPixel& m_pixel;
    Rgba m_seed;
    double m_tolerance;
    bool m_plain;
    zrByteOrder m_order;
    std::array<unsigned char, 256> m_near{};
};

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
    withPlotter(*this,
                [&](const auto& plotter) { Flood(plotter, columns, lines, match).from(x, y); });
    return 0;
}
