#include "script/pictures/blended_picture.h"

#include "script/pictures/blend_kernels.h"

#include <algorithm>
#include <cstring>

namespace {

// Shorter runs are cheaper blended than told apart.
constexpr std::size_t shortestRun = 8;

// Calls with each run of equal kinds: its first group and the one behind its last.
template <class Kinds, class Work>
void byRuns(const Kinds& kinds, Work work) {
    for (std::size_t first = 0, end = 0; first < kinds.size(); first = end) {
        const auto kind = kinds[first];
        while (end < kinds.size() && kinds[end] == kind)
            ++end;
        work(kind, first, end);
    }
}

} // namespace

int BlendedPicture::groupPixels(const zrLayout& layout) {
    return groupFormOf(layout).pixels;
}

void BlendedPicture::prepare(const ScriptPicture& picture, const zrLayout& layout,
                             const MatrixRule& matrix, int phase) {
    m_layout = &layout;
    m_phase = phase;
    m_runs.clear();
    m_samples.clear();
    m_weights.clear();
    const int pixels = groupPixels(layout), groups = (phase + picture.width + pixels - 1) / pixels;
    m_kinds.resize(static_cast<std::size_t>(groups));
    m_pixels.resize(m_kinds.size() * static_cast<std::size_t>(pixels));
    m_lineWeights.assign(m_pixels.size(), 0);
    const SampleConversion conversion = conversionFor(layout, matrix);
    for (int line = 0; line < picture.height; ++line) {
        const std::uint16_t* words = pixelOf(picture, 0, line);
        std::int16_t* weights = m_lineWeights.data() + phase;
        for (int x = 0; x < picture.width; ++x)
            weights[x] = static_cast<std::int16_t>(weightOf(words[x * pictureWords]));
        sortGroups();
        byRuns(m_kinds, [&](Kind kind, std::size_t first, std::size_t end) {
            if (kind != Kind::Transparent)
                appendRun(picture, line, static_cast<int>(first), static_cast<int>(end),
                          conversion);
        });
    }
}

// Tells what kind the groups of a line are, and counts those of short runs among their soft
// neighbours, but for the transparent ones at both ends.
void BlendedPicture::sortGroups() {
    const int pixels = groupPixels(*m_layout);
    const std::int16_t* weights = m_lineWeights.data();
    for (Kind& kind : m_kinds) {
        int all = fullWeight, any = 0;
        for (int i = 0; i < pixels; ++i) {
            all &= weights[i]; // only the full one has its bit
            any |= weights[i];
        }
        kind = any == 0 ? Kind::Transparent : all == fullWeight ? Kind::Opaque : Kind::Soft;
        weights += pixels;
    }
    byRuns(m_kinds, [&](Kind kind, std::size_t first, std::size_t end) {
        const bool atEnd = first == 0 || end == m_kinds.size();
        if (end - first < shortestRun && !(kind == Kind::Transparent && atEnd))
            std::fill_n(m_kinds.begin() + static_cast<std::ptrdiff_t>(first), end - first,
                        Kind::Soft);
    });
}

void BlendedPicture::appendRun(const ScriptPicture& picture, int line, int first, int end,
                               const SampleConversion& conversion) {
    const GroupForm form = groupFormOf(*m_layout);
    const bool opaque = m_kinds[static_cast<std::size_t>(first)] == Kind::Opaque;
    const Run run{line, first, end - first, opaque, m_samples.size(), m_weights.size()};
    m_runs.push_back(run);
    const auto count = static_cast<std::size_t>(run.count);
    m_samples.resize(run.samples + count * static_cast<std::size_t>(form.bytes));
    std::uint8_t* samples = m_samples.data() + run.samples;
    if (!opaque)
        m_weights.resize(run.weights + count * static_cast<std::size_t>(form.weights));
    std::int16_t* weights = opaque ? nullptr : m_weights.data() + run.weights;
    if (isRgb32(*m_layout)) {
        writeRgb(m_layout->bytes, pixelOf(picture, first, line), run.count, samples);
        if (weights)
            std::copy_n(m_lineWeights.data() + first, count, weights);
    } else {
        readPixels(picture, line, first * form.pixels, end * form.pixels, conversion);
        writeGroups(*m_layout, m_pixels.data() + first * form.pixels, run.count, samples, weights);
    }
}

