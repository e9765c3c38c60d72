// Filled and outlined areas, erases, gradients and the flood fill.
#include "platform/injection.h"
#include "support/recorder.h"
#include "support/test_canvas.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

namespace {

TEST(FillRect, TheRightColumnBelongsToItAndTheBottomRowDoesNot) {
    struct Case {
        RECT rect;
        const char* art;
        const char* why;
    };
    const Case cases[] = {
        {{1, 1, 3, 3}, ".....\n.###.\n.###.\n.....\n", ""},
        {{2, 1, 2, 3}, ".....\n..#..\n..#..\n.....\n", "no width is one column"},
        {{1, 2, 3, 2}, ".....\n.....\n.....\n.....\n", "no height is nothing"},
        {{-1, 0, 3, 2}, ".....\n.....\n.....\n.....\n", "over the left edge: no row at all"},
        {{0, 0, 6, 2}, ".....\n.....\n.....\n.....\n", "over the right edge: no row at all"},
        {{1, -2, 2, 1}, ".##..\n.....\n.....\n.....\n", "over the top: only the outside rows"},
        {{3, 3, 5, 9}, ".....\n.....\n.....\n...##\n", "over the bottom: only the outside rows"},
    };
    for (const unsigned int code : {3U, 6U}) {
        for (const Case& c : cases) {
            TestCanvas canvas(code, 5, 4);
            EXPECT_EQ(canvas->FillRect(&c.rect), 0);
            EXPECT_EQ(canvas.art(), c.art) << code << ": " << c.why;
            EXPECT_TRUE(canvas.guardsIntact());
        }
    }
}

TEST(WholeCanvas, IsOneOpaqueFillIn32BitLayouts) {
    InjectionGuard guard;
    char memory[64] = {};
    ZRDraw* draw = nullptr;
    GetDraw(3, 4, 3, 0, memory, draw);
    std::vector<unsigned int> fills;
    injection().watchSetMemory = [&](void* dst, unsigned int value, unsigned long bytes) {
        fills.push_back(value);
        EXPECT_EQ(dst, memory);
        EXPECT_EQ(bytes, 48U);
    };
    draw->SetTransparency(true);
    draw->SetTransparency(0.5, true);
    draw->SetTransparency(0.5, false);
    draw->backColor = 0x01020304U;
    const RECT away{100, -50, 104, -47}; // of the canvas's size, wherever it stands
    EXPECT_EQ(draw->FillRect(&away), 0);
    EXPECT_EQ(draw->EraseCanvas(true), 0);
    EXPECT_EQ(draw->EraseCanvas(false), 0);
    EXPECT_EQ(fills, (std::vector{0xFFFFFFFFU, 0x01020304U, 0xFFFFFFFFU}))
        << "an erase paints the slot that its argument names";
    ReleaseDraw(draw);
    TestCanvas rgb24(5, 4, 3);
    rgb24->FillRect(&away);
    EXPECT_EQ(rgb24.art(), "....\n....\n....\n") << "row by row in other layouts";
}

TEST(EraseCanvas, PackedLayoutsFillEachRowAndKeepThePadding) {
    TestCanvas canvas(5, 4, 3);
    canvas->SetColorRGBA(1 / 255.0, 2 / 255.0, 3 / 255.0, 1, true);
    canvas->EraseCanvas(false);
    const std::vector<unsigned char> row{1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3};
    for (int y = 0; y < 3; ++y)
        EXPECT_EQ(canvas.bytesAt(0, y, 12), row);
    EXPECT_TRUE(canvas.guardsIntact());
}

TEST(EraseCanvas, TransparentPackedLayoutsGoPixelByPixel) {
    Recorder draw;
    draw.pixelType = ptRGB48; // packed, and its pixels are only recorded
    char memory[8 * 6 * 2] = {};
    draw.SetCanvas(memory, 2, 3, 0);
    draw.SetTransparency(true);
    draw.SetTransparency(0.5, false);
    draw.EraseCanvas(true);
    EXPECT_EQ(draw.pixels,
              (std::vector<std::pair<int, int>>{{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}}));
    draw.pixels.clear();
    draw.EraseCanvas(false);
    EXPECT_EQ(draw.pixels.size(), 1U) << "the foreground is opaque: one pixel, then fills";
}

TEST(Rectangle, FourLinesThatShareTheirCorners) {
    TestCanvas canvas(1, 6, 5);
    EXPECT_EQ(canvas->Rectangle(1, 1, 4, 3), 0);
    EXPECT_EQ(canvas.art(), "......\n.####.\n.#..#.\n.####.\n......\n");
    EXPECT_EQ(canvas->currentX, 0);
    Recorder draw;
    draw.Rectangle(0, 0, 2, 2);
    EXPECT_EQ(draw.pixels.size(), 12U) << "four corners twice";
}

TEST(RoundRect, CornersWithoutAWidthOrAHeight) {
    TestCanvas square(1, 6, 5), plain(1, 6, 5);
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 0, 0), 0);
    plain->Rectangle(1, 1, 4, 3);
    EXPECT_EQ(square.art(), plain.art()) << "no corners";
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 4, 0), -1);
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 0, 3), -1);
    EXPECT_EQ(square.art(), plain.art()) << "refused, nothing drawn";
}

