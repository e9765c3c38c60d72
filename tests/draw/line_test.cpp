// Points, the current position, straight lines and polylines, compared as text art.
#include "support/recorder.h"
#include "support/test_canvas.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Pixels = std::vector<std::pair<int, int>>;

Pixels pixelsOf(int x0, int y0, int x1, int y1, bool antiAlias) {
    Recorder draw;
    draw.antiAlias = antiAlias;
    draw.Line(x0, y0, x1, y1);
    return draw.pixels;
}

TEST(Line, Shapes) {
    struct Case {
        const char* name;
        int x0, y0, x1, y1;
        const char* art;
    };
    const Case cases[] = {
        {"gentle", 0, 0, 10, 4,
         "##.........\n..##.......\n....###....\n.......##..\n.........##\n"},
        {"gentle leftwards", 10, 0, 0, 4,
         ".........##\n.......##..\n....###....\n..##.......\n##.........\n"},
        {"steep", 1, 0, 3, 4, ".#.........\n..#........\n..#........\n...#.......\n...#.......\n"},
        {"steep leftwards", 3, 0, 1, 4,
         "...#.......\n...#.......\n..#........\n..#........\n.#.........\n"},
        {"diagonal", 4, 0, 0, 4,
         "....#......\n...#.......\n..#........\n.#.........\n#..........\n"},
        {"one point", 5, 2, 5, 2,
         "...........\n...........\n.....#.....\n...........\n...........\n"},
        {"vertical", 2, 4, 2, 1,
         "...........\n..#........\n..#........\n..#........\n..#........\n"},
        {"one end off the canvas", -3, 2, 2, 2,
         "...........\n...........\n###........\n...........\n...........\n"},
        {"onto the pulled-back edge", 8, 5, 11, 5,
         "...........\n...........\n...........\n...........\n........###\n"},
    };
    for (const Case& c : cases) {
        for (const bool swapped : {false, true}) {
            TestCanvas canvas(1, 11, 5);
            EXPECT_EQ(swapped ? canvas->Line(c.x1, c.y1, c.x0, c.y0)
                              : canvas->Line(c.x0, c.y0, c.x1, c.y1),
                      0);
            EXPECT_EQ(canvas.art(), c.art) << c.name << (swapped ? " swapped" : "");
            EXPECT_TRUE(canvas.guardsIntact());
        }
    }
}

TEST(Line, EveryPixelOnceFromTheUpperEnd) {
    EXPECT_EQ(pixelsOf(4, 3, 0, 0, false), (Pixels{{0, 0}, {1, 1}, {2, 2}, {3, 2}, {4, 3}}));
    EXPECT_EQ(pixelsOf(3, 1, 1, 1, false), (Pixels{{3, 1}, {2, 1}, {1, 1}}))
        << "a horizontal line keeps its direction";
    EXPECT_EQ(pixelsOf(2147483647, 0, 2147483646, 0, false).size(), 2U)
        << "ends at the limit of the coordinates";
}

TEST(Line, ExtremeSlopesDoNotTrap) {
    // The vertical distance wraps to -32768, and its quotient by -1 overflows 32 bits.
    EXPECT_FALSE(pixelsOf(0, -2147483647, 1, -2147483647, false).empty());
    EXPECT_FALSE(pixelsOf(1, -2147450880 - 32768, 0, 2147450880, false).empty());
}

TEST(Line, ThePositionMovesWithThePointOperations) {
    TestCanvas canvas(1, 6, 3);
    EXPECT_EQ(canvas->LineTo(2, 0), 0);
    EXPECT_EQ(canvas->Point(9, 9, true), -1) << "refused, but the position moves";
    EXPECT_EQ(canvas->currentX, 9);
    _POINT previous{};
    EXPECT_EQ(canvas->MoveTo(5, 1, &previous), 0);
    EXPECT_EQ(previous.x, 9);
    EXPECT_EQ(canvas->MoveTo(5, 2, nullptr), 0);
    canvas->LineTo(5, 2);
    _POINT from{1, 1}, to{2, 1};
    canvas->Line(from, to);
    EXPECT_EQ(canvas->currentX, 5) << "lines between given points leave it";
    EXPECT_EQ(canvas->Point(4, 1, false), 0);
    EXPECT_EQ(canvas.art(), "###...\n.##...\n.....#\n");
}

TEST(Polyline, JoinsItsPoints) {
    const _POINT points[] = {{0, 0}, {3, 0}, {3, 2}, {7, 7}};
    TestCanvas canvas(1, 5, 3);
    EXPECT_EQ(canvas->Polyline(points, 3), 0);
    EXPECT_EQ(canvas.art(), "####.\n...#.\n...#.\n");
    EXPECT_EQ(canvas->currentX + canvas->currentY, 0);
    EXPECT_EQ(canvas->PolylineTo(points, 3), 0);
    EXPECT_EQ(canvas->currentX, 7) << "one element past the last vertex";
    EXPECT_EQ(canvas->PolylineTo(points, 1), -1);
    EXPECT_EQ(canvas->currentX, 7);

    Recorder draw;
    EXPECT_EQ(draw.Polyline(points, 1), -1);
    EXPECT_EQ(draw.Polyline(points, 0), -1);
    EXPECT_EQ(draw.Polyline(points, 0x80000000U), 0) << "negative as a signed number";
    EXPECT_TRUE(draw.pixels.empty());
    draw.Polyline(points, 3);
    EXPECT_EQ(draw.pixels.size(), 7U) << "the shared vertex twice";
}

TEST(WeightedLine, OnlyBetweenTheAxesAndTheDiagonals) {
    for (const _POINT end : {_POINT{4, 0}, _POINT{0, 4}, _POINT{4, 4}, _POINT{-4, 4}}) {
        Recorder draw;
        draw.antiAlias = true;
        draw.Line(0, 0, end.x, end.y);
        EXPECT_EQ(draw.pixels.size(), 5U);
        EXPECT_EQ(draw.foreColor, 0xFFFFFFFFU);
    }
}

TEST(WeightedLine, PairsOfPixelsAndTheirColours) {
    EXPECT_EQ(pixelsOf(0, 0, 4, 2, true),
              (Pixels{{0, 0}, {4, 2}, {1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 1}, {3, 2}}));
    EXPECT_EQ(pixelsOf(2, 4, 4, 0, true),
              (Pixels{{4, 0}, {2, 4}, {4, 1}, {3, 1}, {3, 2}, {2, 2}, {3, 3}, {2, 3}}));
    // White is divided by 255 at once and once more in each mix, so mixes of it are black.
    unsigned int memory[25] = {};
    for (unsigned int& word : memory)
        word = 0xFFFFFFFFU;
    Recorder draw;
    draw.SetCanvas(reinterpret_cast<char*>(memory), 5, 5, 0);
    draw.antiAlias = true;
    draw.Line(0, 0, 4, 2);
    ASSERT_EQ(draw.colors.size(), 8U);
    EXPECT_EQ(draw.colors[0], 0x01010101U) << "the ends in the colour / 255";
    EXPECT_EQ(draw.colors[2], 0U) << "weight 128/255: (0.5 + 0.002) / 255 is below one step";
    EXPECT_EQ(draw.foreColor, 0U) << "the colour is left changed";
}

} // namespace
