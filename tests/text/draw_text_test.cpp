// Text laid out in rectangles.
#include "support/recorder.h"
#include "support/test_canvas.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(DrawText, PlacementAndReport) {
    using Placed = std::array<int, 4>; // left, top, right, bottom
    struct Case {
        Placed before;
        const char* text;
        int count;
        unsigned int format;
        Placed after;
        const char* why;
    };
    const Case cases[] = {
        {{5, 0, 100, 0}, "ab", 2, 0, {5, 0, 100, 10}, "no height: scale 1"},
        {{5, 10, 100, 29}, "ab", 2, 0, {5, 10, 100, 20}, "19 lines: scale 1"},
        {{5, 10, 100, 30}, "ab", 2, 0, {5, 10, 100, 30}, "20 lines: scale 2"},
        {{5, 30, 100, 10}, "ab", 2, 0, {5, 30, 100, 50}, "upside down: scale 2 as well"},
        {{5, 0, 100, 1000}, "ab", 2, 0, {5, 0, 100, 200}, "scale 20 is the limit"},
        {{5, -10, 100, 30}, "ab", 2, 0, {5, -10, 100, 0}, "a negative top: scale 1"},
        {{5, 0, 100, 35}, "ab", 2, 0x008, {5, 0, 100, 35}, "the bottom is kept"},
        {{5, 0, 100, 20}, "abc", 2, 0x002, {68, 0, 100, 20}, "to the right, by the count"},
        {{5, 0, 100, 20}, "abc", 0, 0x00A, {100, 0, 100, 20}, "count 0 starts at the edge"},
        {{0, 0, 101, 25}, "abc", 9, 0x00B, {20, 2, 101, 25}, "centred, ten units a character"},
        {{0, 0, 40, 25}, "abc", 3, 0x001, {0, 2, 40, 25}, "too wide to move"},
        {{0, 0, 40, 20}, "abc", 5, 0x401, {0, 0, 80, 20}, "reported by the count"},
        {{5, 7, 100, 30}, "", 3, 0x400, {5, 7, 53, 27}, "an empty string is placed as well"},
        {{5, 7, 100, 30}, "", 3, 0xFFFFFBF4U, {5, 7, 100, 27}, "other bits mean nothing"},
    };
    for (const Case& c : cases) {
        Recorder draw;
        for (const auto function : {&ZRDraw::DrawText, &ZRDraw::ZRDrawText}) {
            RECT rect{c.before[0], c.before[1], c.before[2], c.before[3]};
            EXPECT_EQ((draw.*function)(c.text, c.count, &rect, c.format), 0);
            EXPECT_EQ((Placed{rect.left, rect.top, rect.right, rect.bottom}), c.after) << c.why;
        }
    }
}

TEST(DrawText, AnOpaqueCellIsOneLineHigherThanItsHeight) {
    for (const int scale : {1, 2, 20}) {
        Recorder draw;
        draw.textTransparent = false;
        RECT rect{0, 300 - 10 * scale, 100, 300};
        draw.DrawText("A", 1, &rect, 0x008);
        const auto line = static_cast<std::size_t>(8 * scale);
        EXPECT_EQ(draw.pixels.size(), static_cast<std::size_t>(10 * scale + 1) * line);
        EXPECT_EQ(draw.pixels.front(), (std::pair{0, 300})) << "from the bottom line up";
        EXPECT_EQ(draw.pixels.back(), (std::pair{8 * scale - 1, 300 - 10 * scale}));
        for (std::size_t i = draw.pixels.size() - line; i < draw.pixels.size(); ++i)
            EXPECT_EQ(draw.colors[i], 0U) << "the topmost line is never inked";
    }
}

TEST(DrawText, RowsOfALargeGlyph) {
    // Rows of '!' from the bottom: empty, two of 18, empty, two of 18, three of 3C, one of 18. The
    // bottom row has one line; each higher one has as many as the scale.
    Recorder draw;
    RECT rect{0, 100, 100, 130};
    draw.DrawText("!", 1, &rect, 0);
    std::vector<int> widths(31);
    for (const auto& [x, y] : draw.pixels)
        ++widths[static_cast<std::size_t>(130 - y)];
    EXPECT_EQ(widths, (std::vector<int>{0,  6,  6,  6,  6,  6,  6,  0,  0,  0, 6, 6, 6, 6, 6, 6,
                                        12, 12, 12, 12, 12, 12, 12, 12, 12, 6, 6, 6, 0, 0, 0}));
}

TEST(DrawText, NoLargeGlyphOfTextHasABarAboveIt) {
    // The topmost lines are the bottom row of the next code's glyph.
    for (const int scale : {2, 3, 20})
        for (char code = ' '; code < 127; ++code) {
            Recorder draw;
            RECT rect{0, 0, 100, 10 * scale};
            const char text[] = {code, '\0'};
            draw.DrawText(text, 1, &rect, 0);
            for (const auto& [x, y] : draw.pixels)
                ASSERT_LE(rect.bottom - y, 9 * scale) << text << " at " << x << ", scale " << scale;
        }
}

TEST(DrawText, TheWholeStringIsDrawnWhateverTheCount) {
    TestCanvas canvas(1, 42, 13), label(1, 42, 13);
    RECT rect{1, 1, 41, 11};
    canvas->labelFont = nullptr; // always the built-in table
    canvas->DrawText("Hiya!", 1, &rect, 0);
    label->Label(1, 2, "Hiya!", false, false);
    EXPECT_EQ(canvas.art(), label.art());
}

} // namespace
