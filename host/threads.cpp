// Threads over pthreads. A thread is known by a record: that of a thread made here belongs to its
// handle until the handle is closed, that of any other thread lives as long as the thread.
#include "zrdraw/platform/threads.h"

#include "handle.h"
#include "zrdraw/types.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <mutex>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

class ThreadRecord {
public:
    // The calling thread, which runs already.
    ThreadRecord() : m_systemId(gettid()) {}

    ThreadRecord(zrOSThreadRoutine* routine, void* argument, const char* name)
        : m_routine(routine), m_argument(argument) {
        std::strncpy(m_name, name != nullptr ? name : "", sizeof m_name - 1);
    }

    // Does not wait until the thread runs: that would cost more than the work of a short one. What
    // the system does for a thread it does for itself when it begins.
    bool start(const pthread_attr_t& attributes) {
        return pthread_create(&m_thread, &attributes, run, this) == 0;
    }

    unsigned int number() const { return m_number; }

    // @return whether the thread has ended; false for one that cannot be waited for
    bool join() { return m_routine != nullptr && pthread_join(m_thread, nullptr) == 0; }

    int priority() {
        const std::lock_guard lock(m_mutex);
        return m_priority;
    }

    void setPriority(int priority) {
        const std::lock_guard lock(m_mutex);
        m_priority = priority;
        if (m_systemId != notRunning)
            askForPriority();
    }

    static ThreadRecord* current() {
        if (m_current == nullptr) {
            thread_local ThreadRecord foreign;
            m_current = &foreign;
        }
        return m_current;
    }

private:
    static constexpr pid_t notRunning = 0;

    static void* run(void* handle) {
        auto* const self = static_cast<ThreadRecord*>(handle);
        m_current = self;
        self->begin();
        const std::uintptr_t result = self->m_routine(self->m_argument);
        // The system gives the number of an ended thread to another, which must keep its priority.
        self->retire();
        return reinterpret_cast<void*>(result);
    }

    void begin() {
        if (m_name[0] != 0)
            pthread_setname_np(pthread_self(), m_name);
        const std::lock_guard lock(m_mutex);
        m_systemId = gettid();
        if (m_priority != 0)
            askForPriority();
    }

    void retire() {
        const std::lock_guard lock(m_mutex);
        m_systemId = notRunning;
    }

    // A refusal is no failure: the number alone is what the caller can rely on.
    void askForPriority() {
        setpriority(PRIO_PROCESS, static_cast<id_t>(m_systemId), -std::clamp(m_priority, -19, 20));
    }

    static unsigned int nextNumber() {
        static std::atomic<unsigned int> last{0};
        return ++last;
    }

    static thread_local ThreadRecord* m_current;

    zrOSThreadRoutine* const m_routine = nullptr;
    void* const m_argument = nullptr;
    const unsigned int m_number = nextNumber();
    char m_name[16] = {}; // the system refuses a longer name rather than cut it
    pthread_t m_thread = {};
    std::mutex m_mutex; // guards what follows
    int m_priority = 0;
    pid_t m_systemId = notRunning;
};

thread_local ThreadRecord* ThreadRecord::m_current = nullptr;

class ThreadAttributes {
public:
    explicit ThreadAttributes(unsigned long stackSize) {
        pthread_attr_init(&m_value);
        // A size below the system's least is refused, 0 among them: the default remains.
        pthread_attr_setstacksize(&m_value, stackSize);
    }
    ~ThreadAttributes() { pthread_attr_destroy(&m_value); }
    ThreadAttributes(const ThreadAttributes&) = delete;
    ThreadAttributes& operator=(const ThreadAttributes&) = delete;

    const pthread_attr_t& value() const { return m_value; }

private:
    pthread_attr_t m_value;
};

} // namespace

// The flags are ignored: there is no operation that would wake a thread started asleep.
ZRDRAW_API void* zrOSCreateThread(void* /*attributes*/, unsigned long stackSize,
                                  zrOSThreadRoutine* routine, void* argument,
                                  unsigned int /*flags*/, unsigned int* threadId,
                                  const char* name) {
    if (routine == nullptr)
        return nullptr;
    auto record = zrhost::makeOrNull<ThreadRecord>(routine, argument, name);
    if (!record || !record->start(ThreadAttributes(stackSize).value()))
        return nullptr;
    if (threadId != nullptr)
        *threadId = record->number();
    return record.release();
}

ZRDRAW_API int zrOSCloseThread(void* thread, const char* /*name*/) {
    // A thread that closes itself, or one not made here, keeps its record: it is still in use.
    if (thread != nullptr && static_cast<ThreadRecord*>(thread)->join())
        zrhost::adopt<ThreadRecord>(thread).reset();
    return 0;
}

ZRDRAW_API void* zrOSGetCurrentThread(void) {
    return ThreadRecord::current();
}

ZRDRAW_API int zrOSSetThreadPriority(void* thread, int priority) {
    if (thread == nullptr)
        return 0;
    static_cast<ThreadRecord*>(thread)->setPriority(priority);
    return 1;
}

ZRDRAW_API int zrOSGetThreadPriority(void* thread) {
    return thread == nullptr ? 0 : static_cast<ThreadRecord*>(thread)->priority();
}

ZRDRAW_API int zrOSInterlockedIncrement(int* count) {
    return ++std::atomic_ref(*count);
}
ZRDRAW_API int zrOSInterlockedDecrement(int* count) {
    return --std::atomic_ref(*count);
}
