/**
 * @file
 * @ingroup pixel
 *
 * Types shared by every door of the library: the layout codes, the colour matrix modes and the
 * plain records that cross its interface. Compiles as C and as C++.
 */
#ifndef ZRDRAW_TYPES_H
#define ZRDRAW_TYPES_H

/** @addtogroup pixel
 * @{ */

/** Marks what the shared library exports; everything else in it is hidden. */
#define ZRDRAW_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define ZRDRAW_ENUM_BASE : unsigned int
#else
#define ZRDRAW_ENUM_BASE
#endif

/**
 * Layout codes. A `pixelType` is an unsigned 32-bit number; what each code means in memory, which
 * class serves it and how long a line is stands in the table of zrdraw/layouts.h.
 */
enum zrPixelType ZRDRAW_ENUM_BASE {
    ptRGBA32 = 1,
    ptARGB32 = 2,
    ptBGRA32 = 3,
    ptABGR32 = 4,
    ptRGB24 = 5,
    ptBGR24 = 6,
    ptYUYV = 10,
    ptUYVY = 11,
    ptYVYU = 12,
    ptVYUY = 13,
    ptV210 = 14,
    ptRGB30DPX = 20,
    ptBayerBGGR = 21,
    ptBayerRGGB = 22,
    ptBayerGBRG = 23,
    ptBayerGRBG = 24,
    ptBayerBGGRc = 25,
    ptBayerRGGBc = 26,
    ptBayerGBRGc = 27,
    ptBayerGRBGc = 28,
    ptRGB48 = 31,
    ptARGB64 = 32,
    ptRGBHalf48 = 37,
    ptRGBAHalf = 38,
    ptUV8 = 10000,
    ptUV16 = 10001
};

/** No layout: a picture that exists but that no drawing class can serve. */
#define ptNone 0xFFFFFFFFU

/**
 * Colour matrix modes, the standards of BT.601, BT.709 and BT.2020 in studio and full range.
 * Each Raw mode but 1007 is the mode 1000 lower without the clamp of the YCbCr to RGB direction.
 * Any other value may be stored; the conversions then leave their outputs alone.
 */
enum cmYCbCr ZRDRAW_ENUM_BASE {
    cmRec601Default = 0, /**< the same as cmRec601 */
    cmRec601 = 1,        /**< BT.601, studio range; what a new object starts with */
    cmRec601Full = 2,
    cmRec709 = 3,
    cmRec709Full = 4,
    cmRec2020 = 5,
    cmRec2020Full = 6,
    cmRec2020CL = 7, /**< BT.2020 constant luminance towards YCbCr, as mode 6 towards RGB */
    cmRec2020CLUncentred = 8, /**< as 7, but towards RGB with chroma centred on 0.0 */
    cmRec601DefaultRaw = 1000,
    cmRec601Raw = 1001,
    cmRec601FullRaw = 1002,
    cmRec709Raw = 1003,
    cmRec709FullRaw = 1004,
    cmRec2020Raw = 1005,
    cmRec2020FullRaw = 1006,
    cmRec2020CLRaw = 1007, /**< towards RGB as 1008, not as 7 without the clamp */
    cmRec2020CLUncentredRaw = 1008
};

/** A position in pixels, x to the right and y down. */
struct _POINT {
    int x;
    int y;
};

/** A rectangle in pixels; which edges belong to it is told by each operation. */
struct RECT {
    int left;
    int top;
    int right;
    int bottom;
};

/**
 * The standard 40-byte bitmap header, and the four bytes that follow it: with biCompression 3
 * they are the red channel mask, lowest byte first.
 */
struct tagBITMAPINFO {
    unsigned int biSize;
    int biWidth;
    int biHeight; /**< negative for a picture whose first line is the top one */
    unsigned short biPlanes;
    unsigned short biBitCount;
    unsigned int biCompression; /**< four characters, the first in the lowest byte, or a number */
    unsigned int biSizeImage;   /**< bytes of the picture, or 0 */
    int biXPelsPerMeter;
    int biYPelsPerMeter;
    unsigned int biClrUsed;
    unsigned int biClrImportant;
    unsigned char biMask[4];
};

/**
 * Storage for a critical section of the platform layer, which alone knows what is inside. Large
 * enough for a pthread mutex. Aligned to no more than a pointer: a member with more would raise the
 * alignment of the drawing classes above that of their virtual bases, which g++ 12 gets wrong.
 */
struct zrOSCriticalSection {
    unsigned long opaque[8];
};

#ifndef __cplusplus
typedef enum cmYCbCr cmYCbCr;
typedef struct _POINT _POINT;
typedef struct RECT RECT;
typedef struct tagBITMAPINFO tagBITMAPINFO;
typedef struct zrOSCriticalSection zrOSCriticalSection;
#else
static_assert(sizeof(_POINT) == 8 && sizeof(RECT) == 16 && sizeof(tagBITMAPINFO) == 44);
#endif

#undef ZRDRAW_ENUM_BASE

/** @} */

#endif
