/**
 * @file
 * @ingroup transitions
 *
 * Transitions between two frames: SMPTE wipes, the dissolve and the slide. Plain functions on the
 * callers' buffers; compiles as C and as C++. wipes.h has all codes, by name, as one table.
 *
 * The outgoing frame is the one that a transition leaves, the incoming one takes over as `position`
 * grows. `srcA` is outgoing and `srcB` incoming, or the other way round with zrWipeSwap in the
 * code; the geometry stays the same. Layouts are 1 to 6 and 31, 32 of types.h and those of
 * zrWipeLayout; any other leaves the destination as it was, but for the slide.
 *
 * The destination may be one of the sources, at the same address and with the same pitch, but for
 * srcA in a slide, which is overwritten before it has moved. Buffers that overlap in any other way
 * give wrong pictures; the front ends alone read both sources before they write.
 *
 * Nothing is tested and nothing is reported: the results are 0. A scale of length 0 stops the
 * process in the wipes and the slide.
 */
#ifndef ZRDRAW_TRANSITIONS_H
#define ZRDRAW_TRANSITIONS_H

#include "zrdraw/types.h"

/** @addtogroup transitions
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** In `wipeCode`: the two sources exchange their roles. A slide draws nothing then. */
#define zrWipeSwap 0x80000000U

/** The codes with a picture of their own, bit 31 aside. Each code without a row in wipes.h
 * dissolves. */
enum zrWipeCode {
    zrWipeDissolve = 0,
    zrWipeHorizontal = 1,
    zrWipeVertical = 2,
    zrWipeTopLeft = 3,
    zrWipeTopRight = 4,
    zrWipeBottomRight = 5,
    zrWipeBottomLeft = 6,
    zrWipeFourCorners = 7,
    zrWipeFourSquare = 8,
    zrWipeBarnDoorVertical = 21,
    zrWipeBarnDoorHorizontal = 22,
    zrWipeTopCenter = 23,
    zrWipeRightCenter = 24,
    zrWipeBottomCenter = 25,
    zrWipeLeftCenter = 26,
    zrWipeRectangle = 101,
    zrSlideUp = 500,
    zrSlideLeft = 501,
    zrSlideDown = 502,
    zrSlideRight = 503,
    zrSlideDown4 = 504, /**< this one and those up to zrSlideDown7 are zrSlideDown */
    zrSlideDown5 = 505,
    zrSlideDown6 = 506,
    zrSlideDown7 = 507
};

/** Values of `pixelType` beside the codes of types.h: the samples of a pixel, all treated alike. */
enum zrWipeLayout {
    zrWipeFloat4 = 29, /**< four 32-bit floats */
    zrWipeFloat3 = 30,
    zrWipeByte3 = 33,
    zrWipeByte4 = 34,
    zrWipeWord3 = 35, /**< three 16-bit words */
    zrWipeWord4 = 36
};

/**
 * A kernel draws one band of a transition. Line offsets are 32-bit products that wrap.
 * @param srcA        first source frame, first byte of line 0
 * @param pitchA      bytes from a line of it to the next
 * @param srcB        second source frame
 * @param pitchB      bytes from line to line of it, and of the destination
 * @param dst         destination frame
 * @param pitchDst    read by no kernel
 * @param wipeCode    the transition, and zrWipeSwap or not
 * @param pixelType   layout of all three frames
 * @param width       pixels of a line
 * @param height      lines
 * @param fxReserved0 passed on, read by no kernel
 * @param rangeStart  start of the scale of progress
 * @param rangeEnd    its end; only the difference counts
 * @param position    progress, from 0 to that difference
 * @param xStart      first column of the band
 * @param xEnd        column behind its last
 * @param yStart      first line of the band
 * @param yEnd        line behind its last
 * @return 0
 */
typedef unsigned int zrfxKernel(unsigned char* srcA, unsigned int pitchA, unsigned char* srcB,
                                unsigned int pitchB, unsigned char* dst, unsigned int pitchDst,
                                unsigned int wipeCode, unsigned int pixelType, unsigned int width,
                                unsigned int height, unsigned int fxReserved0,
                                unsigned int fxReserved1, unsigned int fxReserved2,
                                unsigned int fxReserved3, unsigned int fxReserved4,
                                unsigned int rangeStart, unsigned int rangeEnd,
                                unsigned int position, unsigned int xStart, unsigned int xEnd,
                                unsigned int yStart, unsigned int yEnd);

