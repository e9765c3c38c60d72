// By contract: these modes take lines for packed and do not look at the pitch.
#include "mux/modes.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/platform/resize.h"

#include <algorithm>

namespace {

constexpr unsigned int pixelBytes = MuxArgs::pixelBytes;

void clear(const MuxArgs& m) {
    SetMemoryFast(m.dst, 0, m.wholeBytes());
}

// At half size without filtering: every second pixel of a line.
void halveLine(unsigned char* to, const unsigned char* from, std::size_t width) {
    for (std::size_t i = 0; i < (width + 1) / 2; ++i)
        storePixel(to + i * pixelBytes, loadPixel(from + 2 * i * pixelBytes));
}

void squeeze(const MuxArgs& m, const unsigned char* source, unsigned char* to,
             unsigned char* buffer) {
    const int width = static_cast<int>(m.width), height = static_cast<int>(m.height);
    const int step = static_cast<int>(pixelBytes * m.width);
    const IppiRect whole{0, 0, width, height};
    ippiResizeSqrPixel_8u_C4R(source, {width, height}, step, whole, to, step, whole, 0.5, 1.0, 0.0,
                              0.0, zrResizeNearest, buffer);
}

void windowsOfColumns(const MuxArgs& m) {
    const unsigned int half = m.width / 2;
    const std::size_t from = std::size_t{std::min(m.splitX, half)} * pixelBytes;
    for (unsigned int y = 0; y < m.height; ++y) {
        unsigned char* to = m.dst + m.packedLine(y);
        copyPixels(to, m.a + m.packedLine(y) + from, half);
        copyPixels(to + std::size_t{half} * pixelBytes, m.b + m.packedLine(y) + from, half);
    }
}

void windowsOfLines(const MuxArgs& m) {
    const unsigned int half = m.height / 2;
    const unsigned int from = std::min(m.splitY, half);
    const std::size_t lower = std::size_t{m.width * m.height / 2} * pixelBytes;
    for (unsigned int y = 0; y < half; ++y) {
        unsigned char* to = m.dst + m.packedLine(y);
        copyPixels(to, m.a + m.packedLine(y + from), m.width);
        copyPixels(to + lower, m.b + m.packedLine(y + from), m.width);
    }
}

} // namespace

void muxSqueeze(const MuxArgs& m) {
    const IppiRect whole{0, 0, static_cast<int>(m.width), static_cast<int>(m.height)};
    int bytes = 0;
    ippiResizeGetBufSize(whole, whole, 1, zrResizeNearest, &bytes);
    unsigned char* const buffer = ippsMalloc_8u(bytes);
    // By contract: without a buffer only B is drawn.
    if (buffer != nullptr)
        squeeze(m, m.a, m.dst, buffer);
    squeeze(m, m.b, m.dst + std::size_t{2} * m.width, buffer);
    if (buffer != nullptr)
        ippsFree(buffer);
}

void muxTwoUp(const MuxArgs& m) {
    if (m.isEmpty())
        return;
    clear(m);
    for (unsigned int row = 0; row < m.height; row += 2) {
        unsigned char* to = m.dst + m.packedLine(row / 2 + m.height / 4);
        unsigned char* middle = to + std::size_t{m.width / 2} * pixelBytes;
        halveLine(middle, m.b + m.packedLine(row), m.width);
        // By contract: the pictures meet in the middle pixel of an odd width. The first one's
        // last pixel stays there, but on a width of 1 the second one's only pixel.
        if (m.width > 1)
            halveLine(to, m.a + m.packedLine(row), m.width);
    }
}

void muxWindows(const MuxArgs& m) {
    // By contract: only the first form looks whether there is a pixel before it clears them.
    if (m.isEmpty() && !m.has(zrMuxSecondForm))
        return;
    clear(m);
    if (m.has(zrMuxSecondForm))
        windowsOfLines(m);
    else
        windowsOfColumns(m);
}
