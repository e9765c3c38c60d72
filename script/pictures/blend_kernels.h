// Runs of samples laid over those of a frame, by the rules of common/sample_rules.h.
#pragma once

#include <cstddef>
#include <cstdint>

// Samples with a weight each.
void blendBytes(std::uint8_t* under, const std::uint8_t* samples, const std::int16_t* weights,
                std::size_t count);

// Pixels of four bytes with a weight each.
void blendPixels(std::uint8_t* under, const std::uint8_t* samples, const std::int16_t* weights,
                 std::size_t pixels);
// The same where those below may show through; alpha is the byte of that number.
void blendPixelsOver(std::uint8_t* under, const std::uint8_t* samples, const std::int16_t* weights,
                     std::size_t pixels, int alpha);

// The weights of a group of v210: of the low and middle sample of each of its words in turns, then
// of the high ones, each with a 0 behind it.
inline constexpr int v210Weights = 16;
constexpr int v210WeightAt(unsigned word, unsigned field) {
    return static_cast<int>(field == 2 ? v210Weights / 2 + 2 * word : 2 * word + field);
}

// Both leave bits 30 and 31 of the frame's words alone.
void blendV210(std::uint8_t* under, const std::uint8_t* samples, const std::int16_t* weights,
               std::size_t groups);
void copyV210(std::uint8_t* under, const std::uint8_t* samples, std::size_t groups);
