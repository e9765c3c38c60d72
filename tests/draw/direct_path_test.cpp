// Objects of our own 32-bit class skip the virtual calls; a class derived from it gets every one of
// them. Both leave the same frame.
#include "support/guarded_memory.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

#include <random>

namespace {

// Nothing is replaced, but it is another class.
struct Derived : CDrawRGBA32 {
    explicit Derived(unsigned int code) : ZRDraw(code), CDrawRGBA32(code) {}
};

constexpr int width = 50, height = 40, pitch = width * 4 + 8;

void drawSomething(ZRDraw& draw, std::mt19937& random) {
    const auto number = [&](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned int>(high - low + 1));
    };
    const auto any = [&] { return number(-20, 70); };
    const auto part = [&] { return number(0, 20) / 20.0; };
    draw.SetColorRGBA(part(), part(), part(), part(), true);
    draw.SetTransparency(number(0, 4) == 0);
    draw.SetTransparency(number(0, 2) / 2.0, true);
    draw.SetAlphaAdditive(number(0, 6) == 0);
    draw.textTransparent = number(0, 1) == 0;
    RECT rect{any(), any(), any(), any()};
    switch (number(0, 5)) {
    case 0:
        draw.Line(any(), any(), any(), any());
        break;
    case 1:
        draw.Dash(any(), any(), any(), any(), number(1, 5), number(0, 4));
        break;
    case 2:
        draw.Circle(any(), any(), number(0, 40));
        break;
    case 3:
        draw.DrawText("0A!", 3, &rect, static_cast<unsigned int>(number(0, 15)));
        break;
    case 4:
        draw.LineVert(number(0, width), number(0, height), number(0, height));
        break;
    default:
        draw.Fill(number(0, width), number(0, height), part());
        break;
    }
}

} // namespace

TEST(DirectPath, LeavesWhatTheVirtualCallsLeave) {
    constexpr unsigned int seed = 20261125;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    for (int scene = 0; scene < 400; ++scene) {
        const unsigned int code = 1 + random() % 4;
        GuardedMemory direct(pitch * height, 0x21), called = direct;
        CDrawRGBA32 ours(code);
        Derived theirs(code);
        ours.SetCanvas(direct.chars(), height, width, pitch);
        theirs.SetCanvas(called.chars(), height, width, pitch);
        for (int step = 0; step < 12; ++step) {
            std::mt19937 same = random;
            drawSomething(ours, random);
            drawSomething(theirs, same);
            ASSERT_EQ(direct, called) << "scene " << scene << " step " << step;
        }
        EXPECT_TRUE(direct.guardsIntact());
    }
}