// The red byte of each pixel as a digit, a quarter of the range each, a row a line.
std::string shades(TestCanvas& canvas) {
    std::string rows;
    for (int y = 0; y < static_cast<int>(canvas->height); ++y) {
        for (int x = 0; x < static_cast<int>(canvas->width); ++x)
            rows += static_cast<char>('0' + canvas.bytesAt(4 * x, y, 1)[0] / 64);
        rows += '\n';
    }
    return rows;
}

TEST(GradientRect, Angles) {
    struct Case {
        int angle;
        const char* shades;
        const char* why;
    };
    const Case cases[] = {
        {0, "00123\n00123\n00123\n00123\n00123\n", "from left to right"},
        {90, "00000\n00000\n11111\n22222\n33333\n", "from top to bottom"},
        {45, "00011\n00112\n01122\n11223\n12233\n", "along the diagonal"},
        {180, "00000\n00000\n00000\n00000\n00000\n", "backwards saturates at once"},
        {270, "00000\n00000\n00000\n00000\n00000\n", "backwards saturates at once"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 5, 5);
        canvas->SetColorRGBA(0, 0, 0, 1, true);
        canvas->SetColorRGBA(1, 1, 1, 1, false);
        EXPECT_EQ(canvas->GradientRect(0, 0, 5, 5, c.angle), 0);
        EXPECT_EQ(shades(canvas), c.shades) << c.angle << ": " << c.why;
        EXPECT_TRUE(canvas.guardsIntact());
    }
}

TEST(GradientRect, LimitsItsCornersAndLeavesTheColour) {
    TestCanvas canvas(1, 4, 2);
    canvas->SetColorRGBA(0, 0, 0, 1, true);
    canvas->SetColorRGBA(1, 0, 0, 1, false);
    EXPECT_EQ(canvas->GradientRect(2, 1, -9, -9, 0), 0) << "corners in any order";
    EXPECT_EQ(shades(canvas), "0130\n0130\n") << "negative ones count as 0";
    EXPECT_EQ(canvas->foreColor, 0xFF0000FFU) << "the last pixel's colour";
    canvas->SetCanvas(canvas.frame(), 0, 4, 0);
    EXPECT_EQ(canvas->GradientRect(0, 0, 3, 1, 0), -1);
}

// Sets the grey of each pixel from a picture of digits, ten steps from black to white.
void paint(TestCanvas& canvas, const std::string& digits) {
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const auto width = static_cast<std::size_t>(canvas->width);
        char* pixel = canvas->GetPixel(static_cast<int>(i % width), static_cast<int>(i / width));
        std::memset(pixel, (digits[i] - '0') * 20, 4);
    }
}

TEST(Fill, ReachesNeighboursWithinTheTolerance) {
    struct Case {
        int x, y;
        double steps; // of the picture's digits
        int result;
        const char* art;
        const char* why;
    };
    const std::string picture = "11211"
                                "19291"
                                "12345"
                                "91111";
    const Case cases[] = {
        {0, 0, 0.0, 0, "##+++\n#++++\n#++++\n+++++\n", "exact, and not across corners"},
        {0, 0, 1.0, 0, "#####\n#+#+#\n##+++\n+####\n", "compared with the seed, not the neighbour"},
        {0, 0, -3.0, 0, "##+++\n#++++\n#++++\n+++++\n", "a negative tolerance is none"},
        {0, 0, 9.0, 0, "#####\n#####\n#####\n#####\n", "everything"},
        {5, 4, 0.0, 0, "+++++\n+++++\n+++++\n+####\n", "pulled back onto the last pixel"},
        {6, 0, 0.0, -1, "+++++\n+++++\n+++++\n+++++\n", "off the canvas"},
        {-1, 0, 0.0, -1, "+++++\n+++++\n+++++\n+++++\n", "off the canvas"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 5, 4);
        paint(canvas, picture);
        EXPECT_EQ(canvas->Fill(c.x, c.y, c.steps * 20 / 255.0 + (c.steps > 0 ? 1e-9 : 0)),
                  c.result);
        EXPECT_EQ(canvas.art(), c.art) << c.why;
        EXPECT_TRUE(canvas.guardsIntact());
    }
}

TEST(Fill, AlphaIsNotCompared) {
    TestCanvas canvas(1, 3, 1);
    canvas.frame()[7] = 50;
    canvas->Fill(0, 0, 0.0);
    EXPECT_EQ(canvas.art(), "###\n");
}

TEST(Fill, VisitsInTheOrderOfAQueueAndReadsEachPixelOnce) {
    struct Watcher : CDrawRGBA32 {
        Watcher() : ZRDraw(1), CDrawRGBA32(1) {}
        int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
            log += "r" + std::to_string(x) + std::to_string(y) + " ";
            return CDrawRGBA32::GetPixelRGBA(x, y, r, g, b, a);
        }
        int PutPixel(int x, int y, bool selector) override {
            log += "w" + std::to_string(x) + std::to_string(y) + " ";
            return CDrawRGBA32::PutPixel(x, y, selector);
        }
        std::string log;
    };
    unsigned int memory[6] = {0, 0, 0, 0, 7, 0}; // pixel (1, 1) differs
    Watcher draw;
    draw.SetCanvas(reinterpret_cast<char*>(memory), 2, 3, 0);
    for (const char* const why : {"another colour", "its own colour ends as well"}) {
        draw.log.clear();
        draw.Fill(1, 0, 0.0);
        EXPECT_EQ(draw.log, "r10 r10 w10 r20 w20 r00 w00 r11 r21 w21 r01 w01 ") << why;
    }
}

} // namespace
