// The glyphs of the built-in font.
#include "zrdraw/font.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace {

std::vector<int> glyph(int code) {
    return {gFont8x10 + code * zrFontHeight, gFont8x10 + (code + 1) * zrFontHeight};
}

TEST(Font, TellingGlyphs) {
    const std::map<int, std::vector<int>> given = {
        {1, {0x00, 0x7E, 0x81, 0x99, 0xBD, 0x81, 0x81, 0xA5, 0x81, 0x7E}},
        {33, {0x00, 0x18, 0x18, 0x00, 0x18, 0x18, 0x3C, 0x3C, 0x3C, 0x18}},
        {48, {0x00, 0x7C, 0xC6, 0xC6, 0xE6, 0xF6, 0xDE, 0xCE, 0xC6, 0x7C}},
        {65, {0x00, 0xC6, 0xC6, 0xC6, 0xFE, 0xC6, 0xC6, 0x6C, 0x38, 0x10}},
        {97, {0x00, 0x76, 0xCC, 0xCC, 0x7C, 0x0C, 0x78, 0x00, 0x00, 0x00}},
        {127, {0x00, 0x00, 0xFE, 0xC6, 0xC6, 0x6C, 0x38, 0x10, 0x00, 0x00}},
        {128, {0x06, 0x0C, 0x3C, 0x66, 0xC2, 0xC0, 0xC0, 0xC2, 0x66, 0x3C}},
        {255, {0x00, 0x00, 0x00, 0x70, 0xDF, 0xDF, 0x70, 0x00, 0x00, 0x00}},
    };
    for (const auto& [code, rows] : given)
        EXPECT_EQ(glyph(code), rows) << code;
}

TEST(Font, OnlyCodes0And32AreBlankAndNoTwoGlyphsAreAlike) {
    std::map<std::vector<int>, int> seen;
    for (int code = 0; code < 256; ++code) {
        const std::vector<int> rows = glyph(code);
        const bool blank = std::all_of(rows.begin(), rows.end(), [](int row) { return row == 0; });
        EXPECT_EQ(blank, code == 0 || code == 32) << code;
        if (blank)
            continue;
        const auto [same, fresh] = seen.emplace(rows, code);
        EXPECT_TRUE(fresh) << code << " looks like " << same->second;
    }
}

TEST(Font, TheBottomRowOfTextIsBlankAndTailsStandOnTheNextTwo) {
    for (int code = 0; code < 128; ++code)
        EXPECT_EQ(glyph(code)[0], 0) << code;
    for (const int code : {'g', 'j', 'p', 'q', 'y', ',', ';'})
        EXPECT_TRUE(glyph(code)[1] != 0 && glyph(code)[2] != 0) << static_cast<char>(code);
    for (const int code : {'g', 'p', 'q', 'y'}) {
        EXPECT_NE(glyph(code)[6], 0) << "as high as other small letters";
        EXPECT_EQ(glyph(code)[7], 0) << static_cast<char>(code);
    }
}

TEST(Font, TheBlackFaceIsTheInverseOfTheWhiteOneWithinItsOutline) {
    const int inside = 0x7E;
    for (std::size_t row = 2; row < 9; ++row)
        EXPECT_EQ(glyph(2)[row] ^ glyph(1)[row], inside) << row;
}

// Names as short as those of the standard library stay out of the header.
TEST(Font, TheHeaderLeavesTheNameOfStdDataAlone) {
    using namespace std;
    const vector<int> rows = glyph('A');
    EXPECT_EQ(data(rows), &rows.front());
}

TEST(Font, BoxPiecesJoin) {
    // Single lines leave the cell at columns 3 and 4, and at one row.
    const int vertical = 0xB3, horizontal = 0xC4, cross = 0xC5;
    for (const int row : glyph(vertical))
        EXPECT_EQ(row, 0x18);
    std::vector<int> line = glyph(horizontal);
    EXPECT_EQ(std::count(line.begin(), line.end(), 0xFF), 1);
    for (int& row : line)
        row |= 0x18;
    EXPECT_EQ(line, glyph(cross));
    // Every piece meets its neighbour above and below in the columns of a single or double line.
    for (int code = 179; code <= 218; ++code)
        for (const int edge : {glyph(code).front(), glyph(code).back()})
            EXPECT_TRUE(edge == 0 || edge == 0x18 || edge == 0x66) << code << ": " << edge;
    for (const int row : glyph(219))
        EXPECT_EQ(row, 0xFF) << "the full block";
}

TEST(FontMap, TenDigitsAndThenOnes) {
    const std::vector<int> digits = {
        0x30, 0x48, 0x84, 0x84, 0x84, 0x84, 0x48, 0x30, 0x20, 0x60, 0xA0, 0x20, 0x20, 0x20,
        0x20, 0xF8, 0x78, 0x84, 0x04, 0x08, 0x30, 0x40, 0x80, 0xFC, 0x78, 0x84, 0x04, 0x38,
        0x04, 0x04, 0x84, 0x78, 0x08, 0x18, 0x28, 0x48, 0x88, 0xFC, 0x08, 0x08, 0xFC, 0x80,
        0x80, 0xF8, 0x84, 0x04, 0x84, 0x78, 0x38, 0x40, 0x80, 0xF8, 0x84, 0x84, 0x84, 0x78,
        0xFC, 0x04, 0x08, 0x10, 0x20, 0x20, 0x40, 0x40, 0x78, 0x84, 0x84, 0x78, 0x84, 0x84,
        0x84, 0x78, 0x78, 0x84, 0x84, 0x84, 0x7C, 0x04, 0x08, 0x70};
    EXPECT_EQ(std::vector<int>(fontmap, fontmap + 80), digits);
    EXPECT_TRUE(std::all_of(fontmap + 80, fontmap + 128, [](int byte) { return byte == 0xFF; }));
}

} // namespace
