/**
 * @file
 * @ingroup platform
 *
 * The host's media layer, as the library asks it: time codes, names of codecs and files, frames,
 * and the reader of media files.
 */
#ifndef ZRDRAW_PLATFORM_MEDIA_H
#define ZRDRAW_PLATFORM_MEDIA_H

#include "zrdraw/records.h"

/** @addtogroup platform
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/** The time code type of a frame rate. Its numbers are the host's own. */
unsigned int vidGetTCType(double frameRate);

/** What the overlay adds to the type of a time code whose text it asks for. */
enum { zrTimeCodeTextFlags = 0x30100 };

/**
 * The text of a time code.
 * @param frameCount   frames since 00:00:00:00
 * @param typeAndFlags a type of vidGetTCType with zrTimeCodeTextFlags set
 * @param text         room for 512 bytes
 * @return 0
 */
int tc2String(unsigned int frameCount, unsigned int typeAndFlags, char* text);

/** Constant texts that name a layout code (biCompression) and a file type. Never null. */
const char* kpxutilCodecTypeString(unsigned int code);
const char* kpxutilFileTypeString(unsigned int code);

/**
 * Makes and frees frames, with a trace of who asked.
 * @param operation   10 makes a frame, 11 frees one
 * @param dataBytes   of the pixels
 * @param recordBytes of the DFRAME
 * @param frame       receives the frame, with `videoData` set; null again when it was freed
 * @param tag         names the caller
 * @param line        of the caller's source
 * @return 0, or -1 when there is no memory or the operation is unknown
 */
int DFrameMemTrace(int operation, unsigned int dataBytes, unsigned int recordBytes, DFRAME** frame,
                   const char* tag, int line);

/**
 * The entries of "clipFile.so", which the library loads at run time and finds by the names without
 * "Function". Where it or one of them is missing there is no watermark, and a line in the log.
 *
 * cfOpen: `access` is 0x80000000, `share` 1, `disposition` 3 (open what exists), `flags` 0x20000.
 * @return a handle, or null when the file cannot be opened
 */
typedef void* cfOpenFunction(const char* path, unsigned int access, unsigned int share,
                             void* security, unsigned int disposition, unsigned int attributes,
                             unsigned int flags);

/** Fills a record whose biSize the caller has set to its size. @return 0 when done */
typedef int cfGetFileInfoFunction(void** handle, int kind, int index, KPXVIDEO* record,
                                  void* reserved1, void* reserved2);

/**
 * Without a frame, answers the bytes of one uncompressed frame; with one, reads into its
 * `videoData` B, G, R, A, a byte each, without gaps between lines.
 * @return the bytes of the frame, 0 when it cannot be read
 */
typedef unsigned int cfReadFrameUncFunction(void** handle, unsigned int number, int count,
                                            int video, int whole, DFRAME* frame, void* reserved1,
                                            void* reserved2);

/** Closes and clears the handle. @return 0 */
typedef int cfCloseFunction(void** handle);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
