// Dashed lines as rows of text.
#include "support/test_canvas.h"

#include <gtest/gtest.h>

namespace {

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
    TestCanvas canvas(1, 5, 5);
    canvas->Dash(2, 4, 2, 0, 1, 1);
    EXPECT_EQ(canvas.art(), "..#..\n.....\n..#..\n.....\n..#..\n");
}

} // namespace
