// Threads, priorities, interlocked counts and events.
#include "zrdraw/platform/events.h"
#include "zrdraw/platform/threads.h"

#include <climits>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

void* start(zrOSThreadRoutine* routine, void* argument, unsigned long stackSize = 0) {
    return zrOSCreateThread(nullptr, stackSize, routine, argument, 0, nullptr, nullptr);
}

TEST(Threads, WorkIsVisibleAfterClose) {
    for (const unsigned long stackSize : {0UL, 1UL, 100'001UL, 1UL << 20}) {
        SCOPED_TRACE(stackSize);
        int work = 0;
        void* const thread = start(
            [](void* argument) {
                usleep(2000); // a close that does not wait would be here first
                *static_cast<int*>(argument) = 17;
                return 0U;
            },
            &work, stackSize);
        ASSERT_NE(nullptr, thread);
        EXPECT_EQ(0, zrOSCloseThread(thread, "any"));
        EXPECT_EQ(17, work);
    }
}

struct Seen {
    void* ready = zrOSCreateEvent(nullptr, 0, 0, nullptr);
    void* go = zrOSCreateEvent(nullptr, 0, 0, nullptr);
    void* self = nullptr;
    unsigned int systemId = 0;
    int priority = -1;
    char name[16] = {};
};

unsigned int look(void* argument) {
    auto* const seen = static_cast<Seen*>(argument);
    seen->self = zrOSGetCurrentThread();
    seen->systemId = static_cast<unsigned int>(gettid());
    seen->priority = zrOSGetThreadPriority(seen->self);
    zrOSSetThreadPriority(seen->self, 7);
    pthread_getname_np(pthread_self(), seen->name, sizeof seen->name);
    zrOSSetEvent(seen->ready);
    zrOSWaitForEvent(seen->go, 0xFFFFFFFFU);
    return 0;
}

TEST(Threads, HandleNumberNameAndPriorityAreThoseOfTheThread) {
    Seen seen;
    unsigned int id = 0;
    void* const thread =
        zrOSCreateThread(nullptr, 0, look, &seen, 0, &id, "a name of 24 characters.");
    ASSERT_NE(nullptr, thread);
    zrOSWaitForEvent(seen.ready, 0xFFFFFFFFU);
    EXPECT_EQ(thread, seen.self);
    EXPECT_NE(id, 0U);
    EXPECT_STREQ("a name of 24 ch", seen.name);
    EXPECT_EQ(0, seen.priority);
    EXPECT_EQ(7, zrOSGetThreadPriority(thread));
    for (const int priority : {-3, 100, 2, INT_MIN}) {
        EXPECT_EQ(1, zrOSSetThreadPriority(thread, priority));
        EXPECT_EQ(priority, zrOSGetThreadPriority(thread));
    }
    EXPECT_EQ(19, getpriority(PRIO_PROCESS, seen.systemId))
        << "a lower priority is always permitted";
    zrOSSetEvent(seen.go);
    zrOSCloseThread(thread, nullptr);
    zrOSCloseEvent(seen.ready);
    zrOSCloseEvent(seen.go);
}

// The creator may be ahead of the thread.
TEST(Threads, PriorityOfAThreadThatHasNotBegun) {
    unsigned int lastId = 0;
    for (int round = 0; round < 20; ++round) {
        int nice = 0;
        unsigned int id = 0;
        const auto look = [](void* argument) {
            for (int tries = 0; tries < 1000 && *static_cast<int*>(argument) != 7; ++tries) {
                *static_cast<int*>(argument) =
                    getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
                usleep(100);
            }
            return 0U;
        };
        void* const thread = zrOSCreateThread(nullptr, 0, look, &nice, 0, &id, nullptr);
        zrOSSetThreadPriority(thread, -7);
        zrOSCloseThread(thread, nullptr);
        EXPECT_EQ(7, nice);
        EXPECT_NE(id, std::exchange(lastId, id));
    }
}

TEST(Threads, NullHandlesAreRefused) {
    EXPECT_EQ(0, zrOSCloseEvent(nullptr));
    EXPECT_EQ(0, zrOSSetEvent(nullptr));
    EXPECT_EQ(-1, zrOSWaitForEvent(nullptr, 0));
    EXPECT_EQ(0, zrOSCloseThread(nullptr, nullptr));
    EXPECT_EQ(0, zrOSSetThreadPriority(nullptr, 1));
    EXPECT_EQ(0, zrOSGetThreadPriority(nullptr));
    EXPECT_EQ(nullptr, start(nullptr, nullptr));
}

TEST(InterlockedCounts, LoseNothingBetweenThreads) {
    int count = 0;
    const auto work = [&count] {
        for (int i = 0; i < 50000; ++i) {
            zrOSInterlockedIncrement(&count);
            zrOSInterlockedIncrement(&count);
            zrOSInterlockedDecrement(&count);
        }
    };
    std::thread first(work), second(work);
    first.join();
    second.join();
    EXPECT_EQ(100000, count);
}

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

TEST(Events, ReleaseOneWaiterForEachSetOrAll) {
    constexpr int waiters = 3;
    for (const bool manualReset : {false, true}) {
        SCOPED_TRACE(manualReset);
        const Event event = makeEvent(manualReset, false), progress = makeEvent(false, false);
        std::atomic<int> released = 0;
        const auto awaitReleased = [&](int wanted) {
            while (released < wanted)
                zrOSWaitForEvent(progress.get(), withoutBound);
            zrOSWaitForEvent(progress.get(), 20); // the chance for one too many
            return released.load();
        };
        std::vector<std::jthread> threads;
        for (int i = 0; i < waiters; ++i)
            threads.emplace_back([&] {
                EXPECT_EQ(0, zrOSWaitForEvent(event.get(), withoutBound));
                ++released;
                zrOSSetEvent(progress.get());
            });
        awaitReleased(0); // most likely all of them wait by then
        for (int wanted = manualReset ? waiters : 1; wanted <= waiters; ++wanted) {
            zrOSSetEvent(event.get());
            EXPECT_EQ(wanted, awaitReleased(wanted));
        }
        EXPECT_EQ(manualReset ? 0 : timedOut, zrOSWaitForEvent(event.get(), 0));
    }
}

} // namespace
