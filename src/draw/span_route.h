// How a run of identical pixels is written, for lines and areas alike.
#pragma once

#include "pixel/canvas.h"
#include "zrdraw/span.h"

enum class SpanRoute {
    Words,   // 32-bit RGB: one fill of 32-bit words
    Packed,  // whole-byte pixels: the first by PutPixel, the others copied from it
    PerPixel // everything else: PutPixel each
};

// Whether a slot writes without a look at what is there.
inline bool isOpaque(const ZRPixel& pixel, bool selector) {
    return !pixel.transparency ||
           (selector ? pixel.foreTransparency : pixel.backTransparency) <= 0.0;
}

// By contract: on 32-bit RGB a run is always opaque, and the additive switch decides nothing.
inline SpanRoute spanRoute(const ZRPixel& pixel, bool selector) {
    if (isRgb32(pixel.pixelType))
        return SpanRoute::Words;
    const bool packed = zrdraw_packed_pixel_bytes(pixel.pixelType) != 0;
    return packed && isOpaque(pixel, selector) ? SpanRoute::Packed : SpanRoute::PerPixel;
}
