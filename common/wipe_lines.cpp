#include "common/wipe_lines.h"

#include "common/v210_words.h"
#include "zrdraw/v210.h"

#include <array>
#include <cstring>

namespace {

constexpr int pairBytes = 4;
// By contract: the front end takes the third byte of a pair for its odd pixel's own in every order,
// so on an odd edge of UYVY that is the Cr of the pair.
constexpr int oddPixelByte = 2;
constexpr int groupPixels = static_cast<int>(zrV210::groupPixels);
constexpr int groupBytes = static_cast<int>(zrV210::groupBytes);

// Pixels of a group as words.
struct GroupWords {
    std::array<std::uint8_t, groupPixels * wordPixelBytes + wordOverhang> bytes;

    void read(const unsigned char* group) { expandV210Line(group, bytes.data(), groupPixels); }
    void take(const GroupWords& from, int pixel) {
        std::memcpy(&bytes[static_cast<std::size_t>(pixel * wordPixelBytes)],
                    &from.bytes[static_cast<std::size_t>(pixel * wordPixelBytes)], wordPixelBytes);
    }
};

// A group on the edge of a run: the pixels from `begin` on, up to the group's end.
void putPixels(const unsigned char* from, unsigned char* to, int begin) {
    GroupWords source, result;
    source.read(from);
    result.read(to);
    for (int pixel = begin; pixel < groupPixels; ++pixel)
        result.take(source, pixel);
    packV210Line(result.bytes.data(), to, groupPixels);
}

constexpr int roundedUp(int pixels, int unit) {
    return (pixels + unit - 1) / unit;
}

} // namespace

void wipePairs(const std::vector<WipeMask::Run>& runs, const unsigned char* first,
               const unsigned char* second, unsigned char* to) {
    for (const WipeMask::Run& run : runs) {
        const unsigned char* from = run.second ? second : first;
        if (run.begin % 2 != 0) {
            const int place = run.begin / 2 * pairBytes + oddPixelByte;
            to[place] = from[place];
        }
        const int begin = roundedUp(run.begin, 2), end = roundedUp(run.end, 2);
        std::memcpy(to + begin * pairBytes, from + begin * pairBytes,
                    static_cast<std::size_t>((end - begin) * pairBytes));
    }
}

void wipeV210(const std::vector<WipeMask::Run>& runs, const unsigned char* first,
              const unsigned char* second, unsigned char* to, int width) {
    for (const WipeMask::Run& run : runs) {
        const unsigned char* from = run.second ? second : first;
        const int at = run.begin / groupPixels * groupBytes;
        if (run.begin % groupPixels != 0)
            putPixels(from + at, to + at, run.begin % groupPixels);
        const int begin = roundedUp(run.begin, groupPixels);
        const int end =
            run.end == width ? roundedUp(width, groupPixels) : roundedUp(run.end, groupPixels);
        if (end > begin)
            std::memcpy(to + begin * groupBytes, from + begin * groupBytes,
                        static_cast<std::size_t>((end - begin) * groupBytes));
    }
}
