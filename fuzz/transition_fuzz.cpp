// Transitions and the mux by an input's bytes, on pictures with guard bytes about each.
#include "input.h"
#include "zrdraw/layouts.h"
#include "zrdraw/mux.h"
#include "zrdraw/wipes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <sanitizer/asan_interface.h>

namespace {

constexpr std::size_t guardBytes = 256;
constexpr unsigned char guard = 0x5A;

// A picture in a block of its own. What is read off it is the sanitizer's to find.
class Picture {
public:
    explicit Picture(std::size_t bytes) : m_memory(bytes + 2 * guardBytes, guard), m_bytes(bytes) {
        for (std::size_t i = 0; i < bytes; ++i)
            data()[i] = static_cast<unsigned char>(i * 31 + 7);
        ASAN_POISON_MEMORY_REGION(m_memory.data(), guardBytes);
        ASAN_POISON_MEMORY_REGION(data() + bytes, guardBytes);
    }
    ~Picture() {
        ASAN_UNPOISON_MEMORY_REGION(m_memory.data(), m_memory.size());
        const auto isGuard = [](unsigned char byte) { return byte == guard; };
        const bool intact = std::all_of(m_memory.data(), data(), isGuard) &&
                            std::all_of(data() + m_bytes, data() + m_bytes + guardBytes, isGuard);
        if (intact)
            return;
        std::fprintf(stderr, "a byte about a picture was written\n");
        std::abort();
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    unsigned char* data() { return m_memory.data() + guardBytes; }

private:
    std::vector<unsigned char> m_memory;
    std::size_t m_bytes;
};

struct Group {
    unsigned int pixelType, bytes;
};
constexpr Group groups[] = {
    {ptRGBA32, 4},    {ptBGR24, 3},     {ptRGB48, 6},     {ptARGB64, 8},      {zrWipeByte3, 3},
    {zrWipeByte4, 4}, {zrWipeWord3, 6}, {zrWipeWord4, 8}, {zrWipeFloat3, 12}, {zrWipeFloat4, 16}};

template <typename Value, std::size_t count>
const Value& pick(Input& input, const Value (&values)[count]) {
    return values[static_cast<std::size_t>(input.below(static_cast<int>(count)))];
}

unsigned int number(Input& input) {
    unsigned int value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned int>(input.byte());
    return value;
}

// One of a row of the table, or the one behind it, which may be in no row.
unsigned int code(Input& input) {
    const zrWipe& row = pick(input, zrWipes);
    return row.first +
           static_cast<unsigned int>(input.below(static_cast<int>(row.last - row.first + 2)));
}

// Within the scale mostly, sometimes anywhere.
unsigned int position(Input& input, unsigned int scale) {
    return input.below(4) == 3 ? number(input) : number(input) % (scale + 1);
}

void wipe(Input& input) {
    const Group& group = pick(input, groups);
    const auto width = static_cast<unsigned int>(input.between(0, 40));
    const auto height = static_cast<unsigned int>(input.between(0, 24));
    const unsigned int line = width * group.bytes;
    // Slides take lines for packed; all others have a pitch for each source.
    const unsigned int wipeCode = code(input) | (input.flag() ? zrWipeSwap : 0);
    const unsigned int padding = static_cast<unsigned int>(input.below(9));
    // By contract a line of the first source's pitch may go to one of the second's.
    const unsigned int pitch = line + padding;
    Picture a(std::size_t{pitch} * height), b(std::size_t{pitch} * height),
        out(std::size_t{pitch} * height);
    const unsigned int scale = 1 + number(input) % 70000;
    ZRDraw_DisplayWipe(a.data(), pitch, b.data(), pitch, out.data(), pitch, wipeCode,
                       group.pixelType, width, height, 1, 1, 0, 0, 0, 0, scale,
                       position(input, scale));
}

void frontEnd(Input& input) {
    const bool v210 = input.flag();
    const auto width = static_cast<unsigned int>(input.between(1, 60));
    const auto height = static_cast<unsigned int>(input.between(1, 12));
    const unsigned int line =
        v210 ? zrLineBytes(zrFindLayout(ptV210)->line, width) : (width + 3) / 4 * 8;
    Picture a(std::size_t{line} * height), b(std::size_t{line} * height),
        out(std::size_t{line} * height);
    const auto door = v210 ? ZRDraw_DisplayWipeV210 : ZRDraw_DisplayWipeYCbCr;
    door(a.data(), line, b.data(), line, out.data(), line, code(input), 0, width, height, 1, 1, 0,
         0, 0, 0, 65536, position(input, 65536));
}

void mux(Input& input) {
    constexpr unsigned int modes[] = {
        zrMuxA,          zrMuxB,       zrMuxAnaglyph,   zrMuxHalves,  zrMuxByte0B,  zrMuxBytes02B,
        zrMuxInterleave, zrMuxAverage, zrMuxDifference, zrMuxFields,  zrMuxSqueeze, zrMuxSplit,
        zrMuxMirror,     zrMuxMirror2, zrMuxKey,        zrMuxMix,     zrMuxWipe,    zrMuxChecker,
        zrMuxBlocks,     zrMuxTwoUp,   zrMuxWindows,    zrMuxChannel, 0x1800};
    const auto width = static_cast<unsigned int>(input.between(1, 40));
    const auto height = static_cast<unsigned int>(input.between(1, 24));
    const unsigned int mode = pick(input, modes);
    // Some modes take lines for packed.
    const unsigned int pitch = width * 4 + 4 * static_cast<unsigned int>(input.below(4));
    const std::size_t bytes = std::size_t{pitch} * height;
    constexpr unsigned int dividerRoom = 4; // a divider at the width falls behind the last pixel
    Picture a(bytes), b(bytes), out(bytes + dividerRoom);
    const unsigned int switches = static_cast<unsigned int>(input.byte()) << 24 & 0xFE000000U;
    // A step of 0 is the caller's fault: percent only where the picture has that many parts.
    const unsigned int gridMode = static_cast<unsigned int>(input.below(3));
    const unsigned int percent = 100 / std::min({width, height, 10U}) + 1;
    const unsigned int gridX =
        gridMode == 2 ? static_cast<unsigned int>(input.between(1, 50)) : std::min(percent, 100U);
    ZRDraw_DisplayMuxRGBA(a.data(), pitch * height, b.data(), pitch * height, out.data(), 0,
                          mode | switches, code(input), position(input, 65536), number(input) % 300,
                          number(input) % (width + 2), number(input) % (height + 2), gridMode,
                          gridX, static_cast<unsigned int>(input.between(1, 50)), width, height,
                          pitch);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    Input input({bytes, count});
    constexpr void (*subjects[])(Input&) = {wipe, mux, mux, frontEnd};
    for (int i = 0; i < 4 && !input.empty(); ++i)
        pick(input, subjects)(input);
    return 0;
}
