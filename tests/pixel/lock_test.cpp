// The lock and the change event of an object.
#include "platform/injection.h"
#include "zrdraw/zrpixel.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace {

TEST(Lock, IsReentrantAndExclusive) {
    ZRPixel pixel;
    const auto elsewhere = [](auto function) {
        return std::async(std::launch::async, function).get();
    };
    EXPECT_EQ(pixel.Lock(0), 0);
    EXPECT_EQ(pixel.Lock(0xFFFFFFFFU), 0);
    EXPECT_EQ(pixel.TryLock(), 0);
    EXPECT_EQ(pixel.Lock(5), 128) << "a bounded wait answers 128 when taken";
    EXPECT_EQ(elsewhere([&] { return pixel.TryLock(); }), 258);
    EXPECT_EQ(elsewhere([&] { return pixel.Lock(3); }), 0) << "and 0 when not";
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(pixel.Unlock(), 0);
    EXPECT_EQ(elsewhere([&] { return pixel.TryLock() + pixel.Unlock(); }), 0);
}

TEST(Lock, BoundedTries) {
    struct Case {
        unsigned int timeout;
        std::vector<int> answers; // of the platform; the last one repeats
        int tries, result;
        const char* why;
    };
    const Case cases[] = {
        {1, {0}, 1, 0, "exactly one try"},
        {4, {0}, 4, 0, "as many tries as milliseconds"},
        {9, {0, 0, 1}, 3, 128, "1 stops the tries"},
        {3, {2}, 3, 128, "another answer goes on, and the last one counts"},
        {3, {2, 2, 0}, 3, 0, "not taken at last"},
    };
    for (const Case& c : cases) {
        InjectionGuard guard;
        int tries = 0;
        injection().tryEnterCriticalSection = [&] {
            const auto at = std::min(static_cast<std::size_t>(tries), c.answers.size() - 1);
            ++tries;
            return c.answers[at];
        };
        ZRPixel pixel;
        EXPECT_EQ(pixel.Lock(c.timeout), c.result) << c.why;
        EXPECT_EQ(tries, c.tries) << c.why;
    }
}

TEST(ChangeEvent, SignalsBetweenThreads) {
    ZRPixel pixel;
    EXPECT_EQ(pixel.WaitForChangeEvent(1), 258);
    std::thread producer([&] { pixel.SetChangeEvent(); });
    EXPECT_EQ(pixel.WaitForChangeEvent(10000), 0);
    producer.join();
    EXPECT_EQ(pixel.lastChange, 0U) << "the library leaves the number alone";
}

} // namespace
