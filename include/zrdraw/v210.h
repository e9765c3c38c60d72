/**
 * @file
 * @ingroup formats
 *
 * Where the samples of a v210 frame stand, for callers that fill or read such frames themselves.
 * CDrawYCbCr10 and the transitions go by these tables. How long a line is: zrLineBytes of
 * layouts.h.
 */
#ifndef ZRDRAW_V210_H
#define ZRDRAW_V210_H

/** @addtogroup formats
 * @{ */

namespace zrV210 {

/** A group: six pixels in four little-endian words of three samples; bits 30 and 31 are 0. */
inline constexpr unsigned int groupPixels = 6;
inline constexpr unsigned int groupBytes = 16;

inline constexpr unsigned int wordBytes = 4;
inline constexpr unsigned int sampleBits = 10;
inline constexpr unsigned int sampleMask = 0x3FF; /**< of a sample that begins at bit 0 */

/** The place of a sample. */
struct Place {
    unsigned int word; /**< of the group */
    unsigned int bit;  /**< of the word, where the sample begins: 0, 10 or 20 */

    /** Which of the three samples of its word it is. */
    constexpr unsigned int field() const { return bit / sampleBits; }
};

/** Of the six pixels. */
inline constexpr Place luma[groupPixels] = {{0, 10}, {1, 0}, {1, 20}, {2, 10}, {3, 0}, {3, 20}};

/** Of the three pairs of pixels: sited at the even one. */
inline constexpr Place cb[groupPixels / 2] = {{0, 0}, {1, 10}, {2, 20}};
inline constexpr Place cr[groupPixels / 2] = {{0, 20}, {2, 0}, {3, 10}};

/** Of a pixel of the group: component 0 is Y, 1 is Cb and 2 is Cr, those of its pair. */
constexpr Place placeOf(unsigned int pixel, unsigned int component) {
    return component == 0 ? luma[pixel] : component == 1 ? cb[pixel / 2] : cr[pixel / 2];
}

} // namespace zrV210

/** @} */

#endif
