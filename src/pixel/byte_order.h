// Byte orders of the 8-bit RGB layouts, by code.
#pragma once

#include "pixel/rgba.h"
#include "zrdraw/layouts.h"

#include <array>

// The order of a code from 1 to 6; every other code has that of ptRGBA32.
inline const zrByteOrder& byteOrderOf(unsigned int pixelType) {
    const bool isRgb8 = pixelType >= ptRGBA32 && pixelType <= ptBGR24;
    return zrFindLayout(isRgb8 ? pixelType : ptRGBA32)->bytes;
}

// The 256 values of a channel byte / 255, as a division would give them.
inline constexpr auto unitValues = [] {
    std::array<double, 256> values{};
    for (unsigned int byte = 0; byte < values.size(); ++byte)
        values[byte] = byte / 255.0;
    return values;
}();

// The channels of a pixel, each byte / 255; alpha is 1.0 in layouts without one.
inline Rgba unpackRgba(const unsigned char* bytes, const zrByteOrder& order) {
    const auto channel = [bytes](signed char at) { return at < 0 ? 1.0 : unitValues[bytes[at]]; };
    return {channel(order.r), channel(order.g), channel(order.b), channel(order.a)};
}
