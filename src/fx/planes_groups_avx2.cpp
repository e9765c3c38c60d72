#include "fx/planes_groups_avx2.h"

#include "fx/planes.h"
#include "fx/v210_group.h"
#include "span/target.h"

#include <immintrin.h>

namespace {

constexpr unsigned int wordsBytes = 2 * zrV210::groupBytes;
constexpr unsigned int pixelsBytes = 2 * groupPlaneBytes;

ZRDRAW_AVX2 inline __m256i inBoth(const Shuffle& shuffle) {
    return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(&shuffle)));
}

ZRDRAW_AVX2 inline void storeGroup(unsigned char* to, __m128i pixels, __m128i lastChroma) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), pixels);
    _mm_storeu_si16(to + sizeof pixels, lastChroma);
}

} // namespace

ZRDRAW_AVX2 unsigned int expandTwoByTwo(const unsigned char* from, unsigned char* to,
                                        unsigned int count) {
    const __m256i first = inBoth(firstPlaneBytes), last = inBoth(lastPlaneBytes);
    unsigned int done = 0;
    for (; done + 2 <= count; done += 2, from += wordsBytes, to += pixelsBytes) {
        const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
        const auto samples = reinterpret_cast<__m256i>(samplesOf(reinterpret_cast<Words8>(words)));
        const __m256i pixels = _mm256_shuffle_epi8(samples, first);
        const __m256i chroma = _mm256_shuffle_epi8(samples, last);
        storeGroup(to, _mm256_castsi256_si128(pixels), _mm256_castsi256_si128(chroma));
        storeGroup(to + groupPlaneBytes, _mm256_extracti128_si256(pixels, 1),
                   _mm256_extracti128_si256(chroma, 1));
    }
    return done;
}

ZRDRAW_AVX2 unsigned int packTwoByTwo(const unsigned char* from, unsigned char* to,
                                      unsigned int count) {
    const __m256i places = inBoth(samplesOfPlane);
    unsigned int done = 0;
    for (; done + 2 <= count; done += 2, from += pixelsBytes, to += wordsBytes) {
        const __m256i pixels =
            _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(from + groupPlaneBytes),
                                reinterpret_cast<const __m128i*>(from));
        const __m256i samples = _mm256_shuffle_epi8(pixels, places);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to),
                            reinterpret_cast<__m256i>(wordsOf(reinterpret_cast<Words8>(samples))));
    }
    return done;
}
