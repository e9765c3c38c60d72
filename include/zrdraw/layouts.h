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

/** Positions of the samples in a 4:2:2 pixel pair, as byte offsets; -1 where there is none. */
struct zrPairOrder {
    signed char y0, cb, y1, cr;
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
    zrPairOrder pair;         /**< of the 8-bit 4:2:2 layouts; -1 throughout for the others */
    const char* mosaic; /**< of the Bayer layouts the four letters of a cell, by lines; or "" */
};

inline constexpr zrByteOrder zrNoByteOrder{-1, -1, -1, -1};
inline constexpr zrPairOrder zrNoPairOrder{-1, -1, -1, -1};

/** The 26 layouts, in order of their codes. */
// clang-format off
inline constexpr zrLayout zrLayouts[] = {
    {ptRGBA32, "ptRGBA32", "CDrawRGBA32", "R, G, B, A: one byte each", {1, 4, false}, true, true, 0, {0, 1, 2, 3}, zrNoPairOrder, ""},
    {ptARGB32, "ptARGB32", "CDrawRGBA32", "A, R, G, B: one byte each", {1, 4, false}, true, true, 0, {1, 2, 3, 0}, zrNoPairOrder, ""},
    {ptBGRA32, "ptBGRA32", "CDrawRGBA32", "B, G, R, A: one byte each", {1, 4, false}, true, true, 0, {2, 1, 0, 3}, zrNoPairOrder, ""},
    {ptABGR32, "ptABGR32", "CDrawRGBA32", "A, B, G, R: one byte each", {1, 4, false}, true, true, 0, {3, 2, 1, 0}, zrNoPairOrder, ""},
    {ptRGB24, "ptRGB24", "CDrawRGB24", "R, G, B: one byte each", {1, 3, false}, true, true, 3, {0, 1, 2, -1}, zrNoPairOrder, ""},
    {ptBGR24, "ptBGR24", "CDrawRGB24", "B, G, R: one byte each", {1, 3, false}, true, true, 3, {2, 1, 0, -1}, zrNoPairOrder, ""},
    {ptYUYV, "ptYUYV", "CDrawYCbCrYUYV", "pixel pair Y0, Cb, Y1, Cr: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder, {0, 1, 2, 3}, ""},
    {ptUYVY, "ptUYVY", "CDrawYCbCrYUYV", "pixel pair Cb, Y0, Cr, Y1: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder, {1, 0, 3, 2}, ""},
    {ptYVYU, "ptYVYU", "CDrawYCbCrYUYV", "pixel pair Y0, Cr, Y1, Cb: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder, {0, 3, 2, 1}, ""},
    {ptVYUY, "ptVYUY", "CDrawYCbCrYUYV", "pixel pair Cr, Y0, Cb, Y1: one byte each", {1, 2, false}, true, false, 0, zrNoByteOrder, {1, 2, 3, 0}, ""},
    {ptV210, "ptV210", "CDrawYCbCr10", "six pixels in four little-endian words of 10-bit samples", {48, 128, true}, true, false, 0, zrNoByteOrder, zrNoPairOrder, ""},
    {ptRGB30DPX, "ptRGB30DPX", "CDrawRGB30DPX", "big-endian word: R 31..22, G 21..12, B 11..2, 0", {1, 4, false}, true, false, 4, zrNoByteOrder, zrNoPairOrder, ""},
    {ptBayerBGGR, "ptBayerBGGR", "CDrawBayer", "12-bit mosaic, lines B G / G R", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "BGGR"},
    {ptBayerRGGB, "ptBayerRGGB", "CDrawBayer", "12-bit mosaic, lines R G / G B", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "RGGB"},
    {ptBayerGBRG, "ptBayerGBRG", "CDrawBayer", "12-bit mosaic, lines G B / R G", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "GBRG"},
    {ptBayerGRBG, "ptBayerGRBG", "CDrawBayer", "12-bit mosaic, lines G R / B G", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "GRBG"},
    {ptBayerBGGRc, "ptBayerBGGRc", "CDrawBayer", "as ptBayerBGGR", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "BGGR"},
    {ptBayerRGGBc, "ptBayerRGGBc", "CDrawBayer", "as ptBayerRGGB", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "RGGB"},
    {ptBayerGBRGc, "ptBayerGBRGc", "CDrawBayer", "as ptBayerGBRG", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "GBRG"},
    {ptBayerGRBGc, "ptBayerGRBGc", "CDrawBayer", "as ptBayerGRBG", {2, 3, false}, false, false, 0, zrNoByteOrder, zrNoPairOrder, "GRBG"},
    {ptRGB48, "ptRGB48", "CDrawRGB48", "R, G, B: little-endian 16-bit words", {1, 6, false}, true, true, 6, zrNoByteOrder, zrNoPairOrder, ""},
    {ptARGB64, "ptARGB64", "CDrawARGB64", "A, R, G, B: little-endian 16-bit words", {1, 8, false}, true, true, 8, zrNoByteOrder, zrNoPairOrder, ""},
    {ptRGBHalf48, "ptRGBHalf48", "CDrawRGBHalf48", "R, G, B: 16-bit half floats", {1, 6, false}, true, true, 6, zrNoByteOrder, zrNoPairOrder, ""},
    {ptRGBAHalf, "ptRGBAHalf", "CDrawRGBAHalf", "four 16-bit half floats", {1, 8, false}, true, true, 8, zrNoByteOrder, zrNoPairOrder, ""},
    {ptUV8, "ptUV8", "CDrawUV8", "interleaved 8-bit chroma plane", {1, 2, false}, false, true, 0, zrNoByteOrder, zrNoPairOrder, ""},
    {ptUV16, "ptUV16", "CDrawUV16", "interleaved 16-bit chroma plane", {1, 4, false}, false, true, 0, zrNoByteOrder, zrNoPairOrder, ""},
};
// clang-format on

/** The row of a code, or null for a code without one. */
constexpr const zrLayout* zrFindLayout(unsigned int code) {
    for (const zrLayout& layout : zrLayouts)
        if (layout.code == code)
            return &layout;
    return nullptr;
}

/** Bytes of a line of `width` pixels by a layout's own rule, in 32-bit arithmetic that wraps. */
constexpr unsigned int zrLineBytes(const zrLineRule& rule, unsigned int width) {
    if (rule.wholeGroups)
        return (width / rule.groupPixels + (width % rule.groupPixels != 0)) * rule.groupBytes;
    return width * rule.groupBytes / rule.groupPixels;
}

#endif
