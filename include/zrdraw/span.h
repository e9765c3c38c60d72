/**
 * @file
 * @ingroup spans
 *
 * Span kernels: runs of identical pixels and the 8-bit "over" blend, on raw addresses and counts.
 * Null pointers and zero counts do nothing. All are re-entrant. Compiles as C.
 */
#ifndef ZRDRAW_SPAN_H
#define ZRDRAW_SPAN_H

#include "zrdraw/types.h"

/** @addtogroup spans
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Bytes of one whole pixel of a packed layout, the width of its pattern. 0 for the others, and for
 * the 32-bit RGB layouts, whose runs callers fill by words.
 */
ZRDRAW_API unsigned int zrdraw_packed_pixel_bytes(unsigned int pixelType);

/** Whether this build contains the AVX2 bodies. @return 1, always */
ZRDRAW_API int zrdraw_avx2_compiled(void);

/** Whether processor and operating system support AVX2; tested once per process. @return 1 or 0 */
ZRDRAW_API int zrdraw_avx2_available(void);

/**
 * Writes a pattern `count` times from `dst` on, at any alignment. Nothing is written beyond
 * dst + count * patternBytes. Patterns of 4 and 8 bytes take vector stores on AVX2.
 * @param pattern      may lie directly before `dst`, as the first pixel of a run does
 * @param patternBytes bytes of a pattern, any number
 * @param count        patterns, not bytes
 */
ZRDRAW_API void zrdraw_fill_pattern(void* dst, const void* pattern, unsigned int patternBytes,
                                    unsigned long count);

/** The same bytes by the portable body. */
ZRDRAW_API void zrdraw_fill_pattern_c(void* dst, const void* pattern, unsigned int patternBytes,
                                      unsigned long count);

/**
 * Lays a run of pixels over another in place. A pixel is three colour bytes and a straight alpha
 * byte. Pixels with an alpha of 16 or less are skipped whole; otherwise each colour byte becomes
 * floor((d * (255 - a) + s * a) / 255) and the alpha byte the source's.
 * @param dst    changed in place; distinct from `src`
 * @param pixels pixels, not bytes
 */
ZRDRAW_API void zrdraw_blend_bgra_over(unsigned char* dst, const unsigned char* src,
                                       unsigned long pixels);

/** The same bytes by the portable body. */
ZRDRAW_API void zrdraw_blend_bgra_over_c(unsigned char* dst, const unsigned char* src,
                                         unsigned long pixels);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
