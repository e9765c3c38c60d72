// The loops of the integer mix, which are compiled once for each width of vector.
#pragma once

#include "fx/mix.h"

#include <cstring>

// b + (a - b) * step / 65536, rounded down. The step goes into a signed 16-bit factor, as the
// multiplication of vectors has them; what it is off by, 65536, is one whole difference.
[[gnu::always_inline]] inline void mixBytesLoop(unsigned char* to, const unsigned char* first,
                                                const unsigned char* second, std::size_t count,
                                                MixStep step) {
    constexpr MixStep half = 32768;
    const auto factor = static_cast<short>(static_cast<unsigned short>(step));
    if (step < half) {
        for (std::size_t i = 0; i < count; ++i) {
            const auto difference = static_cast<short>(first[i] - second[i]);
            to[i] = static_cast<unsigned char>(second[i] + ((difference * factor) >> 16));
        }
    } else {
        for (std::size_t i = 0; i < count; ++i) {
            const auto difference = static_cast<short>(first[i] - second[i]);
            to[i] = static_cast<unsigned char>(first[i] + ((difference * factor) >> 16));
        }
    }
}

[[gnu::always_inline]] inline void mixWordsLoop(unsigned short* to, const unsigned short* first,
                                                const unsigned short* second, std::size_t count,
                                                MixStep step) {
    const MixStep rest = 65536 - step;
    // Words may stand at any address, as a pitch may be odd.
    const auto wordAt = [](const unsigned short* words, std::size_t index) {
        unsigned short word;
        std::memcpy(&word, reinterpret_cast<const unsigned char*>(words) + 2 * index, sizeof word);
        return word;
    };
    for (std::size_t i = 0; i < count; ++i) {
        const auto word =
            static_cast<unsigned short>((wordAt(first, i) * step + wordAt(second, i) * rest) >> 16);
        std::memcpy(reinterpret_cast<unsigned char*>(to) + 2 * i, &word, sizeof word);
    }
}
