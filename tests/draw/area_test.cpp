// Areas, gradients, the flood fill, circles, arcs and Bezier curves as text art.
#include "platform/injection.h"
#include "support/recorder.h"
#include "support/test_canvas.h"
#include "zrdraw/arc_ends.h"

#include <thread>
#include <tuple>

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

// Transparency and additive alpha are left out of it.
TEST(OpaqueFill, DrawsRunsAndTheWholeCanvasIn32BitLayouts) {
    for (unsigned int code = 1; code <= 4; ++code) {
        InjectionGuard guard;
        char memory[64] = {};
        ZRDraw* draw = nullptr;
        GetDraw(code, 4, 3, 0, memory, draw);
        std::vector<std::tuple<std::ptrdiff_t, unsigned int, unsigned long>> fills;
        injection().watchSetMemory = [&](void* dst, unsigned int value, unsigned long bytes) {
            fills.emplace_back(static_cast<char*>(dst) - memory, value, bytes);
        };
        draw->SetTransparency(true);
        draw->SetTransparency(0.5, true);
        draw->SetTransparency(0.5, false);
        draw->SetAlphaAdditive(true);
        draw->backColor = 0x01020304U;
        const RECT away{100, -50, 104, -47}; // of the canvas's size, wherever it stands
        EXPECT_EQ(draw->FillRect(&away) + draw->EraseCanvas(true) + draw->EraseCanvas(false), 0);
        draw->LineHoriz(3, 1, 2);
        EXPECT_EQ(fills, (decltype(fills){{0, 0xFFFFFFFFU, 48},
                                          {0, 0x01020304U, 48},
                                          {0, 0xFFFFFFFFU, 48},
                                          {24, 0xFFFFFFFFU, 8}}))
            << "an erase paints the slot that its argument names";
        ReleaseDraw(draw);
    }
    TestCanvas rgb24(5, 4, 3);
    const RECT away{100, -50, 104, -47};
    rgb24->FillRect(&away);
    EXPECT_EQ(rgb24.art(), "....\n....\n....\n") << "row by row in other layouts";
    rgb24->EraseCanvas(false);
    EXPECT_EQ(rgb24.art(), "####\n####\n####\n");
    EXPECT_TRUE(rgb24.guardsIntact());
}

TEST(EraseCanvas, TransparentPackedLayoutsGoPixelByPixel) {
    Recorder draw;
    draw.pixelType = ptRGB48; // packed, and its pixels are only recorded
    char memory[8 * 6 * 2] = {};
    draw.SetCanvas(memory, 2, 3, 0);
    draw.SetTransparency(true);
    draw.SetTransparency(0.5, false);
    draw.EraseCanvas(true);
    EXPECT_EQ(draw.pixels.size(), 6U);
    draw.EraseCanvas(false);
    EXPECT_EQ(draw.pixels.size(), 7U) << "the foreground is opaque: one pixel, then fills";
}

TEST(RoundRect, CornersWithoutAWidthOrAHeight) {
    TestCanvas square(1, 6, 5), plain(1, 6, 5);
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 0, 0), 0);
    plain->Rectangle(1, 1, 4, 3);
    EXPECT_EQ(square.art(), plain.art()) << "no corners";
    EXPECT_EQ(square->RoundRect(1, 1, 4, 3, 4, 0) + square->RoundRect(1, 1, 4, 3, 0, 3), -2);
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
    const char* const saturated = "00000\n00000\n00000\n00000\n00000\n"; // at once, backwards
    const std::pair<int, const char*> cases[] = {
        {0, "00123\n00123\n00123\n00123\n00123\n"},  // from left to right
        {90, "00000\n00000\n11111\n22222\n33333\n"}, // from top to bottom
        {45, "00011\n00112\n01122\n11223\n12233\n"}, {180, saturated}, {270, saturated},
    };
    for (const auto& [angle, expected] : cases) {
        TestCanvas canvas(1, 5, 5);
        canvas->SetColorRGBA(0, 0, 0, 1, true);
        canvas->SetColorRGBA(1, 1, 1, 1, false);
        EXPECT_EQ(canvas->GradientRect(0, 0, 5, 5, angle), 0);
        EXPECT_EQ(shades(canvas), expected) << angle;
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
        void note(char what, int x, int y) {
            log += what + std::to_string(x) + std::to_string(y) + " ";
        }
        int GetPixelRGBA(int x, int y, double& r, double& g, double& b, double& a) override {
            note('r', x, y);
            return CDrawRGBA32::GetPixelRGBA(x, y, r, g, b, a);
        }
        int PutPixel(int x, int y, bool selector) override {
            note('w', x, y);
            return CDrawRGBA32::PutPixel(x, y, selector);
        }
        std::string log;
    };
    unsigned int memory[6] = {0, 0, 0, 0, 7, 0}; // pixel (1, 1) differs
    Watcher draw;
    draw.SetCanvas(reinterpret_cast<char*>(memory), 2, 3, 0);
    const std::string visits = "r10 r10 w10 r20 w20 r00 w00 r11 r21 w21 r01 w01 ";
    draw.Fill(1, 0, 0.0);
    draw.Fill(1, 0, 0.0); // its own colour ends as well
    EXPECT_EQ(draw.log, visits + visits);
}

