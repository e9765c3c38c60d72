// The blend of span_blend.cpp, eight pixels at a time and bit for bit the same.
#include "span/bodies.h"
#include "span/target.h"

#include <immintrin.h>

namespace {

constexpr unsigned long blockPixels = 8;
constexpr unsigned long blockBytes = 32;

// The constants of a run, which stay in registers.
struct Constants {
    __m256i alphaToAll; // byte shuffle: the alpha of a pixel over its four bytes
    __m256i alphaOnly;  // the alpha byte of each pixel
    __m256i leastKept;  // the lowest alpha that is not skipped
    __m256i ones;
    __m256i centre;     // 128 a byte
    __m256i uncentre;   // 128 * 255 + 1 a 16-bit lane
    __m256i reciprocal; // 257 a 16-bit lane
};

ZRDRAW_AVX2_INLINE Constants makeConstants() {
    return {_mm256_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15, 3, 3, 3, 3, 7,
                             7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15),
            _mm256_set1_epi32(static_cast<int>(0xFF000000U)),
            _mm256_set1_epi8(17),
            _mm256_set1_epi8(-1),
            _mm256_set1_epi8(-128),
            _mm256_set1_epi16(32641),
            _mm256_set1_epi16(257)};
}

// Sixteen bytes of each half at once: colours are byte pairs (source, destination) less 128 as
// signed numbers, weights the pairs (a, 255 - a). Their sum of products is within 128 * 255 of
// zero, so it cannot saturate, and adding that back gives t = s * a + d * (255 - a). The quotient
// floor(t / 255) is (t + 1) * 257 / 65,536 rounded down, for every t up to 65,025.
ZRDRAW_AVX2_INLINE __m256i mix(__m256i weights, __m256i colors, const Constants& k) {
    const __m256i next = _mm256_add_epi16(_mm256_maddubs_epi16(weights, colors), k.uncentre);
    return _mm256_mulhi_epu16(next, k.reciprocal);
}

ZRDRAW_AVX2_INLINE void blendBlock(unsigned char* dst, const unsigned char* src,
                                   const Constants& k) {
    const __m256i s = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
    const __m256i sourceAlpha = _mm256_shuffle_epi8(s, k.alphaToAll);
    const __m256i kept = _mm256_cmpeq_epi8(_mm256_max_epu8(sourceAlpha, k.leastKept), sourceAlpha);
    // A picture laid over a frame is mostly empty: a block of nothing is not even read.
    if (_mm256_testz_si256(kept, kept) != 0)
        return;
    // A skipped pixel weighs nothing, and t / 255 is then exactly the destination.
    const __m256i alpha = _mm256_and_si256(sourceAlpha, kept);
    auto* target = reinterpret_cast<__m256i*>(dst);
    const __m256i d = _mm256_loadu_si256(target);
    const __m256i inverse = _mm256_xor_si256(alpha, k.ones);
    const __m256i sCentred = _mm256_xor_si256(s, k.centre);
    const __m256i dCentred = _mm256_xor_si256(d, k.centre);
    const __m256i low =
        mix(_mm256_unpacklo_epi8(alpha, inverse), _mm256_unpacklo_epi8(sCentred, dCentred), k);
    const __m256i high =
        mix(_mm256_unpackhi_epi8(alpha, inverse), _mm256_unpackhi_epi8(sCentred, dCentred), k);
    const __m256i blended = _mm256_packus_epi16(low, high);
    const __m256i newAlpha = _mm256_and_si256(kept, k.alphaOnly);
    _mm256_storeu_si256(target, _mm256_blendv_epi8(blended, s, newAlpha));
}

} // namespace

ZRDRAW_AVX2 void span::blendAvx2(unsigned char* dst, const unsigned char* src,
                                 unsigned long pixels) {
    const Constants k = makeConstants();
    unsigned long left = pixels;
#pragma GCC unroll 2
    for (; left >= blockPixels; left -= blockPixels, dst += blockBytes, src += blockBytes)
        blendBlock(dst, src, k);
    blendPlain(dst, src, left);
}
