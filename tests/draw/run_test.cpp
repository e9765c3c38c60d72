// Axis-parallel runs: what they refuse, and the three routes of the horizontal ones.
#include "platform/injection.h"
#include "support/test_canvas.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

namespace {

TEST(LineHoriz, CoversBothEndsOrRefusesWhole) {
    struct Case {
        int x0, y, x1, result;
        const char* art;
    };
    const Case cases[] = {
        {1, 0, 3, 0, ".###.\n.....\n"},  {3, 0, 1, 0, ".###.\n.....\n"},
        {2, 1, 2, 0, ".....\n..#..\n"},  {0, 0, 5, 0, "#####\n.....\n"},
        {0, 2, 1, 0, ".....\n##...\n"},  {5, 0, 5, 0, "....#\n.....\n"},
        {0, 0, 6, -1, ".....\n.....\n"}, {-1, 0, 3, -1, ".....\n.....\n"},
        {0, 3, 1, -1, ".....\n.....\n"}, {0, -1, 1, -1, ".....\n.....\n"},
    };
    for (const unsigned int code : {1U, 3U, 5U, 6U}) {
        for (const Case& c : cases) {
            TestCanvas canvas(code, 5, 2);
            EXPECT_EQ(canvas->LineHoriz(c.x0, c.y, c.x1), c.result);
            EXPECT_EQ(canvas.art(), c.art) << code << ": " << c.x0 << "," << c.y << "," << c.x1;
            EXPECT_TRUE(canvas.guardsIntact());
        }
    }
}

TEST(LineVert, CoversBothEndsOrRefusesWhole) {
    struct Case {
        int x, y0, y1, result;
        const char* art;
    };
    const Case cases[] = {
        {0, 0, 2, 0, "#.\n#.\n#.\n"},   {1, 2, 1, 0, "..\n.#\n.#\n"},
        {2, 0, 0, 0, ".#\n..\n..\n"},   {0, 2, 3, 0, "..\n..\n#.\n"},
        {0, 3, 3, 0, "..\n..\n#.\n"},   {0, 0, 4, -1, "..\n..\n..\n"},
        {0, -1, 2, -1, "..\n..\n..\n"}, {3, 0, 1, -1, "..\n..\n..\n"},
        {-1, 0, 1, -1, "..\n..\n..\n"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 2, 3);
        EXPECT_EQ(canvas->LineVert(c.x, c.y0, c.y1), c.result);
        EXPECT_EQ(canvas.art(), c.art) << c.x << ": " << c.y0 << " to " << c.y1;
    }
}

TEST(LineHoriz, ThirtyTwoBitRunsAreOneOpaqueFill) {
    for (unsigned int code = 1; code <= 4; ++code) {
        InjectionGuard guard;
        int fills = 0;
        TestCanvas canvas(code, 6, 2);
        injection().watchSetMemory = [&](void* dst, unsigned int value, unsigned long bytes) {
            ++fills;
            EXPECT_EQ(dst, canvas->GetPixel(2, 1));
            EXPECT_EQ(value, 0x01020304U);
            EXPECT_EQ(bytes, 12U);
        };
        canvas->foreColor = 0x01020304U;
        canvas->SetTransparency(true);
        canvas->SetTransparency(0.5, true);
        canvas->SetAlphaAdditive(true);
        canvas->LineHoriz(4, 1, 2);
        EXPECT_EQ(fills, 1);
        EXPECT_EQ(canvas.art(), "......\n..+++.\n");
    }
}

TEST(LineHoriz, PackedRunsRepeatTheirFirstPixel) {
    struct Counter : CDrawRGB24 {
        Counter() : ZRDraw(5), CDrawRGB24(5) {}
        int PutPixel(int x, int y, bool selector) override {
            ++puts;
            return hidden ? 0 : CDrawRGB24::PutPixel(x, y, selector);
        }
        char* GetPixel(int x, int y) override {
            return hidden ? nullptr : CDrawRGB24::GetPixel(x, y);
        }
        int puts = 0;
        bool hidden = false;
    };
    unsigned char frame[30] = {};
    Counter draw;
    draw.SetCanvas(reinterpret_cast<char*>(frame), 1, 10, 0);
    draw.SetColorRGBA(1 / 255.0, 2 / 255.0, 3 / 255.0, 1, true);
    draw.LineHoriz(2, 0, 8);
    EXPECT_EQ(draw.puts, 1);
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(frame[i], i >= 6 && i < 27 ? i % 3 + 1 : 0) << i;
    draw.LineHoriz(4, 0, 4);
    EXPECT_EQ(draw.puts, 2);

    draw.SetTransparency(true);
    draw.LineHoriz(2, 0, 8);
    EXPECT_EQ(draw.puts, 3) << "the switch alone, without a transparency, changes nothing";
    draw.SetTransparency(0.5, true);
    draw.hidden = true;
    draw.LineHoriz(2, 0, 8);
    EXPECT_EQ(draw.puts, 10) << "pixel by pixel under transparency";
    draw.SetTransparency(false);
    draw.LineHoriz(2, 0, 8);
    EXPECT_EQ(draw.puts, 18) << "and where the first pixel has no address";
}

} // namespace
