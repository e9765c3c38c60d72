/**
 * @file
 * @ingroup platform
 *
 * The central configuration store: texts under keys, and keys under key paths, as the library asks
 * them of its host.
 */
#ifndef ZRDRAW_PLATFORM_CONFIG_STORE_H
#define ZRDRAW_PLATFORM_CONFIG_STORE_H

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** The library names the default store by this handle, and no other. */
enum { zrCFGDefaultStore = -1 };

/** @return 1 when the key path exists in the store, else 0 */
int zrCFGKeyExists(int store, const char* path);

/**
 * Stores or reads one text.
 * @param buffer the text to store, or room for the text to read. Null when reading copies nothing
 * @param length in: the bytes of `buffer`; out, when reading: the bytes of the text with its zero.
 *               A text that is longer than the room is cut, and ends with a zero
 * @param write  1 stores, 0 reads
 * @return 0, or -1 when the key is not in the store, which leaves `buffer` and `length` alone, or
 *         when the store cannot be used
 */
int zrCFGValueString(int store, const char* path, const char* name, char* buffer,
                     unsigned int* length, int write);

/** Makes what was stored so far lasting. The last two are 0. @return 0, or -1 when it failed */
int zrCFGSave(int store, int reserved1, int reserved2);

/** Writes a number in a base from 2 to 36; a negative one has a sign in base 10 only. @return text
 */
char* itoa(int value, char* text, int base);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
