/**
 * @file
 * @ingroup platform
 *
 * Events and critical sections, as the library asks them of its host.
 */
#ifndef ZRDRAW_PLATFORM_EVENTS_H
#define ZRDRAW_PLATFORM_EVENTS_H

#include "zrdraw/types.h"

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Makes an event, a flag that threads wait for.
 * @param attributes   null: the defaults
 * @param manualReset  0: a wait that succeeds clears the event; otherwise it stays set
 * @param initialState 0: not set
 * @param name         null: known to this process only
 * @return a handle, or null
 */
void* zrOSCreateEvent(void* attributes, int manualReset, int initialState, const char* name);

/** Each answers 1 when done and 0 for a null handle. */
int zrOSCloseEvent(void* event);
int zrOSSetEvent(void* event);

/**
 * Waits until an event is set.
 * @param timeout milliseconds; 0xFFFFFFFF waits without bound
 * @return 0 when it was set, 258 when the time ran out, -1 for a null handle
 */
int zrOSWaitForEvent(void* event, unsigned int timeout);

/** A lock that its owner may take again, once for each time it will leave. */
void zrOSInitializeCriticalSection(zrOSCriticalSection* section);
void zrOSDeleteCriticalSection(zrOSCriticalSection* section);
void zrOSEnterCriticalSection(zrOSCriticalSection* section);
/** @return 1 when taken, 0 when another thread holds it */
int zrOSTryEnterCriticalSection(zrOSCriticalSection* section);
void zrOSLeaveCriticalSection(zrOSCriticalSection* section);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
