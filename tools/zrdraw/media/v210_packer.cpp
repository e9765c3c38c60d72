#include "media/v210_packer.h"

#include "media/chroma_lines.h"
#include "media/samples.h"
#include "media/v210_lines.h"

#include <algorithm>

namespace {

constexpr int depth = 10;
constexpr int components = 3;
constexpr int buffers = components + 2; // chroma of a second line

bool isInPlace(const AVPixFmtDescriptor& format) {
    const auto matches = [](const AVComponentDescriptor& component) {
        return component.depth == depth && component.shift == 0 && component.step == 2;
    };
    return (format.flags & AV_PIX_FMT_FLAG_BE) == 0 &&
           std::all_of(format.comp, format.comp + components, matches);
}

// By multiples of two, as YCbCr of other depths is understood.
void widen(std::uint16_t* samples, int count, int from) {
    for (int x = 0; x < count; ++x)
        samples[x] = static_cast<std::uint16_t>(from < depth ? samples[x] << (depth - from)
                                                             : samples[x] >> (from - depth));
}

void narrow(std::uint16_t* samples, int count, int to) {
    const int full = (1 << to) - 1;
    for (int x = 0; x < count; ++x)
        samples[x] = static_cast<std::uint16_t>(
            to < depth ? std::min((samples[x] + (1 << (depth - to) >> 1)) >> (depth - to), full)
                       : samples[x] << (to - depth));
}

void average(std::uint16_t* samples, const std::uint16_t* others, int count) {
    for (int x = 0; x < count; ++x)
        samples[x] = static_cast<std::uint16_t>((samples[x] + others[x] + 1) >> 1);
}

} // namespace

bool V210Packer::knows(const zrLayout& layout, AVPixelFormat format) {
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return layout.code == ptV210 && description && description->nb_components == components &&
           (description->flags & AV_PIX_FMT_FLAG_RGB) == 0 && description->log2_chroma_w == 1 &&
           description->log2_chroma_h <= 1 && hasOwnBytes(format);
}

V210Packer::V210Packer(AVPixelFormat format, int width, int height)
    : m_format(format), m_width(width), m_height(height),
      m_inPlace(isInPlace(*av_pix_fmt_desc_get(format))),
      m_samples(buffers * static_cast<std::size_t>(width)) {}

bool V210Packer::isExact() const {
    return av_pix_fmt_desc_get(m_format)->comp[0].depth <= depth;
}

const std::uint16_t* V210Packer::samplesOf(const AVFrame& picture, int component, int y) {
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(m_format);
    if (m_inPlace)
        return reinterpret_cast<const std::uint16_t*>(
            picture.data[component] + std::ptrdiff_t{picture.linesize[component]} * y);
    readSamples(picture, format.comp[component], (format.flags & AV_PIX_FMT_FLAG_BE) != 0, y,
                buffer(component), columns(component));
    widen(buffer(component), columns(component), format.comp[component].depth);
    return buffer(component);
}

void V210Packer::pack(const AVFrame& picture, CanvasLines canvas) {
    const ChromaLines chroma(picture, m_format);
    for (int y = 0; y < m_height; ++y)
        packV210({samplesOf(picture, 0, y), samplesOf(picture, 1, chroma.of(y)),
                  samplesOf(picture, 2, chroma.of(y))},
                 canvas.line(y), m_width);
}

std::uint16_t* V210Packer::placeFor(AVFrame& picture, int component, int y, int otherwise) {
    if (!m_inPlace)
        return buffer(otherwise);
    return reinterpret_cast<std::uint16_t*>(picture.data[component] +
                                            std::ptrdiff_t{picture.linesize[component]} * y);
}

void V210Packer::put(std::uint16_t* samples, AVFrame& picture, int component, int y) {
    if (m_inPlace)
        return;
    const AVPixFmtDescriptor& format = *av_pix_fmt_desc_get(m_format);
    narrow(samples, columns(component), format.comp[component].depth);
    writeSamples(samples, picture, format.comp[component], (format.flags & AV_PIX_FMT_FLAG_BE) != 0,
                 y, columns(component));
}

void V210Packer::unpack(CanvasLines canvas, AVFrame& picture) {
    const ChromaLines chroma(picture, m_format);
    const int lines = AV_CEIL_RSHIFT(m_height, chroma.shift);
    for (int c = 0; c < lines; ++c) {
        std::uint16_t* cb = placeFor(picture, 1, c, 1);
        std::uint16_t* cr = placeFor(picture, 2, c, 2);
        const int first = chroma.first(c), second = first + chroma.step();
        std::uint16_t* luma = placeFor(picture, 0, first, 0);
        unpackV210(canvas.line(first), {luma, cb, cr}, m_width);
        put(luma, picture, 0, first);
        if (chroma.count() == 2 && second < m_height) {
            luma = placeFor(picture, 0, second, 0);
            unpackV210(canvas.line(second), {luma, buffer(3), buffer(4)}, m_width);
            put(luma, picture, 0, second);
            average(cb, buffer(3), columns(1));
            average(cr, buffer(4), columns(1));
        }
        put(cb, picture, 1, c);
        put(cr, picture, 2, c);
    }
}
