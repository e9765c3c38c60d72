#include "span/bodies.h"

namespace {

// By contract: sources up to this alpha leave the destination alone; the next one blends in full.
constexpr unsigned int cutOff = 16;

// The exact quotient by 255, rounded down, for t up to 65,025.
constexpr unsigned int divide255(unsigned int t) {
    return (t + (t >> 8) + 1) >> 8;
}

} // namespace

void span::blendPlain(unsigned char* dst, const unsigned char* src, unsigned long pixels) {
    for (unsigned long i = 0; i < pixels; ++i, dst += 4, src += 4) {
        const unsigned int alpha = src[3];
        if (alpha <= cutOff)
            continue;
        for (int channel = 0; channel < 3; ++channel) {
            const unsigned int t = dst[channel] * (255 - alpha) + src[channel] * alpha;
            dst[channel] = static_cast<unsigned char>(divide255(t));
        }
        // By contract: the destination's alpha is replaced, not composited.
        dst[3] = static_cast<unsigned char>(alpha);
    }
}
