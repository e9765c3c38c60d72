/**
 * What the default platform layer adds to the operations the library asks of its host. A program
 * that brings a host of its own has no need of it. Compiles as C and as C++.
 *
 * How the default layer does what the library leaves open:
 * - a thread name is cut to 15 characters, its number is that of the system;
 * - a thread priority counts in steps of the system's nice value, 20 above to 19 below; the system
 *   may refuse a higher one, the number is kept all the same;
 * - an event name is accepted and ignored, every event is known to its process only;
 * - memory starts at a multiple of 64 bytes, and 0 bytes give a pointer that may be given back;
 * - a log message is one line on standard error, "zrdraw: " before it and a newline after it.
 */
#ifndef ZRDRAW_ZRHOST_H
#define ZRDRAW_ZRHOST_H

#include "zrdraw/types.h"

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

#ifdef __cplusplus
}
#endif

#endif
