#include <algorithm>

#include "mux/modes.h"

namespace {

template <unsigned int ofA, unsigned int ofB>
void combineMasked(const MuxArgs& m) {
    combineAll(m, [](unsigned int a, unsigned int b) { return (a & ofA) | (b & ofB); });
}

unsigned int byteOf(unsigned int pixel, unsigned int index) {
    return pixel >> 8 * index & 0xFF;
}

unsigned int grey(unsigned int value) {
    return value * 0x01010101U;
}

// By contract: the difference of a byte wraps, so a negative one is as strong as any.
unsigned int greatestDifference(unsigned int a, unsigned int b) {
    const unsigned int high = ((a & 0xFF0000) - (b & 0xFF0000)) >> 17;
    const unsigned int middle = ((a & 0xFF00) - (b & 0xFF00)) >> 9;
    const unsigned int low = ((a & 0xFF) - (b & 0xFF)) >> 1;
    return std::max({high, middle, low});
}

bool differsBy(unsigned int a, unsigned int b, unsigned int threshold) {
    bool differs = false;
    for (unsigned int i = 0; i < 4; ++i) {
        const unsigned int x = byteOf(a, i), y = byteOf(b, i);
        differs |= std::max(x, y) - std::min(x, y) > threshold;
    }
    return differs;
}

} // namespace

void muxAnaglyph(const MuxArgs& m) {
    combineMasked<0x00FF0000, 0x000000FF>(m);
}

void muxHalves(const MuxArgs& m) {
    combineMasked<0xFFFF0000, 0x0000FFFF>(m);
}

void muxByte0(const MuxArgs& m) {
    combineMasked<0xFFFFFF00, 0x000000FF>(m);
}

void muxBytes02(const MuxArgs& m) {
    combineMasked<0xFF00FF00, 0x00FF00FF>(m);
}

// The lowest bit of each byte of both is lost first.
void muxAverage(const MuxArgs& m) {
    constexpr unsigned int withoutLowest = 0x7F7F7F7F;
    combineAll(m, [](unsigned int a, unsigned int b) {
        return (a >> 1 & withoutLowest) + (b >> 1 & withoutLowest);
    });
}

void muxDifference(const MuxArgs& m) {
    constexpr unsigned int most = 127, centre = 128;
    const unsigned int gain = m.param >= 2 && m.param <= 255 ? m.param : 1;
    combineAll(m, [=](unsigned int a, unsigned int b) {
        // Capped before the gain as well, which changes nothing and keeps to 32 bits.
        const unsigned int strength =
            std::min(std::min(greatestDifference(a, b), most) * gain, most);
        return (strength + centre) * 0x010101U;
    });
}

void muxKey(const MuxArgs& m) {
    const unsigned int keyed = m.has(zrMuxSwap) ? 0xFFFFFFFFU : 0;
    const unsigned int threshold = m.param;
    combineAll(
        m, [=](unsigned int a, unsigned int b) { return differsBy(a, b, threshold) ? keyed : b; });
}

// Two bytes of a pixel at a time, in the 16-bit halves of a word. The sum of a byte and its
// weight's never leaves its half: weights add to 256.
void muxMix(const MuxArgs& m) {
    const unsigned int weightA = m.position >> 8;
    const unsigned int weightB = 256 - weightA;
    if (weightA > 256) { // beyond the range nothing but the arithmetic of a byte is promised
        combineAll(m, [=](unsigned int a, unsigned int b) {
            unsigned int out = 0;
            for (unsigned int i = 0; i < 4; ++i)
                out |= ((byteOf(a, i) * weightA + byteOf(b, i) * weightB) >> 8 & 0xFF) << 8 * i;
            return out;
        });
        return;
    }
    combineAll(m, [=](unsigned int a, unsigned int b) {
        constexpr unsigned int even = 0x00FF00FF;
        const unsigned int low = (a & even) * weightA + (b & even) * weightB;
        const unsigned int high = (a >> 8 & even) * weightA + (b >> 8 & even) * weightB;
        return (low >> 8 & even) | (high & ~even);
    });
}

void muxChannel(const MuxArgs& m) {
    unsigned int shift = 0;
    switch (m.param) {
    case 0xFF:
        break;
    case 0xFF00:
        shift = 8;
        break;
    case 0xFF0000:
        shift = 16;
        break;
    case 0xFF000000U:
        shift = 24;
        break;
    default:
        combineAll(m, [](unsigned int a, unsigned int) {
            return grey((byteOf(a, 0) + byteOf(a, 1) + byteOf(a, 2)) / 3);
        });
        return;
    }
    combineAll(m, [shift](unsigned int a, unsigned int) { return grey(a >> shift & 0xFF); });
}
