#include "gallery/cell_sheet.h"

namespace {

constexpr int margin = 4; // about each cell
constexpr int titleHeight = 18;
constexpr int strideX = cellWidth + 2 * margin;
constexpr int strideY = titleHeight + cellHeight + 2 * margin;

} // namespace

CellSheet::CellSheet(int count, int cellsPerLine)
    : m_cellsPerLine(cellsPerLine), m_sheet(*zrFindLayout(ptBGRA32), cellsPerLine * strideX,
                                            (count + cellsPerLine - 1) / cellsPerLine * strideY) {
    m_sheet.draw().LabelFont(0U, 1);
}

void CellSheet::add(const std::string& title, const Canvas& picture, const AVFrame* source) {
    const int x = m_next % m_cellsPerLine * strideX + margin;
    const int y = m_next / m_cellsPerLine * strideY + margin;
    m_sheet.draw().Label(x, y + 3, title.c_str(), false, false);
    m_sheet.paste(picture, source, x, y + titleHeight);
    ++m_next;
}
