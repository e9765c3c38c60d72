#include "common/tool_error.h"
#include "gallery/cell_sheet.h"
#include "gallery/cells.h"
#include "gallery/sheets.h"
#include "script/parser.h"

#include <fmt/format.h>

namespace {

constexpr const char* preamble = "color 0.1 0.12 0.16; erase; color 0.9 0.92 0.95; "
                                 "backcolor 0.9 0.3 0.2";

void run(const std::string& script, const std::string& title, ZRDraw& draw) {
    for (const Command& command : parseScript(script, title)) {
        if (command.run(draw) == -1)
            throw Failure(
                fmt::format("{}: {} was refused", command.place, command.operation->name));
    }
}

} // namespace

Sheet makeOperationsSheet(const zrLayout& layout) {
    CellSheet sheet(static_cast<int>(galleryCells().size()));
    for (const Cell& cell : galleryCells()) {
        Canvas picture(layout, cellWidth, cellHeight);
        const DrawPtr draw = makeDraw(picture);
        run(preamble, cell.title, *draw);
        run(cell.script, cell.title, *draw);
        sheet.add(cell.title, picture);
    }
    return sheet.take();
}
