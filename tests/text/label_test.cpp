// Labels in the built-in font.
#include "support/test_canvas.h"

#include <gtest/gtest.h>

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

TEST(Label, CharactersAdvanceByTheCell) {
    TestCanvas canvas(1, 26, 11);
    EXPECT_EQ(canvas->Label(1, 1, "iA", false, false), 0);
    EXPECT_EQ(canvas->currentX, 15) << "the position is the last point set";
    EXPECT_EQ(canvas->currentY, 9);
    std::string second;
    for (std::size_t row = 1; row <= 10; ++row)
        second += canvas.art().substr(row * 27 + 9, 8) + "\n";
    EXPECT_EQ(second, letterA);
}

TEST(Label, ForegroundDotsAreOneColumnWiderAboveScaleOne) {
    // '.' of the font is two columns of two dots; at scale 2 its ink is wider than its cell units.
    FilledCanvas wide(20, 20, 0), exact(20, 20, 0xFF);
    wide->LabelFont(0U, 2);
    exact->LabelFont(0U, 2);
    wide->Label(0, 0, "A", false, false);
    EXPECT_EQ(wide.art().substr(0, 20), "......###...........") << "one dot: three columns";
    exact->Label(0, 0, "A", true, false);
    EXPECT_EQ(exact.art().substr(0, 20), "######..############") << "in the background: two";
}

TEST(Label, DotsPartlyOffTheCanvasAreRefusedWholeInTheForeground) {
    // The letter's right half lies off a canvas of 8 columns at scale 2.
    FilledCanvas canvas(8, 20, 0), single(8, 20, 0xFF);
    canvas->LabelFont(0U, 2);
    single->LabelFont(0U, 2);
    canvas->Label(1, 0, "A", false, false);
    EXPECT_EQ(canvas.art().substr(0, 9), "........\n") << "columns 7 to 9 are refused";
    single->Label(1, 0, "A", true, false);
    EXPECT_EQ(single.art().substr(0, 9), "#######.\n") << "a column of the dot is left";
}

TEST(Label, WhatDrawsNothing) {
    struct Case {
        int y, scale;
        const char* text;
    };
    TestCanvas canvas(1, 30, 12);
    const std::string empty = canvas.art();
    for (const Case& c : {Case{0, 1, ""}, Case{-5, 1, "AAA"}, Case{0, 0, "AAA"}}) {
        canvas->LabelFont(0U, c.scale);
        EXPECT_EQ(canvas->Label(0, c.y, c.text, false, true), 0);
        EXPECT_EQ(canvas.art(), empty) << c.y << " " << c.scale << " " << c.text;
    }
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
}

} // namespace
