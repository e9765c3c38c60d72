// 8-bit 4:2:2. Only the positions of the bytes count, not what they mean.
#include <immintrin.h>

#include "fx/planes.h"

namespace {

// Of the eight bytes of four pixels, those that become the twelve in the plane; and of the six
// bytes of a pair in the plane, those that become the four of the frame. The chroma of an odd pixel
// is dropped.
constexpr unsigned char expanded[] = {1, 0, 3, 2, 0, 3, 5, 4, 7, 6, 4, 7};
constexpr unsigned char packed[] = {1, 0, 3, 2};

constexpr unsigned int quadFrameBytes = 8, quadPlaneBytes = 12;
constexpr unsigned int pairFrameBytes = 4, pairPlaneBytes = 6;

// Eight pixels of a line: 16 bytes become 24. Stores reach four bytes further.
void expandEight(const unsigned char* from, unsigned char* to) {
    const __m128i places = _mm_setr_epi8(1, 0, 3, 2, 0, 3, 5, 4, 7, 6, 4, 7, -1, -1, -1, -1);
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i first = _mm_shuffle_epi8(bytes, places);
    const __m128i second = _mm_shuffle_epi8(_mm_srli_si128(bytes, quadFrameBytes), places);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), first);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + quadPlaneBytes), second);
}

void expandLine(const unsigned char* from, unsigned char* to, unsigned int width) {
    // The last four whole groups go byte by byte, because a vector would store behind them.
    constexpr unsigned int vectorPixels = 8, reach = 16;
    unsigned int x = 0;
    for (; x + reach <= width; x += vectorPixels) {
        expandEight(from, to);
        from += 2 * quadFrameBytes;
        to += 2 * quadPlaneBytes;
    }
    for (; x < width; x += 4) {
        for (unsigned int i = 0; i < quadPlaneBytes; ++i)
            to[i] = from[expanded[i]];
        from += quadFrameBytes;
        to += quadPlaneBytes;
    }
}

// Four pixels: twelve bytes become eight. Loads reach four bytes further.
void packFour(const unsigned char* from, unsigned char* to) {
    const __m128i places = _mm_setr_epi8(1, 0, 3, 2, 7, 6, 9, 8, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_shuffle_epi8(bytes, places));
}

void packLine(const unsigned char* from, unsigned char* to, unsigned int width) {
    constexpr unsigned int vectorPixels = 4, reach = 6;
    unsigned int x = 0;
    for (; x + reach <= width; x += vectorPixels) {
        packFour(from, to);
        from += 2 * pairPlaneBytes;
        to += 2 * pairFrameBytes;
    }
    for (; x < width; x += 2) {
        for (unsigned int i = 0; i < pairFrameBytes; ++i)
            to[i] = from[packed[i]];
        from += pairPlaneBytes;
        to += pairFrameBytes;
    }
}

} // namespace

void expandPairs(const PlaneCopy& copy) {
    for (unsigned int y = 0; y < copy.height; ++y)
        expandLine(copy.frameLine(y), copy.planeLine(y), copy.width);
}

void packPairs(const PlaneCopy& copy) {
    for (unsigned int y = 0; y < copy.height; ++y)
        packLine(copy.planeLine(y), copy.frameLine(y), copy.width);
}
