// Xiaolin Wu's anti-aliased line in double precision.
#include "pixel/truncate.h"
#include "zrdraw/zrdraw.h"

#include <cmath>
#include <utility>

namespace {

double fractionOf(double value) {
    return value - std::floor(value);
}

// Writes pixels in one colour, with their coverage as its alpha.
class CoveragePen {
public:
    CoveragePen(ZRDraw& draw, bool tall) : m_draw(draw), m_tall(tall) {
        double alpha = 0.0;
        m_draw.GetColorRGBA(m_r, m_g, m_b, alpha, true);
    }

    // The two pixels at `major` that share a position between them, scaled by the gap.
    void put(int major, double minor, double gap) {
        const double low = std::floor(minor);
        const double share = minor - low;
        const int first = truncateToInt(low);
        putOne(major, first, (1 - share) * gap);
        putOne(major, first + 1, share * gap);
    }

private:
    void putOne(int major, int minor, double coverage) {
        m_draw.SetColorRGBA(m_r, m_g, m_b, coverage, true);
        m_draw.PutPixel(m_tall ? minor : major, m_tall ? major : minor, true);
    }

    ZRDraw& m_draw;
    bool m_tall;
    double m_r = 0.0, m_g = 0.0, m_b = 0.0;
};

} // namespace

int ZRDraw::LineWu(int x0, int y0, int x1, int y1) {
    const bool tall =
        std::fabs(static_cast<double>(y1) - y0) > std::fabs(static_cast<double>(x1) - x0);
    double a0 = tall ? y0 : x0, b0 = tall ? x0 : y0;
    double a1 = tall ? y1 : x1, b1 = tall ? x1 : y1;
    if (a0 > a1) {
        std::swap(a0, a1);
        std::swap(b0, b1);
    }
    const double gradient = a0 == a1 ? 1.0 : (b1 - b0) / (a1 - a0);
    CoveragePen pen(*this, tall);

    // By contract: ends are pixels half covered, and the alpha of the foreground colour is left as
    // the last pixel's coverage.
    const double firstEnd = std::floor(a0 + 0.5);
    double minor = b0 + (firstEnd - a0) * gradient;
    pen.put(truncateToInt(firstEnd), minor, 1 - fractionOf(a0 + 0.5));
    const double lastEnd = std::floor(a1 + 0.5);
    pen.put(truncateToInt(lastEnd), b1 + (lastEnd - a1) * gradient, fractionOf(a1 + 0.5));

    const int last = truncateToInt(lastEnd);
    for (int major = truncateToInt(firstEnd); major < last && ++major < last;) {
        minor += gradient;
        pen.put(major, minor, 1.0);
    }
    return 0;
}

int ZRDraw::LineWuTo(int x, int y) {
    const int status = LineWu(currentX, currentY, x, y);
    ZRDraw::MoveTo(x, y);
    return status;
}
