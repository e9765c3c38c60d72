#include "fx/mix_step_avx2.h"

#include "fx/mix_step_loops.h"
#include "span/target.h"

#include <algorithm>
#include <cstdint>

#include <immintrin.h>

namespace {

// Sixteen-bit halves of 32 differences times the factor, as the loop has them for one byte.
ZRDRAW_AVX2 inline __m256i step32(__m256i first, __m256i second, __m256i base, __m256i factor) {
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

ZRDRAW_AVX2 void mixBytesByStepAvx2(unsigned char* to, const unsigned char* first,
                                    const unsigned char* second, std::size_t count, MixStep step,
                                    const MixNext& next) {
    constexpr std::size_t vector = 32;
    constexpr MixStep half = 32768;
    const __m256i factor = _mm256_set1_epi16(static_cast<short>(static_cast<unsigned short>(step)));
    std::size_t i = std::min(-reinterpret_cast<std::uintptr_t>(to) % cacheLineBytes, count);
    mixBytesLoop(to, first, second, i, step);
    for (; i + cacheLineBytes <= count; i += cacheLineBytes) {
        next.fetch(i);
        for (std::size_t at = i; at < i + cacheLineBytes; at += vector) {
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(first + at));
            const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(second + at));
            _mm256_store_si256(reinterpret_cast<__m256i*>(to + at),
                               step32(a, b, step < half ? b : a, factor));
        }
    }
    mixBytesLoop(to + i, first + i, second + i, count - i, step);
}

ZRDRAW_AVX2 void mixWordsByStepAvx2(unsigned short* to, const unsigned short* first,
                                    const unsigned short* second, std::size_t count, MixStep step,
                                    const MixNext& next) {
    constexpr std::size_t block = cacheLineBytes / sizeof *to;
    std::size_t i = 0;
    for (; i + block <= count; i += block) {
        next.fetch(i * sizeof *to);
        mixWordsLoop(to + i, first + i, second + i, block, step);
    }
    mixWordsLoop(to + i, first + i, second + i, count - i, step);
}
