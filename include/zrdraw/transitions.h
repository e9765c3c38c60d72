/**
 * Transitions between two frames: SMPTE wipes, the dissolve and the slide. Plain functions on the
 * callers' buffers; compiles as C and as C++.
 *
 * The outgoing frame is the one that a transition leaves, the incoming one takes over as `position`
 * grows. `srcA` is outgoing and `srcB` incoming, or the other way round with bit 31 of `wipeCode`;
 * the geometry stays the same. Layouts are 1 to 6 and 31, 32, as well as 29 and 30 (four and three
 * 32-bit floats a pixel), 33 and 34 (three and four bytes), 35 and 36 (three and four 16-bit
 * words); any other leaves the destination as it was, but for the slide.
 *
 * Nothing is tested and nothing is reported: the results are 0. A scale of length 0 stops the
 * process in the wipes and the slide.
 */
#ifndef ZRDRAW_TRANSITIONS_H
#define ZRDRAW_TRANSITIONS_H

#include "zrdraw/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * A kernel draws one band of a transition. Line offsets are 32-bit products that wrap.
 * @param srcA        first source frame, first byte of line 0
 * @param pitchA      bytes from a line of it to the next
 * @param srcB        second source frame
 * @param pitchB      bytes from line to line of it, and of the destination
 * @param dst         destination frame
 * @param pitchDst    read by no kernel
 * @param wipeCode    the transition in bits 0 to 30; bit 31 exchanges the frames' roles
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

/** The same with a kernel of the caller's. The band is not read: it is made of the frame's size. */
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
 * three planes of three bytes a pixel; `pixelType` is not read. Runs at thread priority 15. A width
 * that 4 does not divide reads up to six bytes behind the last line of a source.
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

/** The wipes, by the code that selects them. By their geometry some pixels are of the other frame
 * at the very start or end; see docs/contract.md. */
ZRDRAW_API zrfxKernel zrfxSMPTE_Horizontal;  /**< 1: a vertical edge from left to right */
ZRDRAW_API zrfxKernel zrfxSMPTE_Vertical;    /**< 2: a horizontal edge from the top down */
ZRDRAW_API zrfxKernel zrfxSMPTE_TopLeft;     /**< 3: a box grows from the top left corner */
ZRDRAW_API zrfxKernel zrfxSMPTE_TopRight;    /**< 4: from the top right */
ZRDRAW_API zrfxKernel zrfxSMPTE_BottomRight; /**< 5: from the bottom right */
ZRDRAW_API zrfxKernel zrfxSMPTE_BottomLeft;  /**< 6: from the bottom left */
ZRDRAW_API zrfxKernel zrfxSMPTE_FourCorners; /**< 7: four boxes grow from the corners */
ZRDRAW_API zrfxKernel zrfxSMPTE_FourSquare;  /**< 8: the outgoing frame shrinks to the centre */
ZRDRAW_API zrfxKernel
    zrfxSMPTE_BarnDoorVertical; /**< 21: two vertical edges close from the sides */
ZRDRAW_API zrfxKernel
    zrfxSMPTE_BarnDoorHorizontal; /**< 22: two horizontal edges close from top and bottom */
ZRDRAW_API zrfxKernel
    zrfxSMPTE_TopCenter; /**< 23: a box of the outgoing frame shrinks to the top edge's centre */
ZRDRAW_API zrfxKernel zrfxSMPTE_RightCenter;  /**< 24: to the right edge's */
ZRDRAW_API zrfxKernel zrfxSMPTE_BottomCenter; /**< 25: to the bottom edge's */
ZRDRAW_API zrfxKernel zrfxSMPTE_LeftCenter;   /**< 26: to the left edge's */
ZRDRAW_API zrfxKernel
    zrfxSMPTE_Rectangle; /**< 101: a box of the incoming frame grows from the centre */

/** Mixes the frames sample by sample in double precision, truncated. Codes without a wipe. */
ZRDRAW_API zrfxKernel zrfxDISSOLVE;
ZRDRAW_API zrfxKernel zrfxDISSOLVE2;

/** Moves `srcA` off `srcB`: 500 up, 501 left, 502 and 504 to 507 down, 503 right. Other codes, and
 * all with bit 31, do nothing. Lines are taken for packed. An unknown layout has 4 bytes a pixel.
 */
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

#endif
