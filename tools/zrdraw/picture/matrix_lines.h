// Lines of 8-bit samples between YCbCr and RGB, at full and half width. All arithmetic is in
// fractions of 1/32, so that a result is less than one off what is exact.
#pragma once

#include "picture/canvas.h"

#include <cstdint>
#include <optional>

// Numbers in fractions of 1/8192.
struct MatrixNumbers {
    std::int16_t luma, redCr, greenCb, greenCr, blueCb; // towards RGB
    std::int16_t lumaRed, lumaGreen, lumaBlue;          // towards YCbCr
    std::int16_t cbRed, cbGreen, cbBlue, crRed, crGreen, crBlue;
    std::int16_t black;     // luma
    std::int16_t lumaOfMid; // of grey 128, in fractions of 1/32
};

// None for a colour space that is no matrix or is little used.
std::optional<MatrixNumbers> matrixNumbers(const Colors& colors);

struct RgbLines {
    std::uint8_t *red, *green, *blue;
};

void toRgb(const std::uint8_t* y, const std::uint8_t* cb, const std::uint8_t* cr,
           const RgbLines& rgb, int width, const MatrixNumbers& numbers);
void toLuma(const RgbLines& rgb, std::uint8_t* y, int width, const MatrixNumbers& numbers);

// Of lines that are sums of eight samples for each result.
struct RgbSums {
    std::int16_t *red, *green, *blue;
};
void toChroma(const RgbSums& rgb, std::uint8_t* cb, std::uint8_t* cr, int width,
              const MatrixNumbers& numbers);

// Three quarters of a line of chroma and a quarter of the one beyond.
void mixLines(const std::uint8_t* near, const std::uint8_t* far, std::uint8_t* mixed, int width);

// Chroma for each pixel of a width, where it stands at the first of each pair, or between both.
// Reads one sample behind the last.
void widenLine(const std::uint8_t* line, std::uint8_t* wide, int width, bool between);

// Sums over two lines, and over the pixels about each place of chroma. `sums` is also read and
// written one before the first.
void addLines(const std::uint8_t* first, const std::uint8_t* second, std::int16_t* sums, int width);
void narrowSums(const std::int16_t* sums, std::int16_t* narrow, int width, bool between);
