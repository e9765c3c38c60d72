#include "picture/matrix_lines.h"

#include "picture/luma_weights.h"
#include "picture/vectors.h"

#include <algorithm>
#include <cmath>

// Each body is compiled twice and does the same in both.
#define BODY [[gnu::always_inline]] inline
#define VECTORS [[gnu::target("avx2")]]

namespace {

constexpr double unit = 8192;
constexpr int fraction = 5; // bits of a product

std::int16_t inUnits(double number) {
    return static_cast<std::int16_t>(std::lround(number * unit));
}

// Of a sample in fractions of 1/128, rounded in the form that compilers know an instruction for.
BODY std::int16_t product(std::int16_t sample, std::int16_t number) {
    return static_cast<std::int16_t>(((sample * number >> 14) + 1) >> 1);
}

BODY std::int16_t sum(std::int16_t a, std::int16_t b) {
    return static_cast<std::int16_t>(a + b);
}

BODY std::int16_t scaled(int sample) {
    return static_cast<std::int16_t>(sample << 7);
}

BODY std::int16_t centred(int sample) {
    return scaled(sample - 128);
}

// In 16 bits throughout, of which a vector holds twice as many as of 32.
BODY std::uint8_t rounded(std::int16_t value) {
    constexpr std::int16_t half = 1 << fraction >> 1, none = 0, full = 255;
    const auto whole = static_cast<std::int16_t>(sum(value, half) >> fraction);
    return static_cast<std::uint8_t>(std::min(std::max(whole, none), full));
}

BODY void rgbBody(const std::uint8_t* __restrict y, const std::uint8_t* __restrict cb,
                  const std::uint8_t* __restrict cr, std::uint8_t* __restrict red,
                  std::uint8_t* __restrict green, std::uint8_t* __restrict blue, int width,
                  MatrixNumbers n) {
    for (int x = 0; x < width; ++x) {
        const auto luma = product(scaled(y[x] - n.black), n.luma);
        const std::int16_t b = centred(cb[x]), r = centred(cr[x]);
        red[x] = rounded(static_cast<std::int16_t>(luma + product(r, n.redCr)));
        green[x] = rounded(
            static_cast<std::int16_t>(luma - product(b, n.greenCb) - product(r, n.greenCr)));
        blue[x] = rounded(static_cast<std::int16_t>(luma + product(b, n.blueCb)));
    }
}

BODY void lumaBody(const std::uint8_t* __restrict red, const std::uint8_t* __restrict green,
                   const std::uint8_t* __restrict blue, std::uint8_t* __restrict y, int width,
                   MatrixNumbers n) {
    for (int x = 0; x < width; ++x)
        y[x] = rounded(
            sum(sum(product(centred(red[x]), n.lumaRed), product(centred(green[x]), n.lumaGreen)),
                sum(product(centred(blue[x]), n.lumaBlue), n.lumaOfMid)));
}

BODY void chromaBody(const std::int16_t* __restrict red, const std::int16_t* __restrict green,
                     const std::int16_t* __restrict blue, std::uint8_t* __restrict cb,
                     std::uint8_t* __restrict cr, int width, MatrixNumbers n) {
    constexpr std::int16_t zero = 128 << fraction;
    for (int x = 0; x < width; ++x) {
        const auto r = static_cast<std::int16_t>(red[x] << 4);
        const auto g = static_cast<std::int16_t>(green[x] << 4);
        const auto b = static_cast<std::int16_t>(blue[x] << 4);
        cb[x] = rounded(
            sum(sum(product(r, n.cbRed), product(g, n.cbGreen)), sum(product(b, n.cbBlue), zero)));
        cr[x] = rounded(
            sum(sum(product(r, n.crRed), product(g, n.crGreen)), sum(product(b, n.crBlue), zero)));
    }
}

BODY void mixBody(const std::uint8_t* __restrict near, const std::uint8_t* __restrict far,
                  std::uint8_t* __restrict mixed, int width) {
    for (int x = 0; x < width; ++x)
        mixed[x] = static_cast<std::uint8_t>((3 * near[x] + far[x] + 2) >> 2);
}

BODY void widenBody(const std::uint8_t* __restrict line, std::uint8_t* __restrict wide, int width,
                    bool between) {
    if (between) {
        wide[0] = line[0];
        for (int i = 0; 2 * i + 1 < width; ++i) {
            wide[2 * i + 1] = static_cast<std::uint8_t>((3 * line[i] + line[i + 1] + 2) >> 2);
            wide[2 * i + 2] = static_cast<std::uint8_t>((line[i] + 3 * line[i + 1] + 2) >> 2);
        }
    } else {
        for (int i = 0; 2 * i < width; ++i) {
            wide[2 * i] = line[i];
            wide[2 * i + 1] = static_cast<std::uint8_t>((line[i] + line[i + 1] + 1) >> 1);
        }
    }
}

BODY void addBody(const std::uint8_t* __restrict first, const std::uint8_t* __restrict second,
                  std::int16_t* __restrict sums, int width) {
    for (int x = 0; x < width; ++x)
        sums[x] = static_cast<std::int16_t>(first[x] + second[x]);
}

BODY void narrowBody(const std::int16_t* __restrict sums, std::int16_t* __restrict narrow,
                     int width, bool between) {
    if (between)
        for (int i = 0; 2 * i < width; ++i)
            narrow[i] = static_cast<std::int16_t>((sums[2 * i] + sums[2 * i + 1]) * 2);
    else
        for (int i = 0; 2 * i < width; ++i)
            narrow[i] =
                static_cast<std::int16_t>(sums[2 * i - 1] + 2 * sums[2 * i] + sums[2 * i + 1]);
}

VECTORS void rgbVectors(const std::uint8_t* y, const std::uint8_t* cb, const std::uint8_t* cr,
                        const RgbLines& rgb, int width, const MatrixNumbers& n) {
    rgbBody(y, cb, cr, rgb.red, rgb.green, rgb.blue, width, n);
}
VECTORS void lumaVectors(const RgbLines& rgb, std::uint8_t* y, int width, const MatrixNumbers& n) {
    lumaBody(rgb.red, rgb.green, rgb.blue, y, width, n);
}
VECTORS void chromaVectors(const RgbSums& rgb, std::uint8_t* cb, std::uint8_t* cr, int width,
                           const MatrixNumbers& n) {
    chromaBody(rgb.red, rgb.green, rgb.blue, cb, cr, width, n);
}
VECTORS void mixVectors(const std::uint8_t* near, const std::uint8_t* far, std::uint8_t* mixed,
                        int width) {
    mixBody(near, far, mixed, width);
}
VECTORS void widenVectors(const std::uint8_t* line, std::uint8_t* wide, int width, bool between) {
    widenBody(line, wide, width, between);
}
VECTORS void addVectors(const std::uint8_t* first, const std::uint8_t* second, std::int16_t* sums,
                        int width) {
    addBody(first, second, sums, width);
}
VECTORS void narrowVectors(const std::int16_t* sums, std::int16_t* narrow, int width,
                           bool between) {
    narrowBody(sums, narrow, width, between);
}

} // namespace

