// Pixels of a few bytes, which stand in the low bytes of a number, and runs of them.
#pragma once

#include "span/words.h"
#include "zrdraw/span.h"

#include <immintrin.h>

// Stores `bytes` bytes of a number, the lowest first.
template <int bytes>
void storeBytes(char* to, unsigned long number) {
    std::memcpy(to, &number, bytes);
}

// A run of 4- or 8-byte words, which is at most a few lines of cache. A last store that ends with
// the run has the phase of the one before, and may overlap it.
inline void fillWordRun(char* to, __m256i words, unsigned long bytes) {
    const __m128i half = _mm256_castsi256_si128(words);
    const auto store = [](char* at, __m128i sixteen) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(at), sixteen);
    };
    if (bytes >= sizeof words) {
        const unsigned long last = bytes - sizeof words;
        for (unsigned long at = 0; at < last; at += sizeof words)
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + at), words);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to + last), words);
    } else if (bytes >= sizeof half) {
        store(to, half);
        store(to + bytes - sizeof half, half);
    } else if (bytes >= 8) {
        const long long eight = _mm_cvtsi128_si64(half);
        storeAs(to, eight);
        storeAs(to + bytes - sizeof eight, eight);
    } else if (bytes != 0) {
        storeAs(to, _mm_cvtsi128_si32(half));
    }
}

// Long runs are the business of the span kernels; before a short one a call is not worth while.
template <int bytes>
void fillRun(char* to, unsigned long number, unsigned int count) {
    constexpr bool isWord = bytes == 4 || bytes == 8;
    constexpr unsigned int shortRun = isWord ? 1024 / bytes : 12;
    if (count > shortRun) {
        zrdraw_fill_pattern(to, reinterpret_cast<const char*>(&number), bytes, count);
    } else if constexpr (isWord) {
        const auto word =
            static_cast<long long>(bytes == 4 ? number << 32 | (number & 0xFFFFFFFF) : number);
        fillWordRun(to, _mm256_set1_epi64x(word), static_cast<unsigned long>(bytes) * count);
    } else {
        for (; count != 0; --count, to += bytes)
            storeBytes<bytes>(to, number);
    }
}
