// Areas, gradients, the flood fill, circles, arcs and Bezier curves as text art.
#include "platform/injection.h"
#include "support/recorder.h"
#include "support/test_canvas.h"
#include "zrdraw/arc_ends.h"
#include "zrdraw/formats.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

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

TEST(RoundRect, CornersWithoutAWidthOrAHeight) {
    TestCanvas square(1, 6, 5), plain(1, 6, 5);
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 0, 0), 0);
    plain->Rectangle(1, 1, 4, 3);
    EXPECT_EQ(square.art(), plain.art()) << "no corners";
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 4, 0), -1);
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 0, 3), -1);
    EXPECT_EQ(square.art(), plain.art()) << "refused, nothing drawn";
    Recorder draw;
    draw.Rectangle(0, 0, 2, 2);
    EXPECT_EQ(draw.pixels.size(), 12U) << "four corners twice";
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
    TestCanvas canvas(1, 3, 1);
    canvas.frame()[7] = 50;
    canvas->Fill(0, 0, 0.0);
    EXPECT_EQ(canvas.art(), "###\n") << "alpha is not compared";
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

TEST(Circle, SmallRadii) {
    const char* const arts[] = {
        ".......\n.......\n.......\n...#...\n.......\n.......\n.......\n",
        ".......\n.......\n..###..\n..#.#..\n..###..\n.......\n.......\n",
        ".......\n..###..\n.#...#.\n.#...#.\n.#...#.\n..###..\n.......\n",
        "..###..\n.#...#.\n#.....#\n#.....#\n#.....#\n.#...#.\n..###..\n",
    };
    for (int radius = 0; radius <= 3; ++radius) {
        TestCanvas canvas(1, 7, 7);
        EXPECT_EQ(canvas->Circle(3, 3, radius), 0);
        EXPECT_EQ(canvas.art(), arts[radius]) << "radius " << radius;
    }
    TestCanvas canvas(1, 7, 7);
    EXPECT_EQ(canvas->Circle(3, 3, -1), -1);
    EXPECT_EQ(canvas->Circle(50, 3, 0), -1) << "what PutPixel answered";
    EXPECT_EQ(canvas->Circle(50, 3, 3), 0);
    EXPECT_EQ(canvas.art().find('#'), std::string::npos);
}

TEST(FillCircle, RowsOverAnEdgeAreLostWhole) {
    struct Case {
        int cx, cy, radius;
        const char* art;
    };
    const Case cases[] = {
        {3, 3, 3, "...#...\n.#####.\n.#####.\n#######\n.#####.\n.#####.\n...#...\n"},
        {2, 3, 3, "..#....\n#####..\n#####..\n.......\n#####..\n#####..\n..#....\n"},
        {0, 0, 5, ".......\n.......\n.......\n.......\n.......\n#......\n.......\n"},
        {3, 3, 0, ".......\n.......\n.......\n...#...\n.......\n.......\n.......\n"},
        {3, 3, -1, ".......\n.......\n.......\n.......\n.......\n.......\n.......\n"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 7, 7);
        EXPECT_EQ(canvas->FillCircle(c.cx, c.cy, c.radius), 0);
        EXPECT_EQ(canvas.art(), c.art) << c.cx << "," << c.cy << " radius " << c.radius;
    }
}

TEST(AngleArc, RunsCounterClockwiseInWholeDegrees) {
    for (const auto& [start, end] : {std::pair{0.0F, 90.9F}, {360, 450}, {720, 90}, {0.99F, 90}}) {
        TestCanvas canvas(1, 9, 5);
        EXPECT_EQ(canvas->AngleArc(4, 4, 4, start, end), 0);
        EXPECT_EQ(canvas.art(), "....###..\n......##.\n.......#.\n.......#.\n........#\n")
            << start << " to " << end;
        EXPECT_EQ(canvas->currentX, 0);
    }
    Recorder draw;
    EXPECT_EQ(draw.AngleArcTo(4, 4, 4, 2, 0.0F, 90.0F), 0);
    EXPECT_EQ(std::pair(draw.currentX, draw.currentY), std::pair(4, 2));
    EXPECT_EQ(draw.Ellipse(4, 4, 3, 2), 0);
    EXPECT_EQ(std::pair(draw.currentX, draw.currentY), std::pair(7, 4)) << "that of 360 degrees";
}

