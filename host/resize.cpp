// Flips and the nearest-pixel resize of 32-bit pictures.
#include "zrdraw/platform/resize.h"

#include "zrdraw/platform/memory.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::size_t pixelBytes = 4;

using Pixel = std::uint32_t;

Pixel load(const unsigned char* line, std::size_t x) {
    Pixel pixel;
    std::memcpy(&pixel, line + x * pixelBytes, sizeof pixel);
    return pixel;
}

void store(unsigned char* line, std::size_t x, Pixel pixel) {
    std::memcpy(line + x * pixelBytes, &pixel, sizeof pixel);
}

// Works from both ends at once, so that source and destination may be the same.
void flipLine(unsigned char* dst, const unsigned char* src, std::size_t width) {
    for (std::size_t x = 0; x < (width + 1) / 2; ++x) {
        const Pixel left = load(src, x), right = load(src, width - 1 - x);
        store(dst, x, right);
        store(dst, width - 1 - x, left);
    }
}

void exchangeLines(unsigned char* dstUpper, unsigned char* dstLower, const unsigned char* upper,
                   const unsigned char* lower, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x) {
        const Pixel above = load(upper, x), below = load(lower, x);
        store(dstUpper, x, below);
        store(dstLower, x, above);
    }
}

// The source coordinate of a destination one, or -1 where there is none.
int sourceOf(int at, double factor, double shift, int first, int count) {
    const double source = std::floor((at - shift) / factor);
    return source >= first && source < first + count ? static_cast<int>(source) : -1;
}

} // namespace

ZRDRAW_API int pxsw_flip_vert(unsigned char* dst, unsigned char* src, unsigned int width,
                              unsigned int height, unsigned int pitch) {
    for (std::size_t y = 0; y < (std::size_t{height} + 1) / 2; ++y) {
        const std::size_t upper = y * pitch, lower = (height - 1 - y) * pitch;
        exchangeLines(dst + upper, dst + lower, src + upper, src + lower, width);
    }
    return 0;
}

ZRDRAW_API int pxsw_flip_horz(unsigned char* dst, unsigned char* src, unsigned int width,
                              unsigned int height, unsigned int pitch, unsigned int) {
    for (std::size_t y = 0; y < height; ++y)
        flipLine(dst + y * pitch, src + y * pitch, width);
    return 0;
}

ZRDRAW_API int ippiResizeGetBufSize(IppiRect, IppiRect dstRect, int, int, int* bytes) {
    // The source column of each destination column.
    *bytes = static_cast<int>(sizeof(int)) * std::max(dstRect.width, 1);
    return 0;
}

ZRDRAW_API int ippiResizeSqrPixel_8u_C4R(const unsigned char* src, IppiSize, int srcStep,
                                         IppiRect srcRect, unsigned char* dst, int dstStep,
                                         IppiRect dstRect, double xFactor, double yFactor,
                                         double xShift, double yShift, int, unsigned char* buffer) {
    // The columns are worked out once, if there is room for them.
    const auto columnOf = [&](int x) {
        return sourceOf(dstRect.x + x, xFactor, xShift, srcRect.x, srcRect.width);
    };
    int* const columns = reinterpret_cast<int*>(buffer);
    for (int x = 0; columns != nullptr && x < dstRect.width; ++x)
        columns[x] = columnOf(x);
    for (int y = 0; y < dstRect.height; ++y) {
        const int fromLine = sourceOf(dstRect.y + y, yFactor, yShift, srcRect.y, srcRect.height);
        if (fromLine < 0)
            continue;
        const unsigned char* from = src + static_cast<std::ptrdiff_t>(fromLine) * srcStep;
        unsigned char* to = dst + static_cast<std::ptrdiff_t>(y) * dstStep;
        for (int x = 0; x < dstRect.width; ++x) {
            const int column = columns != nullptr ? columns[x] : columnOf(x);
            if (column >= 0)
                store(to, static_cast<std::size_t>(x),
                      load(from, static_cast<std::size_t>(column)));
        }
    }
    return 0;
}

ZRDRAW_API unsigned char* ippsMalloc_8u(int bytes) {
    return bytes > 0 ? static_cast<unsigned char*>(ZRAlloc(static_cast<unsigned int>(bytes)))
                     : nullptr;
}

ZRDRAW_API void ippsFree(void* memory) {
    ZRFree(memory);
}
