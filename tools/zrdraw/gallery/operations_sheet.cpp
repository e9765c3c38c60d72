#include "gallery/cells.h"
#include "gallery/sheets.h"

#include "error.h"
#include "script/parser.h"

#include <fmt/format.h>

namespace {

constexpr int cellsPerLine = 6;
constexpr int margin = 4; // about each cell
constexpr int titleHeight = 18;
constexpr int strideX = cellWidth + 2 * margin;
constexpr int strideY = titleHeight + cellHeight + 2 * margin;

constexpr const char* preamble = "color 0.1 0.12 0.16; erase; color 0.9 0.92 0.95; "
                                 "backcolor 0.9 0.3 0.2";

void run(const std::string& script, const std::string& title, ZRDraw& draw) {
    for (const Command& command : parseScript(script, title)) {
        if (command.run(draw) == -1)
            throw Failure(
                fmt::format("{}: {} was refused", command.place, command.operation->name));
    }
}

void drawCell(const Cell& cell, Sheet& sheet, const zrLayout& layout, int x, int y) {
    WorkingFrame picture(workingPixelFormat(layout.code).value(), cellWidth, cellHeight);
    const DrawPtr draw = makeDraw(layout, picture);
    run(preamble, cell.title, *draw);
    run(cell.script, cell.title, *draw);
    sheet.draw().Label(x, y + 3, cell.title, false, false);
    sheet.paste(picture, x, y + titleHeight);
}

} // namespace

Sheet makeOperationsSheet(const zrLayout& layout) {
    const auto cells = galleryCells();
    const int count = static_cast<int>(cells.size());
    const int lines = (count + cellsPerLine - 1) / cellsPerLine;
    Sheet sheet(layout, cellsPerLine * strideX, lines * strideY);
    sheet.draw().LabelFont(0U, 1);
    for (int i = 0; i < count; ++i)
        drawCell(cells[static_cast<std::size_t>(i)], sheet, layout,
                 i % cellsPerLine * strideX + margin, i / cellsPerLine * strideY + margin);
    return sheet;
}
