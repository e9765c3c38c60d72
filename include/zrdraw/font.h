/**
 * @file
 * @ingroup text
 *
 * The built-in font, 256 glyphs in the order of code page 437. Compiles as C.
 */
#ifndef ZRDRAW_FONT_H
#define ZRDRAW_FONT_H

#include "zrdraw/types.h"

/** @addtogroup text
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** The size of a glyph before scaling, pixels, and how many there are. */
enum zrFontSize { zrFontWidth = 8, zrFontHeight = 10, zrFontGlyphs = 256 };

/**
 * The glyph of a code starts at code * zrFontHeight: a byte a row, the bottom row first, bit 7
 * leftmost, a set bit is ink. Codes 0 and 32 alone are blank. The bottom row of the codes to 127 is
 * blank too: from scale 2 up, ZRDraw::DrawText shows that of the next code above a glyph.
 */
ZRDRAW_API extern const unsigned char gFont8x10[zrFontGlyphs * zrFontHeight];

/** Ten digits of eight rows each from the top down, then 48 bytes of FF. Nothing reads it. */
ZRDRAW_API extern const unsigned char fontmap[128];

#ifdef __cplusplus
}
#endif

/** @} */

#endif
