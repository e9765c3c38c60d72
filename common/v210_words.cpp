#include "common/v210_words.h"

#include "zrdraw/v210.h"

#include <cstring>

#include <immintrin.h>

// The library needs no less.
#define TARGET [[gnu::target("avx")]]

namespace {

constexpr unsigned components = 3;
constexpr unsigned groupSamples = zrV210::groupPixels * components; // of the words of a group
constexpr unsigned vectorSamples = 8;

std::size_t groupsOf(int width) {
    return (static_cast<std::size_t>(width) + zrV210::groupPixels - 1) / zrV210::groupPixels;
}

constexpr zrV210::Place placeOf(unsigned sample) {
    return zrV210::placeOf(sample / components, sample % components);
}

// A byte shuffle that moves 16-bit samples; a negative number makes a zero.
struct alignas(16) Shuffle {
    signed char from[16];

    constexpr Shuffle() : from{} {
        for (signed char& byte : from)
            byte = -1;
    }
    constexpr void move(unsigned sample, unsigned to) {
        from[2 * to] = static_cast<signed char>(2 * sample);
        from[2 * to + 1] = static_cast<signed char>(2 * sample + 1);
    }
    TARGET __m128i operator()(__m128i samples) const {
        return _mm_shuffle_epi8(samples, _mm_load_si128(reinterpret_cast<const __m128i*>(from)));
    }
};

// Samples that stand in two vectors, brought into one.
struct Gather {
    Shuffle fromFirst, fromSecond;

    TARGET __m128i operator()(__m128i first, __m128i second) const {
        return _mm_or_si128(fromFirst(first), fromSecond(second));
    }
};

// A vector of words, from sample `begin` of the group on. The first vector has the low and middle
// fields of the four words in turns, the second the high ones with a zero behind each.
constexpr Gather wordsFrom(unsigned begin) {
    Gather gather;
    for (unsigned i = 0; i < vectorSamples && begin + i < groupSamples; ++i) {
        const zrV210::Place place = placeOf(begin + i);
        if (place.field() == 2)
            gather.fromSecond.move(2 * place.word, i);
        else
            gather.fromFirst.move(2 * place.word + place.field(), i);
    }
    return gather;
}

// One field of the four words, as 32-bit numbers, of two vectors of samples. The chroma of the odd
// pixels is dropped.
constexpr Gather fieldOf(unsigned field) {
    Gather gather;
    for (unsigned sample = 0; sample < 2 * vectorSamples; ++sample) {
        const bool isDropped = sample % components != 0 && sample / components % 2 != 0;
        if (isDropped || placeOf(sample).field() != field)
            continue;
        Shuffle& shuffle = sample < vectorSamples ? gather.fromFirst : gather.fromSecond;
        shuffle.move(sample % vectorSamples, 2 * placeOf(sample).word);
    }
    return gather;
}

} // namespace

TARGET void expandV210Line(const std::uint8_t* line, std::uint8_t* words, int width) {
    static constexpr Gather first = wordsFrom(0), second = wordsFrom(vectorSamples),
                            last = wordsFrom(2 * vectorSamples);
    const __m128i sample = _mm_set1_epi32(zrV210::sampleMask);
    for (std::size_t i = groupsOf(width); i != 0; --i) {
        const __m128i group = _mm_loadu_si128(reinterpret_cast<const __m128i*>(line));
        const __m128i low = _mm_and_si128(group, sample);
        const __m128i middle = _mm_and_si128(_mm_srli_epi32(group, zrV210::sampleBits), sample);
        const __m128i high = _mm_and_si128(_mm_srli_epi32(group, 2 * zrV210::sampleBits), sample);
        const __m128i lowMiddle = _mm_or_si128(low, _mm_slli_epi32(middle, 16));
        auto* to = reinterpret_cast<__m128i*>(words);
        _mm_storeu_si128(to, first(lowMiddle, high));
        _mm_storeu_si128(to + 1, second(lowMiddle, high));
        const int chroma = _mm_cvtsi128_si32(last(lowMiddle, high));
        std::memcpy(words + 2 * sizeof(__m128i), &chroma, sizeof chroma);
        line += zrV210::groupBytes;
        words += zrV210::groupPixels * wordPixelBytes;
    }
}

TARGET void packV210Line(const std::uint8_t* words, std::uint8_t* line, int width) {
    static constexpr Gather low = fieldOf(0), middle = fieldOf(1), high = fieldOf(2);
    for (std::size_t i = groupsOf(width); i != 0; --i) {
        const auto* from = reinterpret_cast<const __m128i*>(words);
        const __m128i a = _mm_loadu_si128(from), b = _mm_loadu_si128(from + 1);
        const __m128i lowMiddle =
            _mm_or_si128(low(a, b), _mm_slli_epi32(middle(a, b), zrV210::sampleBits));
        _mm_storeu_si128(
            reinterpret_cast<__m128i*>(line),
            _mm_or_si128(lowMiddle, _mm_slli_epi32(high(a, b), 2 * zrV210::sampleBits)));
        line += zrV210::groupBytes;
        words += zrV210::groupPixels * wordPixelBytes;
    }
}
