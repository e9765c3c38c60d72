// One kernel on four short-lived threads, a quadrant each.
#include "zrdraw/platform/threads.h"

#include "fx/kernel_args.h"

#include <atomic>

#include <unistd.h>

namespace {

constexpr const char* threadName = "dffx";
constexpr int threadPriority = 15;
constexpr int mostSleeps = 50;
constexpr unsigned int sleepMicroseconds = 2000;

struct Band {
    unsigned int xStart, xEnd, yStart, yEnd;
};

void start(zrfxFXArgs& record, int* pending) {
    zrOSInterlockedIncrement(pending);
    record.threadHandle =
        zrOSCreateThread(nullptr, 0, zrfxFXThread, &record, 0, &record.threadId, threadName);
    zrOSSetThreadPriority(record.threadHandle, threadPriority);
}

int readCount(int& pending) {
    return std::atomic_ref(pending).load(std::memory_order_relaxed);
}

// By contract: at most 100 ms. A thread that is still running then may find its record gone.
void waitFor(int& pending) {
    for (int sleeps = 0; readCount(pending) != 0 && sleeps < mostSleeps; ++sleeps)
        usleep(sleepMicroseconds);
}

} // namespace

unsigned int zrfxFXThread(void* args) {
    const auto& a = *static_cast<zrfxFXArgs*>(args);
    const unsigned int result = callWith(a.kernel, a, a.xStart, a.xEnd, a.yStart, a.yEnd);
    zrOSInterlockedDecrement(a.pending);
    return result;
}

unsigned int ZRDraw_FXMultiThread(ZRFX_PARAMETERS, zrfxKernel* kernel) {
    int pending = 0;
    // An odd size leaves its extra column or line to the right or lower bands.
    const unsigned int w = width >> 1;
    const unsigned int h = height >> 1;
    const Band bands[] = {{0, w, 0, h}, {w, width, 0, h}, {0, w, h, height}, {w, width, h, height}};
    const zrfxFXArgs whole{ZRFX_VALUES, kernel, nullptr, 0, &pending};
    zrfxFXArgs records[] = {whole, whole, whole, whole};
    const Band* band = bands;
    for (zrfxFXArgs& record : records) {
        record.xStart = band->xStart;
        record.xEnd = band->xEnd;
        record.yStart = band->yStart;
        record.yEnd = band->yEnd;
        ++band;
    }
    for (zrfxFXArgs& record : records)
        start(record, &pending);
    for (const zrfxFXArgs& record : records)
        zrOSCloseThread(record.threadHandle, threadName);
    waitFor(pending);
    return 0;
}
