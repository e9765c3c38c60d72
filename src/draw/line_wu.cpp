// Xiaolin Wu's anti-aliased line in double precision.
#include "draw/run.h"
#include "pixel/byte_order.h"
#include "pixel/truncate.h"

#include <cmath>
#include <utility>

namespace {

double fractionOf(double value) {
    return value - std::floor(value);
}

// A line along one axis, from the lower end of it on.
struct Course {
    bool tall; // along y
    double begin, end;
    double beginMinor, endMinor;
    double gradient;

    Course(int x0, int y0, int x1, int y1)
        : tall(std::fabs(static_cast<double>(y1) - y0) > std::fabs(static_cast<double>(x1) - x0)),
          begin(tall ? y0 : x0), end(tall ? y1 : x1), beginMinor(tall ? x0 : y0),
          endMinor(tall ? x1 : y1) {
        if (begin > end) {
            std::swap(begin, end);
            std::swap(beginMinor, endMinor);
        }
        gradient = begin == end ? 1.0 : (endMinor - beginMinor) / (end - begin);
    }
};

// Puts the pixels with their coverage, two at each position: put(coverage, x, y).
template <typename Put>
void walkCourse(const Course& course, Put put) {
    // The pixels at `major` that share a position between them, scaled by the gap.
    const auto putPair = [&](int major, double minor, double gap) {
        const double low = std::floor(minor);
        const double share = minor - low;
        const int first = truncateToInt(low);
        const auto putOne = [&](int at, double coverage) {
            put(coverage, course.tall ? at : major, course.tall ? major : at);
        };
        putOne(first, (1 - share) * gap);
        putOne(first + 1, share * gap);
    };
    // By contract: ends are pixels half covered.
    const double firstEnd = std::floor(course.begin + 0.5);
    double minor = course.beginMinor + (firstEnd - course.begin) * course.gradient;
    putPair(truncateToInt(firstEnd), minor, 1 - fractionOf(course.begin + 0.5));
    const double lastEnd = std::floor(course.end + 0.5);
    const int last = truncateToInt(lastEnd);
    putPair(last, course.endMinor + (lastEnd - course.end) * course.gradient,
            fractionOf(course.end + 0.5));
    for (int major = truncateToInt(firstEnd); major < last && ++major < last;) {
        minor += course.gradient;
        putPair(major, minor, 1.0);
    }
}

// In 32-bit layouts the coverage is a byte of the word that is written, and all else stays.
void drawWords(ZRDraw& draw, const Course& course, Rgba color) {
    const int bit = 8 * byteOrderOf(draw.pixelType).a;
    color.a = 0.0;
    setColor(draw, color, true);
    const unsigned int word = draw.foreColor;
    walkCourse(course, [&](double coverage, int x, int y) {
        color.a = coverage;
        if (pullOntoCanvas(draw, x, y))
            storeWord(wordAddress(draw, x, y),
                      word | static_cast<unsigned int>(truncateToByte(coverage * 255.0)) << bit);
    });
    setColor(draw, color, true);
}

} // namespace

// By contract: the alpha of the foreground colour is left as the last pixel's coverage.
int ZRDraw::LineWu(int x0, int y0, int x1, int y1) {
    const Course course(x0, y0, x1, y1);
    Rgba color{};
    readColor(*this, color, true);
    if (isPlainRgba32(*this) && isPlainWord(*this, true)) {
        drawWords(*this, course, color);
        return 0;
    }
    walkCourse(course, [&](double coverage, int x, int y) {
        color.a = coverage;
        setColor(*this, color, true);
        PutPixel(x, y, true);
    });
    return 0;
}

int ZRDraw::LineWuTo(int x, int y) {
    const int status = LineWu(currentX, currentY, x, y);
    ZRDraw::MoveTo(x, y);
    return status;
}