TEST(Arc, AnglesOfItsPoints) {
    // A box around the centre (100, 100); where an arc starts tells the angle of its start point.
    struct Case {
        int x, y;
        int startX, startY;
        const char* why;
    };
    const Case cases[] = {
        {300, 100, 200, 100, "right is 0 degrees"},
        {0, 100, 0, 99, "left is 180, with pi taken as 3.14"},
        {100, 300, 100, 0, "straight below counts as 90, which is drawn at the top"},
        {100, -300, 99, 199, "straight above counts as 270, drawn at the bottom"},
        {200, 0, 170, 29, "above to the right: 45 degrees, as 405"},
        {200, 200, 170, 170, "below to the right: -45 degrees"},
        {0, 0, 29, 28, "above to the left: 135 degrees"},
    };
    for (const Case& c : cases) {
        Recorder draw;
        ASSERT_EQ(draw.Arc(0, 0, 200, 200, c.x, c.y, 300, 100), 0);
        EXPECT_NEAR(xStartArc, c.startX, 2) << c.why;
        EXPECT_NEAR(yStartArc, c.startY, 2) << c.why;
        EXPECT_NEAR(xEndArc, 200, 1);
    }
    Recorder draw;
    EXPECT_EQ(draw.Arc(0, 0, 200, 200, 100, 100, 0, 0), -1) << "the centre has no angle";
    EXPECT_EQ(draw.Arc(0, 0, 200, 200, 0, 0, 100, 100), -1);
    EXPECT_EQ(draw.Arc(0, 10, 10, 10, 0, 0, 5, 5), -1) << "no height";
    EXPECT_EQ(draw.Arc(10, 0, 10, 10, 0, 0, 5, 5), -1) << "no width";
    EXPECT_TRUE(draw.pixels.empty());
}

TEST(Arc, ArcToAndPieExchangeTheStartPoint) {
    TestCanvas arc(1, 17, 17), arcTo(1, 17, 17), pie(1, 17, 17);
    arc->Arc(0, 0, 16, 16, 16, 8, 0, 8);
    EXPECT_EQ(arcTo->ArcTo(0, 0, 16, 16, 8, 16, 0, 8), 0);
    EXPECT_EQ(arcTo.art(), arc.art());
    EXPECT_EQ(arcTo->currentX, 0);
    EXPECT_EQ(arcTo->currentY, 8);
    EXPECT_EQ(pie->Pie(0, 0, 16, 16, 8, 16, 0, 8), 0);
    arc->Line(8, 8, 16, 8);
    arc->Line(8, 8, 0, 7);
    EXPECT_EQ(pie.art(), arc.art());
}

TEST(Arc, APieHasItsOwnRadiiWhateverOtherThreadsDraw) {
    struct Interrupted : Recorder {
        Interrupted() : ZRDraw(ptRGBA32) {}
        int Line(int x0, int y0, int x1, int y1) override {
            if (!std::exchange(interrupted, x1 == 8 && y1 == 8)) // before the first radius
                std::thread([] {
                    TestCanvas(1, 40, 40)->Pie(20, 20, 36, 36, 30, 21, 22, 35);
                }).join();
            return Recorder::Line(x0, y0, x1, y1);
        }
        bool interrupted = false;
    };
    Recorder alone;
    Interrupted other;
    alone.Pie(0, 0, 16, 16, 8, 16, 0, 8);
    other.Pie(0, 0, 16, 16, 8, 16, 0, 8);
    EXPECT_EQ(other.pixels, alone.pixels);
}

TEST(Arc, APieAfterARefusedArcHasTheRadiiOfTheOneBefore) {
    Recorder draw;
    draw.Arc(0, 0, 20, 20, 20, 10, 20, 10);
    draw.pixels.clear();
    EXPECT_EQ(draw.Pie(0, 0, 0, 0, 1, 1, 2, 2), 0);
    EXPECT_EQ(draw.pixels.front(), (std::pair{0, 0}));
    EXPECT_EQ(draw.pixels.back(), (std::pair{20, 10}));
}

TEST(Bezier, FlatCurvesAreOneLine) {
    TestCanvas flat(1, 17, 11), line(1, 17, 11);
    EXPECT_EQ(flat->Bezier(0, 0, 5, 3, 10, 6, 16, 10), 0);
    line->Line(0, 0, 16, 10);
    EXPECT_EQ(flat.art(), line.art());
    EXPECT_EQ(flat->currentX + flat->currentY, 0) << "the position is the start of the piece";
    EXPECT_EQ(flat->Bezier(3, 3, 9, 9, 0, 0, 3, 3), -1) << "ends that coincide";
}

TEST(Bezier, Chains) {
    const _POINT points[] = {{0, 0}, {1, 0}, {2, 0}, {4, 0}, {4, 1}, {4, 2}, {4, 3}};
    TestCanvas canvas(1, 5, 4);
    EXPECT_EQ(canvas->PolyBezier(points, 7), 0);
    EXPECT_EQ(canvas.art(), "#####\n....#\n....#\n....#\n");
    EXPECT_EQ(canvas->PolyBezierTo(points, 7), 0);
    EXPECT_EQ(canvas->currentX, 4);
    EXPECT_EQ(canvas->currentY, 3) << "the last point";
    for (const unsigned int count : {0U, 3U, 5U, 6U}) {
        EXPECT_EQ(canvas->PolyBezier(points, count), -1) << count;
        EXPECT_EQ(canvas->PolyBezierTo(points, count), -1) << count;
    }
    EXPECT_EQ(canvas->PolyBezier(nullptr, 4), -1);
}

} // namespace
