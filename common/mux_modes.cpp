#include "common/mux_modes.h"

#include "common/near_names.h"
#include "common/tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace {

constexpr unsigned secondForm(unsigned mode) {
    return mode | zrMuxSecondForm;
}

constexpr MuxModeName names[] = {
    {zrMuxA, "a", "A alone", MuxPieces::Lines},
    {zrMuxB, "b", "B alone", MuxPieces::Lines},
    {zrMuxAnaglyph, "anaglyph", "byte 2 of A with byte 0 of B: red and blue in bgra"},
    {zrMuxHalves, "halves", "bytes 2 and 3 of A with bytes 0 and 1 of B"},
    {zrMuxByte0B, "byte0", "A with byte 0 of B: its blue in bgra"},
    {zrMuxBytes02B, "bytes02", "A with bytes 0 and 2 of B: its blue and red in bgra"},
    {zrMuxInterleave, "lines", "lines of A and B in turns", MuxPieces::Lines},
    {secondForm(zrMuxInterleave), "columns", "columns of A and B in turns"},
    {zrMuxAverage, "average", "half of each"},
    {zrMuxDifference, "difference", "how far they differ, in grey; --gain 2 to 255"},
    {zrMuxFields, "fields", "even lines of A above even lines of B"},
    {zrMuxSqueeze, "squeeze", "side by side at half width"},
    {zrMuxSplit, "split", "A to the left of --split, B to the right; --divider",
     MuxPieces::PartsOfLines},
    {secondForm(zrMuxSplit), "split-lines", "A above --split, B below; --divider",
     MuxPieces::Lines},
    {zrMuxMirror, "mirror", "the left half of A, and B mirrored beside it"},
    {secondForm(zrMuxMirror), "mirror-lines", "the upper half of A, and B mirrored below",
     MuxPieces::Lines},
    {zrMuxKey, "key", "B where it is A, within --threshold, else black; white with --swap"},
    {zrMuxMix, "mix", "a mix by --position"},
    {zrMuxWipe, "wipe", "the transition --code at --position"},
    {zrMuxChecker, "checker", "single pixels of A and B in turns"},
    {zrMuxBlocks, "blocks", "squares of --block pixels of A and B in turns"},
    {zrMuxTwoUp, "two-up", "side by side at half size"},
    {zrMuxWindows, "windows", "half a picture of each from column --split on"},
    {secondForm(zrMuxWindows), "windows-lines", "half a picture of each from line --split on"},
    {zrMuxChannel, "channel", "byte --channel of A in grey, or the mean of three"},
};

constexpr unsigned wordBytes = 4;

// The fewest pixels of a layout that take whole words; no pixels where samples are shared
// otherwise.
struct Cell {
    unsigned pixels;
    unsigned words;
};

Cell cellOf(const zrLayout& layout) {
    if (layout.code == ptV210)
        return {6, 4};
    if (layout.line.groupPixels != 1)
        return {0, 0};
    const unsigned bytes = layout.line.groupBytes;
    const unsigned pixels = layout.isPairs() ? 2 : wordBytes / std::gcd(bytes, wordBytes);
    return {pixels, pixels * bytes / wordBytes};
}

// The middle, where it is told to lie behind the picture.
unsigned splitColumn(const MuxParameters& p, int width) {
    const auto columns = static_cast<unsigned>(width);
    return p.splitX <= columns ? p.splitX : columns / 2;
}

} // namespace

std::span<const MuxModeName> muxModeNames() {
    return names;
}

const MuxModeName& muxModeNamed(const std::string& name) {
    std::vector<std::string> candidates;
    for (const MuxModeName& mode : names) {
        if (name == mode.name)
            return mode;
        candidates.emplace_back(mode.name);
    }
    throw UsageError(fmt::format("there is no mode '{}'{} (zrdraw mux --list shows all)", name,
                                 nearNames(name, candidates)));
}

std::string listMuxModes() {
    std::string text = fmt::format("{:<14} {}\n", "MODE", "WHAT IT SHOWS");
    for (const MuxModeName& mode : names)
        text += fmt::format("{:<14} {}\n", mode.name, mode.help);
    return text;
}

MuxParameters parametersOf(const MuxSettings& settings) {
    constexpr double scale = 65536.0;
    MuxParameters p;
    p.flags = settings.mode | (settings.divider ? unsigned{zrMuxDivider} : 0) |
              (settings.swap ? zrMuxSwap : 0) | settings.flips;
    p.wipeCode = settings.code;
    p.position = settings.mode == zrMuxBlocks
                     ? static_cast<unsigned>(settings.block) << 8
                     : static_cast<unsigned>(std::lround(settings.position * scale));
    p.param = settings.mode == zrMuxDifference ? static_cast<unsigned>(settings.gain)
              : settings.mode == zrMuxChannel  ? settings.channels
                                               : static_cast<unsigned>(settings.threshold);
    if (settings.split >= 0)
        p.splitX = p.splitY = static_cast<unsigned>(settings.split);
    return p;
}

bool canMuxIn(const zrLayout& layout, MuxPieces pieces, const MuxParameters& p, int width) {
    const Cell cell = cellOf(layout);
    if (layout.bytes.a >= 0)
        return true;
    const unsigned drawn = zrMuxDivider | zrMuxGrid | zrMuxFlipAHorizontal | zrMuxFlipBHorizontal;
    if (pieces == MuxPieces::Pixels || cell.pixels == 0 || (p.flags & drawn) != 0 ||
        p.gridMode != 0)
        return false;
    return pieces == MuxPieces::Lines || splitColumn(p, width) % cell.pixels == 0;
}

void composeMux(const MuxParameters& p, const PictureView& a, const PictureView& b,
                const PictureView& result) {
    const auto pitch = static_cast<unsigned>(a.pitch), height = static_cast<unsigned>(a.height);
    const unsigned size = pitch * height;
    const Cell cell = cellOf(*a.layout);
    const unsigned splitX = splitColumn(p, a.width) / std::max(cell.pixels, 1U) * cell.words;
    ZRDraw_DisplayMuxRGBA(a.data, size, b.data, size, result.data, 0, p.flags, p.wipeCode,
                          p.position, p.param, splitX, p.splitY, p.gridMode, p.gridX, p.gridY,
                          pitch / wordBytes, height, pitch);
}
