#include "fx/mix_fraction.h"

#include "span/target.h"
#include "zrdraw/span.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include <immintrin.h>

namespace {

constexpr MixStep wholeStep = 65536;
constexpr std::size_t vectorBytes = 32;

MixStep roundedUp(double weight) {
    return static_cast<MixStep>(std::ceil(weight * wholeStep));
}

ZRDRAW_AVX2 inline __m256i load(const unsigned char* from) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

ZRDRAW_AVX2 inline void store(unsigned char* to, __m256i bytes) {
    _mm256_store_si256(reinterpret_cast<__m256i*>(to), bytes);
}

ZRDRAW_AVX2 inline __m256i inBoth(const unsigned char (&row)[16]) {
    return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(row)));
}

// What a run needs, in registers.
class Vectors {
public:
    ZRDRAW_AVX2 explicit Vectors(const MixFraction& fraction)
        : m_weights(fraction.weights),
          m_stepOfFirst(_mm256_set1_epi16(static_cast<short>(fraction.stepOfFirst))),
          m_stepOfSecond(_mm256_set1_epi16(static_cast<short>(fraction.stepOfSecond))),
          m_lessBelow(inBoth(fraction.lessBelow)), m_lessAbove(inBoth(fraction.lessAbove)),
          m_bits(_mm256_set1_epi64x(static_cast<long long>(0x8040201008040201U))) {}

    // 32 bytes; `to` is aligned.
    ZRDRAW_AVX2 void mix(unsigned char* to, const unsigned char* first,
                         const unsigned char* second) const {
        const __m256i a = load(first), b = load(second);
        const __m256i greater = _mm256_max_epu8(a, b), lesser = _mm256_min_epu8(a, b);
        const __m256i difference = _mm256_sub_epi8(greater, lesser);
        const __m256i isFirst = _mm256_cmpeq_epi8(greater, a);
        const Product low = product(_mm256_unpacklo_epi8(difference, _mm256_setzero_si256()),
                                    _mm256_unpacklo_epi8(isFirst, isFirst));
        const Product high = product(_mm256_unpackhi_epi8(difference, _mm256_setzero_si256()),
                                     _mm256_unpackhi_epi8(isFirst, isFirst));
        const __m256i whole = _mm256_packus_epi16(low.whole, high.whole);
        const __m256i left = _mm256_packus_epi16(low.left, high.left);
        const __m256i isEqual = _mm256_cmpeq_epi8(difference, _mm256_setzero_si256());
        const __m256i isDoubtful =
            _mm256_andnot_si256(isEqual, _mm256_cmpeq_epi8(left, _mm256_setzero_si256()));
        const __m256i mixed = _mm256_add_epi8(_mm256_add_epi8(lesser, whole),
                                              _mm256_and_si256(isEqual, minusOneWhereLess(a)));
        const auto doubtful = static_cast<unsigned int>(_mm256_movemask_epi8(isDoubtful));
        if (doubtful == 0)
            store(to, mixed);
        else if (std::popcount(doubtful) < many)
            mixOneByOne(to, a, b, mixed, doubtful);
        else
            mixBytes(to, first, second, vectorBytes, m_weights);
    }

private:
    static constexpr int many = 12;

    // Of sixteen products: the whole part, and the upper eight bits of what is left over.
    struct Product {
        __m256i whole, left;
    };

    ZRDRAW_AVX2 Product product(__m256i difference, __m256i isFirst) const {
        const __m256i step = _mm256_blendv_epi8(m_stepOfSecond, m_stepOfFirst, isFirst);
        return {_mm256_mulhi_epu16(difference, step),
                _mm256_srli_epi16(_mm256_mullo_epi16(difference, step), 8)};
    }

    // A shuffle gives 0 where the top bit of a place is set, so that one of the two rows answers.
    ZRDRAW_AVX2 __m256i minusOneWhereLess(__m256i bytes) const {
        const __m256i place = _mm256_and_si256(bytes, _mm256_set1_epi8(static_cast<char>(0x8F)));
        const __m256i row = _mm256_or_si256(
            _mm256_shuffle_epi8(m_lessBelow, place),
            _mm256_shuffle_epi8(m_lessAbove, _mm256_xor_si256(place, _mm256_set1_epi8(-128))));
        const __m256i column =
            _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
        const __m256i bit = _mm256_shuffle_epi8(m_bits, column);
        return _mm256_cmpeq_epi8(_mm256_and_si256(row, bit), bit);
    }

    // Fewer than `many` cost less one by one than all together.
    ZRDRAW_AVX2 void mixOneByOne(unsigned char* to, __m256i a, __m256i b, __m256i mixed,
                                 unsigned int doubtful) const {
        // The runs may be the same memory: what was read remains what is mixed.
        alignas(vectorBytes) unsigned char ofFirst[vectorBytes], ofSecond[vectorBytes];
        store(ofFirst, a);
        store(ofSecond, b);
        store(to, mixed);
        for (; doubtful != 0; doubtful &= doubtful - 1) {
            const int i = std::countr_zero(doubtful);
            to[i] = mixSample(ofFirst[i], ofSecond[i], m_weights);
        }
    }

    MixWeights m_weights;
    __m256i m_stepOfFirst, m_stepOfSecond;
    __m256i m_lessBelow, m_lessAbove;
    __m256i m_bits;
};

} // namespace

bool hasFraction(const MixWeights& weights, MixFraction& fraction) {
    constexpr double least = 1.0 / wholeStep;
    if (zrdraw_avx2_available() == 0 || !(weights.t >= least && weights.u >= least))
        return false;
    fraction = {weights, roundedUp(weights.t), roundedUp(weights.u), {}, {}};
    for (unsigned int value = 0; value < 256; ++value) {
        const auto byte = static_cast<unsigned char>(value);
        const unsigned int less = mixSample(byte, byte, weights) == byte ? 0 : 1;
        auto& rows = value < 128 ? fraction.lessBelow : fraction.lessAbove;
        rows[value % 16] |= static_cast<unsigned char>(less << (value / 16 % 8));
    }
    return true;
}

ZRDRAW_AVX2 void mixBytesByFraction(unsigned char* to, const unsigned char* first,
                                    const unsigned char* second, std::size_t count,
                                    const MixFraction& fraction, const MixNext& next) {
    const Vectors vectors(fraction);
    std::size_t i = std::min(-reinterpret_cast<std::uintptr_t>(to) % cacheLineBytes, count);
    mixBytes(to, first, second, i, fraction.weights);
    for (; i + cacheLineBytes <= count; i += cacheLineBytes) {
        next.fetch(i);
        for (std::size_t at = i; at < i + cacheLineBytes; at += vectorBytes)
            vectors.mix(to + at, first + at, second + at);
    }
    mixBytes(to + i, first + i, second + i, count - i, fraction.weights);
}
