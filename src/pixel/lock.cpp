// The lock and the change event of a canvas, for callers that share it between threads.
#include "zrdraw/platform/events.h"
#include "zrdraw/zrpixel.h"

#include <unistd.h>

namespace {
constexpr unsigned int waitForever = 0xFFFFFFFFU;
constexpr int taken = 128;
constexpr int timedOut = 258;
} // namespace

int ZRPixel::Lock(unsigned int timeout) {
    if (timeout == 0 || timeout == waitForever) {
        zrOSEnterCriticalSection(&lock);
        return 0;
    }
    int last = 0;
    for (unsigned int tries = 0; tries < timeout && last != 1; ++tries) {
        last = zrOSTryEnterCriticalSection(&lock);
        if (last == 0)
            usleep(1000);
    }
    // By contract: after a bounded wait 128 means taken and 0 not taken.
    return last != 0 ? taken : 0;
}

int ZRPixel::TryLock() {
    return zrOSTryEnterCriticalSection(&lock) != 0 ? 0 : timedOut;
}

int ZRPixel::Unlock() {
    zrOSLeaveCriticalSection(&lock);
    return 0;
}

void ZRPixel::SetChangeEvent() {
    if (changeEvent != nullptr)
        zrOSSetEvent(changeEvent);
}

int ZRPixel::WaitForChangeEvent(unsigned int timeout) {
    return zrOSWaitForEvent(changeEvent, timeout);
}
