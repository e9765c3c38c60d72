// v210: words of three 10-bit samples, of which the top eight bits are kept.
#include <immintrin.h>

#include <cstring>

#include "fx/planes.h"

namespace {

constexpr unsigned int groupPixels = 6;
constexpr unsigned int groupFrameBytes = 16;
constexpr unsigned int groupPlaneBytes = groupPixels * PlaneCopy::pixelBytes;

// The twelve samples of a group, as the top eight bits of each word's low, middle and high field.
// A byte of a 128-bit register with 4 * word + field, field 0 to 2.
enum Sample : char {
    cb0 = 0,
    y0 = 1,
    cr0 = 2,
    y1 = 4,
    cb2 = 5,
    y2 = 6,
    cr2 = 8,
    y3 = 9,
    cb4 = 10,
    y4 = 12,
    cr4 = 13,
    y5 = 14
};

__m128i topBits(__m128i words) {
    const __m128i low = _mm_and_si128(_mm_srli_epi32(words, 2), _mm_set1_epi32(0x0000FF));
    const __m128i middle = _mm_and_si128(_mm_srli_epi32(words, 4), _mm_set1_epi32(0x00FF00));
    const __m128i high = _mm_and_si128(_mm_srli_epi32(words, 6), _mm_set1_epi32(0xFF0000));
    return _mm_or_si128(low, _mm_or_si128(middle, high));
}

__m128i wordsOf(__m128i samples) {
    const __m128i low = _mm_and_si128(samples, _mm_set1_epi32(0x0000FF));
    const __m128i middle = _mm_and_si128(samples, _mm_set1_epi32(0x00FF00));
    const __m128i high = _mm_and_si128(samples, _mm_set1_epi32(0xFF0000));
    return _mm_or_si128(_mm_slli_epi32(low, 2),
                        _mm_or_si128(_mm_slli_epi32(middle, 4), _mm_slli_epi32(high, 6)));
}

// Pixels 0 to 4 and the luma of the last, and the last one's chroma.
void expandGroup(const unsigned char* from, unsigned char* to) {
    const __m128i places =
        _mm_setr_epi8(y0, cb0, cr0, y1, cb0, cr0, y2, cb2, cr2, y3, cb2, cr2, y4, cb4, cr4, y5);
    const __m128i samples = topBits(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
    const __m128i lastChroma = _mm_shuffle_epi8(
        samples, _mm_setr_epi8(cb4, cr4, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(samples, places));
    const auto chroma = static_cast<unsigned short>(_mm_cvtsi128_si32(lastChroma));
    std::memcpy(to + sizeof(__m128i), &chroma, sizeof chroma);
}

// The chroma of the odd pixels is dropped.
void packGroup(const unsigned char* from, unsigned char* to) {
    const __m128i places = _mm_setr_epi8(1, 0, 2, -1, 3, 7, 6, -1, 8, 9, 13, -1, 12, 14, 15, -1);
    const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), wordsOf(_mm_shuffle_epi8(pixels, places)));
}

} // namespace

void expandGroups(const PlaneCopy& copy) {
    for (unsigned int y = 0; y < copy.height; ++y) {
        const unsigned char* from = copy.frameLine(y);
        unsigned char* to = copy.planeLine(y);
        for (unsigned int x = 0; x < copy.width; x += groupPixels) {
            expandGroup(from, to);
            from += groupFrameBytes;
            to += groupPlaneBytes;
        }
    }
}

void packGroups(const PlaneCopy& copy) {
    for (unsigned int y = 0; y < copy.height; ++y) {
        const unsigned char* from = copy.planeLine(y);
        unsigned char* to = copy.frameLine(y);
        for (unsigned int x = 0; x < copy.width; x += groupPixels) {
            packGroup(from, to);
            from += groupPlaneBytes;
            to += groupFrameBytes;
        }
    }
}
