#include "interrupt.h"

#include "tool_error.h"

#include <csignal>

namespace {

constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interrupted = 0;

// Without SA_RESTART, so that a blocked read ends. A second signal finds the default again, for
// work that hangs where nobody looks at the flag. What is ignored, as by nohup, stays so.
void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = [](int) { interrupted = 1; };
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : signals) {
        struct sigaction present {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

const AVIOInterruptCB interruptReads{[](void*) -> int { return interrupted; }, nullptr};

void stopIfInterrupted() {
    if (interrupted != 0)
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
