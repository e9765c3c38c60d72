// Labels: strings in the built-in font at an integer scale, through Point and LineHoriz.
#include "zrdraw/font.h"
#include "zrdraw/zrdraw.h"

#include <cstring>

namespace {

// How the pixels of a cell are written.
struct CellStyle {
    int scale;
    bool inverse;
    bool opaque;
};

// One pixel of a glyph, `scale` columns wide. By contract: in the foreground, from scale 2 up, it
// is one column wider than its cell and refused whole where it lies partly off the canvas; in the
// background it has the width of the cell and loses single pixels.
void drawDot(ZRDraw& draw, int column, int row, int scale, bool selector) {
    if (scale > 1 && selector) {
        draw.LineHoriz(column, row, column + scale);
        return;
    }
    for (int k = 0; k < scale; ++k)
        draw.Point(column + k, row, selector);
}

void drawRow(ZRDraw& draw, int column, int row, unsigned int bits, const CellStyle& style) {
    for (int bit = zrFontWidth - 1; bit >= 0; --bit, column += style.scale) {
        const bool ink = ((bits >> bit) & 1U) != 0;
        if (ink || style.opaque)
            drawDot(draw, column, row, style.scale, ink != style.inverse);
    }
}

} // namespace

int ZRDraw::LabelFont(unsigned int, int scale) {
    labelScale = static_cast<unsigned int>(scale);
    labelFont = gFont8x10;
    labelWidth = zrFontWidth;
    labelHeight = zrFontHeight;
    return 0;
}

int ZRDraw::LabelFont(const char*, unsigned int) {
    return 0;
}

int ZRDraw::LabelGetFontWidth() {
    return labelWidth * static_cast<int>(labelScale);
}

int ZRDraw::LabelGetFontHeight() {
    return labelHeight * static_cast<int>(labelScale);
}

int ZRDraw::Label(int x, int y, const char* text, bool inverse, bool opaque) {
    const CellStyle style{static_cast<int>(labelScale), inverse, opaque};
    const int cellHeight = labelHeight * style.scale;
    const int advance = labelWidth * style.scale;
    // By contract: as unsigned numbers, which drops labels that start above the canvas while their
    // cells reach onto it, and those of scale 0.
    if (static_cast<unsigned int>(y) >= static_cast<unsigned int>(y + cellHeight))
        return 0;
    const std::size_t length = std::strlen(text);
    for (std::size_t i = 0; i < length; ++i, x += advance) {
        const auto code = static_cast<signed char>(text[i]);
        const unsigned char* glyph = labelFont + code * labelHeight;
        int row = y;
        for (int line = labelHeight - 1; line >= 0; --line)
            for (unsigned int repeat = 0; repeat < labelScale; ++repeat, ++row)
                drawRow(*this, x, row, glyph[line], style);
    }
    return 0;
}
