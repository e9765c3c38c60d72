// Points, the current position, all kinds of lines, and runs along the axes, as text art.
#include "support/recorder.h"
#include "support/test_canvas.h"

#include <map>

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
        int x0, y0, x1, y1;
        const char* art;
    };
    const Case cases[] = {
        {0, 0, 6, 2, "##.....\n..###..\n.....##\n.......\n"},
        {6, 0, 0, 2, ".....##\n..###..\n##.....\n.......\n"},
        {1, 0, 3, 3, ".#.....\n..#....\n..#....\n...#...\n"},
        {3, 0, 1, 3, "...#...\n..#....\n..#....\n.#.....\n"},
        {4, 0, 1, 3, "....#..\n...#...\n..#....\n.#.....\n"},
        {5, 2, 5, 2, ".......\n.......\n.....#.\n.......\n"},
        {2, 3, 2, 1, ".......\n..#....\n..#....\n..#....\n"},
        {-3, 2, 2, 2, ".......\n.......\n###....\n.......\n"}, // one end off the canvas
        {4, 4, 7, 4, ".......\n.......\n.......\n....###\n"},  // onto the pulled-back edge
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 7, 4), swapped(1, 7, 4);
        EXPECT_EQ(canvas->Line(c.x0, c.y0, c.x1, c.y1), 0);
        EXPECT_EQ(canvas.art(), c.art) << c.x0 << "," << c.y0;
        EXPECT_EQ(swapped->Line(c.x1, c.y1, c.x0, c.y0), 0);
        EXPECT_EQ(swapped.art(), c.art) << c.x0 << "," << c.y0 << " swapped";
        EXPECT_TRUE(canvas.guardsIntact() && swapped.guardsIntact());
    }
}

TEST(Line, EveryPixelOnceFromTheUpperEnd) {
    EXPECT_EQ(pixelsOf(4, 3, 0, 0, false), (Pixels{{0, 0}, {1, 1}, {2, 2}, {3, 2}, {4, 3}}));
    EXPECT_EQ(pixelsOf(3, 1, 1, 1, false), (Pixels{{3, 1}, {2, 1}, {1, 1}}))
        << "a horizontal line keeps its direction";
    EXPECT_EQ(pixelsOf(2147483647, 0, 2147483646, 0, false).size(), 2U)
        << "ends at the limit of the coordinates";
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
    EXPECT_EQ(draw.Polyline(points, 1) + draw.Polyline(points, 0), -2);
    EXPECT_EQ(draw.Polyline(points, 0x80000000U), 0) << "negative as a signed number";
    EXPECT_TRUE(draw.pixels.empty());
    draw.Polyline(points, 3);
    EXPECT_EQ(draw.pixels.size(), 7U) << "the shared vertex twice";
}

TEST(WeightedLine, OnlyBetweenTheAxesAndTheDiagonals) {
    for (const auto& [x, y] : {std::pair{4, 0}, {0, 4}, {4, 4}, {-4, 4}})
        EXPECT_EQ(pixelsOf(0, 0, x, y, true).size(), 5U) << x << "," << y;
}

TEST(WeightedLine, PairsOfPixelsAndTheirColours) {
    EXPECT_EQ(pixelsOf(0, 0, 4, 2, true),
              (Pixels{{0, 0}, {4, 2}, {1, 0}, {1, 1}, {2, 1}, {2, 2}, {3, 1}, {3, 2}}));
    EXPECT_EQ(pixelsOf(2, 4, 4, 0, true),
              (Pixels{{4, 0}, {2, 4}, {4, 1}, {3, 1}, {3, 2}, {2, 2}, {3, 3}, {2, 3}}));
    // White is divided by 255 at once and once more in each mix, so mixes of it are
    // black, but the one of weight 0.
    unsigned int memory[25];
    std::fill(std::begin(memory), std::end(memory), 0xFFFFFFFFU);
    Recorder draw;
    draw.SetCanvas(reinterpret_cast<char*>(memory), 5, 5, 0);
    draw.antiAlias = true;
    draw.Line(0, 0, 4, 2);
    EXPECT_EQ(draw.colors,
              (std::vector{0x01010101U, 0x01010101U, 0U, 0U, 0U, 0x01010101U, 0U, 0U}));
    EXPECT_EQ(draw.foreColor, 0U) << "the colour is left changed";
}

TEST(Run, CoversBothEndsOrIsRefusedWhole) {
    struct Case {
        int from, at, to, result;
        std::string art; // along the x axis
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
            SCOPED_TRACE(testing::Message()
                         << code << ": " << c.from << "," << c.at << "," << c.to);
            TestCanvas across(code, 5, 2), down(code, 2, 5);
            std::string turned;
            for (std::size_t i = 0; i < 5; ++i)
                turned += {c.art[i], c.art[6 + i], '\n'};
            EXPECT_EQ(across->LineHoriz(c.from, c.at, c.to), c.result);
            EXPECT_EQ(across.art(), c.art);
            EXPECT_EQ(down->LineVert(c.at, c.from, c.to), c.result);
            EXPECT_EQ(down.art(), turned);
            EXPECT_TRUE(across.guardsIntact() && down.guardsIntact());
        }
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
        int putsOf(int x0, int x1) {
            puts = 0;
            LineHoriz(x0, 0, x1);
            return puts;
        }
        int puts = 0;
        bool hidden = false;
    };
    unsigned char frame[30] = {};
    Counter draw;
    draw.SetCanvas(reinterpret_cast<char*>(frame), 1, 10, 0);
    draw.SetColorRGBA(1 / 255.0, 2 / 255.0, 3 / 255.0, 1, true);
    EXPECT_EQ(draw.putsOf(2, 8), 1);
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(frame[i], i >= 6 && i < 27 ? i % 3 + 1 : 0) << i;
    EXPECT_EQ(draw.putsOf(4, 4), 1);
    draw.SetTransparency(true);
    EXPECT_EQ(draw.putsOf(2, 8), 1) << "the switch alone, without a transparency, changes nothing";
    draw.SetTransparency(0.5, true);
    draw.hidden = true;
    EXPECT_EQ(draw.putsOf(2, 8), 7) << "pixel by pixel under transparency";
    draw.SetTransparency(false);
    EXPECT_EQ(draw.putsOf(2, 8), 8) << "and where the first pixel has no address";
}

