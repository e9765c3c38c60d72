// The mix in double precision: four samples at a time, and the last ones by themselves.
#include "fx/mix.h"

#include <cstring>

#include <immintrin.h>

namespace {

// Samples may stand at any address, as a pitch may be odd.
template <typename Sample>
Sample sampleAt(const Sample* samples, std::size_t index) {
    Sample sample;
    std::memcpy(&sample, reinterpret_cast<const unsigned char*>(samples) + index * sizeof sample,
                sizeof sample);
    return sample;
}

template <typename Sample>
void putSample(Sample* samples, std::size_t index, Sample sample) {
    std::memcpy(reinterpret_cast<unsigned char*>(samples) + index * sizeof sample, &sample,
                sizeof sample);
}

// Four samples as 32-bit numbers.
__m128i load(const unsigned char* samples) {
    int bytes;
    std::memcpy(&bytes, samples, sizeof bytes);
    return _mm_cvtepu8_epi32(_mm_cvtsi32_si128(bytes));
}

__m128i load(const unsigned short* samples) {
    return _mm_cvtepu16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(samples)));
}

// Sixteen bytes or eight words of 32-bit numbers, cut to the width of a sample.
void store(unsigned char* to, const __m128i (&values)[4]) {
    const __m128i low = _mm_set1_epi32(0xFF);
    const __m128i ab =
        _mm_packus_epi32(_mm_and_si128(values[0], low), _mm_and_si128(values[1], low));
    const __m128i cd =
        _mm_packus_epi32(_mm_and_si128(values[2], low), _mm_and_si128(values[3], low));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(ab, cd));
}

void store(unsigned short* to, const __m128i (&values)[2]) {
    const __m128i low = _mm_set1_epi32(0xFFFF);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(to),
        _mm_packus_epi32(_mm_and_si128(values[0], low), _mm_and_si128(values[1], low)));
}

// The products first, then their sum, then the truncation, as told for one sample.
template <typename Sample>
void mix(Sample* to, const Sample* first, const Sample* second, std::size_t count,
         const MixWeights& weights) {
    constexpr std::size_t lanes = 4, blocks = 4 / sizeof(Sample), step = lanes * blocks;
    const __m256d t = _mm256_set1_pd(weights.t);
    const __m256d u = _mm256_set1_pd(weights.u);
    std::size_t i = 0;
    for (; i + step <= count; i += step) {
        __m128i values[blocks];
        for (std::size_t block = 0; block < blocks; ++block) {
            const std::size_t at = i + lanes * block;
            const __m256d a = _mm256_mul_pd(_mm256_cvtepi32_pd(load(first + at)), t);
            const __m256d b = _mm256_mul_pd(_mm256_cvtepi32_pd(load(second + at)), u);
            values[block] = _mm256_cvttpd_epi32(_mm256_add_pd(a, b));
        }
        store(to + i, values);
    }
    for (; i < count; ++i)
        putSample(to, i, mixSample(sampleAt(first, i), sampleAt(second, i), weights));
}

} // namespace

void mixBytes(unsigned char* to, const unsigned char* first, const unsigned char* second,
              std::size_t count, const MixWeights& weights) {
    mix(to, first, second, count, weights);
}

void mixWords(unsigned short* to, const unsigned short* first, const unsigned short* second,
              std::size_t count, const MixWeights& weights) {
    mix(to, first, second, count, weights);
}

void mixFloats(float* to, const float* first, const float* second, std::size_t count,
               const MixWeights& weights) {
    for (std::size_t i = 0; i < count; ++i) {
        const double whole = truncateToInt(static_cast<double>(sampleAt(first, i)));
        putSample(to, i, static_cast<float>(whole * weights.t + sampleAt(second, i) * weights.u));
    }
}
