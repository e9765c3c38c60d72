// Labels in the built-in font.
#include <gtest/gtest.h>

#include "support/test_canvas.h"

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

std::string emptyArt(int width, int height) {
    std::string art;
    for (int y = 0; y < height; ++y)
        art += std::string(static_cast<std::size_t>(width), '.') + "\n";
    return art;
}

} // namespace

TEST(Label, InkAtScaleOne) {
    TestCanvas canvas(1, 8, 10);
    EXPECT_EQ(canvas->Label(0, 0, "A", false, false), 0);
    EXPECT_EQ(canvas.art(), letterA);
    EXPECT_EQ(canvas->currentX, 6) << "the position is the last point set";
    EXPECT_EQ(canvas->currentY, 8);
}

TEST(Label, InverseSwapsTheSlotsAndOpaqueDrawsTheRest) {
    // Every pixel starts as neither slot's colour.
    struct Case {
        bool inverse, opaque;
        char ink, rest;
    };
    const Case cases[] = {{false, false, '#', '+'},
                          {false, true, '#', '.'},
                          {true, false, '.', '+'},
                          {true, true, '.', '#'}};
    for (const Case& c : cases) {
        TestCanvas canvas(1, 8, 10);
        for (int y = 0; y < 10; ++y)
            std::memset(canvas->GetPixel(0, y), 0x33, 32);
        canvas->Label(0, 0, "A", c.inverse, c.opaque);
        std::string expected = letterA;
        for (char& at : expected)
            at = at == '#' ? c.ink : at == '.' ? c.rest : at;
        EXPECT_EQ(canvas.art(), expected) << c.inverse << c.opaque;
    }
}

TEST(Label, CharactersAdvanceByTheCell) {
    TestCanvas canvas(1, 26, 11);
    canvas->Label(1, 1, "iA", false, false);
    const std::string art = canvas.art();
    std::string second;
    for (std::size_t row = 1; row <= 10; ++row)
        second += art.substr(row * 27 + 9, 8) + "\n";
    EXPECT_EQ(second, letterA);
}

TEST(Label, ForegroundDotsAreOneColumnWiderAboveScaleOne) {
    // '.' of the font is two columns of two dots; at scale 2 its ink is wider than its cell units.
    TestCanvas wide(1, 20, 20), exact(1, 20, 20);
    wide->LabelFont(0U, 2);
    wide->Label(0, 0, "A", false, false);
    const std::string top = wide.art().substr(0, 20);
    EXPECT_EQ(top, "......###...........") << "one dot: three columns";
    exact->LabelFont(0U, 2);
    for (int y = 0; y < 20; ++y)
        std::memset(exact->GetPixel(0, y), 0xFF, 80);
    exact->Label(0, 0, "A", true, false);
    EXPECT_EQ(exact.art().substr(0, 20), "######..############") << "in the background: two";
}

TEST(Label, DotsPartlyOffTheCanvasAreRefusedWholeInTheForeground) {
    // The letter's right half lies off a canvas of 8 columns at scale 2.
    TestCanvas canvas(1, 8, 20);
    canvas->LabelFont(0U, 2);
    canvas->Label(1, 0, "A", false, false);
    EXPECT_EQ(canvas.art().substr(0, 9), "........\n") << "columns 7 to 9 are refused";
    TestCanvas single(1, 8, 20);
    single->LabelFont(0U, 2);
    for (int y = 0; y < 20; ++y)
        std::memset(single->GetPixel(0, y), 0xFF, 32);
    single->Label(1, 0, "A", true, false);
    EXPECT_EQ(single.art().substr(0, 9), "#######.\n") << "a column of the dot is left";
}

TEST(Label, WhatDrawsNothing) {
    struct Case {
        const char* name;
        int y, scale;
        const char* text;
    };
    const Case cases[] = {{"an empty string", 0, 1, ""},
                          {"a start above the canvas", -5, 1, "AAA"},
                          {"scale 0", 0, 0, "AAA"},
                          {"wholly above", -50, 1, "AAA"}};
    for (const Case& c : cases) {
        TestCanvas canvas(1, 30, 12);
        canvas->LabelFont(0U, c.scale);
        EXPECT_EQ(canvas->Label(0, c.y, c.text, false, true), 0);
        EXPECT_EQ(canvas.art(), emptyArt(30, 12)) << c.name;
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