/** One thread's work: the arguments of a kernel, in order, and the thread. */
typedef struct zrfxFXArgs {
    unsigned char* srcA;
    unsigned int pitchA;
    unsigned char* srcB;
    unsigned int pitchB;
    unsigned char* dst;
    unsigned int pitchDst;
    unsigned int wipeCode;
    unsigned int pixelType;
    unsigned int width;
    unsigned int height;
    unsigned int fxReserved0;
    unsigned int fxReserved1;
    unsigned int fxReserved2;
    unsigned int fxReserved3;
    unsigned int fxReserved4;
    unsigned int rangeStart;
    unsigned int rangeEnd;
    unsigned int position;
    unsigned int xStart;
    unsigned int xEnd;
    unsigned int yStart;
    unsigned int yEnd;
    zrfxKernel* kernel;
    void* threadHandle; /**< of zrOSCreateThread */
    unsigned int threadId;
    int* pending; /**< threads that have not ended, shared by all records of a call */
} zrfxFXArgs;

/**
 * Draws the frame of a transition on four short-lived threads, one a quadrant, and waits for them.
 * A thread that is not done 100 ms after the last was started is not waited for, unless the
 * platform's zrOSCloseThread waits for it, as that of the default layer does.
 * The arguments are those of a kernel up to `position`.
 * @return 0
 */
ZRDRAW_API unsigned int
ZRDraw_DisplayWipe(unsigned char* srcA, unsigned int pitchA, unsigned char* srcB,
                   unsigned int pitchB, unsigned char* dst, unsigned int pitchDst,
                   unsigned int wipeCode, unsigned int pixelType, unsigned int width,
                   unsigned int height, unsigned int fxReserved0, unsigned int fxReserved1,
                   unsigned int fxReserved2, unsigned int fxReserved3, unsigned int fxReserved4,
                   unsigned int rangeStart, unsigned int rangeEnd, unsigned int position);

/**
 * The same with a kernel of the caller's. The band is not read: it is made of the frame's size. A
 * kernel that throws ends the process, for it runs in a thread of its own.
 */
ZRDRAW_API unsigned int ZRDraw_FXMultiThread(
    unsigned char* srcA, unsigned int pitchA, unsigned char* srcB, unsigned int pitchB,
    unsigned char* dst, unsigned int pitchDst, unsigned int wipeCode, unsigned int pixelType,
    unsigned int width, unsigned int height, unsigned int fxReserved0, unsigned int fxReserved1,
    unsigned int fxReserved2, unsigned int fxReserved3, unsigned int fxReserved4,
    unsigned int rangeStart, unsigned int rangeEnd, unsigned int position, unsigned int xStart,
    unsigned int xEnd, unsigned int yStart, unsigned int yEnd, zrfxKernel* kernel);

/** What each thread runs; `args` is a zrfxFXArgs. @return that of the kernel */
ZRDRAW_API unsigned int zrfxFXThread(void* args);

/**
 * ZRDraw_DisplayWipe for 8-bit 4:2:2 frames, two bytes a pixel in any order of the samples, through
 * three planes of three bytes a pixel; `pixelType` is not read. Runs at thread priority 15. Pixels
 * are read by fours and written by twos: a width that 4 does not divide reads up to six bytes
 * behind each line of a source, and an odd width writes two bytes behind each line of the
 * destination, behind the last line too.
 * @return 0, or -1 without memory
 */
ZRDRAW_API unsigned int ZRDraw_DisplayWipeYCbCr(
    unsigned char* srcA, unsigned int pitchA, unsigned char* srcB, unsigned int pitchB,
    unsigned char* dst, unsigned int pitchDst, unsigned int wipeCode, unsigned int pixelType,
    unsigned int width, unsigned int height, unsigned int fxReserved0, unsigned int fxReserved1,
    unsigned int fxReserved2, unsigned int fxReserved3, unsigned int fxReserved4,
    unsigned int rangeStart, unsigned int rangeEnd, unsigned int position);

/**
 * The same for v210. Pitches below the natural line are raised to it. The two low bits of every
 * sample are lost, also where nothing changes.
 */
