// The mix in integers, by a weight that is a whole number of 65536ths: loops that are compiled once
// for each width of vector.
#include "fx/mix.h"
#include "span/target.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <immintrin.h>

namespace {

constexpr unsigned int half = 32768;

// The weight as a signed 16-bit factor, as the multiplication of vectors has them. What that is off
// by from `half` on, 65536, is one whole difference: the result counts from the first run then.
short factorOf(unsigned int units) {
    return static_cast<short>(static_cast<unsigned short>(units));
}

// second + (first - second) * units / 65536, rounded down.
[[gnu::always_inline]] inline void mixBytesLoop(unsigned char* to, const unsigned char* first,
                                                const unsigned char* second, std::size_t bytes,
                                                unsigned int units) {
    const short factor = factorOf(units);
    const auto mixFrom = [=](const unsigned char* base) {
        for (std::size_t i = 0; i < bytes; ++i) {
            const auto difference = static_cast<short>(first[i] - second[i]);
            to[i] = static_cast<unsigned char>(base[i] + ((difference * factor) >> 16));
        }
    };
    if (units < half)
        mixFrom(second);
    else
        mixFrom(first);
}

// Words may stand at any address, as a pitch may be odd.
[[gnu::always_inline]] inline void mixWordsLoop(unsigned char* to, const unsigned char* first,
                                                const unsigned char* second, std::size_t bytes,
                                                unsigned int ofFirst, unsigned int ofSecond) {
    for (std::size_t i = 0; i < bytes; i += 2) {
        unsigned short a, b;
        std::memcpy(&a, first + i, sizeof a);
        std::memcpy(&b, second + i, sizeof b);
        const auto word = static_cast<unsigned short>((a * ofFirst + b * ofSecond) >> 16);
        std::memcpy(to + i, &word, sizeof word);
    }
}

// Sixteen-bit halves of 32 differences times the factor, as the loop has them for one byte.
ZRDRAW_AVX2_INLINE __m256i mix32(__m256i first, __m256i second, __m256i base, __m256i factor) {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i low =
        _mm256_sub_epi16(_mm256_unpacklo_epi8(first, zero), _mm256_unpacklo_epi8(second, zero));
    const __m256i high =
        _mm256_sub_epi16(_mm256_unpackhi_epi8(first, zero), _mm256_unpackhi_epi8(second, zero));
    // What is added lies within -255 and 255; only its low byte counts.
    const __m256i lowByte = _mm256_set1_epi16(0xFF);
    const __m256i added =
        _mm256_packus_epi16(_mm256_and_si256(_mm256_mulhi_epi16(low, factor), lowByte),
                            _mm256_and_si256(_mm256_mulhi_epi16(high, factor), lowByte));
    return _mm256_add_epi8(base, added);
}

} // namespace

void mixWholeBytes(unsigned char* to, const unsigned char* first, const unsigned char* second,
                   std::size_t bytes, const Mix& mix, const NextRuns&) {
    mixBytesLoop(to, first, second, bytes, mix.firstUnits);
}

void mixWholeWords(unsigned char* to, const unsigned char* first, const unsigned char* second,
                   std::size_t bytes, const Mix& mix, const NextRuns&) {
    mixWordsLoop(to, first, second, bytes, mix.firstUnits, mix.secondUnits);
}

ZRDRAW_AVX2 void mixWholeBytesAvx2(unsigned char* to, const unsigned char* first,
                                   const unsigned char* second, std::size_t bytes, const Mix& mix,
                                   const NextRuns& next) {
    constexpr std::size_t vector = 32;
    const unsigned int units = mix.firstUnits;
    const __m256i factor = _mm256_set1_epi16(factorOf(units));
    std::size_t i = std::min(-reinterpret_cast<std::uintptr_t>(to) % cacheLineBytes, bytes);
    mixBytesLoop(to, first, second, i, units);
    for (; i + cacheLineBytes <= bytes; i += cacheLineBytes) {
        next.fetch(i);
        for (std::size_t at = i; at < i + cacheLineBytes; at += vector) {
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(first + at));
            const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(second + at));
            _mm256_store_si256(reinterpret_cast<__m256i*>(to + at),
                               mix32(a, b, units < half ? b : a, factor));
        }
    }
    mixBytesLoop(to + i, first + i, second + i, bytes - i, units);
}

ZRDRAW_AVX2 void mixWholeWordsAvx2(unsigned char* to, const unsigned char* first,
                                   const unsigned char* second, std::size_t bytes, const Mix& mix,
                                   const NextRuns& next) {
    const unsigned int ofFirst = mix.firstUnits, ofSecond = mix.secondUnits;
    std::size_t i = 0;
    for (; i + cacheLineBytes <= bytes; i += cacheLineBytes) {
        next.fetch(i);
        mixWordsLoop(to + i, first + i, second + i, cacheLineBytes, ofFirst, ofSecond);
    }
    mixWordsLoop(to + i, first + i, second + i, bytes - i, ofFirst, ofSecond);
}
