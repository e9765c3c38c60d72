// The linear blend of a rectangle from the foreground to the background colour.
#include "draw/run.h"
#include "draw/walk.h"
#include "pixel/byte_order.h"
#include "pixel/rgba.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <optional>

#include <immintrin.h>

namespace {

// Coordinates behind the edge stay there, and PutPixel refuses them.
int ontoCanvas(int coordinate, unsigned int extent) {
    return std::max(pullEdge(coordinate, extent), 0);
}

// A blend along a direction, from one colour to another.
struct Blend {
    Rgba from, span;
    double c, s; // of the direction
    double low, range;

    double shareAt(int x, int y) const {
        return std::clamp((x * c + y * s - low) / range, 0.0, 1.0);
    }
    Rgba colorAt(int x, int y) const {
        const double t = shareAt(x, y);
        return {span.r * t + from.r, span.g * t + from.g, span.b * t + from.b, span.a * t + from.a};
    }
};

// The words of 32-bit pixels, four at a time, as SetColorRGBA would pack them one by one.
class BlendWords {
public:
    BlendWords(const Blend& blend, const zrByteOrder& order) : m_blend(blend) {
        const Rgba &from = blend.from, &span = blend.span;
        m_channels[0] = {from.r, span.r, 8 * order.r};
        m_channels[1] = {from.g, span.g, 8 * order.g};
        m_channels[2] = {from.b, span.b, 8 * order.b};
        m_channels[3] = {from.a, span.a, 8 * order.a};
    }

    // Along a line and down a column each channel only grows or only falls: what is alike at both
    // ends is alike throughout.
    void write(char* to, int x, int y, int count) const {
        constexpr int atOnce = 4;
        const auto first = static_cast<unsigned int>(_mm_cvtsi128_si32(wordsAt(x, y)));
        if (first == static_cast<unsigned int>(_mm_cvtsi128_si32(wordsAt(x + count - 1, y))))
            return fillRun<4>(to, first, static_cast<unsigned int>(count));
        for (; count > 0; count -= atOnce, x += atOnce, to += sizeof(__m128i)) {
            const __m128i words = wordsAt(x, y);
            std::memcpy(to, &words, 4 * static_cast<std::size_t>(std::min(count, atOnce)));
        }
    }

private:
    struct Channel {
        double from, span;
        int bit;
    };

    __m128i wordsAt(int x, int y) const {
        const auto all = [](double value) { return _mm256_set1_pd(value); };
        const __m256d columns = _mm256_add_pd(all(x), _mm256_setr_pd(0, 1, 2, 3));
        const __m256d along =
            _mm256_add_pd(_mm256_mul_pd(columns, all(m_blend.c)), all(y * m_blend.s));
        const __m256d share =
            _mm256_div_pd(_mm256_sub_pd(along, all(m_blend.low)), all(m_blend.range));
        const __m256d t = _mm256_min_pd(_mm256_max_pd(share, all(0.0)), all(1.0));
        __m128i words = _mm_setzero_si128();
        for (const Channel& channel : m_channels) {
            const __m256d value =
                _mm256_add_pd(_mm256_mul_pd(all(channel.span), t), all(channel.from));
            const __m128i whole = _mm256_cvttpd_epi32(_mm256_mul_pd(value, all(255.0)));
            const __m128i byte = _mm_and_si128(whole, _mm_set1_epi32(0xFF));
            words = _mm_or_si128(words, _mm_slli_epi32(byte, channel.bit));
        }
        return words;
    }

    const Blend& m_blend;
    Channel m_channels[4];
};

// The part of a rectangle that is on a canvas of plain words.
class PlainPart {
public:
    PlainPart(const ZRDraw& draw, const BlendWords& words, int left, int top, int right, int bottom)
        : m_draw(draw), m_words(words), m_left(left), m_top(top),
          m_count(std::min(right, static_cast<int>(draw.width) - 1) - left + 1),
          m_bottom(std::min(bottom, static_cast<int>(draw.height) - 1)) {
        if (draw.canvas == nullptr || m_count <= 0 || m_bottom < top) {
            m_count = 0;
            return;
        }
        write(m_top);
        write(m_bottom);
        m_linesAreAlike = std::memcmp(at(m_top), at(m_bottom), bytes()) == 0;
    }

    // The number of pixels of the line that were written.
    int line(int y) const {
        if (y > m_bottom)
            return 0;
        if (!m_linesAreAlike)
            write(y);
        else if (y != m_top && m_count > 0)
            std::memcpy(at(y), at(m_top), bytes());
        return m_count;
    }

private:
    char* at(int y) const { return wordAddress(m_draw, m_left, y); }
    std::size_t bytes() const { return 4 * static_cast<std::size_t>(m_count); }
    void write(int y) const {
        if (m_count > 0)
            m_words.write(at(y), m_left, y, m_count);
    }

    const ZRDraw& m_draw;
    const BlendWords& m_words;
    int m_left, m_top, m_count, m_bottom;
    bool m_linesAreAlike = false;
};

} // namespace

int ZRDraw::GradientRect(int left, int top, int right, int bottom, int angle) {
    if (static_cast<int>(width) < 1 || static_cast<int>(height) < 1)
        return -1;
    const int x0 = ontoCanvas(left, width), x1 = ontoCanvas(right, width);
    const int y0 = ontoCanvas(top, height), y1 = ontoCanvas(bottom, height);
    const int xMin = std::min(x0, x1), xMax = std::max(x0, x1);
    const int yMin = std::min(y0, y1), yMax = std::max(y0, y1);
    Rgba from{}, to{};
    if (!readColor(*this, from, true) || !readColor(*this, to, false))
        return -1;
    const Rgba span{to.r - from.r, to.g - from.g, to.b - from.b, to.a - from.a};

    const double radians = angle * std::numbers::pi / 180;
    const double s = std::sin(radians);
    const double c = std::cos(radians);
    const double low = xMin * c + yMin * s;
    // By contract: an angle that projects the rectangle backwards gives a range of 1.0, and the
    // blend saturates at once.
    const double projected = xMax * c + yMax * s - low;
    const double range = projected <= 0 ? 1.0 : projected;
    const Blend blend{from, span, c, s, low, range};
    const bool plain = isPlainRgba32(*this) && isPlainWord(*this, true);
    const BlendWords words(blend, byteOrderOf(plain ? pixelType : ptRGBA32));
    std::optional<PlainPart> part;
    if (plain)
        part.emplace(*this, words, xMin, yMin, xMax, yMax);
    walk(yMin, yMax, 1, [&](int y) {
        for (int x = xMin + (part ? part->line(y) : 0); x <= xMax; ++x) {
            setColor(*this, blend.colorAt(x, y), true);
            PutPixel(x, y, true);
        }
    });
    // By contract: the foreground is left as the last pixel's colour.
    setColor(*this, blend.colorAt(xMax, yMax), true);
    return 0;
}
