#include "mux/combine.h"
#include "mux/modes.h"
#include "span/words.h"

#include <algorithm>

#include <immintrin.h>

namespace {

template <unsigned int ofA, unsigned int ofB>
void combineMasked(const MuxArgs& m) {
    combineAll(
        m, [](unsigned int a, unsigned int b) { return (a & ofA) | (b & ofB); });
}

unsigned int byteOf(unsigned int pixel, unsigned int index) {
    return pixel >> 8 * index & 0xFF;
}

unsigned int grey(unsigned int value) {
    return value * 0x01010101U;
}

// By contract: the difference of a byte wraps, so a negative one is as strong as any.
unsigned int greatestDifference(unsigned int a, unsigned int b) {
    const unsigned int high = ((a & 0xFF0000) - (b & 0xFF0000)) >> 17;
    const unsigned int middle = ((a & 0xFF00) - (b & 0xFF00)) >> 9;
    const unsigned int low = ((a & 0xFF) - (b & 0xFF)) >> 1;
    return std::max(std::max(high, middle), low);
}

// Of four pixels those of b, but where a byte differs from that of a by more than the threshold.
__m128i keyFour(__m128i a, __m128i b, __m128i threshold, __m128i keyed) {
    const __m128i distance = _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a));
    const __m128i over = _mm_subs_epu8(distance, threshold);
    const __m128i near = _mm_cmpeq_epi32(over, _mm_setzero_si128());
    return _mm_blendv_epi8(keyed, b, near);
}

void keyLine(unsigned char* to, const unsigned char* a, const unsigned char* b, std::size_t pixels,
             unsigned int threshold, unsigned int keyed) {
    const __m128i thresholds = _mm_set1_epi8(static_cast<char>(std::min(threshold, 255U)));
    const __m128i keys = _mm_set1_epi32(static_cast<int>(keyed));
    std::size_t at = 0;
    const std::size_t bytes = pixels * MuxArgs::pixelBytes;
    for (; at + sizeof keys <= bytes; at += sizeof keys)
        storeAs(to + at,
                keyFour(loadAs<__m128i>(a + at), loadAs<__m128i>(b + at), thresholds, keys));
    for (; at < bytes; at += MuxArgs::pixelBytes) {
        const auto pixel = [at](const unsigned char* from) {
            return _mm_cvtsi32_si128(loadAs<int>(from + at));
        };
        storeAs(to + at, _mm_cvtsi128_si32(keyFour(pixel(a), pixel(b), thresholds, keys)));
    }
}

// Bits 8 to 15 of a byte's weighed sum; 16 bits are enough for them.
[[gnu::always_inline]] inline void mixLine(unsigned char* to, const unsigned char* a,
                                           const unsigned char* b, std::size_t bytes,
                                           unsigned short weightA, unsigned short weightB) {
    for (std::size_t i = 0; i < bytes; ++i)
        to[i] = static_cast<unsigned char>(
            static_cast<unsigned short>(a[i] * weightA + b[i] * weightB) >> 8);
}

ZRDRAW_AVX2 void mixLineAvx2(unsigned char* to, const unsigned char* a, const unsigned char* b,
                             std::size_t bytes, unsigned short weightA, unsigned short weightB) {
    mixLine(to, a, b, bytes, weightA, weightB);
}

void mixLineBaseline(unsigned char* to, const unsigned char* a, const unsigned char* b,
                     std::size_t bytes, unsigned short weightA, unsigned short weightB) {
    mixLine(to, a, b, bytes, weightA, weightB);
}

// A third of up to 765, rounded down; the product is off by less than a third there.
unsigned int thirdOf(unsigned int sum) {
    constexpr unsigned int reciprocal = 21846; // of 3, in units of 1/65536
    return sum * reciprocal >> 16;
}

} // namespace

void muxAnaglyph(const MuxArgs& m) {
    combineMasked<0x00FF0000, 0x000000FF>(m);
}

void muxHalves(const MuxArgs& m) {
    combineMasked<0xFFFF0000, 0x0000FFFF>(m);
}

void muxByte0(const MuxArgs& m) {
    combineMasked<0xFFFFFF00, 0x000000FF>(m);
}

void muxBytes02(const MuxArgs& m) {
    combineMasked<0xFF00FF00, 0x00FF00FF>(m);
}

// The lowest bit of each byte of both is lost first.
void muxAverage(const MuxArgs& m) {
    constexpr unsigned int withoutLowest = 0x7F7F7F7F;
    combineAll(m, [](unsigned int a, unsigned int b) {
        return (a >> 1 & withoutLowest) + (b >> 1 & withoutLowest);
    });
}

void muxDifference(const MuxArgs& m) {
    constexpr unsigned int most = 127, centre = 128;
    const unsigned int gain = m.param >= 2 && m.param <= 255 ? m.param : 1;
    combineAll(m, [=](unsigned int a, unsigned int b) {
        // Capped before the gain as well, which changes nothing and keeps to 32 bits.
        const unsigned int strength =
            std::min(std::min(greatestDifference(a, b), most) * gain, most);
        return (strength + centre) * 0x010101U;
    });
}

void muxKey(const MuxArgs& m) {
    if (m.isEmpty())
        return;
    const unsigned int keyed = m.has(zrMuxSwap) ? 0xFFFFFFFFU : 0;
    for (unsigned int y = 0; y < m.height; ++y) {
        const std::size_t line = m.line(y);
        keyLine(m.dst + line, m.a + line, m.b + line, m.width, m.param, keyed);
    }
}

void muxMix(const MuxArgs& m) {
    if (m.isEmpty())
        return;
    const auto weightA = static_cast<unsigned short>(m.position >> 8);
    const auto weightB = static_cast<unsigned short>(256 - (m.position >> 8));
    const bool wide = zrdraw_avx2_available() != 0;
    const std::size_t bytes = std::size_t{m.width} * MuxArgs::pixelBytes;
    for (unsigned int y = 0; y < m.height; ++y) {
        const std::size_t line = m.line(y);
        (wide ? mixLineAvx2 : mixLineBaseline)(m.dst + line, m.a + line, m.b + line, bytes, weightA,
                                               weightB);
    }
}

void muxChannel(const MuxArgs& both) {
    MuxArgs m = both;
    m.b = m.a; // the second source may be none
    unsigned int shift = 0;
    switch (m.param) {
    case 0xFF:
        break;
    case 0xFF00:
        shift = 8;
        break;
    case 0xFF0000:
        shift = 16;
        break;
    case 0xFF000000U:
        shift = 24;
        break;
    default:
        combineAll(m, [](unsigned int a, unsigned int) {
            return grey(thirdOf(byteOf(a, 0) + byteOf(a, 1) + byteOf(a, 2)));
        });
        return;
    }
    combineAll(m, [shift](unsigned int a, unsigned int) { return grey(a >> shift & 0xFF); });
}