ZRDRAW_API unsigned int
ZRDraw_DisplayWipeV210(unsigned char* srcA, unsigned int pitchA, unsigned char* srcB,
                       unsigned int pitchB, unsigned char* dst, unsigned int pitchDst,
                       unsigned int wipeCode, unsigned int pixelType, unsigned int width,
                       unsigned int height, unsigned int fxReserved0, unsigned int fxReserved1,
                       unsigned int fxReserved2, unsigned int fxReserved3, unsigned int fxReserved4,
                       unsigned int rangeStart, unsigned int rangeEnd, unsigned int position);

/**
 * The wipes, by the codes that select them. By their geometry some pixels are of the other frame at
 * the very start or end; see docs/contract.md.
 */

/** 1; also 102 to 114, 119 to 125, 127 to 131, 201 to 207, 211 to 214, 221 to 228, 231 to 236, 241
 * to 246, 251 to 254, 261 to 264, 301 to 306, 310 to 317, 320 to 329, 340 to 345, 350 to 353 and
 * 409: a vertical edge from left to right. */
ZRDRAW_API zrfxKernel zrfxSMPTE_Horizontal;

/** 2: a horizontal edge from the top down. Copies whole lines: each line of the incoming frame with
 * `pitchA` bytes and each of the outgoing one with `pitchB`, whichever frame that is. So both must
 * have that many bytes in their last line, and the destination room for them. Works in the bands
 * that begin at column 0 only. */
ZRDRAW_API zrfxKernel zrfxSMPTE_Vertical;

ZRDRAW_API zrfxKernel zrfxSMPTE_TopLeft;     /**< 3: a box grows from the top left corner */
ZRDRAW_API zrfxKernel zrfxSMPTE_TopRight;    /**< 4: from the top right */
ZRDRAW_API zrfxKernel zrfxSMPTE_BottomRight; /**< 5: from the bottom right */
ZRDRAW_API zrfxKernel zrfxSMPTE_BottomLeft;  /**< 6: from the bottom left */
ZRDRAW_API zrfxKernel zrfxSMPTE_FourCorners; /**< 7: four boxes grow from the corners */
ZRDRAW_API zrfxKernel zrfxSMPTE_FourSquare;  /**< 8: the outgoing frame shrinks to the centre */

/** 21: two vertical edges close from the sides. */
ZRDRAW_API zrfxKernel zrfxSMPTE_BarnDoorVertical;

/** 22: two horizontal edges close from top and bottom. */
ZRDRAW_API zrfxKernel zrfxSMPTE_BarnDoorHorizontal;

/** 23: a box of the outgoing frame shrinks to the top edge's centre. */
ZRDRAW_API zrfxKernel zrfxSMPTE_TopCenter;

ZRDRAW_API zrfxKernel zrfxSMPTE_RightCenter;  /**< 24: to the right edge's */
ZRDRAW_API zrfxKernel zrfxSMPTE_BottomCenter; /**< 25: to the bottom edge's */
ZRDRAW_API zrfxKernel zrfxSMPTE_LeftCenter;   /**< 26: to the left edge's */

/** 101; also 41 to 48, 61 to 68 and 71 to 74: a box of the incoming frame grows from the centre. */
ZRDRAW_API zrfxKernel zrfxSMPTE_Rectangle;

/** Mixes the frames sample by sample in double precision, truncated: 0, and every code that selects
 * nothing else. The two are the same. */
ZRDRAW_API zrfxKernel zrfxDISSOLVE;
ZRDRAW_API zrfxKernel zrfxDISSOLVE2;

/** Moves `srcA` off `srcB`: 500 up, 501 left, 502 and 504 to 507 down, 503 right. Other codes, 508
 * to 515 among them, and all with zrWipeSwap do nothing. Lines are taken for packed. An unknown
 * layout has 4 bytes a pixel. One thread does the whole frame. */
ZRDRAW_API zrfxKernel zrfxSLIDE_Basic;

/**
 * Mixes an 8-bit plane into another: each byte becomes the low eight bits of
 * (second * weightSecond + first * weightFirst + 32768) >> 16.
 * @param first       the plane that changes
 * @param pitchFirst  bytes from a line of it to the next
 * @param width       bytes of a line; below 1 nothing is done
 * @param lines       below 1 nothing is done
 * @param weightFirst 65536 stands for 1
 * @return `first` advanced by all lines
 */
ZRDRAW_API unsigned char* weigh_plane(unsigned char* first, const unsigned char* second,
                                      int pitchFirst, int pitchSecond, int width, int lines,
                                      int weightSecond, int weightFirst);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