std::optional<MatrixNumbers> matrixNumbers(const Colors& colors) {
    const std::optional<LumaWeights> weights = lumaWeights(colors.space);
    if (!weights)
        return std::nullopt;
    const bool full = colors.range == AVCOL_RANGE_JPEG;
    const double luma = full ? 1.0 : 219.0 / 255, chroma = full ? 1.0 : 224.0 / 255;
    const double red = weights->red, blue = weights->blue, green = weights->green();
    const double cb = chroma / (2 * (1 - blue)), cr = chroma / (2 * (1 - red));
    return MatrixNumbers{
        inUnits(1 / luma),
        inUnits(2 * (1 - red) / chroma),
        inUnits(2 * (1 - blue) * blue / green / chroma),
        inUnits(2 * (1 - red) * red / green / chroma),
        inUnits(2 * (1 - blue) / chroma),
        inUnits(red * luma),
        inUnits(green * luma),
        inUnits(blue * luma),
        inUnits(-red * cb),
        inUnits(-green * cb),
        inUnits((1 - blue) * cb),
        inUnits((1 - red) * cr),
        inUnits(-green * cr),
        inUnits(-blue * cr),
        static_cast<std::int16_t>(full ? 0 : 16),
        static_cast<std::int16_t>(std::lround(((full ? 0 : 16) + 128 * luma) * (1 << fraction)))};
}

void toRgb(const std::uint8_t* y, const std::uint8_t* cb, const std::uint8_t* cr,
           const RgbLines& rgb, int width, const MatrixNumbers& numbers) {
    if (hasVectors())
        return rgbVectors(y, cb, cr, rgb, width, numbers);
    rgbBody(y, cb, cr, rgb.red, rgb.green, rgb.blue, width, numbers);
}

void toLuma(const RgbLines& rgb, std::uint8_t* y, int width, const MatrixNumbers& numbers) {
    if (hasVectors())
        return lumaVectors(rgb, y, width, numbers);
    lumaBody(rgb.red, rgb.green, rgb.blue, y, width, numbers);
}

void toChroma(const RgbSums& rgb, std::uint8_t* cb, std::uint8_t* cr, int width,
              const MatrixNumbers& numbers) {
    if (hasVectors())
        return chromaVectors(rgb, cb, cr, width, numbers);
    chromaBody(rgb.red, rgb.green, rgb.blue, cb, cr, width, numbers);
}

void mixLines(const std::uint8_t* near, const std::uint8_t* far, std::uint8_t* mixed, int width) {
    (hasVectors() ? mixVectors : mixBody)(near, far, mixed, width);
}

void widenLine(const std::uint8_t* line, std::uint8_t* wide, int width, bool between) {
    (hasVectors() ? widenVectors : widenBody)(line, wide, width, between);
}

void addLines(const std::uint8_t* first, const std::uint8_t* second, std::int16_t* sums,
              int width) {
    (hasVectors() ? addVectors : addBody)(first, second, sums, width);
}

void narrowSums(const std::int16_t* sums, std::int16_t* narrow, int width, bool between) {
    (hasVectors() ? narrowVectors : narrowBody)(sums, narrow, width, between);
}
