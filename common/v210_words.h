// v210 at full precision as three 16-bit words a pixel, Y, Cb and Cr, and back. The chroma of a
// pair stands at both of its pixels; on the way back that of the odd one is dropped.
#pragma once

#include <cstddef>
#include <cstdint>

inline constexpr int wordPixelBytes = 6;

// Both work in whole groups of six pixels: what they write or read behind a line of words is at
// most this many bytes, so that lines may follow each other without gaps if they are taken in
// order.
inline constexpr int wordOverhang = 30;

void expandV210Line(const std::uint8_t* line, std::uint8_t* words, int width);
void packV210Line(const std::uint8_t* words, std::uint8_t* line, int width);
