// A short run of words, written where it is asked for.
#pragma once

#include "span/words.h"

#include <immintrin.h>

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
