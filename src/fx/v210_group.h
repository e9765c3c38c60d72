// A v210 group of six pixels as four words, and where its samples stand; in vectors of any width.
#pragma once

#include "fx/planes.h"

constexpr unsigned int groupPixels = 6;
constexpr unsigned int groupFrameBytes = 16;
constexpr unsigned int groupPlaneBytes = groupPixels * PlaneCopy::pixelBytes;

// The twelve samples of a group, once each is a byte of its word: 4 * word + field.
enum GroupSample : char {
    cb0 = 0,
    y0 = 1,
    cr0 = 2,
    y1 = 4,
    cb2 = 5,
    y2 = 6,
    cr2 = 8,
    y3 = 9,
    cb4 = 10,
    y4 = 12,
    cr4 = 13,
    y5 = 14
};

// For byte shuffles. In the plane a group is sixteen bytes and the chroma of its last pixel.
alignas(16) constexpr char planePlaces[] = {y0,  cb0, cr0, y1,  cb0, cr0, y2,  cb2,
                                            cr2, y3,  cb2, cr2, y4,  cb4, cr4, y5};
alignas(16) constexpr char lastChromaPlaces[] = {cb4, cr4, -1, -1, -1, -1, -1, -1,
                                                 -1,  -1,  -1, -1, -1, -1, -1, -1};
// The chroma of the odd pixels is dropped.
alignas(16) constexpr char wordPlaces[] = {1, 0, 2, -1, 3, 7, 6, -1, 8, 9, 13, -1, 12, 14, 15, -1};

using Words4 [[gnu::vector_size(16)]] = unsigned int;
using Words8 [[gnu::vector_size(32)]] = unsigned int;

// The top eight bits of each word's three 10-bit fields, as bytes, and back.
template <typename Words>
[[gnu::always_inline]] inline Words samplesOf(Words words) {
    return (words >> 2 & 0x0000FF) | (words >> 4 & 0x00FF00) | (words >> 6 & 0xFF0000);
}
template <typename Words>
[[gnu::always_inline]] inline Words wordsOf(Words samples) {
    return (samples & 0x0000FF) << 2 | (samples & 0x00FF00) << 4 | (samples & 0xFF0000) << 6;
}
