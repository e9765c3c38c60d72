#include "script/blended_picture.h"

#include "script/blend_kernels.h"
#include "script/sample_groups.h"

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

// The columns of a picture by the groups that they fall into.
struct Groups {
    int pixels, phase, width;

    int count() const { return (phase + width + pixels - 1) / pixels; }
    int firstColumn(int group) const { return std::max(group * pixels - phase, 0); }
    int endColumn(int group) const { return std::min((group + 1) * pixels - phase, width); }
};

void readGroup(const std::uint16_t* line, const Groups& groups, int group, double opacity,
               WeightedPixel* pixels) {
    std::fill_n(pixels, groups.pixels, WeightedPixel{});
    for (int column = groups.firstColumn(group); column < groups.endColumn(group); ++column) {
        const std::uint16_t* words = line + column * pictureWords;
        pixels[column + groups.phase - group * groups.pixels] = {
            words[1], words[2], words[3], static_cast<std::int16_t>(weightOf(words[0], opacity))};
    }
}

} // namespace

int BlendedPicture::groupPixels(const zrLayout& layout) {
    return groupFormOf(layout).pixels;
}

void BlendedPicture::prepare(const ScriptPicture& picture, const zrLayout& layout,
                             const MatrixRule& matrix, int phase, double opacity) {
    m_layout = &layout;
    m_phase = phase;
    m_runs.clear();
    m_samples.clear();
    m_weights.clear();
    for (int line = 0; line < picture.height; ++line) {
        sortGroups(picture, line, opacity);
        byRuns(m_kinds, [&](Kind kind, std::size_t first, std::size_t end) {
            if (kind != Kind::Transparent)
                appendRun(picture, line, static_cast<int>(first), static_cast<int>(end), matrix,
                          opacity);
        });
    }
}

// Tells what kind the groups of a line are, and counts those of short runs among their soft
// neighbours, but for the transparent ones at both ends.
void BlendedPicture::sortGroups(const ScriptPicture& picture, int line, double opacity) {
    const Groups groups{groupPixels(*m_layout), m_phase, picture.width};
    const std::uint16_t* words = pixelOf(picture, 0, line);
    m_kinds.resize(static_cast<std::size_t>(groups.count()));
    for (int group = 0; group < groups.count(); ++group) {
        const int first = groups.firstColumn(group), end = groups.endColumn(group);
        int least = end - first == groups.pixels ? fullWeight : 0, most = 0;
        for (int column = first; column < end; ++column) {
            const int weight = weightOf(words[column * pictureWords], opacity);
            least = std::min(least, weight);
            most = std::max(most, weight);
        }
        m_kinds[static_cast<std::size_t>(group)] = most == 0             ? Kind::Transparent
                                                   : least == fullWeight ? Kind::Opaque
                                                                         : Kind::Soft;
    }
    byRuns(m_kinds, [&](Kind kind, std::size_t first, std::size_t end) {
        const bool atEnd = first == 0 || end == m_kinds.size();
        if (end - first < shortestRun && !(kind == Kind::Transparent && atEnd))
            std::fill_n(m_kinds.begin() + static_cast<std::ptrdiff_t>(first), end - first,
                        Kind::Soft);
    });
}

void BlendedPicture::appendRun(const ScriptPicture& picture, int line, int first, int end,
                               const MatrixRule& matrix, double opacity) {
    const GroupForm form = groupFormOf(*m_layout);
    const Groups groups{form.pixels, m_phase, picture.width};
    const bool opaque = m_kinds[static_cast<std::size_t>(first)] == Kind::Opaque;
    const Run run{line, first, end - first, opaque, m_samples.size(), m_weights.size()};
    const auto count = static_cast<std::size_t>(run.count);
    m_samples.resize(run.samples + count * static_cast<std::size_t>(form.bytes));
    if (!opaque)
        m_weights.resize(run.weights + count * static_cast<std::size_t>(form.weights));
    std::uint8_t* samples = m_samples.data() + run.samples;
    std::int16_t* weights = m_weights.data() + run.weights;
    for (int group = first; group < end; ++group) {
        WeightedPixel pixels[mostGroupPixels];
        std::int16_t unused[mostGroupWeights];
        readGroup(pixelOf(picture, 0, line), groups, group, opacity, pixels);
        writeGroup(*m_layout, matrix, pixels, samples, opaque ? unused : weights);
        samples += form.bytes;
        weights += opaque ? 0 : form.weights;
    }
    m_runs.push_back(run);
}

void BlendedPicture::blend(const PictureView& frame, int x, int y, bool alphaCounts) const {
    const std::int64_t origin = (std::int64_t{x} - m_phase) / groupPixels(*m_layout);
    for (const Run& run : m_runs) {
        const std::int64_t line = std::int64_t{y} + run.line;
        if (line >= 0 && line < frame.height)
            blendRun(frame, run, frame.line(static_cast<int>(line)), origin, alphaCounts);
    }
}

// What of a run is on the frame: whole groups, and part of one where the frame ends in it.
void BlendedPicture::blendRun(const PictureView& frame, const Run& run, unsigned char* line,
                              std::int64_t origin, bool alphaCounts) const {
    const GroupForm form = groupFormOf(*m_layout);
    const int whole = frame.width / form.pixels, part = frame.width % form.pixels;
    const std::int64_t first = origin + run.first, end = first + run.count;
    const std::int64_t from = std::max<std::int64_t>(first, 0);
    const std::int64_t to = std::min<std::int64_t>(end, whole);
    if (from < to)
        blendGroups(line + from * form.bytes, run, static_cast<std::size_t>(from - first),
                    static_cast<std::size_t>(to - from), alphaCounts);
    if (part != 0 && first <= whole && whole < end)
        blendPart(line + std::ptrdiff_t{whole} * form.bytes, run,
                  static_cast<std::size_t>(whole - first), part);
}

void BlendedPicture::blendGroups(unsigned char* under, const Run& run, std::size_t skipped,
                                 std::size_t count, bool alphaCounts) const {
    const GroupForm form = groupFormOf(*m_layout);
    const auto bytes = static_cast<std::size_t>(form.bytes);
    const std::uint8_t* samples = m_samples.data() + run.samples + skipped * bytes;
    const std::int16_t* weights =
        m_weights.data() + run.weights +
        (run.opaque ? 0 : skipped * static_cast<std::size_t>(form.weights));
    if (isV210(*m_layout))
        run.opaque ? copyV210(under, samples, count) : blendV210(under, samples, weights, count);
    else if (run.opaque)
        std::memcpy(under, samples, count * bytes);
    else if (alphaCounts && m_layout->bytes.a >= 0)
        blendPixels(under, samples, weights, count, m_layout->bytes.a);
    else
        blendBytes(under, samples, weights, count * bytes);
}

// The last group of a line whose width is no number of whole ones.
void BlendedPicture::blendPart(unsigned char* under, const Run& run, std::size_t skipped,
                               int pixels) const {
    const GroupForm form = groupFormOf(*m_layout);
    const auto bytes = static_cast<std::size_t>(form.bytes);
    const auto count = static_cast<std::size_t>(form.weights);
    std::int16_t weights[mostGroupWeights];
    if (run.opaque)
        std::fill_n(weights, count, std::int16_t{fullWeight});
    else
        std::copy_n(m_weights.data() + run.weights + skipped * count, count, weights);
    cutGroup(*m_layout, pixels, weights);
    const std::uint8_t* samples = m_samples.data() + run.samples + skipped * bytes;
    if (isV210(*m_layout))
        blendV210(under, samples, weights, 1);
    else
        blendBytes(under, samples, weights, bytes);
}
