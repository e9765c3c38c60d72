// Four pixels at a time, in the operations and their order that one at a time has.
#include "span/ramp.h"

#include "span/runs.h"

#include <algorithm>

namespace {

__m128i wordsAt(const Ramp& ramp, int x, double row) {
    const auto all = [](double value) { return _mm256_set1_pd(value); };
    const __m256d columns = _mm256_add_pd(all(x), _mm256_setr_pd(0, 1, 2, 3));
    const __m256d along = _mm256_add_pd(_mm256_mul_pd(columns, all(ramp.step)), all(row));
    const __m256d share = _mm256_div_pd(_mm256_sub_pd(along, all(ramp.low)), all(ramp.range));
    const __m256d t = _mm256_min_pd(_mm256_max_pd(share, all(0.0)), all(1.0));
    __m128i words = _mm_setzero_si128();
    for (const Ramp::Channel& channel : ramp.channels) {
        const __m256d value = _mm256_add_pd(_mm256_mul_pd(all(channel.span), t), all(channel.from));
        const __m128i whole = _mm256_cvttpd_epi32(_mm256_mul_pd(value, all(255.0)));
        const __m128i byte = _mm_and_si128(whole, _mm_set1_epi32(0xFF));
        words = _mm_or_si128(words, _mm_slli_epi32(byte, channel.bit));
    }
    return words;
}

} // namespace

void writeRamp(char* to, const Ramp& ramp, int x, double row, int count) {
    constexpr int atOnce = 4;
    const auto wordAt = [&](int at) {
        return static_cast<unsigned int>(_mm_cvtsi128_si32(wordsAt(ramp, at, row)));
    };
    const unsigned int first = wordAt(x);
    if (first == wordAt(x + count - 1))
        return fillRun<4>(to, first, static_cast<unsigned int>(count));
    for (; count > 0; count -= atOnce, x += atOnce, to += sizeof(__m128i)) {
        const __m128i words = wordsAt(ramp, x, row);
        std::memcpy(to, &words, 4 * static_cast<std::size_t>(std::min(count, atOnce)));
    }
}
