/**
 * @file
 * @ingroup pixel
 *
 * The catalogue of layouts as one table. The library, the command line tool and the documents all
 * read their facts about a layout here.
 */
#ifndef ZRDRAW_LAYOUTS_H
#define ZRDRAW_LAYOUTS_H

#include "zrdraw/types.h"

/** @addtogroup pixel
 * @{ */

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

/** What else is to be known of a layout, as bits of `zrLayout::flags`. */
enum zrLayoutFlag : unsigned int {
    zrSizedByCode = 1, /**< GetDrawSize by code knows its size */
    zrPitchRaised = 2, /**< SetCanvas raises a smaller pitch to the natural line */
    zrPackedRuns = 4,  /**< a run repeats the bytes of its first pixel: zrdraw_packed_pixel_bytes */
    zrTwoMoreBytes = 8 /**< pixels are read up to two bytes behind the natural line */
};

/** What is to be known of one layout. */
struct zrLayout {
    unsigned int code;
    const char* name;
    const char* drawClass; /**< name of the class that serves it */
    const char* memory;    /**< a pixel or pixel group in memory, lowest address first */
    zrLineRule line;
    unsigned int flags; /**< of zrLayoutFlag */
    zrByteOrder bytes;  /**< of the 8-bit RGB layouts; -1 throughout for the others */
    zrPairOrder pair;   /**< of the 8-bit 4:2:2 layouts; -1 throughout for the others */
    const char* mosaic; /**< of the Bayer layouts the four letters of a cell, by lines; or "" */

    constexpr bool has(zrLayoutFlag flag) const { return (flags & flag) != 0; }
    constexpr bool isMosaic() const { return mosaic[0] != '\0'; }
    constexpr bool isPairs() const { return pair.y0 >= 0; }
};

/** The rows of zrLayouts, by family. */
namespace zrLayoutRows {

inline constexpr zrByteOrder noBytes{-1, -1, -1, -1};
inline constexpr zrPairOrder noPair{-1, -1, -1, -1};

/** 8-bit RGB; runs of the 32-bit ones are words, of the others copies of the first pixel. */
constexpr zrLayout rgb8(unsigned int code, const char* name, const char* memory,
                        const zrByteOrder& order) {
    const bool words = order.a >= 0;
    return {code,
            name,
            words ? "CDrawRGBA32" : "CDrawRGB24",
            memory,
            {1, words ? 4U : 3U, false},
            zrSizedByCode | zrPitchRaised | (words ? 0U : zrPackedRuns),
            order,
            noPair,
            ""};
}

constexpr zrLayout pairs(unsigned int code, const char* name, const char* memory,
                         const zrPairOrder& order) {
    return {code, name, "CDrawYCbCrYUYV", memory, {1, 2, false}, zrSizedByCode, noBytes, order, ""};
}

constexpr zrLayout mosaic(unsigned int code, const char* name, const char* memory,
                          const char* cell) {
    return {code, name, "CDrawBayer", memory, {2, 3, false}, zrTwoMoreBytes, noBytes, noPair, cell};
}

/** Whole pixels or groups of any other kind. */
constexpr zrLayout plain(unsigned int code, const char* name, const char* drawClass,
                         const char* memory, const zrLineRule& line, unsigned int flags) {
    return {code, name, drawClass, memory, line, flags, noBytes, noPair, ""};
}

inline constexpr unsigned int deep = zrSizedByCode | zrPitchRaised | zrPackedRuns;

} // namespace zrLayoutRows

