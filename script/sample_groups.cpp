#include "script/sample_groups.h"

#include "script/blend_kernels.h"
#include "zrdraw/v210.h"

#include <algorithm>
#include <cstring>

namespace {

enum Component : unsigned { luma, cb, cr };

constexpr int pairBytes = 4;

constexpr GroupForm rgbForm{1, 4, 4};
constexpr GroupForm pairForm{2, pairBytes, pairBytes};
constexpr GroupForm v210Form{zrV210::groupPixels, zrV210::groupBytes, v210Weights};
static_assert(v210Form.pixels <= mostGroupPixels && v210Form.weights <= mostGroupWeights);

int offsetInPair(const zrPairOrder& order, int pixel, Component component) {
    if (component == luma)
        return pixel == 0 ? order.y0 : order.y1;
    return component == cb ? order.cb : order.cr;
}

int weightAt(const zrLayout& layout, int pixel, Component component) {
    if (layout.isPairs())
        return offsetInPair(layout.pair, pixel, component);
    const zrV210::Place place = zrV210::placeOf(static_cast<unsigned>(pixel), component);
    return v210WeightAt(place.word, place.field());
}

void writeSample(const zrLayout& layout, int pixel, Component component, int sample,
                 std::uint8_t* samples) {
    if (layout.isPairs()) {
        samples[offsetInPair(layout.pair, pixel, component)] = static_cast<std::uint8_t>(sample);
        return;
    }
    const zrV210::Place place = zrV210::placeOf(static_cast<unsigned>(pixel), component);
    std::uint8_t* const at = samples + place.word * zrV210::wordBytes;
    std::uint32_t word = 0;
    std::memcpy(&word, at, sizeof word);
    word |= static_cast<std::uint32_t>(sample) << place.bit;
    std::memcpy(at, &word, sizeof word);
}

void writeRgb(const zrByteOrder& order, const WeightedPixel& pixel, std::uint8_t* samples,
              std::int16_t* weights) {
    samples[order.r] = byteOfWord(pixel.red);
    samples[order.g] = byteOfWord(pixel.green);
    samples[order.b] = byteOfWord(pixel.blue);
    samples[order.a] = fullByte;
    std::fill_n(weights, rgbForm.weights, pixel.weight);
}

YCbCrSamples samplesOf(const WeightedPixel& pixel, const MatrixRule& matrix, int depth) {
    if (pixel.weight == 0)
        return {};
    constexpr double unit = 1.0 / fullWord;
    return samplesOf(matrix, depth, pixel.red * unit, pixel.green * unit, pixel.blue * unit);
}

} // namespace

GroupForm groupFormOf(const zrLayout& layout) {
    return layout.isPairs() ? pairForm : isV210(layout) ? v210Form : rgbForm;
}

void writeGroup(const zrLayout& layout, const MatrixRule& matrix, const WeightedPixel* pixels,
                std::uint8_t* samples, std::int16_t* weights) {
    if (layout.bytes.a >= 0)
        return writeRgb(layout.bytes, *pixels, samples, weights);
    const GroupForm form = groupFormOf(layout);
    std::fill_n(samples, form.bytes, std::uint8_t{0});
    std::fill_n(weights, form.weights, std::int16_t{0});
    const int depth = layout.isPairs() ? 8 : zrV210::sampleBits;
    const auto write = [&](int pixel, Component component, int sample, int weight) {
        writeSample(layout, pixel, component, sample, samples);
        weights[weightAt(layout, pixel, component)] = static_cast<std::int16_t>(weight);
    };
    for (int i = 0; i < form.pixels; i += 2) {
        const int weight0 = pixels[i].weight, weight1 = pixels[i + 1].weight;
        const YCbCrSamples a = samplesOf(pixels[i], matrix, depth);
        const YCbCrSamples b = samplesOf(pixels[i + 1], matrix, depth);
        const int chroma = chromaWeight(weight0, weight1);
        write(i, luma, a.y, weight0);
        write(i + 1, luma, b.y, weight1);
        write(i, cb, chromaSample(a.cb, weight0, b.cb, weight1), chroma);
        write(i, cr, chromaSample(a.cr, weight0, b.cr, weight1), chroma);
    }
}

void cutGroup(const zrLayout& layout, int pixels, std::int16_t* weights) {
    const auto weight = [&](int pixel, Component component) -> std::int16_t& {
        return weights[weightAt(layout, pixel, component)];
    };
    const int all = groupFormOf(layout).pixels;
    for (int i = pixels; i < all; ++i)
        weight(i, luma) = 0;
    for (int i = pixels - pixels % 2; i < all; i += 2)
        for (const Component chroma : {cb, cr})
            weight(i, chroma) = weight(i, luma);
}
