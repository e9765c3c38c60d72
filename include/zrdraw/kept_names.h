/**
 * @file
 * @ingroup drawing
 *
 * Exported names that hosts still link against. Nothing reads or writes them. Compiles as C.
 */
#ifndef ZRDRAW_KEPT_NAMES_H
#define ZRDRAW_KEPT_NAMES_H

#include "zrdraw/types.h"

/** @addtogroup drawing
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

ZRDRAW_API extern void* mpEdgeBuffer;
ZRDRAW_API extern unsigned int fp[3];

#ifdef __cplusplus
}
#endif

/** @} */

#endif
