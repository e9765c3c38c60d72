// Flips and the nearest-pixel resize of 32-bit pictures.
#include "zrdraw/platform/resize.h"

#include "zrdraw/platform/memory.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <immintrin.h>

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

// The columns that have a source, which follow each other.
struct Columns {
    int first = 0;
    int end = 0;
    bool everySecond = true; // each from two behind that of the one before

    // `sources` has room for `count` of them, or is null.
    template <typename SourceOf>
    Columns(int* sources, int count, SourceOf sourceOfColumn) {
        int last = 0;
        for (int x = 0; x < count; ++x) {
            const int source = sourceOfColumn(x);
            if (sources != nullptr)
                sources[x] = source;
            if (source < 0)
                continue;
            first = end == 0 ? x : first;
            everySecond = everySecond && (end == 0 || source == last + 2);
            last = source;
            end = x + 1;
        }
    }
};

// Of two pixels the first.
void halveLine(unsigned char* to, const unsigned char* from, std::size_t count) {
    constexpr std::size_t atOnce = 4;
    for (; count > atOnce; count -= atOnce, to += sizeof(__m128), from += 2 * sizeof(__m128)) {
        const auto* pixels = reinterpret_cast<const float*>(from);
        const __m128 halves = _mm_shuffle_ps(_mm_loadu_ps(pixels), _mm_loadu_ps(pixels + atOnce),
                                             _MM_SHUFFLE(2, 0, 2, 0));
        _mm_storeu_ps(reinterpret_cast<float*>(to), halves);
    }
    for (std::size_t x = 0; x < count; ++x)
        store(to, x, load(from, 2 * x));
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
    int* const sources = reinterpret_cast<int*>(buffer);
    const Columns columns(sources, dstRect.width, columnOf);
    for (int y = 0; y < dstRect.height && columns.end != 0; ++y) {
        const int fromLine = sourceOf(dstRect.y + y, yFactor, yShift, srcRect.y, srcRect.height);
        if (fromLine < 0)
            continue;
        const unsigned char* from = src + static_cast<std::ptrdiff_t>(fromLine) * srcStep;
        unsigned char* to = dst + static_cast<std::ptrdiff_t>(y) * dstStep;
        if (columns.everySecond) {
            const auto first = static_cast<std::size_t>(columns.first);
            halveLine(to + first * pixelBytes,
                      from + static_cast<std::size_t>(columnOf(columns.first)) * pixelBytes,
                      static_cast<std::size_t>(columns.end) - first);
            continue;
        }
        for (int x = columns.first; x < columns.end; ++x)
            store(to, static_cast<std::size_t>(x),
                  load(from,
                       static_cast<std::size_t>(sources != nullptr ? sources[x] : columnOf(x))));
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
