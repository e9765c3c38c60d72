/**
 * @file
 * @ingroup text
 *
 * What ZRDraw::ExtractBMPData leaves behind. Both variables belong to the process, and nothing
 * guards them between threads. Their names are short: include this header where they are read, and
 * nowhere else. Compiles as C.
 */
#ifndef ZRDRAW_FONT_FILES_H
#define ZRDRAW_FONT_FILES_H

#include "zrdraw/types.h"

/** @addtogroup text
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

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
    unsigned int colorsImportant; /**< behind what is read: undefined */
} zrBitmapHeader;

/** Pixels of the last bitmap that was read; one that ends early leaves older ones behind its own.
 */
ZRDRAW_API extern unsigned char data[1048576];

/** Header of the last file that was a bitmap with a header of 40 bytes. */
ZRDRAW_API extern zrBitmapHeader pImgHdr;

#ifdef __cplusplus
}
static_assert(sizeof(zrBitmapHeader) == 36);
#endif

/** @} */

#endif
