// The glyphs of the built-in font.
#include "zrdraw/font.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
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

// Names as short as those of the standard library stay out of the header.
TEST(Font, TheHeaderLeavesTheNameOfStdDataAlone) {
    using namespace std;
    const vector<int> rows = glyph('A');
    EXPECT_EQ(data(rows), &rows.front());
}

// FNV-1a over each table; the glyphs and digits were looked at once.
TEST(Font, IsTheOneThatWasLookedAt) {
    const auto checksum = [](const auto& table) {
        std::uint32_t sum = 0x811C9DC5;
        for (const int row : table)
            sum = (sum ^ static_cast<std::uint32_t>(row)) * 0x01000193;
        return sum;
    };
    EXPECT_EQ(checksum(gFont8x10), 3499506976U);
    EXPECT_EQ(checksum(fontmap), 1880181669U);
}

} // namespace
