/**
 * @file
 * @ingroup platform
 *
 * Threads, their priorities and interlocked counts, as the library asks them of its host.
 */
#ifndef ZRDRAW_PLATFORM_THREADS_H
#define ZRDRAW_PLATFORM_THREADS_H

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** What a thread runs; its result is the thread's exit code. */
typedef unsigned int zrOSThreadRoutine(void* argument);

/**
 * Starts a thread.
 * @param attributes null: the defaults
 * @param stackSize  0: the default
 * @param flags      0: runs at once
 * @param threadId   receives the thread's number, which is no other thread's; may be null
 * @param name       shown by debuggers, cut to what the system allows
 * @return a handle for zrOSCloseThread, or null when no thread could be started
 */
void* zrOSCreateThread(void* attributes, unsigned long stackSize, zrOSThreadRoutine* routine,
                       void* argument, unsigned int flags, unsigned int* threadId,
                       const char* name);

/** Waits for the thread to end and gives the handle back. Null does nothing. @return 0 */
int zrOSCloseThread(void* thread, const char* name);

/** The calling thread; the handle is not to be closed. */
void* zrOSGetCurrentThread(void);

/** A priority number, higher is more urgent; kept per thread, and asked of the system as far as it
 * permits. @return 1 when the number was kept, 0 for a null handle */
int zrOSSetThreadPriority(void* thread, int priority);
int zrOSGetThreadPriority(void* thread);

/** Changes a count shared between threads. @return the new value */
int zrOSInterlockedIncrement(int* count);
int zrOSInterlockedDecrement(int* count);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
