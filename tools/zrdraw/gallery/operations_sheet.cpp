#include "common/tool_error.h"
#include "gallery/cell_sheet.h"
#include "gallery/cells.h"
#include "gallery/sheets.h"
#include "script/player.h"

#include <algorithm>

namespace {

constexpr const char* preamble = "color 0.1 0.12 0.16; erase; color 0.9 0.92 0.95; "
                                 "backcolor 0.9 0.3 0.2; ";

// Bars of which the right half fades away.
class FadingBars : public PictureClip {
public:
    std::shared_ptr<const ScriptPicture> at(double) override { return m_picture; }

private:
    static std::shared_ptr<const ScriptPicture> make() {
        auto picture = std::make_shared<ScriptPicture>();
        picture->width = cellWidth / 2;
        picture->height = cellHeight / 2;
        constexpr int full = 0xFFFF;
        for (int y = 0; y < picture->height; ++y)
            for (int x = 0; x < picture->width; ++x) {
                const int left = (picture->width - 1 - x) * 2 * full / picture->width;
                const int bar = x * 8 / picture->width;
                for (const int word : {std::min(left, full), bar & 4 ? 0 : full,
                                       bar & 2 ? 0 : full, bar & 1 ? 0 : full})
                    picture->words.push_back(static_cast<std::uint16_t>(word));
            }
        return picture;
    }

    std::shared_ptr<const ScriptPicture> m_picture = make();
};

void run(const Cell& cell, Canvas& picture) {
    const DrawPtr draw = makeDraw(picture);
    const auto told =
        drawOnce(parseScript(preamble + std::string(cell.script), cell.title), *draw,
                 picture.view(), [](const std::string&) { return std::make_unique<FadingBars>(); });
    // That a picture's alpha is lost in some layouts is shown.
    for (const std::string& line : told)
        if (line.find("was refused") != line.npos)
            throw Failure(line);
}

} // namespace

Sheet makeOperationsSheet(const zrLayout& layout) {
    CellSheet sheet(static_cast<int>(galleryCells().size()));
    for (const Cell& cell : galleryCells()) {
        Canvas picture(layout, cellWidth, cellHeight);
        run(cell, picture);
        sheet.add(cell.title, picture);
    }
    return sheet.take();
}
