// Text laid out in a rectangle, in the built-in font at a scale that the rectangle's height gives.
#include "draw/run.h"
#include "zrdraw/font.h"
#include "zrdraw/zrdraw.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>
#include <type_traits>

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

struct Cells {
    const char* text;
    std::size_t length;
    int column;
    int bottom;
    int scale;

    int width() const { return static_cast<int>(length) * zrFontWidth * scale; }
    unsigned char bits(std::size_t cell, int glyphRow) const {
        const auto code = static_cast<signed char>(text[cell]);
        return gFont8x10[code * zrFontHeight + glyphRow];
    }
};

// The runs of like bits of a row of glyphs, which may begin in one cell and end in another:
// run(inked, column, count). Without a glyph row there is no ink.
template <typename Run>
void walkRuns(const Cells& cells, std::optional<int> glyphRow, Run run) {
    int begin = cells.column, end = begin;
    bool inked = false;
    for (std::size_t cell = 0; cell < cells.length; ++cell) {
        const unsigned char bits = glyphRow ? cells.bits(cell, *glyphRow) : 0;
        for (int at = 0; at < zrFontWidth;) {
            const auto rest = static_cast<unsigned char>(bits << at);
            const bool isInk = (rest & 0x80) != 0;
            if (isInk != inked && end != begin) {
                run(inked, begin, end - begin);
                begin = end;
            }
            inked = isInk;
            const int count = isInk ? std::countl_one(rest) : std::countl_zero(rest);
            const int here = std::min(count, zrFontWidth - at);
            end += here * cells.scale;
            at += here;
        }
    }
    if (end != begin)
        run(inked, begin, end - begin);
}

template <typename Ink, typename Paper>
void drawLine(const Ink& ink, const Paper& paper, const Cells& cells, int row,
              std::optional<int> glyphRow) {
    walkRuns(
        cells, glyphRow,
        [&](bool inked, int column, int count) {
            if (inked)
                ink.run(column, row, count);
            else
                paper.run(column, row, count);
        });
}

// The lines of a glyph row, from the lowest up. Where their order does not matter, only one is
// drawn of a filled background, and without one a run goes over all of them.
template <typename Ink, typename Paper>
void drawGlyphRow(const Ink& ink, const Paper& paper, const Cells& cells, int lowest, int lines,
                  int glyphRow) {
    if constexpr (Ink::isDirect && std::is_same_v<Paper, NoPaper>) {
        walkRuns(
            cells, glyphRow,
            [&](bool inked, int column, int count) {
                if (inked)
                    ink.block(column, lowest - lines + 1, count, lines);
            });
    } else {
        for (int line = 0; line < lines; ++line) {
            const int row = lowest - line;
            if constexpr (Ink::isDirect)
                if (line > 0 && paper.copy(cells.column, row + 1, row, cells.width()))
                    continue;
            drawLine(ink, paper, cells, row, glyphRow);
        }
    }
}

// Cells from their bottom line up. By contract: they have one line more than their height, which
// is never inked; the bottom row of the glyph takes one line and each higher row `scale` lines, so
// from scale 2 up the topmost lines are the first row of the next glyph.
template <typename Ink, typename Paper>
void drawLines(const Ink& ink, const Paper& paper, const Cells& cells) {
    const int height = cells.scale * zrFontHeight;
    for (int line = 0, glyphRow = 0; line < height; ++glyphRow) {
        const int lines = glyphRow == 0 ? 1 : std::min(cells.scale, height - line);
        drawGlyphRow(ink, paper, cells, cells.bottom - line, lines, glyphRow);
        line += lines;
    }
    drawLine(ink, paper, cells, cells.bottom - height, std::nullopt);
}

// By contract: one cell after the other, which is the same where the order of writes does not
// matter.
template <typename Ink, typename Paper>
void drawCells(const Ink& ink, const Paper& paper, const Cells& cells) {
    if constexpr (Ink::isDirect)
        return drawLines(ink, paper, cells);
    for (std::size_t i = 0; i < cells.length; ++i)
        drawLines(ink, paper,
                  {cells.text + i, 1, cells.column + Cells{nullptr, i, 0, 0, cells.scale}.width(),
                   cells.bottom, cells.scale});
}

} // namespace

int ZRDraw::DrawText(const char* text, int count, RECT* rect, unsigned int format) {
    const int scale = scaleFor(*rect);
    const std::size_t length = std::strlen(text);
    place(*rect, scale, count, length, format);
    const auto draw = [&](const auto& ink, const auto& paper) {
        drawCells(ink, paper, {text, length, rect->left, rect->bottom, scale});
    };
    const auto drawInk = [&](const auto& ink, const auto&) { draw(ink, NoPaper()); };
    const bool drawn =
        linesAreApart(*this) && (textTransparent ? useDirect(*this, Slots::Foreground, drawInk)
                                                 : useDirect(*this, Slots::Both, draw));
    if (!drawn) {
        const CallingPlotter ink(*this, true), paper(*this, false);
        if (textTransparent)
            draw(ink, NoPaper());
        else
            draw(ink, paper);
    }
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
