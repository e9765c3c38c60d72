// Making drawing objects, their references, lock and change event, and the flat interface.
#include "platform/injection.h"
#include "zrdraw/exports.h"
#include "zrdraw/formats.h"
#include "zrdraw/zrpixel.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <future>
#include <thread>
#include <tuple>
#include <vector>

namespace {

TEST(Factory, RefusedAndUnservedCodes) {
    char frame[400], other[400];
    ZRDraw* draw = nullptr;
    EXPECT_EQ(GetDraw(ptNone, 10, 10, 0, frame, draw), 0xFFFFFFFFU);
    for (const unsigned int code : {0U, 7U, 15U, 16U, 19U, 30U, 33U, 36U, 39U, 10002U}) {
        EXPECT_EQ(GetDraw(code, 10, 10, 0, frame, draw), 0xFFFFFFFEU) << code;
        EXPECT_EQ(draw, nullptr);
        EXPECT_EQ(qtGetDraw(code, 10, 10, 0, frame), nullptr);
    }
    EXPECT_EQ(qtGetDraw(ptNone, 10, 10, 0, frame), nullptr);

    ASSERT_EQ(GetDraw(2, 10, 10, 0, frame, draw), 0U);
    EXPECT_TRUE(draw->useDefaultFont) << "no font but the built-in one";
    ZRDraw* const made = draw;
    EXPECT_EQ(GetDraw(ptNone, 5, 5, 0, other, draw), 0xFFFFFFFFU);
    EXPECT_EQ(draw->canvas, frame) << "untouched";
    EXPECT_EQ(GetDraw(15, 5, 4, 0, other, draw), 0U) << "moves the object";
    EXPECT_EQ(draw, made);
    EXPECT_EQ(draw->pixelType, 2U);
    EXPECT_EQ(draw->canvas, other);
    EXPECT_EQ(std::tuple(draw->width, draw->height, draw->pitch), std::tuple(5U, 4U, 20U));
    ReleaseDraw(draw);
}

TEST(Factory, ByBitmapHeader) {
    char frame[400];
    ZRDraw* draw = nullptr;
    tagBITMAPINFO info{};
    info.biWidth = 10;
    info.biHeight = -10;
    info.biBitCount = 24;
    ASSERT_EQ(GetDraw(&info, frame, draw), 0U);
    EXPECT_EQ(draw->pixelType, 6U);
    EXPECT_FALSE(draw->flipped) << "the sign of the height is dropped";
    EXPECT_EQ(draw->pitch, 30U);
    EXPECT_EQ(info.biSizeImage, 300U);
    tagBITMAPINFO notDrawnOn = info, withoutSize{};
    std::memcpy(&notDrawnOn.biCompression, "I420", 4);
    withoutSize.biBitCount = 32;
    for (tagBITMAPINFO* refused : {&notDrawnOn, &withoutSize}) {
        ZRDraw* other = draw;
        EXPECT_EQ(GetDraw(refused, frame, other), 0xFFFFFFFFU);
        EXPECT_EQ(other, nullptr);
        EXPECT_EQ(qtGetDrawBMI(refused, frame), nullptr);
    }
    ReleaseDraw(draw);
}

TEST(References, LastOneDestroys) {
    struct Counted : CDrawRGBA32 {
        explicit Counted(int& alive) : ZRDraw(1), CDrawRGBA32(1), m_alive(alive) { ++m_alive; }
        ~Counted() override { --m_alive; }
        int& m_alive;
    };
    int alive = 0;
    ZRDraw* draw = new Counted(alive);
    EXPECT_EQ(AddRefDraw(draw), 0);
    EXPECT_EQ(qtAddRefDraw(draw), 0);
    EXPECT_EQ(draw->refCount, 3);
    EXPECT_EQ(ReleaseDraw(draw), 0);
    ASSERT_NE(draw, nullptr);
    EXPECT_EQ(qtReleaseDraw(draw), 0);
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(ReleaseDraw(draw), 0);
    EXPECT_EQ(draw, nullptr);
    EXPECT_EQ(alive, 0);

    draw = new Counted(alive);
    draw->refCount = -5;
    ReleaseDraw(draw);
    EXPECT_EQ(alive, 0) << "a count below 1 counts as the last";
}

TEST(References, ThreadsMayShareAnObject) {
    char frame[4];
    ZRDraw* draw = qtGetDraw(1, 1, 1, 0, frame);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([draw] {
            for (int turn = 0; turn < 5000; ++turn) {
                qtAddRefDraw(draw);
                qtReleaseDraw(draw);
            }
        });
    threads.clear(); // waits for all
    EXPECT_EQ(draw->refCount, 1);
    ReleaseDraw(draw);
}

TEST(FlatInterface, AnswersNullWithRefusalAndWorksOnAnObject) {
    const auto answers = [](ZRDraw* pixel) {
        return std::array{qtZRPixelTryLock(pixel),
                          qtZRPixelUnlock(pixel) + qtZRPixelLock(pixel, 0) + qtZRPixelUnlock(pixel),
                          qtZRPixelLastChange(pixel, -1),
                          qtZRPixelLastChange(pixel, 7),
                          qtZRPixelLastChange(pixel, -1),
                          qtZRPixelSetCanvas(pixel, nullptr, 5, 20, 0),
                          qtZRPixelWaitForChangeEvent(pixel, 0)};
    };
    qtZRPixelSetChangeEvent(nullptr);
    EXPECT_EQ(answers(nullptr), (std::array{-1, -3, -1, -1, -1, -1, -1}));
    ZRDraw* draw = qtGetDraw(1, 10, 10, 0, nullptr);
    ASSERT_NE(draw, nullptr);
    EXPECT_EQ(answers(draw), (std::array{0, 0, 0, 7, 7, 0, 258}));
    EXPECT_EQ(std::pair(draw->height, draw->width), std::pair(5U, 20U));
    qtReleaseDraw(draw);
}

TEST(Factory, ANullEventHandleSurvives) {
    InjectionGuard guard;
    injection().createEvent = [](auto...) { return nullptr; };
    char frame[4];
    ZRDraw* draw = qtGetDraw(1, 1, 1, 0, frame);
    EXPECT_EQ(draw->changeEvent, nullptr);
    draw->SetChangeEvent();
    EXPECT_EQ(draw->PutPixel(0, 0, true), 0);
    ReleaseDraw(draw);
}

TEST(Lock, IsReentrantAndExclusive) {
    ZRPixel pixel;
    const auto elsewhere = [](auto function) {
        return std::async(std::launch::async, function).get();
    };
    EXPECT_EQ(pixel.Lock(0), 0);
    EXPECT_EQ(pixel.Lock(0xFFFFFFFFU), 0);
    EXPECT_EQ(pixel.TryLock(), 0);
    EXPECT_EQ(pixel.Lock(5), 128) << "a bounded wait answers 128 when taken";
    EXPECT_EQ(elsewhere([&] { return pixel.Lock(3); }), 0) << "and 0 when not";
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(elsewhere([&] { return pixel.TryLock(); }), 258) << "held until the last one";
        EXPECT_EQ(pixel.Unlock(), 0);
    }
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
        injection().tryEnterCriticalSection = [&](auto*) {
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