TEST(Circle, OutlinesAndAreas) {
    struct Case {
        decltype(&ZRDraw::Circle) draw;
        int x, y, radius, result;
        const char* art;
    };
    const auto outline = &ZRDraw::Circle, area = &ZRDraw::FillCircle;
    const char* const nothing = ".......\n.......\n.......\n.......\n.......\n.......\n.......\n";
    const char* const point = ".......\n.......\n.......\n...#...\n.......\n.......\n.......\n";
    const Case cases[] = {
        {outline, 3, 3, 0, 0, point},
        {outline, 3, 3, 1, 0, ".......\n.......\n..###..\n..#.#..\n..###..\n.......\n.......\n"},
        {outline, 3, 3, 3, 0, "..###..\n.#...#.\n#.....#\n#.....#\n#.....#\n.#...#.\n..###..\n"},
        {outline, 3, 3, -1, -1, nothing},
        {outline, 50, 3, 0, -1, nothing}, // what PutPixel answered
        {outline, 50, 3, 3, 0, nothing},
        {area, 3, 3, 3, 0, "...#...\n.#####.\n.#####.\n#######\n.#####.\n.#####.\n...#...\n"},
        // Rows over an edge are lost whole.
        {area, 2, 3, 3, 0, "..#....\n#####..\n#####..\n.......\n#####..\n#####..\n..#....\n"},
        {area, 0, 0, 5, 0, ".......\n.......\n.......\n.......\n.......\n#......\n.......\n"},
        {area, 3, 3, 0, 0, point},
        {area, 3, 3, -1, 0, nothing},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 7, 7);
        EXPECT_EQ((canvas.draw().*c.draw)(c.x, c.y, c.radius), c.result);
        EXPECT_EQ(canvas.art(), c.art) << c.x << "," << c.y << " radius " << c.radius;
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
}

TEST(Arc, ThePositionMovesToTheEnd) {
    Recorder draw;
    const auto position = [&] { return std::pair(draw.currentX, draw.currentY); };
    EXPECT_EQ(draw.AngleArcTo(4, 4, 4, 2, 0.0F, 90.0F), 0);
    EXPECT_EQ(position(), std::pair(4, 2));
    EXPECT_EQ(draw.Ellipse(4, 4, 3, 2), 0);
    EXPECT_EQ(position(), std::pair(7, 4)) << "that of 360 degrees";
    EXPECT_EQ(draw.ArcTo(0, 0, 16, 16, 8, 16, 0, 8), 0);
    EXPECT_EQ(position(), std::pair(0, 8));
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

TEST(Bezier, CurvesAndChains) {
    const _POINT points[] = {{0, 0}, {1, 0}, {2, 0}, {4, 0}, {4, 1}, {4, 2}, {4, 3}};
    TestCanvas canvas(1, 5, 4);
    EXPECT_EQ(canvas->PolyBezier(points, 7), 0);
    EXPECT_EQ(canvas.art(), "#####\n....#\n....#\n....#\n");
    EXPECT_EQ(canvas->PolyBezierTo(points, 7), 0);
    EXPECT_EQ(std::pair(canvas->currentX, canvas->currentY), std::pair(4, 3)) << "the last point";
    for (const unsigned int count : {0U, 3U, 5U, 6U})
        EXPECT_EQ(canvas->PolyBezier(points, count) + canvas->PolyBezierTo(points, count), -2);
    EXPECT_EQ(canvas->PolyBezier(nullptr, 4), -1);
    EXPECT_EQ(canvas->Bezier(3, 3, 9, 9, 0, 0, 3, 3), -1) << "ends that coincide";
    TestCanvas flat(1, 17, 11), line(1, 17, 11);
    EXPECT_EQ(flat->Bezier(0, 0, 5, 3, 10, 6, 16, 10), 0);
    line->Line(0, 0, 16, 10);
    EXPECT_EQ(flat.art(), line.art());
    EXPECT_EQ(flat->currentX + flat->currentY, 0) << "the start of the piece";
}

} // namespace
