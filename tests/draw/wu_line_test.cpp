// Anti-aliased lines: the coverage travels in the alpha of the foreground colour.
#include "support/test_canvas.h"

#include <gtest/gtest.h>

#include <map>
#include <utility>

namespace {

// The alpha of every pixel that is not empty.
std::map<std::pair<int, int>, int> coverage(TestCanvas& canvas) {
    std::map<std::pair<int, int>, int> result;
    for (int y = 0; y < static_cast<int>(canvas->height); ++y)
        for (int x = 0; x < static_cast<int>(canvas->width); ++x)
            if (const std::vector<unsigned char> bytes = canvas.bytesAt(4 * x, y, 4);
                bytes[0] + bytes[1] + bytes[2] + bytes[3] != 0)
                result[{x, y}] = bytes[3];
    return result;
}

using Coverage = std::map<std::pair<int, int>, int>;

TEST(LineWu, CoverageOfALine) {
    // A gradient of 1/2: whole pixels and halves in turn; ends are half covered.
    const Coverage gentle{{{0, 0}, 127}, {{0, 1}, 0},   {{1, 0}, 127}, {{1, 1}, 127}, {{2, 1}, 255},
                          {{2, 2}, 0},   {{3, 1}, 127}, {{3, 2}, 127}, {{4, 2}, 127}, {{4, 3}, 0}};
    for (const bool swapped : {false, true}) {
        for (const bool tall : {false, true}) {
            TestCanvas canvas(1, 6, 6);
            canvas->SetColorRGBA(1, 1, 1, 1, true);
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
    TestCanvas rising(1, 4, 4);
    rising->LineWu(0, 2, 2, 1);
    EXPECT_EQ(
        coverage(rising),
        (Coverage{
            {{0, 2}, 127}, {{0, 3}, 0}, {{1, 1}, 127}, {{1, 2}, 127}, {{2, 1}, 127}, {{2, 2}, 0}}));
    TestCanvas point(1, 4, 4);
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
