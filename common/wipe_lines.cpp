#include "common/wipe_lines.h"

#include "common/v210_words.h"
#include "zrdraw/v210.h"

#include <array>
#include <cstring>

namespace {

constexpr std::size_t pairPixels = 2, pairBytes = 4;
// By contract: the front end takes the third byte of a pair for its odd pixel's own in every order,
// so on an odd edge of UYVY that is the Cr of the pair.
constexpr std::size_t oddPixelByte = 2;

constexpr std::size_t groupPixels = zrV210::groupPixels, groupBytes = zrV210::groupBytes;

// A run in whole pairs or groups, and the pixels of the one that it begins within.
struct Span {
    Span(const WipeMask::Run& run, std::size_t unit)
        : first(static_cast<std::size_t>(run.begin)), begin((first + unit - 1) / unit),
          end((static_cast<std::size_t>(run.end) + unit - 1) / unit), within(first % unit),
          broken(first / unit) {}

    std::size_t first;      // pixel
    std::size_t begin, end; // of the units that begin in the run
    std::size_t within;     // pixels of the broken unit before the run; 0: none is broken
    std::size_t broken;     // unit
};

void copyUnits(const unsigned char* from, unsigned char* to, const Span& span, std::size_t bytes) {
    if (span.end > span.begin)
        std::memcpy(to + span.begin * bytes, from + span.begin * bytes,
                    (span.end - span.begin) * bytes);
}

// A group on the edge of a run: the pixels from `begin` on, up to the group's end.
void putPixels(const unsigned char* from, unsigned char* to, std::size_t begin) {
    constexpr int pixels = static_cast<int>(groupPixels);
    std::array<std::uint8_t, groupPixels * wordPixelBytes + wordOverhang> source, result;
    expandV210Line(from, source.data(), pixels);
    expandV210Line(to, result.data(), pixels);
    const std::size_t at = begin * wordPixelBytes;
    std::memcpy(&result[at], &source[at], groupPixels * wordPixelBytes - at);
    packV210Line(result.data(), to, pixels);
}

} // namespace

void wipePairs(const std::vector<WipeMask::Run>& runs, const unsigned char* first,
               const unsigned char* second, unsigned char* to) {
    for (const WipeMask::Run& run : runs) {
        const unsigned char* from = run.second ? second : first;
        const Span span(run, pairPixels);
        if (const std::size_t at = span.broken * pairBytes + oddPixelByte; span.within != 0)
            to[at] = from[at];
        copyUnits(from, to, span, pairBytes);
    }
}

void wipeV210(const std::vector<WipeMask::Run>& runs, const unsigned char* first,
              const unsigned char* second, unsigned char* to) {
    for (const WipeMask::Run& run : runs) {
        const unsigned char* from = run.second ? second : first;
        const Span span(run, groupPixels);
        if (const std::size_t at = span.broken * groupBytes; span.within != 0)
            putPixels(from + at, to + at, span.within);
        copyUnits(from, to, span, groupBytes);
    }
}
