#include "picture/rgb_lines.h"

#include "picture/vectors.h"

#include <libyuv.h>

ChannelOrder channelOrder(const zrLayout& layout) {
    if (layout.code == ptRGB48)
        return {{0, 1, 2, -1}, 3};
    if (layout.code == ptARGB64)
        return {{1, 2, 3, 0}, 4};
    const zrByteOrder& bytes = layout.bytes;
    return {{bytes.r, bytes.g, bytes.b, bytes.a}, static_cast<int>(layout.line.groupBytes)};
}

void weave(const Lines<std::uint8_t>& from, int samples, std::uint8_t* to, int width) {
    if (samples == 4)
        libyuv::MergeARGBPlane(from[2], 0, from[1], 0, from[0], 0, from[3], 0, to, 0, width, 1);
    else
        libyuv::MergeRGBPlane(from[0], 0, from[1], 0, from[2], 0, to, 0, width, 1);
}

void unweave(const std::uint8_t* from, int samples, const Lines<std::uint8_t>& to, int width) {
    if (samples == 4)
        libyuv::SplitARGBPlane(from, 0, to[2], 0, to[1], 0, to[0], 0, to[3], 0, width, 1);
    else
        libyuv::SplitRGBPlane(from, 0, to[0], 0, to[1], 0, to[2], 0, width, 1);
}

namespace {

// Compiled twice, for vectors too.
template <int samples>
[[gnu::always_inline]] inline void weaveBody(const Lines<std::uint16_t>& from, std::uint16_t* to,
                                             int width) {
    const std::uint16_t *a = from[0], *b = from[1], *c = from[2], *d = from[3];
    for (int x = 0; x < width; ++x) {
        to[samples * x] = a[x];
        to[samples * x + 1] = b[x];
        to[samples * x + 2] = c[x];
        if constexpr (samples == 4)
            to[samples * x + 3] = d[x];
    }
}

template <int samples>
[[gnu::always_inline]] inline void unweaveBody(const std::uint16_t* from,
                                               const Lines<std::uint16_t>& to, int width) {
    std::uint16_t *a = to[0], *b = to[1], *c = to[2], *d = to[3];
    for (int x = 0; x < width; ++x) {
        a[x] = from[samples * x];
        b[x] = from[samples * x + 1];
        c[x] = from[samples * x + 2];
        if constexpr (samples == 4)
            d[x] = from[samples * x + 3];
    }
}

[[gnu::target("avx2")]] void weaveVectors(const Lines<std::uint16_t>& from, int samples,
                                          std::uint16_t* to, int width) {
    samples == 4 ? weaveBody<4>(from, to, width) : weaveBody<3>(from, to, width);
}

[[gnu::target("avx2")]] void unweaveVectors(const std::uint16_t* from, int samples,
                                            const Lines<std::uint16_t>& to, int width) {
    samples == 4 ? unweaveBody<4>(from, to, width) : unweaveBody<3>(from, to, width);
}

} // namespace

void weave(const Lines<std::uint16_t>& from, int samples, std::uint16_t* to, int width) {
    if (hasVectors())
        weaveVectors(from, samples, to, width);
    else
        samples == 4 ? weaveBody<4>(from, to, width) : weaveBody<3>(from, to, width);
}

void unweave(const std::uint16_t* from, int samples, const Lines<std::uint16_t>& to, int width) {
    if (hasVectors())
        unweaveVectors(from, samples, to, width);
    else
        samples == 4 ? unweaveBody<4>(from, to, width) : unweaveBody<3>(from, to, width);
}
