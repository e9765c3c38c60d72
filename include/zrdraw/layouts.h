/**
 * The catalogue of layouts as one table. The library, the command line tool and the documents all
 * read their facts about a layout here.
 */
#ifndef ZRDRAW_LAYOUTS_H
#define ZRDRAW_LAYOUTS_H

#include "zrdraw/types.h"

/** How many bytes a line takes: `groupBytes` for each group of `groupPixels` pixels. */
struct zrLineRule {
    unsigned int groupPixels;
    unsigned int groupBytes;
    bool wholeGroups; /**< a started group counts whole; otherwise in proportion, truncated */
};

/** Positions of the channels in an 8-bit RGB pixel, as byte offsets; -1 where there is none. */
struct zrByteOrder {
    signed char r, g, b, a;
};

/** What is to be known of one layout. */
struct zrLayout {
    unsigned int code;
    const char* name;
    const char* drawClass; /**< name of the class that serves it */
    const char* memory;    /**< a pixel or pixel group in memory, lowest address first */
    zrLineRule line;
    bool sizedByCode;         /**< GetDrawSize by code knows its size */
    bool pitchRaised;         /**< SetCanvas raises a smaller pitch to the natural line */
    unsigned int packedBytes; /**< zrdraw_packed_pixel_bytes: bytes of a whole pixel, or 0 */
    zrByteOrder bytes;        /**< of the 8-bit RGB layouts; -1 throughout for the others */
};

inline constexpr zrByteOrder zrNoByteOrder{-1, -1, -1, -1};

/** The 26 layouts, in order of their codes. */
// clang-format off
inline constexpr zrLayout zrLayouts[] = {
    {ptRGBA32, "ptRGBA32", "CDrawRGBA32", "R, G, B, A: one byte each", {1, 4, false}, true, true, 0, {0, 1, 2, 3}},
    {ptARGB32, "ptARGB32", "CDrawRGBA32", "A, R, G, B: one byte each", {1, 4, false}, true, true, 0, {1, 2, 3, 0}},
    {ptBGRA32, "ptBGRA32", "CDrawRGBA32", "B, G, R, A: one byte each", {1, 4, false}, true, true, 0, {2, 1, 0, 3}},
    {ptABGR32, "ptABGR32", "CDrawRGBA32", "A, B, G, R: one byte each", {1, 4, false}, true, true, 0, {3, 2, 1, 0}},
    {ptRGB24, "ptRGB24", "CDrawRGB24", "R, G, B: one byte each", {1, 3, false}, true, true, 3, {0, 1, 2, -1}},
    {ptBGR24, "ptBGR24", "CDrawRGB24", "B, G, R: one byte each", {1, 3, false}, true, true, 3, {2, 1, 0, -1}},
    {ptYUYV, "ptYUYV", "CDrawYCbCrYUYV", "pixel pair Y0, Cb, Y1, Cr: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder},
    {ptUYVY, "ptUYVY", "CDrawYCbCrYUYV", "pixel pair Cb, Y0, Cr, Y1: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder},
    {ptYVYU, "ptYVYU", "CDrawYCbCrYUYV", "pixel pair Y0, Cr, Y1, Cb: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder},
    {ptVYUY, "ptVYUY", "CDrawYCbCrYUYV", "pixel pair Cr, Y0, Cb, Y1: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder},
    {ptV210, "ptV210", "CDrawYCbCr10", "six pixels in four little-endian words of 10-bit samples", {48, 128, true}, true, false, 0, zrNoByteOrder},
    {ptRGB30DPX, "ptRGB30DPX", "CDrawRGB30DPX", "big-endian word: R 31..22, G 21..12, B 11..2, 0", {1, 4, false}, true, false, 4, zrNoByteOrder},
    {ptBayerBGGR, "ptBayerBGGR", "CDrawBayer", "12-bit mosaic, lines B G / G R", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerRGGB, "ptBayerRGGB", "CDrawBayer", "12-bit mosaic, lines R G / G B", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerGBRG, "ptBayerGBRG", "CDrawBayer", "12-bit mosaic, lines G B / R G", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerGRBG, "ptBayerGRBG", "CDrawBayer", "12-bit mosaic, lines G R / B G", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerBGGRc, "ptBayerBGGRc", "CDrawBayer", "as ptBayerBGGR", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerRGGBc, "ptBayerRGGBc", "CDrawBayer", "as ptBayerRGGB", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerGBRGc, "ptBayerGBRGc", "CDrawBayer", "as ptBayerGBRG", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptBayerGRBGc, "ptBayerGRBGc", "CDrawBayer", "as ptBayerGRBG", {2, 3, false}, false, false, 0, zrNoByteOrder},
    {ptRGB48, "ptRGB48", "CDrawRGB48", "R, G, B: little-endian 16-bit words", {1, 6, false}, true, true, 6, zrNoByteOrder},
    {ptARGB64, "ptARGB64", "CDrawARGB64", "A, R, G, B: little-endian 16-bit words", {1, 8, false}, true, true, 8, zrNoByteOrder},
    {ptRGBHalf48, "ptRGBHalf48", "CDrawRGBHalf48", "R, G, B: 16-bit half floats", {1, 6, false}, true, true, 6, zrNoByteOrder},
    {ptRGBAHalf, "ptRGBAHalf", "CDrawRGBAHalf", "four 16-bit half floats", {1, 8, false}, true, true, 8, zrNoByteOrder},
    {ptUV8, "ptUV8", "CDrawUV8", "interleaved 8-bit chroma plane", {1, 2, false}, false, true, 0, zrNoByteOrder},
    {ptUV16, "ptUV16", "CDrawUV16", "interleaved 16-bit chroma plane", {1, 4, false}, false, true, 0, zrNoByteOrder},
};
// clang-format on

/** The row of a code, or null for a code without one. */
constexpr const zrLayout* zrFindLayout(unsigned int code) {
    for (const zrLayout& layout : zrLayouts) {
        if (layout.code == code)
            return &layout;
    }
    return nullptr;
}

/** Bytes of a line of `width` pixels by a layout's own rule, in 32-bit arithmetic that wraps. */
constexpr unsigned int zrLineBytes(const zrLineRule& rule, unsigned int width) {
    if (rule.wholeGroups)
        return (width / rule.groupPixels + (width % rule.groupPixels != 0)) * rule.groupBytes;
    return width * rule.groupBytes / rule.groupPixels;
}

#endif
