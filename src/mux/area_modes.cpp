#include "mux/modes.h"
#include "zrdraw/platform/memory.h"

#include <algorithm>

namespace {

constexpr unsigned int dividerGrey = 0x80808080U;

unsigned char* pixelAt(unsigned char* line, unsigned int x) {
    return line + std::size_t{x} * MuxArgs::pixelBytes;
}

void copyLine(const MuxArgs& m, unsigned int to, const unsigned char* source, unsigned int from) {
    CopyMemoryFast(m.dst + m.line(to), source + m.line(from), m.pitch);
}

// Even pixels from one line and odd ones from the other, in pairs: a last odd pixel stays.
void alternatePixels(unsigned char* to, const unsigned char* even, const unsigned char* odd,
                     unsigned int width) {
    for (std::size_t pair = 0; pair < width / 2; ++pair) {
        const std::size_t at = pair * 2 * MuxArgs::pixelBytes;
        storePixel(to + at, loadPixel(even + at));
        storePixel(to + at + MuxArgs::pixelBytes, loadPixel(odd + at + MuxArgs::pixelBytes));
    }
}

void interleaveLines(const MuxArgs& m) {
    for (unsigned int y = 0; y < m.height; ++y)
        copyLine(m, y, y % 2 == 0 ? m.a : m.b, y);
}

void splitColumns(const MuxArgs& m) {
    const unsigned int split = m.splitX <= m.width ? m.splitX : m.width / 2;
    for (unsigned int y = 0; y < m.height; ++y) {
        unsigned char* to = m.dst + m.line(y);
        copyPixels(to, m.a + m.line(y), split);
        copyPixels(pixelAt(to, split), pixelAt(m.b + m.line(y), split), m.width - split);
        // By contract: also where the split is at the width, behind the last pixel.
        if (m.has(zrMuxDivider))
            storePixel(pixelAt(to, split), dividerGrey);
    }
}

void splitLines(const MuxArgs& m) {
    const unsigned int split = m.splitY <= m.height ? m.splitY : m.height / 2;
    for (unsigned int y = 0; y < m.height; ++y)
        if (y == split && m.has(zrMuxDivider))
            SetMemoryFast(m.dst + m.line(y), dividerGrey, m.pitch);
        else
            copyLine(m, y, y < split ? m.a : m.b, y);
}

// Pixel k comes from k pixels before `from`.
void copyReversed(unsigned char* to, const unsigned char* from, std::size_t pixels) {
    for (std::size_t k = 0; k < pixels; ++k)
        storePixel(to + k * MuxArgs::pixelBytes, loadPixel(from - k * MuxArgs::pixelBytes));
}

void mirrorColumns(const MuxArgs& m) {
    const unsigned int half = m.width / 2;
    for (unsigned int y = 0; y < m.height; ++y) {
        unsigned char* to = m.dst + m.line(y);
        unsigned char* from = m.b + m.line(y);
        copyPixels(to, m.a + m.line(y), half);
        copyReversed(pixelAt(to, half), pixelAt(from, half), std::min(half + 1, m.width - half));
    }
}

void mirrorLines(const MuxArgs& m) {
    const unsigned int half = m.height / 2;
    for (unsigned int y = 0; y < half; ++y)
        copyLine(m, y, m.a, y);
    for (unsigned int k = 0; k <= half && half + k < m.height; ++k)
        copyLine(m, half + k, m.b, half - k);
}

} // namespace

void muxInterleave(const MuxArgs& m) {
    if (!m.has(zrMuxSecondForm))
        return interleaveLines(m);
    for (unsigned int y = 0; y < m.height; ++y)
        alternatePixels(m.dst + m.line(y), m.a + m.line(y), m.b + m.line(y), m.width);
}

void muxFields(const MuxArgs& m) {
    const unsigned int half = m.height / 2;
    for (unsigned int i = 0; i < half; ++i) {
        copyLine(m, i, m.a, 2 * i);
        copyLine(m, i + half, m.b, 2 * i);
    }
}

void muxSplit(const MuxArgs& m) {
    if (m.has(zrMuxSecondForm))
        splitLines(m);
    else
        splitColumns(m);
}

void muxMirror(const MuxArgs& m) {
    if (m.has(zrMuxSecondForm))
        mirrorLines(m);
    else
        mirrorColumns(m);
}

// Pairs of pixels on pairs of lines: a last odd pixel or line stays.
void muxChecker(const MuxArgs& m) {
    for (unsigned int y = 0; y < m.height / 2 * 2; ++y) {
        const unsigned char* even = (y % 2 == 0 ? m.a : m.b) + m.line(y);
        const unsigned char* odd = (y % 2 == 0 ? m.b : m.a) + m.line(y);
        alternatePixels(m.dst + m.line(y), even, odd, m.width);
    }
}

void muxBlocks(const MuxArgs& m) {
    constexpr unsigned int largest = 100;
    const unsigned int side = std::clamp(m.position >> 8, 1U, largest);
    for (unsigned int y = 0; y < m.height; ++y) {
        unsigned char* sources[] = {m.a + m.line(y), m.b + m.line(y)};
        unsigned int turn = y / side % 2;
        for (unsigned int x = 0; x < m.width; x += side, turn ^= 1U)
            copyPixels(pixelAt(m.dst + m.line(y), x), pixelAt(sources[turn], x),
                       std::min(side, m.width - x));
    }
}
