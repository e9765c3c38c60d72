// The four-connected flood fill, breadth first.
#include <cmath>
#include <vector>

#include "zrdraw/zrdraw.h"

namespace {

struct Color {
    double r, g, b;
};

class Flood {
public:
    Flood(ZRDraw& draw, int columns, int lines, const Color& seed, double tolerance)
        : m_draw(draw), m_columns(columns), m_lines(lines), m_seed(seed), m_tolerance(tolerance),
          m_entered(static_cast<std::size_t>(columns) * static_cast<std::size_t>(lines)) {}

    // Pixels at one distance from the start are a frontier, and visiting them in turn collects the
    // next one. The order is that of a first-in, first-out queue, of which two frontiers are kept.
    void from(int x, int y) {
        enter(x, y);
        while (!m_next.empty()) {
            std::vector<_POINT> frontier;
            frontier.swap(m_next);
            for (const _POINT& at : frontier)
                visit(at.x, at.y);
        }
    }

private:
    void visit(int x, int y) {
        if (!matches(x, y))
            return;
        m_draw.PutPixel(x, y, true);
        enter(x + 1, y);
        enter(x - 1, y);
        enter(x, y + 1);
        enter(x, y - 1);
    }

    // A pixel is marked when it enters, so that none stands in a frontier twice.
    void enter(int x, int y) {
        if (x < 0 || y < 0 || x >= m_columns || y >= m_lines)
            return;
        unsigned char& mark =
            m_entered[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_columns) +
                      static_cast<std::size_t>(x)];
        if (mark != 0)
            return;
        mark = 1;
        m_next.push_back({x, y});
    }

    bool matches(int x, int y) {
        Color c{};
        double alpha = 0.0;
        return m_draw.GetPixelRGBA(x, y, c.r, c.g, c.b, alpha) == 0 &&
               std::fabs(m_seed.r - c.r) <= m_tolerance &&
               std::fabs(m_seed.g - c.g) <= m_tolerance && std::fabs(m_seed.b - c.b) <= m_tolerance;
    }

    ZRDraw& m_draw;
    int m_columns, m_lines;
    Color m_seed;
    double m_tolerance;
    std::vector<unsigned char> m_entered;
    std::vector<_POINT> m_next;
};

} // namespace

int ZRDraw::Fill(int x, int y, double tolerance) {
    const int columns = static_cast<int>(width);
    const int lines = static_cast<int>(height);
    if (columns < 1 || lines < 1)
        return -1;
    x = x == columns ? columns - 1 : x;
    y = y == lines ? lines - 1 : y;
    if (x < 0 || y < 0 || x > columns || y > lines)
        return -1;
    Color seed{};
    double alpha = 0.0;
    if (GetPixelRGBA(x, y, seed.r, seed.g, seed.b, alpha) != 0)
        return -1;
    Flood(*this, columns, lines, seed, tolerance < 0 ? 0.0 : tolerance).from(x, y);
    return 0;
}
