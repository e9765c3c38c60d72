// The built-in font, labels in it, and text laid out in rectangles.
#include "support/recorder.h"
#include "support/test_canvas.h"
#include "zrdraw/font.h"

#include <array>
#include <cstdint>

namespace {

const char* const letterA = "...#....\n"
                            "..###...\n"
                            ".##.##..\n"
                            "##...##.\n"
                            "##...##.\n"
                            "#######.\n"
                            "##...##.\n"
                            "##...##.\n"
                            "##...##.\n"
                            "........\n";

// A canvas whose pixels all have one byte throughout.
struct FilledCanvas : TestCanvas {
    FilledCanvas(int width, int height, int byte) : TestCanvas(1, width, height) {
        for (int y = 0; y < height; ++y)
            std::memset(draw().GetPixel(0, y), byte, static_cast<std::size_t>(4 * width));
    }
};

TEST(Label, InverseSwapsTheSlotsAndOpaqueDrawsTheRest) {
    // Every pixel starts as neither slot's colour.
    struct Case {
        bool inverse, opaque;
        char ink, rest;
    };
    for (const Case& c : {Case{false, false, '#', '+'}, Case{false, true, '#', '.'},
                          Case{true, false, '.', '+'}, Case{true, true, '.', '#'}}) {
        FilledCanvas canvas(8, 10, 0x33);
        canvas->Label(0, 0, "A", c.inverse, c.opaque);
        std::string expected = letterA;
        for (char& at : expected)
            at = at == '#' ? c.ink : at == '.' ? c.rest : at;
        EXPECT_EQ(canvas.art(), expected) << c.inverse << c.opaque;
    }
}

// The top row of an 'A' at scale 2 is one dot of two columns. In the foreground it is one column
// wider, and refused whole where it does not fit.
TEST(Label, ForegroundDotsAreOneColumnWiderAboveScaleOne) {
    struct Case {
        int width, x;
        bool inverse; // the letter in the background's colour
        std::string row;
    };
    for (const Case& c : {Case{20, 0, false, "......###..........."},
                          {20, 0, true, "######..############"},
                          {8, 1, false, "........"},
                          {8, 1, true, "#######."}}) {
        FilledCanvas canvas(c.width, 20, c.inverse ? 0xFF : 0);
        canvas->LabelFont(0U, 2);
        canvas->Label(c.x, 0, "A", c.inverse, false);
        EXPECT_EQ(canvas.art().substr(0, c.row.size()), c.row);
    }
}

TEST(Label, WhatDrawsNothing) {
    TestCanvas canvas(1, 30, 12);
    const std::string empty = canvas.art();
    EXPECT_EQ(canvas->Label(0, 0, "", false, true), 0);
    EXPECT_EQ(canvas->Label(0, -5, "AAA", false, true), 0);
    canvas->LabelFont(0U, 0);
    EXPECT_EQ(canvas->Label(0, 0, "AAA", false, true), 0);
    EXPECT_EQ(canvas.art(), empty);
}

TEST(LabelFont, SetsTheScaleAndRestoresTheFont) {
    TestCanvas canvas(1, 8, 10);
    canvas->labelWidth = 5;
    canvas->labelHeight = 3;
    canvas->labelFont = nullptr;
    EXPECT_EQ(canvas->LabelFont(99U, 3), 0);
    EXPECT_EQ(canvas->LabelGetFontWidth(), 24);
    EXPECT_EQ(canvas->LabelGetFontHeight(), 30);
    EXPECT_EQ(canvas->LabelFont("any", 7), 0);
    EXPECT_EQ(canvas->LabelGetFontWidth(), 24) << "the string form changes nothing";
    canvas->LabelFont(0U, 0);
    EXPECT_EQ(canvas->LabelGetFontWidth() + canvas->LabelGetFontHeight(), 0);
    canvas->LabelFont(0U, 1);
    canvas->Label(0, 0, "A", false, false);
    EXPECT_EQ(canvas.art(), letterA);
    EXPECT_EQ(std::pair(canvas->currentX, canvas->currentY), std::pair(6, 8)) << "the last point";
}

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

TEST(DrawText, TheWholeStringIsDrawnWhateverTheCount) {
    TestCanvas canvas(1, 42, 13), label(1, 42, 13);
    RECT rect{1, 1, 41, 11};
    canvas->labelFont = nullptr; // always the built-in table
    canvas->DrawText("Hiya!", 1, &rect, 0);
    label->Label(1, 2, "Hiya!", false, false);
    EXPECT_EQ(canvas.art(), label.art());
}

// Names as short as those of the standard library stay out of the header.
TEST(Font, TheHeaderLeavesTheNameOfStdDataAlone) {
    using namespace std;
    EXPECT_EQ(data(gFont8x10), gFont8x10);
}

// FNV-1a over each table; the glyphs and digits were looked at once.
TEST(Font, IsTheOneThatWasLookedAt) {
    const auto checksum = [](const auto& table) {
        std::uint32_t sum = 0x811C9DC5;
        for (const int row : table)
            sum = (sum ^ static_cast<std::uint32_t>(row)) * 0x01000193;
        return sum;
    };
    EXPECT_EQ(checksum(gFont8x10), 0x113D3A20U);
    EXPECT_EQ(checksum(fontmap), 1880181669U);
}

} // namespace