TEST(Dash, Patterns) {
    struct Case {
        int x0, x1, on, off;
        const char* art;
        const char* why;
    };
    const Case cases[] = {
        {0, 9, 2, 3, "##...##...\n", "in turn"},
        {9, 0, 2, 3, "...##...##\n", "starts at the first point"},
        {0, 9, 2, 0, "##########\n", "no gaps"},
        {0, 9, 0, 3, "..........\n", "no dashes"},
        {0, 9, -1, 3, "..........\n", "no dashes"},
        {0, 9, 3, -1, "###.......\n", "one dash and nothing after it"},
        {4, 4, 1, 1, "....#.....\n", "one point"},
        {-2, 12, 3, 2, "#..###..##\n", "off the canvas at both ends, the last pulled back"},
    };
    for (const Case& c : cases) {
        TestCanvas canvas(1, 10, 1);
        EXPECT_EQ(canvas->Dash(c.x0, 0, c.x1, 0, c.on, c.off), 0);
        EXPECT_EQ(canvas.art(), c.art) << c.why;
        EXPECT_EQ(canvas->currentX, 0);
    }
}

TEST(Dash, SlopesFollowTheLine) {
    for (const auto& [x0, y0, x1, y1] :
         {std::tuple{0, 0, 7, 3}, {7, 0, 0, 3}, {1, 0, 3, 6}, {3, 0, 1, 6}, {0, 0, 6, 6}}) {
        TestCanvas dashed(1, 8, 7), line(1, 8, 7);
        dashed->Dash(x0, y0, x1, y1, 1, 0);
        line->Line(x0, y0, x1, y1);
        EXPECT_EQ(dashed.art(), line.art()) << x1 << "," << y1;
    }
}

// The alpha of every pixel that is not empty.
using Coverage = std::map<std::pair<int, int>, int>;

Coverage coverage(TestCanvas& canvas) {
    Coverage result;
    for (int y = 0; y < static_cast<int>(canvas->height); ++y)
        for (int x = 0; x < static_cast<int>(canvas->width); ++x)
            if (const std::vector<unsigned char> bytes = canvas.bytesAt(4 * x, y, 4);
                bytes[0] + bytes[1] + bytes[2] + bytes[3] != 0)
                result[{x, y}] = bytes[3];
    return result;
}

TEST(LineWu, CoverageOfALine) {
    // A gradient of 1/2: whole pixels and halves in turn; ends are half covered.
    const Coverage gentle{{{0, 0}, 127}, {{0, 1}, 0},   {{1, 0}, 127}, {{1, 1}, 127}, {{2, 1}, 255},
                          {{2, 2}, 0},   {{3, 1}, 127}, {{3, 2}, 127}, {{4, 2}, 127}, {{4, 3}, 0}};
    for (const bool swapped : {false, true}) {
        for (const bool tall : {false, true}) {
            TestCanvas canvas(1, 6, 6);
            const int x1 = tall ? 2 : 4, y1 = tall ? 4 : 2;
            EXPECT_EQ(swapped ? canvas->LineWu(x1, y1, 0, 0) : canvas->LineWu(0, 0, x1, y1), 0);
            Coverage expected;
            for (const auto& [at, alpha] : gentle)
                expected[tall ? std::pair{at.second, at.first} : at] = alpha;
            EXPECT_EQ(coverage(canvas), expected) << (tall ? "tall" : "wide");
            EXPECT_EQ(canvas->foreColor, 0x7FFFFFFFU) << "the last pixel's coverage stays";
        }
    }
}

TEST(LineWu, RisingLinesAndSinglePoints) {
    const Coverage halves{{{0, 2}, 127}, {{0, 3}, 0},   {{1, 1}, 127},
                          {{1, 2}, 127}, {{2, 1}, 127}, {{2, 2}, 0}};
    TestCanvas rising(1, 4, 4), point(1, 4, 4);
    rising->LineWu(0, 2, 2, 1);
    EXPECT_EQ(coverage(rising), halves);
    point->LineWu(1, 1, 1, 1);
    EXPECT_EQ(coverage(point), (Coverage{{{1, 1}, 127}, {{1, 2}, 0}}));
    EXPECT_EQ(point->foreColor, 0x00FFFFFFU);
}

TEST(LineWu, TheColourKeepsItsStrengthAndThePositionMovesWithLineWuTo) {
    TestCanvas canvas(3, 4, 2);
    canvas->SetColorRGBA(1, 0, 0, 0.1, true);
    canvas->MoveTo(0, 0);
    EXPECT_EQ(canvas->LineWuTo(3, 0), 0);
    EXPECT_EQ(canvas->currentX, 3);
    EXPECT_EQ(canvas.bytesAt(4, 0, 4), (std::vector<unsigned char>{0, 0, 255, 255}));
    EXPECT_TRUE(canvas.guardsIntact());
}

} // namespace
