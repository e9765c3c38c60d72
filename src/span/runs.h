// Pixels of a few bytes, which stand in the low bytes of a number, and runs of them.
#pragma once

#include "span/word_run.h"
#include "zrdraw/span.h"

// Stores `bytes` bytes of a number, the lowest first.
template <int bytes>
void storeBytes(char* to, unsigned long number) {
    std::memcpy(to, &number, bytes);
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