// From a pixel of the line's groups to another.
void BlendedPicture::readPixels(const ScriptPicture& picture, int line, int first, int end,
                                const SampleConversion& conversion) {
    constexpr double unit = 1.0 / fullWord;
    for (int i = first; i < end; ++i) {
        WeightedPixel& pixel = m_pixels[static_cast<std::size_t>(i)];
        pixel = {0, 0, 0, m_lineWeights[static_cast<std::size_t>(i)]};
        if (pixel.weight == 0) // it may be off the picture
            continue;
        const std::uint16_t* words = pixelOf(picture, i - m_phase, line);
        const YCbCrSamples samples = conversion(words[1] * unit, words[2] * unit, words[3] * unit);
        pixel.y = static_cast<std::int16_t>(samples.y);
        pixel.cb = static_cast<std::int16_t>(samples.cb);
        pixel.cr = static_cast<std::int16_t>(samples.cr);
    }
}

void BlendedPicture::blend(const PictureView& frame, int x, int y, int opacity, bool alphaCounts) {
    const std::int64_t origin = (std::int64_t{x} - m_phase) / groupPixels(*m_layout);
    for (const Run& run : m_runs) {
        const std::int64_t line = std::int64_t{y} + run.line;
        if (line >= 0 && line < frame.height)
            blendRun(frame, run, frame.line(static_cast<int>(line)), origin,
                     {opacity, alphaCounts});
    }
}

// What of a run is on the frame: whole groups, and part of one where the frame ends in it.
void BlendedPicture::blendRun(const PictureView& frame, const Run& run, unsigned char* line,
                              std::int64_t origin, Manner manner) {
    const GroupForm form = groupFormOf(*m_layout);
    const int whole = frame.width / form.pixels, part = frame.width % form.pixels;
    const std::int64_t first = origin + run.first, end = first + run.count;
    const std::int64_t from = std::max<std::int64_t>(first, 0);
    const std::int64_t to = std::min<std::int64_t>(end, whole);
    if (from < to)
        blendGroups(line + from * form.bytes, run, static_cast<std::size_t>(from - first),
                    static_cast<std::size_t>(to - from), manner);
    if (part != 0 && first <= whole && whole < end)
        blendPart(line + std::ptrdiff_t{whole} * form.bytes, run,
                  static_cast<std::size_t>(whole - first), part, manner.opacity);
}

// Those of a run, times the opacity; null weights are full ones.
const std::int16_t* BlendedPicture::fadedWeights(const std::int16_t* weights, std::size_t count,
                                                 int opacity) {
    if (m_faded.size() < count)
        m_faded.resize(count);
    if (weights)
        std::transform(weights, weights + count, m_faded.begin(), [opacity](std::int16_t weight) {
            return static_cast<std::int16_t>(fadedWeight(weight, opacity));
        });
    else
        std::fill_n(m_faded.begin(), count, static_cast<std::int16_t>(opacity));
    return m_faded.data();
}

void BlendedPicture::blendGroups(unsigned char* under, const Run& run, std::size_t skipped,
                                 std::size_t count, Manner manner) {
    const GroupForm form = groupFormOf(*m_layout);
    const auto bytes = static_cast<std::size_t>(form.bytes);
    const auto groupWeights = static_cast<std::size_t>(form.weights);
    const bool opaque = run.opaque && manner.opacity == fullWeight;
    const std::uint8_t* samples = m_samples.data() + run.samples + skipped * bytes;
    const std::int16_t* weights =
        run.opaque ? nullptr : m_weights.data() + run.weights + skipped * groupWeights;
    if (manner.opacity != fullWeight)
        weights = fadedWeights(weights, count * groupWeights, manner.opacity);
    if (m_layout->code == ptV210)
        opaque ? copyV210(under, samples, count) : blendV210(under, samples, weights, count);
    else if (opaque)
        std::memcpy(under, samples, count * bytes);
    else if (m_layout->isPairs())
        blendBytes(under, samples, weights, count * bytes);
    else if (manner.alphaCounts)
        blendPixelsOver(under, samples, weights, count, m_layout->bytes.a);
    else
        blendPixels(under, samples, weights, count);
}

// The last group of a line whose width is no number of whole ones.
void BlendedPicture::blendPart(unsigned char* under, const Run& run, std::size_t skipped,
                               int pixels, int opacity) const {
    const GroupForm form = groupFormOf(*m_layout);
    const auto bytes = static_cast<std::size_t>(form.bytes);
    const auto count = static_cast<std::size_t>(form.weights);
    std::int16_t weights[mostGroupWeights] = {};
    if (run.opaque)
        std::fill_n(weights, count, std::int16_t{fullWeight});
    else
        std::copy_n(m_weights.data() + run.weights + skipped * count, count, weights);
    cutGroup(*m_layout, pixels, weights);
    for (std::int16_t& weight : weights)
        weight = static_cast<std::int16_t>(fadedWeight(weight, opacity));
    const std::uint8_t* samples = m_samples.data() + run.samples + skipped * bytes;
    if (m_layout->code == ptV210)
        blendV210(under, samples, weights, 1);
    else
        blendBytes(under, samples, weights, bytes);
}
