// The one door of the mux: sources, flips, the mode by one table, the grid.
#include "mux/grid.h"
#include "mux/modes.h"
#include "zrdraw/platform/memory.h"
#include "zrdraw/platform/resize.h"
#include "zrdraw/transitions.h"

namespace {

constexpr unsigned int modeBits = 0xFFFFFF;

struct Mode {
    unsigned int code;
    void (*draw)(const MuxArgs&);
    bool leavesWithoutHeight; // the call ends at once, without a grid, when the height is 0
    bool needsWidth;          // nothing is drawn when the width is 0
};

constexpr Mode modes[] = {
    {zrMuxAnaglyph, muxAnaglyph, true, true},
    {zrMuxHalves, muxHalves, true, true},
    {zrMuxByte0B, muxByte0, true, true},
    {zrMuxBytes02B, muxBytes02, true, true},
    {zrMuxInterleave, muxInterleave, true, false},
    {zrMuxAverage, muxAverage, true, true},
    {zrMuxDifference, muxDifference, true, true},
    {zrMuxFields, muxFields, false, false},
    {zrMuxSqueeze, muxSqueeze, false, false},
    {zrMuxSplit, muxSplit, true, false},
    {zrMuxMirror, muxMirror, true, false},
    {zrMuxMirror2, muxMirror, true, false},
    {zrMuxKey, muxKey, true, true},
    {zrMuxMix, muxMix, true, true},
    {zrMuxChecker, muxChecker, true, false},
    {zrMuxBlocks, muxBlocks, true, false},
    {zrMuxTwoUp, muxTwoUp, true, true},
    {zrMuxWindows, muxWindows, true, true},
    {zrMuxChannel, muxChannel, true, true},
};

const Mode* modeOf(unsigned int flags) {
    for (const Mode& mode : modes)
        if (mode.code == (flags & modeBits))
            return &mode;
    return nullptr;
}

// By contract: the second form of the windows has neither guard.
bool isGuarded(const Mode& mode, const MuxArgs& m) {
    return mode.code != zrMuxWindows || !m.has(zrMuxSecondForm);
}

void flipSources(const MuxArgs& m) {
    constexpr unsigned int allBits = 0xFFFFFFFFU;
    if (m.has(zrMuxFlipBVertical))
        pxsw_flip_vert(m.b, m.b, m.width, m.height, m.pitch);
    if (m.has(zrMuxFlipAVertical))
        pxsw_flip_vert(m.a, m.a, m.width, m.height, m.pitch);
    if (m.has(zrMuxFlipBHorizontal))
        pxsw_flip_horz(m.b, m.b, m.width, m.height, m.pitch, allBits);
    if (m.has(zrMuxFlipAHorizontal))
        pxsw_flip_horz(m.a, m.a, m.width, m.height, m.pitch, allBits);
}

unsigned int wipe(const MuxArgs& m) {
    constexpr unsigned int scale = 0x10000;
    return ZRDraw_DisplayWipe(m.a, m.pitch, m.b, m.pitch, m.dst, m.pitch, m.wipeCode, ptRGBA32,
                              m.width, m.height, 1, 1, 0, 0, 0, 0, scale, m.position);
}

} // namespace

extern "C" unsigned int
ZRDraw_DisplayMuxRGBA(unsigned char* src1, unsigned int size1, unsigned char* src2,
                      unsigned int size2, unsigned char* dst, unsigned long, unsigned int muxFlags,
                      unsigned int wipeCode, unsigned int position, unsigned int muxParam,
                      unsigned int splitX, unsigned int splitY, unsigned int gridMode,
                      unsigned int gridX, unsigned int gridY, unsigned int width,
                      unsigned int height, unsigned int pitch) {
    // By contract: the sizes are not exchanged with the sources.
    const bool swapped = (muxFlags & zrMuxSwap) != 0;
    const MuxArgs m{swapped ? src2 : src1,
                    swapped ? src1 : src2,
                    dst,
                    size1,
                    size2,
                    muxFlags,
                    wipeCode,
                    position,
                    muxParam,
                    splitX,
                    splitY,
                    width,
                    height,
                    pitch};
    flipSources(m);
    unsigned int result = 0;
    if (const Mode* mode = modeOf(muxFlags); mode != nullptr) {
        const bool guarded = isGuarded(*mode, m);
        if (guarded && mode->leavesWithoutHeight && height == 0)
            return 0;
        if (!guarded || !mode->needsWidth || width != 0)
            mode->draw(m);
    } else if ((muxFlags & modeBits) == zrMuxWipe) {
        result = wipe(m);
    } else if ((muxFlags & modeBits) == zrMuxB) {
        CopyMemoryFast(dst, m.b, size2);
    } else {
        CopyMemoryFast(dst, m.a, size1);
    }
    if (gridMode != 0 || m.has(zrMuxGrid))
        drawGrid(m, {gridMode, gridX, gridY});
    return result;
}
