// Events and critical sections of the default platform layer.
#include "zrdraw/platform/events.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

constexpr unsigned int withoutBound = 0xFFFFFFFFU;
constexpr int timedOut = 258;

struct CloseEvent {
    void operator()(void* event) const { EXPECT_EQ(1, zrOSCloseEvent(event)); }
};
using Event = std::unique_ptr<void, CloseEvent>;

Event makeEvent(bool manualReset, bool isSet) {
    return Event(zrOSCreateEvent(nullptr, manualReset, isSet, "a name means nothing here"));
}

TEST(Events, WaitFindsTheStateTheEventWasMadeWith) {
    const struct {
        bool manualReset, initiallySet;
        int firstWait, secondWait;
    } cases[] = {{false, false, timedOut, timedOut},
                 {true, false, timedOut, timedOut},
                 {false, true, 0, timedOut},
                 {true, true, 0, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "manual " << c.manualReset << " set " << c.initiallySet);
        const Event event = makeEvent(c.manualReset, c.initiallySet);
        EXPECT_EQ(c.firstWait, zrOSWaitForEvent(event.get(), 0));
        EXPECT_EQ(c.secondWait, zrOSWaitForEvent(event.get(), 5));
    }
}

TEST(Events, NullHandlesAreRefused) {
    EXPECT_EQ(0, zrOSCloseEvent(nullptr));
    EXPECT_EQ(0, zrOSSetEvent(nullptr));
    EXPECT_EQ(-1, zrOSWaitForEvent(nullptr, 0));
}

// Three threads that wait for one event and tell by another that they are through.
class Waiters {
public:
    explicit Waiters(void* event) {
        for (int i = 0; i < count; ++i) {
            m_threads.emplace_back([this, event] {
                EXPECT_EQ(0, zrOSWaitForEvent(event, withoutBound));
                ++m_released;
                zrOSSetEvent(m_progress.get());
            });
        }
        zrOSWaitForEvent(m_progress.get(), 20); // most likely all of them wait by then
    }
    ~Waiters() {
        for (std::thread& thread : m_threads)
            thread.join();
    }
    Waiters(const Waiters&) = delete;
    Waiters& operator=(const Waiters&) = delete;

    static constexpr int count = 3;

    int awaitReleased(int wanted) {
        while (m_released < wanted)
            zrOSWaitForEvent(m_progress.get(), withoutBound);
        zrOSWaitForEvent(m_progress.get(), 20); // the chance for one too many
        return m_released;
    }

private:
    Event m_progress = makeEvent(false, false);
    std::atomic<int> m_released = 0;
    std::vector<std::thread> m_threads;
};

TEST(Events, AutoResetReleasesOneWaiterForEachSet) {
    const Event event = makeEvent(false, false);
    Waiters waiters(event.get());
    for (int i = 1; i <= Waiters::count; ++i) {
        zrOSSetEvent(event.get());
        EXPECT_EQ(i, waiters.awaitReleased(i));
    }
}

TEST(Events, ManualResetReleasesAllAndStays) {
    const Event event = makeEvent(true, false);
    Waiters waiters(event.get());
    zrOSSetEvent(event.get());
    EXPECT_EQ(Waiters::count, waiters.awaitReleased(Waiters::count));
    EXPECT_EQ(0, zrOSWaitForEvent(event.get(), 0));
}

class CriticalSection : public testing::Test {
protected:
    CriticalSection() { zrOSInitializeCriticalSection(&m_section); }
    ~CriticalSection() override { zrOSDeleteCriticalSection(&m_section); }

    int tryFromAnotherThread() {
        int taken = -1;
        std::thread([&] {
            taken = zrOSTryEnterCriticalSection(&m_section);
            if (taken == 1)
                zrOSLeaveCriticalSection(&m_section);
        }).join();
        return taken;
    }

    zrOSCriticalSection m_section;
};

TEST_F(CriticalSection, ItsOwnerEntersAgainAndHoldsItUntilTheLastLeave) {
    zrOSEnterCriticalSection(&m_section);
    zrOSEnterCriticalSection(&m_section);
    EXPECT_EQ(1, zrOSTryEnterCriticalSection(&m_section));
    for (int left = 3; left > 0; --left) {
        EXPECT_EQ(0, tryFromAnotherThread()) << left << " to leave";
        zrOSLeaveCriticalSection(&m_section);
    }
    EXPECT_EQ(1, tryFromAnotherThread());
}

TEST_F(CriticalSection, ExcludesOtherThreads) {
    constexpr int rounds = 20000;
    int plainCount = 0;
    const auto work = [&] {
        for (int i = 0; i < rounds; ++i) {
            zrOSEnterCriticalSection(&m_section);
            ++plainCount;
            zrOSLeaveCriticalSection(&m_section);
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(2 * rounds, plainCount);
}

} // namespace
