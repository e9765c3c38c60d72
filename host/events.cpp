// Events over a condition variable. Time is that of the steady clock, so that a change of the
// system's date neither ends nor prolongs a wait.
#include "zrdraw/platform/events.h"

#include "handle.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace {

enum WaitResult : int { waitDone = 0, waitTimedOut = 258, waitNoEvent = -1 };
constexpr unsigned int withoutBound = 0xFFFFFFFFU;

class Event {
public:
    Event(bool manualReset, bool isSet) : m_manualReset(manualReset), m_isSet(isSet) {}

    void set() {
        // Notified under the lock: a waiter may close the event as soon as its wait returns.
        const std::lock_guard lock(m_mutex);
        m_isSet = true;
        if (m_manualReset)
            m_changed.notify_all();
        else
            m_changed.notify_one();
    }

    WaitResult wait(unsigned int timeout) {
        std::unique_lock lock(m_mutex);
        const auto isSet = [this] { return m_isSet; };
        if (timeout == withoutBound)
            m_changed.wait(lock, isSet);
        else if (!m_changed.wait_for(lock, std::chrono::milliseconds(timeout), isSet))
            return waitTimedOut;
        m_isSet = m_manualReset;
        return waitDone;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    const bool m_manualReset;
    bool m_isSet;
};

} // namespace

ZRDRAW_API void* zrOSCreateEvent(void* /*attributes*/, int manualReset, int initialState,
                                 const char* /*name*/) {
    return zrhost::makeOrNull<Event>(manualReset != 0, initialState != 0).release();
}

ZRDRAW_API int zrOSCloseEvent(void* event) {
    return zrhost::adopt<Event>(event) != nullptr ? 1 : 0;
}

ZRDRAW_API int zrOSSetEvent(void* event) {
    if (event == nullptr)
        return 0;
    static_cast<Event*>(event)->set();
    return 1;
}

ZRDRAW_API int zrOSWaitForEvent(void* event, unsigned int timeout) {
    return event == nullptr ? waitNoEvent : static_cast<Event*>(event)->wait(timeout);
}
