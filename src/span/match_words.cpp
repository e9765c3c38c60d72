#include "span/match_words.h"

#include "span/words.h"

#include <immintrin.h>

namespace {

// A bit for each of four words.
unsigned int matchFour(__m128i words, __m128i least, __m128i span) {
    const __m128i above = _mm_sub_epi8(words, least);
    const __m128i within = _mm_cmpeq_epi8(_mm_min_epu8(above, span), above);
    const __m128i all = _mm_cmpeq_epi32(within, _mm_set1_epi32(-1));
    return static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(all)));
}

} // namespace

std::uint64_t matchWords(const char* at, int count, const ByteRanges& ranges) {
    const __m128i least = _mm_set1_epi32(loadAs<int>(ranges.least));
    const __m128i span = _mm_set1_epi32(loadAs<int>(ranges.span));
    std::uint64_t bits = 0;
    int i = 0;
    for (; i + 4 <= count; i += 4, at += sizeof least)
        bits |= std::uint64_t{matchFour(loadAs<__m128i>(at), least, span)} << i;
    for (; i < count; ++i, at += 4)
        bits |= std::uint64_t{matchFour(_mm_set1_epi32(loadAs<int>(at)), least, span) & 1U} << i;
    return bits;
}
