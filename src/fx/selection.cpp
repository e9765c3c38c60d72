// From a transition's code to its kernel: one sorted table of ranges.
#include "fx/kernel_args.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr unsigned int swapBit = 0x80000000U;

struct CodeRange {
    unsigned int first, last;
    zrfxKernel* kernel;
};

// By contract: the gaps dissolve, and most codes of special shapes are the horizontal wipe.
constexpr CodeRange ranges[] = {
    {1, 1, zrfxSMPTE_Horizontal},
    {2, 2, zrfxSMPTE_Vertical},
    {3, 3, zrfxSMPTE_TopLeft},
    {4, 4, zrfxSMPTE_TopRight},
    {5, 5, zrfxSMPTE_BottomRight},
    {6, 6, zrfxSMPTE_BottomLeft},
    {7, 7, zrfxSMPTE_FourCorners},
    {8, 8, zrfxSMPTE_FourSquare},
    {21, 21, zrfxSMPTE_BarnDoorVertical},
    {22, 22, zrfxSMPTE_BarnDoorHorizontal},
    {23, 23, zrfxSMPTE_TopCenter},
    {24, 24, zrfxSMPTE_RightCenter},
    {25, 25, zrfxSMPTE_BottomCenter},
    {26, 26, zrfxSMPTE_LeftCenter},
    {41, 48, zrfxSMPTE_Rectangle},
    {61, 68, zrfxSMPTE_Rectangle},
    {71, 74, zrfxSMPTE_Rectangle},
    {101, 101, zrfxSMPTE_Rectangle},
    {102, 114, zrfxSMPTE_Horizontal},
    {119, 125, zrfxSMPTE_Horizontal},
    {127, 131, zrfxSMPTE_Horizontal},
    {201, 207, zrfxSMPTE_Horizontal},
    {211, 214, zrfxSMPTE_Horizontal},
    {221, 228, zrfxSMPTE_Horizontal},
    {231, 236, zrfxSMPTE_Horizontal},
    {241, 246, zrfxSMPTE_Horizontal},
    {251, 254, zrfxSMPTE_Horizontal},
    {261, 264, zrfxSMPTE_Horizontal},
    {301, 306, zrfxSMPTE_Horizontal},
    {310, 317, zrfxSMPTE_Horizontal},
    {320, 329, zrfxSMPTE_Horizontal},
    {340, 345, zrfxSMPTE_Horizontal},
    {350, 353, zrfxSMPTE_Horizontal},
    {409, 409, zrfxSMPTE_Horizontal},
    {500, 515, zrfxSLIDE_Basic},
};

static_assert(std::adjacent_find(std::begin(ranges), std::end(ranges),
                                 [](const CodeRange& a, const CodeRange& b) {
                                     return a.last >= b.first;
                                 }) == std::end(ranges));

zrfxKernel* kernelOf(unsigned int code) {
    const auto* range = std::lower_bound(
        std::begin(ranges), std::end(ranges), code,
        [](const CodeRange& row, unsigned int wanted) { return row.last < wanted; });
    return range != std::end(ranges) && code >= range->first ? range->kernel : zrfxDISSOLVE;
}

} // namespace

extern "C" unsigned int ZRDraw_DisplayWipe(ZRFX_FRAME_PARAMETERS) {
    return ZRDraw_FXMultiThread(ZRFX_FRAME_VALUES, 0, width, 0, height,
                                kernelOf(wipeCode & ~swapBit));
}
