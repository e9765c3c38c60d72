// The exact rules by which colours become samples, and by which the samples of a picture are laid
// over those of a frame.
#pragma once

#include "common/luma_weights.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <cstdint>

// The nearest whole number to one that is not negative.
constexpr int nearest(double value) {
    const double raised = value + 0.5;
    return static_cast<int>(raised);
}

// How much of a picture's sample shows. All of it is a power of two, so that it is the sample
// itself that shows then; and all factors of a blend fit signed words, which processors multiply
// fastest.
inline constexpr int weightBits = 14;
inline constexpr int fullWeight = 1 << weightBits;

// Full scale of words and bytes.
inline constexpr int fullWord = 65535;
inline constexpr int fullByte = 255;

constexpr int weightOf(std::uint16_t alpha) {
    return nearest(alpha * (double{fullWeight} / fullWord));
}

// Of an opacity from 0 to 1, which all weights of a picture are taken times.
constexpr int opacityWeight(double opacity) {
    return nearest(opacity * fullWeight);
}
constexpr int fadedWeight(int weight, int opacity) {
    return (weight * opacity + fullWeight / 2) >> weightBits;
}

// Where nothing is blended, pixels are opaque or are left out.
constexpr bool isMostlyOpaque(std::uint16_t alpha, double opacity) {
    return alpha * opacity * 2 >= fullWord;
}

constexpr int blended(int weight, int sample, int under) {
    return (weight * sample + (fullWeight - weight) * under + fullWeight / 2) >> weightBits;
}

// The same of a colour over a pixel with an alpha of eight bits that is not multiplied into its
// colour: each counts as much as it covers. Over full alpha it is `blended`; alpha itself always
// is, towards full.
constexpr int blendedOver(int weight, int sample, int under, int underAlpha) {
    const int above = weight * fullByte, below = (fullWeight - weight) * underAlpha;
    const int both = above + below;
    return both == 0 ? under : (above * sample + below * under + both / 2) / both;
}

constexpr std::uint8_t byteOfWord(std::uint16_t word) {
    constexpr int step = fullWord / fullByte;
    return static_cast<std::uint8_t>((word + step / 2) / step);
}

// The chroma of two pixels that share it. One that is not there has the weight 0.
constexpr int chromaWeight(int weight0, int weight1) {
    return (weight0 + weight1 + 1) / 2;
}
constexpr int chromaSample(int sample0, int weight0, int sample1, int weight1) {
    if (weight0 == weight1) // which most pixels have; the same without a division
        return (sample0 + sample1 + 1) / 2;
    const int both = weight0 + weight1;
    return (sample0 * weight0 + sample1 * weight1 + both / 2) / both;
}

// How the library's matrix modes turn colours into Y, Cb and Cr.
struct MatrixRule {
    cmYCbCr mode;
    LumaWeights weights;
    bool full; // range
};

inline constexpr MatrixRule matrixRules[] = {
    {cmRec601Default, bt601Weights, false}, {cmRec601, bt601Weights, false},
    {cmRec601Full, bt601Weights, true},     {cmRec709, bt709Weights, false},
    {cmRec709Full, bt709Weights, true},     {cmRec2020, bt2020Weights, false},
    {cmRec2020Full, bt2020Weights, true},
};

// Null for the modes that are none of these.
constexpr const MatrixRule* findMatrixRule(cmYCbCr mode) {
    for (const MatrixRule& rule : matrixRules)
        if (rule.mode == mode)
            return &rule;
    return nullptr;
}

struct YCbCrSamples {
    int y, cb, cr;
};

// Makes samples of 8 or 10 bits of colours, numbers 0 to 1. Studio range has the numbers of eight
// bits, times four for ten; full range has all numbers. Those of 8 bits are made from ten, of which
// the two low ones are dropped with 2 added before, so that they are rounded.
class SampleConversion {
public:
    constexpr SampleConversion(const MatrixRule& rule, int depth)
        : m_weights(rule.weights), m_cbUnit(2 * (1 - rule.weights.blue)),
          m_crUnit(2 * (1 - rule.weights.red)), m_drop(depth == 8 ? 2 : 0) {
        const double whole = depth == 8 ? 4 * fullByte : full10;
        m_luma = rule.full ? whole : 4 * 219;
        m_chroma = rule.full ? whole : 4 * 224;
        m_black = rule.full ? 0 : 64;
    }

    constexpr YCbCrSamples operator()(double red, double green, double blue) const {
        const double y = m_weights.red * red + m_weights.green() * green + m_weights.blue * blue;
        const double cb = (blue - y) / m_cbUnit, cr = (red - y) / m_crUnit;
        return {sampleOf(m_black, y * m_luma), sampleOf(grey, cb * m_chroma),
                sampleOf(grey, cr * m_chroma)};
    }

private:
    static constexpr int full10 = 1023, grey = 512;

    constexpr int sampleOf(int zero, double value) const {
        return nearest(std::min(std::max(zero + m_drop + value, 0.0), double{full10})) >> m_drop;
    }

    LumaWeights m_weights;
    double m_cbUnit, m_crUnit, m_luma = 0, m_chroma = 0;
    int m_drop, m_black = 0;
};
