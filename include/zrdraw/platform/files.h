/**
 * @file
 * @ingroup platform
 *
 * Places in the file system, loading at run time and the log, as the library asks them of its
 * host.
 */
#ifndef ZRDRAW_PLATFORM_FILES_H
#define ZRDRAW_PLATFORM_FILES_H

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Puts the folder of the running program, with a slash at its end, into a buffer of 4,096 bytes.
 * @return 1, or 0 with the buffer left empty when it is not known
 */
int zrOSGetAppDir(char* path);

/** @return 1 when a file of that name exists, else 0 */
int zrOSFileExists(const char* path);

/**
 * Loads a shared library.
 * @param mode the flags of dlopen; 2 is RTLD_NOW
 * @return a handle, or null
 */
void* zrOSLoadLibrary(const char* name, int mode);
void* zrOSGetProcAddress(void* library, const char* name);
/** Gives back the caller's hold; a layer may keep the library loaded for the next load.
 * @return 1 when it was given back, 0 for a null handle */
int zrOSFreeLibrary(void* library);

/** Logs one message, with the format rules of printf. */
void ErrOut(const char* format, ...);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
