#include "interrupt.h"

#include "common/tool_error.h"

#include <atomic>
#include <csignal>

namespace {

constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};

std::atomic<bool> interrupted{false}; // lock-free, and so safe in a handler

// Without SA_RESTART, so that a blocked read ends. A second signal finds the default again, for
// work that hangs where nobody looks at the flag. What is ignored, as by nohup, stays so.
void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = [](int) { interrupted = true; };
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : signals) {
        struct sigaction present {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

bool isInterrupted() {
    return interrupted;
}

void stopIfInterrupted() {
    if (isInterrupted())
        throw Failure("interrupted");
}

void runInterruptible(const std::function<void()>& work) {
    catchInterrupts();
    try {
        work();
    } catch (const Failure&) {
        // The signal often stops the input's producer too, and then the input is not at fault.
        stopIfInterrupted();
        throw;
    }
}
