#include "picture/samples.h"

#include "picture/pixel_formats.h"

#include <cstring>
#include <type_traits>

namespace {

// Lines may stand at any address.
std::uint16_t wordAt(const std::uint8_t* bytes) {
    std::uint16_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

void putWord(std::uint8_t* bytes, std::uint16_t word) {
    std::memcpy(bytes, &word, sizeof word);
}

// Calls the body with the step between samples: the usual ones as constants.
template <typename Body>
void byStep(int step, int bytes, Body body) {
    if (step == bytes)
        body(std::integral_constant<int, 0>());
    else if (step == 2 * bytes)
        body(std::integral_constant<int, 1>());
    else if (step == 4 * bytes)
        body(std::integral_constant<int, 2>());
    else
        body(step);
}

bool isWord(const AVComponentDescriptor& component) {
    return component.shift + component.depth > 8;
}

bool overlap(const AVComponentDescriptor& a, const AVComponentDescriptor& b) {
    return a.plane == b.plane && a.offset < b.offset + (isWord(b) ? 2 : 1) &&
           b.offset < a.offset + (isWord(a) ? 2 : 1);
}

// A depth doubled until it is no less than another.
constexpr int doubled(int depth, int least) {
    while (depth < least)
        depth *= 2;
    return depth;
}

template <typename Step>
constexpr int stepOf(Step step, int bytes) {
    if constexpr (std::is_same_v<Step, int>)
        return step;
    else
        return bytes << Step::value;
}

} // namespace

bool hasOwnBytes(AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    constexpr unsigned others = AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_PAL |
                                AV_PIX_FMT_FLAG_FLOAT | AV_PIX_FMT_FLAG_HWACCEL |
                                AV_PIX_FMT_FLAG_BAYER;
    if (!description || (description->flags & others) != 0 || format == AV_PIX_FMT_UYYVYY411)
        return false;
    for (int i = 0; i < description->nb_components; ++i) {
        const AVComponentDescriptor& component = description->comp[i];
        if (component.shift + component.depth > 16)
            return false;
        for (int k = 0; k < i; ++k)
            if (overlap(description->comp[k], component))
                return false;
    }
    return true;
}

template <typename Sample>
void readSamples(const AVFrame& picture, const AVComponentDescriptor& component, bool bigEndian,
                 int y, Sample* samples, int count) {
    const std::uint8_t* line = picture.data[component.plane] + component.offset +
                               std::ptrdiff_t{picture.linesize[component.plane]} * y;
    const int shift = component.shift;
    if (!isWord(component))
        return byStep(
            component.step, 1,
            [=](auto step) {
                for (int x = 0; x < count; ++x)
                    samples[x] = static_cast<Sample>(line[stepOf(step, 1) * x] >> shift);
            });
    byStep(component.step, 2, [=](auto step) {
        if (bigEndian)
            for (int x = 0; x < count; ++x)
                samples[x] = static_cast<Sample>(
                    __builtin_bswap16(wordAt(line + stepOf(step, 2) * x)) >> shift);
        else
            for (int x = 0; x < count; ++x)
                samples[x] = static_cast<Sample>(wordAt(line + stepOf(step, 2) * x) >> shift);
    });
}

template <typename Sample>
void writeSamples(const Sample* samples, AVFrame& picture, const AVComponentDescriptor& component,
                  bool bigEndian, int y, int count) {
    std::uint8_t* line = picture.data[component.plane] + component.offset +
                         std::ptrdiff_t{picture.linesize[component.plane]} * y;
    const int shift = component.shift;
    if (!isWord(component))
        return byStep(
            component.step, 1,
            [=](auto step) {
                for (int x = 0; x < count; ++x)
                    line[stepOf(step, 1) * x] = static_cast<std::uint8_t>(samples[x] << shift);
            });
    byStep(component.step, 2, [=](auto step) {
        if (bigEndian)
            for (int x = 0; x < count; ++x)
                putWord(line + stepOf(step, 2) * x,
                        __builtin_bswap16(static_cast<std::uint16_t>(samples[x] << shift)));
        else
            for (int x = 0; x < count; ++x)
                putWord(line + stepOf(step, 2) * x,
                        static_cast<std::uint16_t>(samples[x] << shift));
    });
}

template void readSamples(const AVFrame&, const AVComponentDescriptor&, bool, int, std::uint8_t*,
                          int);
template void readSamples(const AVFrame&, const AVComponentDescriptor&, bool, int, std::uint16_t*,
                          int);
template void writeSamples(const std::uint8_t*, AVFrame&, const AVComponentDescriptor&, bool, int,
                           int);
template void writeSamples(const std::uint16_t*, AVFrame&, const AVComponentDescriptor&, bool, int,
                           int);

template <typename Sample>
void changeDepth(const std::uint16_t* samples, int from, Sample* changed, int to, int count) {
    const int left = to - from, right = from - left;
    if (left <= 0)
        for (int x = 0; x < count; ++x)
            changed[x] = static_cast<Sample>(samples[x] >> -left);
    else if (right >= 0)
        for (int x = 0; x < count; ++x)
            changed[x] = static_cast<Sample>(samples[x] << left | samples[x] >> right);
    else // less than half as deep: repeated more than once
        for (int x = 0; x < count; ++x) {
            unsigned sample = samples[x];
            for (int has = from; has < to; has *= 2)
                sample = sample << has | sample;
            changed[x] = static_cast<Sample>(sample >> (doubled(from, to) - to));
        }
}

template void changeDepth(const std::uint16_t*, int, std::uint8_t*, int, int);
template void changeDepth(const std::uint16_t*, int, std::uint16_t*, int, int);
