/**
 * @file
 * @ingroup mux
 *
 * The display mux: composes two 32-bit pictures into one. Compiles as C and as C++.
 */
#ifndef ZRDRAW_MUX_H
#define ZRDRAW_MUX_H

#include "zrdraw/types.h"

/** @addtogroup mux
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * The modes, the low 24 bits of `muxFlags`, compared as a whole: any other value copies A. A and B
 * are the two sources, bytes of a pixel count from the lowest address.
 */
enum zrMuxMode {
    zrMuxA = 0,              /**< A, `size1` bytes */
    zrMuxB = 2,              /**< B, `size2` bytes */
    zrMuxAnaglyph = 4,       /**< byte 2 of A with byte 0 of B */
    zrMuxHalves = 8,         /**< the high half of A with the low half of B */
    zrMuxByte0B = 0x10,      /**< A with byte 0 of B */
    zrMuxBytes02B = 0x20,    /**< A with bytes 0 and 2 of B */
    zrMuxInterleave = 0x40,  /**< lines of A and B in turns; second form: columns */
    zrMuxAverage = 0x80,     /**< half of each */
    zrMuxDifference = 0x100, /**< their difference in grey, times `muxParam` from 2 to 255 */
    zrMuxFields = 0x200,     /**< even lines of A above even lines of B */
    zrMuxSqueeze = 0x400,    /**< side by side at half width, lines of 4 * width bytes */
    zrMuxSplit = 0x800,      /**< A left of column `splitX`; second form: above `splitY` */
    zrMuxMirror = 0x1000,    /**< the left half of A, and B mirrored; second form: halves */
    zrMuxMirror2 = 0x2000,   /**< the same */
    zrMuxKey = 0x4000,       /**< B where no byte differs by more than `muxParam`, else 0 */
    zrMuxMix = 0x8000,       /**< a mix by `position`, 0 to 65536 */
    zrMuxWipe = 0x10000,     /**< the transition `wipeCode` at `position` */
    zrMuxChecker = 0x40000,  /**< single pixels of A and B in turns */
    zrMuxBlocks = 0x80000,   /**< squares of position / 256 pixels, 100 at most */
    zrMuxTwoUp = 0x100000,   /**< side by side at half size */
    zrMuxWindows = 0x200000, /**< halves from column `splitX`; second form: line `splitY` */
    zrMuxChannel = 0x800000  /**< the byte of A that `muxParam` masks, or their mean */
};

/** Switches in the high bits of `muxFlags`. Flips change the sources themselves. */
enum zrMuxSwitch {
    zrMuxGrid = 0x1000000,
    zrMuxFlipBHorizontal = 0x2000000,
    zrMuxFlipBVertical = 0x4000000,
    zrMuxDivider = 0x8000000,     /**< of zrMuxSplit: a grey line at the split, see below */
    zrMuxSecondForm = 0x10000000, /**< of interleave, split, mirrors and windows */
    zrMuxFlipAHorizontal = 0x20000000,
    zrMuxFlipAVertical = 0x40000000
};

/** The last switch: src2 is A and src1 B; zrMuxKey has all ones in the place of 0. */
#define zrMuxSwap 0x80000000U

/**
 * Composes a picture. Nothing is tested: the caller sees to pointers, sizes and the ranges of the
 * grid, where a step of 0 divides by zero or does not end.
 *
 * The divider of a split by columns stands at column `splitX`: where that is the width, it is
 * written behind the pixels of each line, four bytes into what the pitch leaves there. In a packed
 * picture that is the first pixel of the next line, before this is drawn, and behind the last line
 * four bytes that must be the caller's. A split by lines at the height has no divider.
 *
 * A picture without pixels is no error. Modes that copy whole lines do so without a width too, and
 * the grid comes after any mode.
 * @param size1    bytes that the mode A copies, of whichever source is A
 * @param size2    bytes that the mode B copies
 * @param reserved ignored
 * @param gridMode 0: no grid unless the switch is on; 1: steps of one part in 100 / `gridX`,
 *                 which is a whole number; from 2 on: of `gridX` columns and `gridY` lines
 * @param pitch    bytes of a line of all three pictures; squeeze, two-up and windows take 4 * width
 * @return 0, or what ZRDraw_DisplayWipe answers
 */
ZRDRAW_API unsigned int
ZRDraw_DisplayMuxRGBA(unsigned char* src1, unsigned int size1, unsigned char* src2,
                      unsigned int size2, unsigned char* dst, unsigned long reserved,
                      unsigned int muxFlags, unsigned int wipeCode, unsigned int position,
                      unsigned int muxParam, unsigned int splitX, unsigned int splitY,
                      unsigned int gridMode, unsigned int gridX, unsigned int gridY,
                      unsigned int width, unsigned int height, unsigned int pitch);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
