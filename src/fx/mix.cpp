// The choice of a body, and the bodies in double precision: four samples at a time, and the last
// ones by themselves.
#include "fx/mix.h"

#include "zrdraw/span.h"

#include <cmath>
#include <cstring>

#include <immintrin.h>

namespace {

constexpr unsigned int wholeUnits = 65536;

unsigned int unitsOf(double weight) {
    return static_cast<unsigned int>(std::ceil(weight * wholeUnits));
}

MixBody* bodyForWhole(SampleType type, unsigned int units) {
    if (units == 0)
        return copySecond;
    if (units == wholeUnits)
        return copyFirst;
    const bool wide = zrdraw_avx2_available() != 0;
    if (type == SampleType::Byte)
        return wide ? mixWholeBytesAvx2 : mixWholeBytes;
    return wide ? mixWholeWordsAvx2 : mixWholeWords;
}

// Samples may stand at any address, as a pitch may be odd.
template <typename Sample>
Sample sampleAt(const unsigned char* run, std::size_t byte) {
    Sample sample;
    std::memcpy(&sample, run + byte, sizeof sample);
    return sample;
}

template <typename Sample>
void putSample(unsigned char* run, std::size_t byte, Sample sample) {
    std::memcpy(run + byte, &sample, sizeof sample);
}

// Four samples as 32-bit numbers.
template <typename Sample>
__m128i load(const unsigned char* samples) {
    if constexpr (sizeof(Sample) == 1)
        return _mm_cvtepu8_epi32(_mm_cvtsi32_si128(sampleAt<int>(samples, 0)));
    else
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

void store(unsigned char* to, const __m128i (&values)[2]) {
    const __m128i low = _mm_set1_epi32(0xFFFF);
    _mm_storeu_si128(
        reinterpret_cast<__m128i*>(to),
        _mm_packus_epi32(_mm_and_si128(values[0], low), _mm_and_si128(values[1], low)));
}

// The products first, then their sum, then the truncation, as told for one sample.
template <typename Sample>
void mixSamples(unsigned char* to, const unsigned char* first, const unsigned char* second,
                std::size_t bytes, const Mix& mix) {
    constexpr std::size_t lanes = 4 * sizeof(Sample), step = 16, blocks = step / lanes;
    const __m256d t = _mm256_set1_pd(mix.ofFirst);
    const __m256d u = _mm256_set1_pd(mix.ofSecond);
    std::size_t i = 0;
    for (; i + step <= bytes; i += step) {
        __m128i values[blocks];
        for (std::size_t block = 0; block < blocks; ++block) {
            const std::size_t at = i + lanes * block;
            const __m256d a = _mm256_mul_pd(_mm256_cvtepi32_pd(load<Sample>(first + at)), t);
            const __m256d b = _mm256_mul_pd(_mm256_cvtepi32_pd(load<Sample>(second + at)), u);
            values[block] = _mm256_cvttpd_epi32(_mm256_add_pd(a, b));
        }
        store(to + i, values);
    }
    for (; i < bytes; i += sizeof(Sample))
        putSample(to, i, mixSample(sampleAt<Sample>(first, i), sampleAt<Sample>(second, i), mix));
}

} // namespace

Mix chooseMix(SampleType type, double weight) {
    Mix mix{mixFloats, weight, 1.0 - weight, 0, 0, {}, {}};
    if (type == SampleType::Float)
        return mix;
    mix.body = type == SampleType::Byte ? mixBytes : mixWords;
    if (!(weight >= 0.0 && weight <= 1.0))
        return mix;
    mix.firstUnits = unitsOf(mix.ofFirst);
    mix.secondUnits = unitsOf(mix.ofSecond);
    constexpr double leastUnit = 1.0 / wholeUnits;
    if (weight * wholeUnits == mix.firstUnits)
        mix.body = bodyForWhole(type, mix.firstUnits);
    else if (type == SampleType::Byte && zrdraw_avx2_available() != 0 && mix.ofFirst >= leastUnit &&
             mix.ofSecond >= leastUnit) {
        mix.body = mixRoundedBytesAvx2;
        tabulateEqualBytes(mix);
    }
    return mix;
}

void copyFirst(unsigned char* to, const unsigned char* first, const unsigned char*,
               std::size_t bytes, const Mix&, const NextRuns&) {
    std::memmove(to, first, bytes);
}

void copySecond(unsigned char* to, const unsigned char*, const unsigned char* second,
                std::size_t bytes, const Mix&, const NextRuns&) {
    std::memmove(to, second, bytes);
}

void mixBytes(unsigned char* to, const unsigned char* first, const unsigned char* second,
              std::size_t bytes, const Mix& mix, const NextRuns&) {
    mixSamples<unsigned char>(to, first, second, bytes, mix);
}

void mixWords(unsigned char* to, const unsigned char* first, const unsigned char* second,
              std::size_t bytes, const Mix& mix, const NextRuns&) {
    mixSamples<unsigned short>(to, first, second, bytes, mix);
}

// By contract: the first is truncated before it is weighed, the second is not.
void mixFloats(unsigned char* to, const unsigned char* first, const unsigned char* second,
               std::size_t bytes, const Mix& mix, const NextRuns&) {
    for (std::size_t i = 0; i < bytes; i += sizeof(float)) {
        const double whole = truncateToInt(static_cast<double>(sampleAt<float>(first, i)));
        const float other = sampleAt<float>(second, i);
        putSample(to, i, static_cast<float>(whole * mix.ofFirst + other * mix.ofSecond));
    }
}
