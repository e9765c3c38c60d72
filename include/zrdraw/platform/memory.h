/**
 * @file
 * @ingroup platform
 *
 * Copies, fills and allocation, as the library asks them of its host.
 */
#ifndef ZRDRAW_PLATFORM_MEMORY_H
#define ZRDRAW_PLATFORM_MEMORY_H

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** Copies bytes between runs that do not overlap. @return dst */
void* CopyMemoryFast(void* dst, const void* src, unsigned long bytes);
void* zrOSCopyMemory(void* dst, const void* src, unsigned long bytes);

/**
 * Repeats a 32-bit word, lowest byte first, over a run at any alignment; a last part of a word
 * takes the word's first bytes.
 * @return dst
 */
void* SetMemoryFast(void* dst, unsigned int value, unsigned long bytes);

/**
 * Memory aligned for vector access, not zeroed. @return null when there is none (a host's own may
 * throw instead)
 */
void* ZRAlloc(unsigned int bytes);
/** Gives memory of ZRAlloc back; null does nothing. */
void ZRFree(void* memory);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
