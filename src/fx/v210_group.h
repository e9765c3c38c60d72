// A v210 group as vectors of any width: its samples as bytes, and where these go in the plane.
#pragma once

#include "fx/planes.h"
#include "zrdraw/v210.h"

inline constexpr unsigned int groupPlaneBytes = zrV210::groupPixels * PlaneCopy::pixelBytes;

using Words4 [[gnu::vector_size(16)]] = unsigned int;
using Words8 [[gnu::vector_size(32)]] = unsigned int;

// The top eight bits of each word's three 10-bit samples, as bytes, and back.
template <typename Words>
[[gnu::always_inline]] inline Words samplesOf(Words words) {
    return (words >> 2 & 0x0000FF) | (words >> 4 & 0x00FF00) | (words >> 6 & 0xFF0000);
}
template <typename Words>
[[gnu::always_inline]] inline Words wordsOf(Words samples) {
    return (samples & 0x0000FF) << 2 | (samples & 0x00FF00) << 4 | (samples & 0xFF0000) << 6;
}

// A byte shuffle: which byte comes to each place; a negative number makes a zero.
struct alignas(16) Shuffle {
    char from[16];
};
inline constexpr Shuffle allZeros{{-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}};

// Where a byte of the plane's group stands, once each sample is a byte of its word.
constexpr unsigned int sampleByte(unsigned int planeByte) {
    const zrV210::Place place =
        zrV210::placeOf(planeByte / PlaneCopy::pixelBytes, planeByte % PlaneCopy::pixelBytes);
    return place.word * zrV210::wordBytes + place.field();
}

// Sixteen bytes of the plane's group, from `first` on.
constexpr Shuffle planeBytesFrom(unsigned int first) {
    Shuffle shuffle = allZeros;
    for (unsigned int i = 0; i < sizeof shuffle && first + i < groupPlaneBytes; ++i)
        shuffle.from[i] = static_cast<char>(sampleByte(first + i));
    return shuffle;
}
inline constexpr Shuffle firstPlaneBytes = planeBytesFrom(0);
inline constexpr Shuffle lastPlaneBytes = planeBytesFrom(sizeof(Shuffle));

// From the first bytes of the plane's group to samples. The chroma of the odd pixels is dropped.
inline constexpr Shuffle samplesOfPlane = [] {
    Shuffle shuffle = allZeros;
    for (unsigned int byte = 0; byte < sizeof shuffle; ++byte) {
        const bool isLuma = byte % PlaneCopy::pixelBytes == 0;
        if (isLuma || byte / PlaneCopy::pixelBytes % 2 == 0)
            shuffle.from[sampleByte(byte)] = static_cast<char>(byte);
    }
    return shuffle;
}();
