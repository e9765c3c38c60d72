/**
 * @file
 * @ingroup drawing
 *
 * The flat interface: the factory, the lifetime and the shared state of drawing objects for
 * callers that speak no classes. Compiles as C. Drawing itself is done through the classes.
 *
 * A null `draw` is answered with -1 (or nothing) by the qtZRPixel functions and not tested by the
 * others. Nothing here catches exceptions.
 */
#ifndef ZRDRAW_EXPORTS_H
#define ZRDRAW_EXPORTS_H

#include "zrdraw/types.h"

/** @addtogroup drawing
 * @{ */

#ifdef __cplusplus
class ZRDraw;
extern "C" {
#else
#include <stdbool.h>
typedef struct ZRDraw ZRDraw;
#endif

/** GetDraw into a new variable. @return the object with one reference, or null */
ZRDRAW_API ZRDraw* qtGetDraw(unsigned int pixelType, int width, int height, int pitch,
                             char* canvas);
ZRDRAW_API ZRDraw* qtGetDrawBMI(tagBITMAPINFO* info, char* canvas);

/** Bytes of a frame by code, or by bitmap header; 0 for what is not sized. */
ZRDRAW_API unsigned int qtGetDrawSize(unsigned int pixelType, int width, int height, int pitch);
ZRDRAW_API unsigned int qtGetDrawSizeBMI(tagBITMAPINFO* info);

/** One reference more. @return 0 */
ZRDRAW_API int qtAddRefDraw(ZRDraw* draw);

/** One reference less; after the last one the caller's pointer dangles. @return 0 */
ZRDRAW_API int qtReleaseDraw(ZRDraw* draw);

/** As the free functions SetFont and UseDefaultFont, with their answers. */
ZRDRAW_API int qtSetFont(ZRDraw* draw, char* name);
ZRDRAW_API int qtUseDefaultFont(ZRDraw* draw, bool builtIn);

/**
 * Takes the object's lock. `timeout` 0 or 0xFFFFFFFF waits without bound and answers 0; another
 * value bounds the wait in milliseconds, and the answer is 128 when taken, 0 when not.
 */
ZRDRAW_API int qtZRPixelLock(ZRDraw* draw, unsigned int timeout);

/** @return 0 when the lock was taken, 258 when another thread holds it */
ZRDRAW_API int qtZRPixelTryLock(ZRDraw* draw);
ZRDRAW_API int qtZRPixelUnlock(ZRDraw* draw);

/** Waits for the change event. @return what the platform layer answers: 0 set, 258 timed out */
ZRDRAW_API int qtZRPixelWaitForChangeEvent(ZRDraw* draw, unsigned int timeout);
ZRDRAW_API void qtZRPixelSetChangeEvent(ZRDraw* draw);

/** Stores `value` in the object unless it is -1. @return the number stored there now */
ZRDRAW_API int qtZRPixelLastChange(ZRDraw* draw, int value);

/** SetCanvas: note that the height stands before the width, unlike in qtGetDraw. @return 0 */
ZRDRAW_API int qtZRPixelSetCanvas(ZRDraw* draw, char* canvas, int height, int width, int pitch);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
