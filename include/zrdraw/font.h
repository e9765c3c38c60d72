/**
 * The built-in font as exported data. Compiles as C.
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

#ifdef __cplusplus
}
#endif

#endif
