#include "media/rgb_lines.h"

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

void weave(const Lines<std::uint16_t>& from, int samples, std::uint16_t* to, int width) {
    if (samples == 4)
        for (int x = 0; x < width; ++x)
            for (int i = 0; i < 4; ++i)
                to[4 * x + i] = from[static_cast<unsigned>(i)][x];
    else
        for (int x = 0; x < width; ++x)
            for (int i = 0; i < 3; ++i)
                to[3 * x + i] = from[static_cast<unsigned>(i)][x];
}

void unweave(const std::uint16_t* from, int samples, const Lines<std::uint16_t>& to, int width) {
    if (samples == 4)
        for (int x = 0; x < width; ++x)
            for (int i = 0; i < 4; ++i)
                to[static_cast<unsigned>(i)][x] = from[4 * x + i];
    else
        for (int x = 0; x < width; ++x)
            for (int i = 0; i < 3; ++i)
                to[static_cast<unsigned>(i)][x] = from[3 * x + i];
}
