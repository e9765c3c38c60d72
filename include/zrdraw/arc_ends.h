/**
 * @file
 * @ingroup drawing
 *
 * The first and the last point of the last arc that ZRDraw::Arc drew, on any object. The variables
 * belong to the process, and nothing guards them between threads. Compiles as C.
 */
#ifndef ZRDRAW_ARC_ENDS_H
#define ZRDRAW_ARC_ENDS_H

#include "zrdraw/types.h"

/** @addtogroup drawing
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

ZRDRAW_API extern int xStartArc;
ZRDRAW_API extern int yStartArc;
ZRDRAW_API extern int xEndArc;
ZRDRAW_API extern int yEndArc;

#ifdef __cplusplus
}
#endif

/** @} */

#endif
