/**
 * Exported data: the built-in font, and what some operations leave behind for callers. The
 * variables belong to the process; nothing guards them between threads. Compiles as C.
 */
#ifndef ZRDRAW_FONT_H
#define ZRDRAW_FONT_H

#include "zrdraw/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * 256 glyphs of 8 by 10 pixels in the order of code page 437, ten bytes each: a byte a row, the
 * bottom row first, bit 7 leftmost, a set bit is ink.
 */
ZRDRAW_API extern const unsigned char gFont8x10[2560];

/** Ten digits of eight rows each from the top down, then 48 bytes of FF. Nothing reads it. */
ZRDRAW_API extern const unsigned char fontmap[128];

/** The header of a bitmap file, as it stands in the file after its size field. */
typedef struct zrBitmapHeader {
    int width;
    int height;
    unsigned short planes;
    unsigned short bitsPerPixel;
    unsigned int compression;
    unsigned int imageSize; /**< bytes of the pixels */
    int xResolution;
    int yResolution;
    unsigned int colorsUsed;
    unsigned int colorsImportant;
} zrBitmapHeader;

/** Pixels and header of the last bitmap that ZRDraw::ExtractBMPData read. */
ZRDRAW_API extern unsigned char data[1048576];
ZRDRAW_API extern zrBitmapHeader pImgHdr;

/** The first and the last point of the last arc that ZRDraw::Arc drew, on any object. */
ZRDRAW_API extern int xStartArc;
ZRDRAW_API extern int yStartArc;
ZRDRAW_API extern int xEndArc;
ZRDRAW_API extern int yEndArc;

/** Kept as names; nothing reads or writes them. */
ZRDRAW_API extern void* mpEdgeBuffer;
ZRDRAW_API extern unsigned int fp[3];

#ifdef __cplusplus
}
static_assert(sizeof(zrBitmapHeader) == 36);
#endif

#endif
