// Blending a picture over 8-bit 4:2:2, three pairs at a time.
#include "span/bodies.h"
#include "span/words.h"

#include <immintrin.h>

namespace {

constexpr unsigned int faintest = 8;
constexpr unsigned int full = 255;
constexpr unsigned int pairBytes = 4;
constexpr unsigned int entryBytes = 5;

void blendPair(unsigned char* pair, const unsigned char* entry) {
    constexpr int order[] = {1, 0, 3, 2}; // of the entry, as the bytes stand in the frame
    const unsigned int alpha = entry[4];
    if (alpha <= faintest)
        return;
    for (int i = 0; i < 4; ++i)
        pair[i] =
            static_cast<unsigned char>((alpha * entry[order[i]] + (full - alpha) * pair[i]) / full);
}

// Eight bytes of the frame with as many of the picture, in words.
__m128i blendWords(__m128i frame, __m128i picture, __m128i alpha) {
    const __m128i rest = _mm_sub_epi16(_mm_set1_epi16(full), alpha);
    const __m128i sum =
        _mm_add_epi16(_mm_mullo_epi16(alpha, picture), _mm_mullo_epi16(rest, frame));
    // Divided by 255: exact up to 255 * 255.
    const __m128i rounded =
        _mm_add_epi16(_mm_add_epi16(sum, _mm_set1_epi16(1)), _mm_srli_epi16(sum, 8));
    return _mm_srli_epi16(rounded, 8);
}

// Three pairs. Reads a fourth one behind them and its entry.
void blendThreePairs(unsigned char* pairs, const unsigned char* entries) {
    const __m128i frame = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pairs));
    const __m128i source = _mm_loadu_si128(reinterpret_cast<const __m128i*>(entries));
    const __m128i picture = _mm_shuffle_epi8(
        source, _mm_setr_epi8(1, 0, 3, 2, 6, 5, 8, 7, 11, 10, 13, 12, -1, -1, -1, -1));
    const __m128i alpha = _mm_shuffle_epi8(
        source, _mm_setr_epi8(4, 4, 4, 4, 9, 9, 9, 9, 14, 14, 14, 14, -1, -1, -1, -1));
    const __m128i zero = _mm_setzero_si128();
    const __m128i low = blendWords(_mm_unpacklo_epi8(frame, zero), _mm_unpacklo_epi8(picture, zero),
                                   _mm_unpacklo_epi8(alpha, zero));
    const __m128i high =
        blendWords(_mm_unpackhi_epi8(frame, zero), _mm_unpackhi_epi8(picture, zero),
                   _mm_unpackhi_epi8(alpha, zero));
    const __m128i blended = _mm_packus_epi16(low, high);
    const __m128i faint = _mm_cmpeq_epi8(_mm_subs_epu8(alpha, _mm_set1_epi8(faintest)), zero);
    const __m128i result = _mm_blendv_epi8(blended, frame, faint);
    // No more than was made: the next load is not to wait for this store.
    storeAs(pairs, _mm_cvtsi128_si64(result));
    storeAs(pairs + 8, _mm_extract_epi32(result, 2));
}

} // namespace

void span::blendPairs(unsigned char* pairs, const unsigned char* entries, unsigned int count) {
    for (; count > 3; count -= 3) {
        blendThreePairs(pairs, entries);
        pairs += 3 * pairBytes;
        entries += 3 * entryBytes;
    }
    for (; count != 0; --count) {
        blendPair(pairs, entries);
        pairs += pairBytes;
        entries += entryBytes;
    }
}
