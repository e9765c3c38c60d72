/**
 * @file
 * @ingroup platform
 *
 * Flips and the resize of whole 32-bit pictures, as the library asks them of its host.
 */
#ifndef ZRDRAW_PLATFORM_RESIZE_H
#define ZRDRAW_PLATFORM_RESIZE_H

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** Flip a picture of 32-bit pixels, in place where both pointers are the same. `mask` is all ones.
 * @return 0 */
int pxsw_flip_vert(unsigned char* dst, unsigned char* src, unsigned int width, unsigned int height,
                   unsigned int pitch);
int pxsw_flip_horz(unsigned char* dst, unsigned char* src, unsigned int width, unsigned int height,
                   unsigned int pitch, unsigned int mask);

/** Sizes and rectangles of the resize, passed by value. */
typedef struct IppiSize {
    int width;
    int height;
} IppiSize;

typedef struct IppiRect {
    int x;
    int y;
    int width;
    int height;
} IppiRect;

/** The interpolation that the library asks for: the nearest pixel. */
enum { zrResizeNearest = 1 };

/** The bytes of work buffer that a resize needs. @return 0 */
int ippiResizeGetBufSize(IppiRect srcRect, IppiRect dstRect, int channels, int interpolation,
                         int* bytes);

/**
 * Scales a rectangle of a picture of four 8-bit channels. The destination pixel (x, y) shows the
 * source pixel at ((x - xShift) / xFactor, (y - yShift) / yFactor) by the rule of the
 * interpolation; pixels without one stay as they are.
 * @param buffer work buffer; may be null where the host needs none
 * @return 0
 */
int ippiResizeSqrPixel_8u_C4R(const unsigned char* src, IppiSize srcSize, int srcStep,
                              IppiRect srcRect, unsigned char* dst, int dstStep, IppiRect dstRect,
                              double xFactor, double yFactor, double xShift, double yShift,
                              int interpolation, unsigned char* buffer);

/** @return null when there is no memory */
unsigned char* ippsMalloc_8u(int bytes);
void ippsFree(void* memory);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
