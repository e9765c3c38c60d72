#include "gallery/sheets.h"
#include "zrdraw/font.h"

#include <fmt/format.h>

namespace {

constexpr int scale = 3;
constexpr int gap = 10;
constexpr int cellWidth = zrFontWidth * scale + gap;
constexpr int cellHeight = zrFontHeight * scale + gap;
constexpr int perLine = 16;
constexpr int headScale = 2;
constexpr int head = 2 * zrFontWidth * headScale + 2 * gap; // two digits and room about them

int columnOf(int code) {
    return head + code % perLine * cellWidth;
}

int rowOf(int code) {
    return head + code / perLine * cellHeight;
}

// Labels reach the codes to 127 only, so the bits of the table are drawn one by one.
void drawGlyph(ZRDraw& draw, int code) {
    for (int line = 0; line < zrFontHeight; ++line) {
        const unsigned bits = gFont8x10[code * zrFontHeight + zrFontHeight - 1 - line];
        for (int column = 0; column < zrFontWidth; ++column) {
            if ((bits >> (zrFontWidth - 1 - column) & 1U) == 0)
                continue;
            const int x = columnOf(code) + column * scale;
            const int y = rowOf(code) + line * scale;
            const RECT dot{x, y, x + scale - 1, y + scale};
            draw.FillRect(&dot);
        }
    }
}

void drawHeads(ZRDraw& draw) {
    constexpr int drop = (zrFontHeight * scale - zrFontHeight * headScale) / 2;
    constexpr int shift = (zrFontWidth * scale - zrFontWidth * headScale) / 2;
    draw.SetColorRGBA(1.0, 0.75, 0.3, 1.0, true);
    draw.LabelFont(0U, headScale);
    for (int digit = 0; digit < perLine; ++digit) {
        draw.Label(columnOf(digit) + shift, gap, fmt::format("{:X}", digit).c_str(), false, false);
        draw.Label(gap, rowOf(digit * perLine) + drop, fmt::format("{:X}0", digit).c_str(), false,
                   false);
    }
}

} // namespace

Sheet makeFontSheet(const zrLayout& layout) {
    Sheet sheet(layout, head + perLine * cellWidth, head + perLine * cellHeight);
    for (int code = 0; code < zrFontGlyphs; ++code)
        drawGlyph(sheet.draw(), code);
    drawHeads(sheet.draw());
    return sheet;
}
