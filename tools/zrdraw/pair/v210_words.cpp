#include "pair/v210_words.h"

#include <cstring>

#include <immintrin.h>

// The library needs no less.
#define TARGET [[gnu::target("avx")]]

namespace {

constexpr int groupPixels = 6;
constexpr int groupBytes = 16;
constexpr int groupWordBytes = groupPixels * wordPixelBytes;

std::size_t groupsOf(int width) {
    return static_cast<std::size_t>((width + groupPixels - 1) / groupPixels);
}

// A byte shuffle that moves 16-bit samples by their numbers; -1 makes a zero.
TARGET __m128i samples(int a, int b, int c, int d, int e, int f, int g, int h) {
    const auto low = [](int sample) { return static_cast<char>(sample < 0 ? -1 : 2 * sample); };
    const auto high = [](int sample) {
        return static_cast<char>(sample < 0 ? -1 : 2 * sample + 1);
    };
    return _mm_setr_epi8(low(a), high(a), low(b), high(b), low(c), high(c), low(d), high(d), low(e),
                         high(e), low(f), high(f), low(g), high(g), low(h), high(h));
}

// The low and middle samples of each word in turns, and its high sample with a zero behind it.
struct Fields {
    __m128i lowMiddle; // Cb0 Y0 Y1 Cb2 Cr2 Y3 Y4 Cr4
    __m128i high;      // Cr0 - Y2 - Cb4 - Y5 -
};

TARGET Fields fieldsOf(const std::uint8_t* group) {
    const __m128i sample = _mm_set1_epi32(0x3FF);
    const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(group));
    const __m128i low = _mm_and_si128(words, sample);
    const __m128i middle = _mm_and_si128(_mm_srli_epi32(words, 10), sample);
    return {_mm_or_si128(low, _mm_slli_epi32(middle, 16)),
            _mm_and_si128(_mm_srli_epi32(words, 20), sample)};
}

TARGET __m128i gather(const Fields& fields, __m128i fromLowMiddle, __m128i fromHigh) {
    return _mm_or_si128(_mm_shuffle_epi8(fields.lowMiddle, fromLowMiddle),
                        _mm_shuffle_epi8(fields.high, fromHigh));
}

// Four samples as 32-bit numbers, each from one of two runs of eight.
TARGET __m128i pick(__m128i a, __m128i b, __m128i fromA, __m128i fromB) {
    return _mm_or_si128(_mm_shuffle_epi8(a, fromA), _mm_shuffle_epi8(b, fromB));
}

} // namespace

TARGET void expandV210Line(const std::uint8_t* line, std::uint8_t* words, int width) {
    const __m128i first = samples(1, 0, -1, 2, 0, -1, -1, 3);
    const __m128i firstHigh = samples(-1, -1, 0, -1, -1, 0, 2, -1);
    const __m128i second = samples(4, 5, 3, 4, 6, -1, 7, -1);
    const __m128i secondHigh = samples(-1, -1, -1, -1, -1, 4, -1, 6);
    const __m128i last = samples(-1, 7, -1, -1, -1, -1, -1, -1);
    const __m128i lastHigh = samples(4, -1, -1, -1, -1, -1, -1, -1);
    for (std::size_t i = groupsOf(width); i != 0; --i) {
        const Fields fields = fieldsOf(line);
        auto* to = reinterpret_cast<__m128i*>(words);
        _mm_storeu_si128(to, gather(fields, first, firstHigh));
        _mm_storeu_si128(to + 1, gather(fields, second, secondHigh));
        const int chroma = _mm_cvtsi128_si32(gather(fields, last, lastHigh));
        std::memcpy(words + 2 * sizeof(__m128i), &chroma, sizeof chroma);
        line += groupBytes;
        words += groupWordBytes;
    }
}

TARGET void packV210Line(const std::uint8_t* words, std::uint8_t* line, int width) {
    // Y0 Cb0 Cr0 Y1 - - Y2 Cb2, and Cr2 Y3 - - Y4 Cb4 Cr4 Y5
    const __m128i lowA = samples(1, -1, 3, -1, -1, -1, -1, -1);
    const __m128i lowB = samples(-1, -1, -1, -1, 0, -1, 4, -1);
    const __m128i middleA = samples(0, -1, 7, -1, -1, -1, -1, -1);
    const __m128i middleB = samples(-1, -1, -1, -1, 1, -1, 6, -1);
    const __m128i highA = samples(2, -1, 6, -1, -1, -1, -1, -1);
    const __m128i highB = samples(-1, -1, -1, -1, 5, -1, 7, -1);
    for (std::size_t i = groupsOf(width); i != 0; --i) {
        const auto* from = reinterpret_cast<const __m128i*>(words);
        const __m128i a = _mm_loadu_si128(from), b = _mm_loadu_si128(from + 1);
        const __m128i low = pick(a, b, lowA, lowB);
        const __m128i middle = _mm_slli_epi32(pick(a, b, middleA, middleB), 10);
        const __m128i high = _mm_slli_epi32(pick(a, b, highA, highB), 20);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(line),
                         _mm_or_si128(low, _mm_or_si128(middle, high)));
        line += groupBytes;
        words += groupWordBytes;
    }
}
