// Pixels of a few bytes, which stand in the low bytes of a number, and runs of them.
#pragma once

#include "span/words.h"
#include "zrdraw/span.h"

// Stores `bytes` bytes of a number, the lowest first.
template <int bytes>
void storeBytes(char* to, unsigned long number) {
    std::memcpy(to, &number, bytes);
}

// Long runs are the business of the span kernels; before a short one a call is not worth while.
template <int bytes>
void fillRun(char* to, unsigned long number, unsigned int count) {
    constexpr unsigned int shortRun = 12;
    if (count > shortRun) {
        zrdraw_fill_pattern(to, reinterpret_cast<const char*>(&number), bytes, count);
        return;
    }
    for (; count != 0; --count, to += bytes)
        storeBytes<bytes>(to, number);
}
