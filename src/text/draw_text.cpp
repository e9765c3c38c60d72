// Text laid out in a rectangle, in the built-in font at a scale that the rectangle's height gives.
#include "draw/run.h"
#include "zrdraw/font.h"
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr int largestScale = 20;

int scaleFor(const RECT& rect) {
    if (rect.bottom == 0 || rect.top < 0)
        return 1;
    const int height = rect.bottom - rect.top;
    return std::clamp((height < 0 ? -height : height) / zrFontHeight, 1, largestScale);
}

// By contract: the width of a character is estimated as ten units although it advances by eight,
// and vertical centring moves only the top, while glyphs stand on the bottom.
void centre(RECT& rect, int cellHeight, std::size_t length) {
    const auto spare = static_cast<unsigned int>(rect.bottom - rect.top - cellHeight);
    if (static_cast<unsigned int>(cellHeight) < static_cast<unsigned int>(rect.bottom - rect.top))
        rect.top += static_cast<int>(spare >> 1);
    const long halfWidth = (rect.right - rect.left) / 2;
    const long halfText = static_cast<long>(static_cast<std::size_t>(cellHeight) * length >> 1);
    if (halfText < halfWidth)
        rect.left += static_cast<int>(halfWidth - halfText);
}

void place(RECT& rect, int scale, int count, std::size_t length, unsigned int format) {
    const int cellHeight = scale * zrFontHeight;
    if ((format & zrTextCentre) != 0)
        centre(rect, cellHeight, length);
    else if ((format & zrTextRight) != 0)
        rect.left = rect.right - scale * count * zrFontWidth;
    else if ((format & zrTextKeepBottom) == 0)
        rect.bottom = rect.top + cellHeight;
}

// Nothing: the empty pixels of a cell stay.
struct NoPaper {
    void run(int, int, int) const {}
};

// One line of a cell: eight bits, each `scale` columns wide, from run to run of like bits.
template <typename Ink, typename Paper>
void drawCellLine(const Ink& ink, const Paper& paper, int column, int row, int scale,
                  unsigned char bits) {
    for (int at = 0; at < zrFontWidth;) {
        const auto rest = static_cast<unsigned char>(bits << at);
        const int inked = std::countl_one(rest);
        const int count = inked != 0 ? inked : std::min(std::countl_zero(rest), zrFontWidth - at);
        if (inked != 0)
            ink.run(column + at * scale, row, count * scale);
        else
            paper.run(column + at * scale, row, count * scale);
        at += count;
    }
}

// A cell from its bottom line up. By contract: it has one line more than its height, which is
// never inked; the bottom row of the glyph takes one line and each higher row `scale` lines, so
// from scale 2 up the topmost lines are the first row of the next glyph.
template <typename Ink, typename Paper>
void drawCell(const Ink& ink, const Paper& paper, int column, int bottom, int scale,
              const unsigned char* glyph) {
    const int cellHeight = scale * zrFontHeight;
    for (int line = 0; line <= cellHeight; ++line) {
        const unsigned char bits = line == cellHeight ? 0 : *glyph;
        drawCellLine(ink, paper, column, bottom - line, scale, bits);
        if (line % scale == 0)
            ++glyph;
    }
}

template <typename Ink, typename Paper>
void drawCells(const Ink& ink, const Paper& paper, const char* text, std::size_t length, int column,
               int bottom, int scale) {
    for (std::size_t i = 0; i < length; ++i, column += scale * zrFontWidth) {
        const auto code = static_cast<signed char>(text[i]);
        drawCell(ink, paper, column, bottom, scale, gFont8x10 + code * zrFontHeight);
    }
}

} // namespace

int ZRDraw::DrawText(const char* text, int count, RECT* rect, unsigned int format) {
    const int scale = scaleFor(*rect);
    const std::size_t length = std::strlen(text);
    place(*rect, scale, count, length, format);
    const auto draw = [&](const auto& ink, const auto& paper) {
        drawCells(ink, paper, text, length, rect->left, rect->bottom, scale);
    };
    if (textTransparent)
        withPlotter(*this, [&](const auto& ink) { draw(ink, NoPaper()); });
    else
        withPlotters(*this, Slots::Both, draw);
    if ((format & zrTextReport) != 0) {
        // By contract: `count` makes the width, not the length of the text.
        rect->right = rect->left + count * scale * zrFontWidth;
        rect->bottom = rect->top + scale * zrFontHeight;
    }
    return 0;
}

int ZRDraw::ZRDrawText(const char* text, int count, RECT* rect, unsigned int format) {
    return DrawText(text, count, rect, format);
}

int ZRDraw::TextOut(int, int, const char*, int) {
    return 0;
}