/** The 26 layouts, in order of their codes. */
// clang-format off
inline constexpr zrLayout zrLayouts[] = {
    zrLayoutRows::rgb8(ptRGBA32, "ptRGBA32", "R, G, B, A: one byte each", {0, 1, 2, 3}),
    zrLayoutRows::rgb8(ptARGB32, "ptARGB32", "A, R, G, B: one byte each", {1, 2, 3, 0}),
    zrLayoutRows::rgb8(ptBGRA32, "ptBGRA32", "B, G, R, A: one byte each", {2, 1, 0, 3}),
    zrLayoutRows::rgb8(ptABGR32, "ptABGR32", "A, B, G, R: one byte each", {3, 2, 1, 0}),
    zrLayoutRows::rgb8(ptRGB24, "ptRGB24", "R, G, B: one byte each", {0, 1, 2, -1}),
    zrLayoutRows::rgb8(ptBGR24, "ptBGR24", "B, G, R: one byte each", {2, 1, 0, -1}),
    zrLayoutRows::pairs(ptYUYV, "ptYUYV", "pixel pair Y0, Cb, Y1, Cr: one byte each", {0, 1, 2, 3}),
    zrLayoutRows::pairs(ptUYVY, "ptUYVY", "pixel pair Cb, Y0, Cr, Y1: one byte each", {1, 0, 3, 2}),
    zrLayoutRows::pairs(ptYVYU, "ptYVYU", "pixel pair Y0, Cr, Y1, Cb: one byte each", {0, 3, 2, 1}),
    zrLayoutRows::pairs(ptVYUY, "ptVYUY", "pixel pair Cr, Y0, Cb, Y1: one byte each", {1, 2, 3, 0}),
    zrLayoutRows::plain(ptV210, "ptV210", "CDrawYCbCr10", "six pixels in four little-endian words of 10-bit samples", {48, 128, true}, zrSizedByCode),
    zrLayoutRows::plain(ptRGB30DPX, "ptRGB30DPX", "CDrawRGB30DPX", "big-endian word: R 31..22, G 21..12, B 11..2, 0", {1, 4, false}, zrSizedByCode | zrPackedRuns),
    zrLayoutRows::mosaic(ptBayerBGGR, "ptBayerBGGR", "12-bit mosaic, lines B G / G R", "BGGR"),
    zrLayoutRows::mosaic(ptBayerRGGB, "ptBayerRGGB", "12-bit mosaic, lines R G / G B", "RGGB"),
    zrLayoutRows::mosaic(ptBayerGBRG, "ptBayerGBRG", "12-bit mosaic, lines G B / R G", "GBRG"),
    zrLayoutRows::mosaic(ptBayerGRBG, "ptBayerGRBG", "12-bit mosaic, lines G R / B G", "GRBG"),
    zrLayoutRows::mosaic(ptBayerBGGRc, "ptBayerBGGRc", "as ptBayerBGGR", "BGGR"),
    zrLayoutRows::mosaic(ptBayerRGGBc, "ptBayerRGGBc", "as ptBayerRGGB", "RGGB"),
    zrLayoutRows::mosaic(ptBayerGBRGc, "ptBayerGBRGc", "as ptBayerGBRG", "GBRG"),
    zrLayoutRows::mosaic(ptBayerGRBGc, "ptBayerGRBGc", "as ptBayerGRBG", "GRBG"),
    zrLayoutRows::plain(ptRGB48, "ptRGB48", "CDrawRGB48", "R, G, B: little-endian 16-bit words", {1, 6, false}, zrLayoutRows::deep),
    zrLayoutRows::plain(ptARGB64, "ptARGB64", "CDrawARGB64", "A, R, G, B: little-endian 16-bit words", {1, 8, false}, zrLayoutRows::deep),
    zrLayoutRows::plain(ptRGBHalf48, "ptRGBHalf48", "CDrawRGBHalf48", "R, G, B: 16-bit half floats", {1, 6, false}, zrLayoutRows::deep),
    zrLayoutRows::plain(ptRGBAHalf, "ptRGBAHalf", "CDrawRGBAHalf", "four 16-bit half floats", {1, 8, false}, zrLayoutRows::deep),
    zrLayoutRows::plain(ptUV8, "ptUV8", "CDrawUV8", "interleaved 8-bit chroma plane", {1, 2, false}, zrPitchRaised | zrTwoMoreBytes),
    zrLayoutRows::plain(ptUV16, "ptUV16", "CDrawUV16", "interleaved 16-bit chroma plane", {1, 4, false}, zrPitchRaised),
};
// clang-format on

/** Codes up to this one are found by an index; the chroma planes stand far behind them. */
inline constexpr unsigned int zrLastLowCode = ptRGBAHalf;

namespace zrLayoutRows {

struct Index {
    unsigned char row[zrLastLowCode + 1];
};

inline constexpr unsigned char noRow = 0xFF;

inline constexpr Index lowCodes = [] {
    Index index{};
    for (unsigned char& row : index.row)
        row = noRow;
    unsigned char at = 0;
    for (const zrLayout& layout : zrLayouts) {
        if (layout.code <= zrLastLowCode)
            index.row[layout.code] = at;
        ++at;
    }
    return index;
}();

} // namespace zrLayoutRows

/** The row of a code, or null for a code without one. */
constexpr const zrLayout* zrFindLayout(unsigned int code) {
    if (code <= zrLastLowCode) {
        const unsigned char row = zrLayoutRows::lowCodes.row[code];
        return row != zrLayoutRows::noRow ? &zrLayouts[row] : nullptr;
    }
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

/**
 * How many bytes, from the first one of a frame, drawing objects may read or write: the room that a
 * caller gives a frame so that nothing reaches beyond. What transitions and the mux read and write
 * behind a frame stands in zrdraw/transitions.h and zrdraw/mux.h. More than GetDrawSize says where,
 * by contract,
 * - background, blended and added writes to 24-bit pixels address the last line by four bytes a
 *   pixel,
 * - an odd width of 4:2:2 ends in half a pixel pair, which is written as a whole one,
 * - mosaics are read in cells of two lines and two columns, wherever they end,
 * - pixels of an 8-bit chroma plane are read together with their right neighbours.
 * Exact for what the drawing classes touch, but for the padding of the last line, which is counted.
 * @param pitch as SetCanvas takes it: 0 is the natural line, the sign does not count. Of 4:2:2 a
 *              negative one stays a very large number, for which no frame has room
 */
constexpr unsigned long zrFrameRoom(const zrLayout& layout, int width, int height, int pitch) {
    constexpr unsigned long wordBytes = 4, pairBytes = 4, readBehind = 2;
    const auto magnitude = [](int value) {
        return value < 0 ? 0U - static_cast<unsigned int>(value) : static_cast<unsigned int>(value);
    };
    const unsigned long columns = magnitude(width), lines = magnitude(height);
    if (columns == 0 || lines == 0)
        return 0;
    const unsigned long natural = zrLineBytes(layout.line, magnitude(width));
    unsigned long last = natural; // bytes of the last line that are touched
    if (layout.bytes.r >= 0)
        last = columns * wordBytes;
    else if (layout.isPairs())
        last = (columns + 1) / 2 * pairBytes;
    else if (layout.has(zrTwoMoreBytes))
        last = natural + readBehind;
    // DPX words and mosaics take any pitch at its word.
    const bool anyPitch = layout.isMosaic() || layout.code == ptRGB30DPX;
    unsigned long step = pitch == 0 ? natural : magnitude(pitch);
    if (!anyPitch && step < natural)
        step = natural;
    return (lines - 1 + (layout.isMosaic() ? 1 : 0)) * step + (step > last ? step : last);
}

/** @} */

#endif
