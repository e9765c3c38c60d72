// Mixing bytes by a weight that is no whole number of 65536ths, in integers as far as these can
// tell.
//
// The result lies d * weight above the lesser of two bytes, d being their difference and the weight
// that of the greater. With the weight rounded up to 65536ths the product is too large by less than
// 255/65536, so that its whole part is right unless what is left over is less than 256/65536. Then
// d * weight is a whole number or nearly one, and what double precision makes of it stands: for
// equal bytes, which are frequent, it is looked up, for the others it is worked out.
#include "fx/mix.h"
#include "span/target.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include <immintrin.h>

namespace {

constexpr std::size_t vectorBytes = 32;

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
    ZRDRAW_AVX2 explicit Vectors(const Mix& mix)
        : m_mix(mix), m_ofFirst(_mm256_set1_epi16(static_cast<short>(mix.firstUnits))),
          m_ofSecond(_mm256_set1_epi16(static_cast<short>(mix.secondUnits))),
          m_lessBelow(inBoth(mix.lessBelow)), m_lessAbove(inBoth(mix.lessAbove)),
          m_bits(_mm256_set1_epi64x(static_cast<long long>(0x8040201008040201U))) {}

    // 32 bytes; `to` is aligned.
    ZRDRAW_AVX2 void mix(unsigned char* to, const unsigned char* first, const unsigned char* second,
                         const NextRuns& next) const {
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
            mixBytes(to, first, second, vectorBytes, m_mix, next);
    }

private:
    static constexpr int many = 12;

    // Of sixteen products: the whole part, and the upper eight bits of what is left over.
    struct Product {
        __m256i whole, left;
    };

    ZRDRAW_AVX2 Product product(__m256i difference, __m256i isFirst) const {
        const __m256i units = _mm256_blendv_epi8(m_ofSecond, m_ofFirst, isFirst);
        return {_mm256_mulhi_epu16(difference, units),
                _mm256_srli_epi16(_mm256_mullo_epi16(difference, units), 8)};
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
            to[i] = mixSample(ofFirst[i], ofSecond[i], m_mix);
        }
    }

    const Mix& m_mix;
    __m256i m_ofFirst, m_ofSecond;
    __m256i m_lessBelow, m_lessAbove;
    __m256i m_bits;
};

} // namespace

void tabulateEqualBytes(Mix& mix) {
    for (unsigned int value = 0; value < 256; ++value) {
        const auto byte = static_cast<unsigned char>(value);
        const unsigned int less = mixSample(byte, byte, mix) == byte ? 0 : 1;
        auto& rows = value < 128 ? mix.lessBelow : mix.lessAbove;
        rows[value % 16] |= static_cast<unsigned char>(less << (value / 16 % 8));
    }
}

ZRDRAW_AVX2 void mixRoundedBytesAvx2(unsigned char* to, const unsigned char* first,
                                     const unsigned char* second, std::size_t bytes, const Mix& mix,
                                     const NextRuns& next) {
    const Vectors vectors(mix);
    std::size_t i = std::min(-reinterpret_cast<std::uintptr_t>(to) % cacheLineBytes, bytes);
    mixBytes(to, first, second, i, mix, next);
    for (; i + cacheLineBytes <= bytes; i += cacheLineBytes) {
        next.fetch(i);
        for (std::size_t at = i; at < i + cacheLineBytes; at += vectorBytes)
            vectors.mix(to + at, first + at, second + at, next);
    }
    mixBytes(to + i, first + i, second + i, bytes - i, mix, next);
}
