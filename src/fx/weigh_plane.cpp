// Mixing one 8-bit plane into another, sixteen bytes at a time where that gives the same.
#include "zrdraw/transitions.h"

#include <cstddef>

#include <immintrin.h>

namespace {

constexpr int blockBytes = 16;
constexpr int half = 32768;

void weighBytes(unsigned char* first, const unsigned char* second, int count, int weightSecond,
                int weightFirst) {
    for (int i = 0; i < count; ++i)
        first[i] = static_cast<unsigned char>(
            (second[i] * weightSecond + first[i] * weightFirst + half) >> 16);
}

__m128i weighFour(__m128i first, __m128i second, __m128i weightFirst, __m128i weightSecond) {
    const __m128i sum = _mm_add_epi32(_mm_mullo_epi32(_mm_cvtepu8_epi32(second), weightSecond),
                                      _mm_mullo_epi32(_mm_cvtepu8_epi32(first), weightFirst));
    const __m128i rounded = _mm_add_epi32(sum, _mm_set1_epi32(half));
    return _mm_and_si128(_mm_srli_epi32(rounded, 16), _mm_set1_epi32(0xFF));
}

void weighBlock(unsigned char* first, const unsigned char* second, __m128i weightFirst,
                __m128i weightSecond) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(second));
    const __m128i s0 = weighFour(a, b, weightFirst, weightSecond);
    const __m128i s1 =
        weighFour(_mm_srli_si128(a, 4), _mm_srli_si128(b, 4), weightFirst, weightSecond);
    const __m128i s2 =
        weighFour(_mm_srli_si128(a, 8), _mm_srli_si128(b, 8), weightFirst, weightSecond);
    const __m128i s3 =
        weighFour(_mm_srli_si128(a, 12), _mm_srli_si128(b, 12), weightFirst, weightSecond);
    const __m128i bytes = _mm_packus_epi16(_mm_packus_epi32(s0, s1), _mm_packus_epi32(s2, s3));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(first), bytes);
}

// A block must not read what an earlier byte of the same block is to write.
bool mayTakeBlocks(const unsigned char* first, const unsigned char* second, int width) {
    const auto behind =
        reinterpret_cast<std::size_t>(first) - reinterpret_cast<std::size_t>(second);
    return width >= blockBytes && !(behind >= 1 && behind < blockBytes);
}

} // namespace

unsigned char* weigh_plane(unsigned char* first, const unsigned char* second, int pitchFirst,
                           int pitchSecond, int width, int lines, int weightSecond,
                           int weightFirst) {
    if (width < 1 || lines < 1)
        return first;
    const __m128i ws = _mm_set1_epi32(weightSecond);
    const __m128i wf = _mm_set1_epi32(weightFirst);
    for (; lines > 0; --lines) {
        int done = 0;
        if (mayTakeBlocks(first, second, width))
            for (; done + blockBytes <= width; done += blockBytes)
                weighBlock(first + done, second + done, wf, ws);
        weighBytes(first + done, second + done, width - done, weightSecond, weightFirst);
        first += pitchFirst;
        second += pitchSecond;
    }
    return first;
}
