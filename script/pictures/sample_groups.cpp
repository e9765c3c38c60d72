#include "script/pictures/sample_groups.h"

#include "script/pictures/blend_kernels.h"
#include "zrdraw/v210.h"

#include <cstring>

namespace {

constexpr GroupForm rgbForm{1, 4, 1};
constexpr GroupForm pairForm{2, 4, 4};
constexpr GroupForm v210Form{zrV210::groupPixels, zrV210::groupBytes, v210Weights};
static_assert(v210Form.weights <= mostGroupWeights);

// Where the samples and weights of a group stand. Chroma is that of the pair of the pixel.
class PairPlaces {
public:
    static constexpr GroupForm form = pairForm;
    explicit PairPlaces(const zrLayout& layout) : m_order(layout.pair) {}

    int lumaWeight(int pixel) const { return pixel == 0 ? m_order.y0 : m_order.y1; }
    int cbWeight(int) const { return m_order.cb; }
    int crWeight(int) const { return m_order.cr; }

    void write(const int (&luma)[form.pixels], const int (&cb)[form.pixels / 2],
               const int (&cr)[form.pixels / 2], std::uint8_t* samples) const {
        samples[m_order.y0] = static_cast<std::uint8_t>(luma[0]);
        samples[m_order.y1] = static_cast<std::uint8_t>(luma[1]);
        samples[m_order.cb] = static_cast<std::uint8_t>(cb[0]);
        samples[m_order.cr] = static_cast<std::uint8_t>(cr[0]);
    }

private:
    const zrPairOrder m_order;
};

class V210Places {
public:
    static constexpr GroupForm form = v210Form;
    explicit V210Places(const zrLayout&) {}

    static int lumaWeight(int pixel) { return weightAt(zrV210::luma[pixel]); }
    static int cbWeight(int pixel) { return weightAt(zrV210::cb[pixel / 2]); }
    static int crWeight(int pixel) { return weightAt(zrV210::cr[pixel / 2]); }

    static void write(const int (&luma)[form.pixels], const int (&cb)[form.pixels / 2],
                      const int (&cr)[form.pixels / 2], std::uint8_t* samples) {
        std::uint32_t words[zrV210::groupBytes / zrV210::wordBytes] = {};
        const auto add = [&](zrV210::Place place, int sample) {
            words[place.word] |= static_cast<std::uint32_t>(sample) << place.bit;
        };
        for (int i = 0; i < form.pixels; ++i)
            add(zrV210::luma[i], luma[i]);
        for (int i = 0; i < form.pixels / 2; ++i) {
            add(zrV210::cb[i], cb[i]);
            add(zrV210::cr[i], cr[i]);
        }
        std::memcpy(samples, words, sizeof words);
    }

private:
    static constexpr int weightAt(zrV210::Place place) {
        return v210WeightAt(place.word, place.field());
    }
};

template <class Places>
void writeWeights(const Places& places, const WeightedPixel* pixels, std::int16_t* weights) {
    std::memset(weights, 0, Places::form.weights * sizeof *weights);
    for (int i = 0; i < Places::form.pixels; i += 2) {
        weights[places.lumaWeight(i)] = pixels[i].weight;
        weights[places.lumaWeight(i + 1)] = pixels[i + 1].weight;
        weights[places.cbWeight(i)] = weights[places.crWeight(i)] =
            static_cast<std::int16_t>(chromaWeight(pixels[i].weight, pixels[i + 1].weight));
    }
}

template <class Places>
void writeSamples(const Places& places, const WeightedPixel* pixels, std::uint8_t* samples) {
    int luma[Places::form.pixels] = {}, cb[Places::form.pixels / 2] = {},
        cr[Places::form.pixels / 2] = {};
    for (int i = 0; i < Places::form.pixels; i += 2) {
        const WeightedPixel &a = pixels[i], &b = pixels[i + 1];
        luma[i] = a.y;
        luma[i + 1] = b.y;
        cb[i / 2] = chromaSample(a.cb, a.weight, b.cb, b.weight);
        cr[i / 2] = chromaSample(a.cr, a.weight, b.cr, b.weight);
    }
    places.write(luma, cb, cr, samples);
}

template <class Places>
void writeAll(const Places& places, const WeightedPixel* pixels, int groups, std::uint8_t* samples,
              std::int16_t* weights) {
    for (int i = 0; i < groups; ++i, pixels += Places::form.pixels) {
        writeSamples(places, pixels, samples + i * Places::form.bytes);
        if (weights)
            writeWeights(places, pixels, weights + i * Places::form.weights);
    }
}

template <class Places>
void cut(const Places& places, int pixels, std::int16_t* weights) {
    for (int i = pixels; i < Places::form.pixels; ++i)
        weights[places.lumaWeight(i)] = 0;
    for (int i = pixels - pixels % 2; i < Places::form.pixels; i += 2)
        weights[places.cbWeight(i)] = weights[places.crWeight(i)] = weights[places.lumaWeight(i)];
}

} // namespace

GroupForm groupFormOf(const zrLayout& layout) {
    return isRgb32(layout) ? rgbForm : layout.isPairs() ? pairForm : v210Form;
}

void writeRgb(const zrByteOrder& order, const std::uint16_t* words, int pixels,
              std::uint8_t* samples) {
    for (int i = 0; i < pixels; ++i, words += pictureWords, samples += rgbForm.bytes) {
        samples[order.r] = byteOfWord(words[1]);
        samples[order.g] = byteOfWord(words[2]);
        samples[order.b] = byteOfWord(words[3]);
        samples[order.a] = fullByte;
    }
}

SampleConversion conversionFor(const zrLayout& layout, const MatrixRule& matrix) {
    return {matrix, layout.isPairs() ? 8 : int{zrV210::sampleBits}};
}

void writeGroups(const zrLayout& layout, const WeightedPixel* pixels, int groups,
                 std::uint8_t* samples, std::int16_t* weights) {
    if (layout.isPairs())
        writeAll(PairPlaces(layout), pixels, groups, samples, weights);
    else
        writeAll(V210Places(layout), pixels, groups, samples, weights);
}

void cutGroup(const zrLayout& layout, int pixels, std::int16_t* weights) {
    if (layout.isPairs())
        cut(PairPlaces(layout), pixels, weights);
    else
        cut(V210Places(layout), pixels, weights);
}
