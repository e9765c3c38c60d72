// A transition of the host's own: a diagonal edge that leaves the top left corner.
#include <zrdraw/transitions.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr unsigned int pixelBytes = 4;

unsigned int diagonalWipe(unsigned char* srcA, unsigned int pitchA, unsigned char* srcB,
                          unsigned int pitchB, unsigned char* dst, unsigned int pitchDst,
                          unsigned int, unsigned int, unsigned int width, unsigned int height,
                          unsigned int, unsigned int, unsigned int, unsigned int, unsigned int,
                          unsigned int rangeStart, unsigned int rangeEnd, unsigned int position,
                          unsigned int xStart, unsigned int xEnd, unsigned int yStart,
                          unsigned int yEnd) {
    const std::int64_t edge = std::int64_t{position} * (width + height) / (rangeEnd - rangeStart);
    for (unsigned int y = yStart; y < yEnd; ++y) {
        const auto x = static_cast<unsigned int>(std::clamp<std::int64_t>(edge - y, xStart, xEnd));
        const std::size_t line = y;
        std::memcpy(dst + line * pitchDst + xStart * pixelBytes,
                    srcB + line * pitchB + xStart * pixelBytes, (x - xStart) * pixelBytes);
        std::memcpy(dst + line * pitchDst + x * pixelBytes, srcA + line * pitchA + x * pixelBytes,
                    (xEnd - x) * pixelBytes);
    }
    return 0;
}

} // namespace

int main() {
    constexpr unsigned int width = 8, height = 4, pitch = width * pixelBytes;
    unsigned char black[pitch * height] = {}, white[pitch * height], mixed[pitch * height];
    std::memset(white, 255, sizeof white);
    ZRDraw_FXMultiThread(black, pitch, white, pitch, mixed, pitch, 0, ptBGRA32, width, height, 0, 0,
                         0, 0, 0, 0, 100, 50, 0, 0, 0, 0, diagonalWipe);
    for (unsigned int y = 0; y < height; ++y) {
        for (unsigned int x = 0; x < width; ++x)
            std::putchar(mixed[y * pitch + x * pixelBytes] == 0 ? '.' : '#');
        std::putchar('\n');
    }
}
