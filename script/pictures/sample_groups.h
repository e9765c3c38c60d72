// Groups of pixels as layouts have them that can be blended: 32-bit RGB pixels, pairs of 4:2:2, and
// six pixels of v210.
#pragma once

#include "common/picture_view.h"
#include "common/sample_rules.h"
#include "script/pictures/pictures.h"

#include <cstdint>

struct GroupForm {
    int pixels;
    int bytes;
    int weights; // one for a pixel of RGB, else one for each sample
};

constexpr bool isRgb32(const zrLayout& layout) {
    return layout.bytes.a >= 0;
}

constexpr bool hasSampleGroups(const zrLayout& layout) {
    return isRgb32(layout) || layout.isPairs() || layout.code == ptV210;
}

constexpr int mostGroupWeights = 16;
GroupForm groupFormOf(const zrLayout& layout);

// Opaque pixels in the order of a layout, of words as pictures have them.
void writeRgb(const zrByteOrder& order, const std::uint16_t* words, int pixels,
              std::uint8_t* samples);

struct WeightedPixel {
    std::int16_t y, cb, cr;
    std::int16_t weight;
};

// How colours become the samples of a layout of Y, Cb and Cr.
SampleConversion conversionFor(const zrLayout& layout, const MatrixRule& matrix);

// The samples of groups of Y, Cb and Cr, and their weights unless they are null.
void writeGroups(const zrLayout& layout, const WeightedPixel* pixels, int groups,
                 std::uint8_t* samples, std::int16_t* weights);

// Changes the weights of such a group so that it ends with the frame behind some of its pixels:
// chroma then belongs to the last one alone.
void cutGroup(const zrLayout& layout, int pixels, std::int16_t* weights);
