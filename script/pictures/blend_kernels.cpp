#include "script/pictures/blend_kernels.h"

#include "common/sample_rules.h"
#include "zrdraw/v210.h"

#include <algorithm>
#include <cstring>

#include <immintrin.h>

// The library needs no less.
#define TARGET [[gnu::target("avx")]]

namespace {

constexpr std::size_t pixelBytes = 4;
constexpr std::size_t vectorBytes = sizeof(__m128i);

// What `blended` gives is the sample below and this part of the difference, which one instruction
// makes of signed words: a product of 15 bits behind the point, rounded.
TARGET inline __m128i blendWords(__m128i under, __m128i sample, __m128i weight) {
    static_assert(weightBits == 14);
    const __m128i difference = _mm_sub_epi16(sample, under);
    return _mm_add_epi16(under, _mm_mulhrs_epi16(_mm_add_epi16(difference, difference), weight));
}

TARGET inline __m128i load(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

TARGET inline void store(void* to, __m128i value) {
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

// A vector of bytes by the weights of its lower and upper half.
TARGET inline void blendVector(std::uint8_t* under, const std::uint8_t* samples, __m128i lower,
                               __m128i upper) {
    const __m128i zero = _mm_setzero_si128(), below = load(under), above = load(samples);
    const __m128i first =
        blendWords(_mm_unpacklo_epi8(below, zero), _mm_unpacklo_epi8(above, zero), lower);
    const __m128i second =
        blendWords(_mm_unpackhi_epi8(below, zero), _mm_unpackhi_epi8(above, zero), upper);
    store(under, _mm_packus_epi16(first, second));
}

bool isOpaque(const std::uint8_t* pixels, std::size_t count, int alpha) {
    std::uint32_t all = ~0U;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, pixels + i * pixelBytes, sizeof pixel);
        all &= pixel;
    }
    return (all >> (8 * alpha) & fullByte) == fullByte;
}

void blendOver(std::uint8_t* under, const std::uint8_t* sample, int weight, int alpha) {
    if (weight == 0)
        return;
    const int underAlpha = under[alpha];
    for (int i = 0; i < int{pixelBytes}; ++i)
        under[i] = static_cast<std::uint8_t>(
            i == alpha ? blended(weight, sample[i], underAlpha)
                       : blendedOver(weight, sample[i], under[i], underAlpha));
}

// The samples of four words of v210: the low one and the middle one of each as two words of 16
// bits, and the high one.
struct V210Fields {
    __m128i lowMiddle, high;
};

constexpr int sampleBits = zrV210::sampleBits;
constexpr int sampleMask = zrV210::sampleMask;
constexpr int halfWord = 16;

TARGET inline V210Fields fieldsOf(__m128i words) {
    const __m128i low = _mm_and_si128(words, _mm_set1_epi32(sampleMask));
    const __m128i middle = _mm_and_si128(_mm_slli_epi32(words, halfWord - sampleBits),
                                         _mm_set1_epi32(sampleMask << halfWord));
    const __m128i high =
        _mm_and_si128(_mm_srli_epi32(words, 2 * sampleBits), _mm_set1_epi32(sampleMask));
    return {_mm_or_si128(low, middle), high};
}

TARGET inline __m128i wordsOf(const V210Fields& fields) {
    const __m128i low = _mm_and_si128(fields.lowMiddle, _mm_set1_epi32(sampleMask));
    const __m128i middle = _mm_and_si128(_mm_srli_epi32(fields.lowMiddle, halfWord - sampleBits),
                                         _mm_set1_epi32(sampleMask << sampleBits));
    return _mm_or_si128(_mm_or_si128(low, middle), _mm_slli_epi32(fields.high, 2 * sampleBits));
}

constexpr int unusedBits = ~((1 << 3 * sampleBits) - 1);

} // namespace

TARGET void blendBytes(std::uint8_t* under, const std::uint8_t* samples,
                       const std::int16_t* weights, std::size_t count) {
    std::size_t i = 0;
    for (; i + vectorBytes <= count; i += vectorBytes)
        blendVector(under + i, samples + i, load(weights + i), load(weights + i + vectorBytes / 2));
    for (; i < count; ++i)
        under[i] = static_cast<std::uint8_t>(blended(weights[i], samples[i], under[i]));
}

TARGET void blendPixels(std::uint8_t* under, const std::uint8_t* samples,
                        const std::int16_t* weights, std::size_t pixels) {
    constexpr std::size_t vectorPixels = vectorBytes / pixelBytes;
    std::size_t i = 0;
    for (; i + vectorPixels <= pixels; i += vectorPixels) {
        const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(weights + i));
        const __m128i twice = _mm_unpacklo_epi16(four, four);
        blendVector(under + i * pixelBytes, samples + i * pixelBytes,
                    _mm_unpacklo_epi32(twice, twice), _mm_unpackhi_epi32(twice, twice));
    }
    for (std::size_t at = i * pixelBytes; at < pixels * pixelBytes; ++at)
        under[at] =
            static_cast<std::uint8_t>(blended(weights[at / pixelBytes], samples[at], under[at]));
}

void blendPixelsOver(std::uint8_t* under, const std::uint8_t* samples, const std::int16_t* weights,
                     std::size_t pixels, int alpha) {
    constexpr std::size_t atOnce = 512; // which the first cache holds until they are blended
    for (std::size_t i = 0; i < pixels; i += atOnce) {
        const std::size_t end = std::min(i + atOnce, pixels);
        if (isOpaque(under + i * pixelBytes, end - i, alpha)) {
            blendPixels(under + i * pixelBytes, samples + i * pixelBytes, weights + i, end - i);
            continue;
        }
        for (std::size_t pixel = i; pixel < end; ++pixel)
            blendOver(under + pixel * pixelBytes, samples + pixel * pixelBytes, weights[pixel],
                      alpha);
    }
}

TARGET void blendV210(std::uint8_t* under, const std::uint8_t* samples, const std::int16_t* weights,
                      std::size_t groups) {
    for (std::size_t i = 0; i < groups; ++i) {
        const __m128i words = load(under);
        const V210Fields below = fieldsOf(words), above = fieldsOf(load(samples));
        const V210Fields both{blendWords(below.lowMiddle, above.lowMiddle, load(weights)),
                              blendWords(below.high, above.high, load(weights + v210Weights / 2))};
        store(under, _mm_or_si128(wordsOf(both), _mm_and_si128(words, _mm_set1_epi32(unusedBits))));
        under += zrV210::groupBytes;
        samples += zrV210::groupBytes;
        weights += v210Weights;
    }
}

TARGET void copyV210(std::uint8_t* under, const std::uint8_t* samples, std::size_t groups) {
    const __m128i unused = _mm_set1_epi32(unusedBits);
    for (std::size_t i = 0; i < groups * zrV210::groupBytes; i += zrV210::groupBytes)
        store(under + i, _mm_or_si128(load(samples + i), _mm_and_si128(load(under + i), unused)));
}
