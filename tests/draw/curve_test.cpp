// Circles, arcs and Bezier curves as text art.
#include "support/recorder.h"
#include "support/test_canvas.h"
#include "zrdraw/arc_ends.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

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
