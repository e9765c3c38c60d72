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
};

constexpr Mode modes[] = {
    {zrMuxAnaglyph, muxAnaglyph},
    {zrMuxHalves, muxHalves},
    {zrMuxByte0B, muxByte0},
    {zrMuxBytes02B, muxBytes02},
    {zrMuxInterleave, muxInterleave},
    {zrMuxAverage, muxAverage},
    {zrMuxDifference, muxDifference},
    {zrMuxFields, muxFields},
    {zrMuxSqueeze, muxSqueeze},
    {zrMuxSplit, muxSplit},
    {zrMuxMirror, muxMirror},
    {zrMuxMirror2, muxMirror},
    {zrMuxKey, muxKey},
    {zrMuxMix, muxMix},
    {zrMuxChecker, muxChecker},
    {zrMuxBlocks, muxBlocks},
    {zrMuxTwoUp, muxTwoUp},
    {zrMuxWindows, muxWindows},
    {zrMuxChannel, muxChannel},
};

const Mode* modeOf(unsigned int flags) {
    for (const Mode& mode : modes)
        if (mode.code == (flags & modeBits))
            return &mode;
    return nullptr;
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

unsigned int ZRDraw_DisplayMuxRGBA(unsigned char* src1, unsigned int size1, unsigned char* src2,
                                   unsigned int size2, unsigned char* dst, unsigned long,
                                   unsigned int muxFlags, unsigned int wipeCode,
                                   unsigned int position, unsigned int muxParam,
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
    if (const Mode* mode = modeOf(muxFlags); mode != nullptr)
        mode->draw(m);
    else if ((muxFlags & modeBits) == zrMuxWipe)
        result = wipe(m);
    else if ((muxFlags & modeBits) == zrMuxB)
        CopyMemoryFast(dst, m.b, size2);
    else
        CopyMemoryFast(dst, m.a, size1);
    if (gridMode != 0 || m.has(zrMuxGrid))
        drawGrid(m, {gridMode, gridX, gridY});
    return result;
}
