// Groups of pixels as layouts have them that can be blended: 32-bit RGB pixels, pairs of 4:2:2, and
// six pixels of v210.
#pragma once

#include "common/picture_view.h"
#include "common/sample_rules.h"

#include <cstdint>

struct GroupForm {
    int pixels;
    int bytes;
    int weights; // each sample of a group has one
};

constexpr int mostGroupPixels = 6;
constexpr int mostGroupWeights = 16;

constexpr bool isV210(const zrLayout& layout) {
    return layout.code == ptV210;
}

constexpr bool hasSampleGroups(const zrLayout& layout) {
    return layout.bytes.a >= 0 || layout.isPairs() || isV210(layout);
}

GroupForm groupFormOf(const zrLayout& layout);

struct WeightedPixel {
    std::uint16_t red, green, blue;
    std::int16_t weight;
};

// Writes the samples and weights of a group. Pixels of the weight 0 need no colours.
void writeGroup(const zrLayout& layout, const MatrixRule& matrix, const WeightedPixel* pixels,
                std::uint8_t* samples, std::int16_t* weights);

// Changes the weights of a group of Y, Cb and Cr so that it ends with the frame behind some of its
// pixels: chroma then belongs to the last one alone.
void cutGroup(const zrLayout& layout, int pixels, std::int16_t* weights);
