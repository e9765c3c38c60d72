/**
 * @file
 * @ingroup host
 *
 * What the default platform layer adds to the operations the library asks of its host. A program
 * that brings a host of its own has no need of it. Compiles as C and as C++.
 *
 * How the default layer does what the library leaves open:
 * - a thread name is cut to 15 characters, its number is that of the system;
 * - a thread priority counts in steps of the system's nice value, 20 above to 19 below; the system
 *   may refuse a higher one, the number is kept all the same;
 * - an event name is accepted and ignored, every event is known to its process only;
 * - memory starts at a multiple of 64 bytes, and 0 bytes give a pointer that may be given back;
 * - a library that is to be loaded by its bare name is looked for where the system looks, then in
 *   the folder zrdraw beside this one, where clipFile.so is, then beside this one. clipFile.so
 *   reads any picture or clip that FFmpeg reads;
 * - a library that was loaded stays loaded until the process ends, as its file was at that time:
 *   zrOSFreeLibrary gives back the caller's hold only, and the next load costs microseconds;
 * - a log message is one line on standard error, "zrdraw: " before it and a newline after it. Lines
 *   that are the same as the one before and come within a minute of it are counted instead:
 *   "zrdraw: ... 250 times more" stands before the next other line, at the next repeat after that
 *   minute, or when the process ends by exit or the end of main. FFmpeg's own messages go to
 *   standard error by way of av_log, not through this log.
 *
 * libzrdraw.so names no library for the operations that it asks of its host: a program that loads
 * it at run time loads this one first, with its names for all:
 *     dlopen("libzrhost.so.1", RTLD_NOW | RTLD_GLOBAL);
 *     void* library = dlopen("libzrdraw.so.1", RTLD_NOW);
 * Without the first line the second fails. A program that is linked to both has no need of either.
 */
#ifndef ZRDRAW_ZRHOST_H
#define ZRDRAW_ZRHOST_H

#include "zrdraw/types.h"

/** @addtogroup host
 * @{ */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Receives one log message.
 * @param message the text without prefix and without the newline at its end, at most 4,086 bytes
 *                and a zero byte; a longer one is cut. It belongs to the layer and is gone when
 *                the sink returns.
 *
 * Runs on the thread that logs, so several threads may be in it at a time. It must not throw.
 */
typedef void zrOSLogSink(const char* message);

/**
 * Sends the log to a sink in place of standard error.
 * @param sink null: standard error again. The layer keeps the pointer, nothing else.
 *
 * Any thread may call it at any time. A message that another thread is logging meanwhile may still
 * reach the earlier sink after the call returns.
 */
ZRDRAW_API void zrOSSetLogSink(zrOSLogSink* sink);

/**
 * Types of time code, which vidGetTCType answers and tc2String takes. The drop-frame types leave
 * out numbers, not frames: the first two of each minute that 10 does not divide, or the first four
 * at 59.94 (SMPTE 12M). The texts are HH:MM:SS:FF, HH:MM:SS;FF of the drop-frame types, and
 * HH:MM:SS:FFF of zrTimeCode120, whose numbers need a third digit; they wrap at 24 hours, and a
 * count from below 0 counts back from there.
 *
 * A rate is one of a type within 0.5 %, or when it is rounded to whole frames; for any other rate
 * vidGetTCType answers zrTimeCode30, the one of an object without a stream. Where a type is taken,
 * its lowest 8 bits count, and an unknown one is zrTimeCode30.
 */
typedef enum zrTimeCode {
    zrTimeCode24 = 1, /**< also 23.976 */
    zrTimeCode25 = 2,
    zrTimeCode30Drop = 3, /**< the usual one at 29.97 */
    zrTimeCode30 = 4,     /**< also 29.97 without drop, and what stands in for none */
    zrTimeCode48 = 5,     /**< also 47.952 */
    zrTimeCode50 = 6,
    zrTimeCode60Drop = 7, /**< the usual one at 59.94 */
    zrTimeCode60 = 8,     /**< also 59.94 without drop */
    zrTimeCode100 = 9,
    zrTimeCode120 = 10 /**< also 119.88 */
} zrTimeCode;

/**
 * The type for a rate of numerator / denominator frames a second.
 * @param drop 1 drop-frame, 0 not, -1 what is usual at that rate
 * @return 0 when there is none
 */
ZRDRAW_API unsigned int zrTimeCodeType(int numerator, int denominator, int drop);

/** @return 1 for a drop-frame type */
ZRDRAW_API int zrTimeCodeIsDrop(unsigned int type);

/**
 * The frames since 00:00:00:00 of a text; either sign may stand before its frames.
 * @return 0, or -1 for what is no time code of the type: a field that is out of range, or a number
 *         that drop-frame leaves out
 */
ZRDRAW_API int zrTimeCodeFrames(const char* text, unsigned int type, unsigned int* frameCount);

/** Types of files, which kpxutilFileTypeString names. */
typedef enum zrFileType {
    zrFileUnknown = 0,
    zrFileMov = 1, /**< also MP4 and its kin, which are read as one */
    zrFileMkv = 2, /**< also WebM */
    zrFileAvi = 3,
    zrFileMxf = 4,
    zrFileTransportStream = 5,
    zrFileProgramStream = 6,
    zrFileDv = 7,
    zrFileGxf = 8,
    zrFileNut = 9,
    zrFileY4m = 10,
    zrFileRaw = 11,
    zrFileGif = 12,
    zrFileImage = 13 /**< a picture, or a row of numbered ones */
} zrFileType;

/** The file type of a demuxer of FFmpeg, such as "matroska,webm"; 0 for an unknown. */
ZRDRAW_API unsigned int zrFileTypeOf(const char* demuxerName);

/**
 * Uses the configuration store in this file from now on, in the place of the user's own; null goes
 * back to that. What was stored and not saved is dropped.
 *
 * The user's own store is the file that ZRDRAW_STORE names, else zrdraw/settings.db in the folder
 * XDG_CONFIG_HOME, else in ~/.config; the environment is asked when the store is first used. The
 * file is an SQLite database in WAL mode with one table, settings (path, name, value). NAME.lock
 * beside it is held by the process that opens, saves or replaces it, so its folder has to be
 * writable for reading too; reading makes no file. Any number of processes may use it at once; one
 * waits 5 seconds for another.
 *
 * What is stored stays in the process until zrCFGSave, which writes it in one transaction: a crash
 * loses what was not saved and nothing else, and what could not be saved stays to be saved again. A
 * child of fork begins with nothing to save. While the store is in use SQLite keeps NAME-wal and
 * NAME-shm beside it; they go when the last process that uses it turns to another store, forks, or
 * ends by exit or the end of main, and stay after a crash, for the next use to clear up. A file
 * that is damaged is set aside as NAME.damaged-N, with one line in the log, and a new one begun. A
 * store that cannot be used is one line in the log, which reads that follow do not repeat.
 * @param reason receives what is wrong and its mend, or an empty text; may be null
 * @return 0, or -1 when the file exists and cannot be used; then the earlier store stays in use
 */
ZRDRAW_API int zrCFGUseStore(const char* file, char* reason, unsigned int reasonBytes);

#ifdef __cplusplus
}
#endif

/** @} */

#endif
