// A sheet of small pictures of one size, each under its title.
#pragma once

#include "sheet.h"

// The canvas of a cell, pixels.
inline constexpr int cellWidth = 192;
inline constexpr int cellHeight = 124;

class CellSheet {
public:
    explicit CellSheet(int count, int cellsPerLine = 6);

    // Puts a picture of a cell's size, in any layout, into the next cell.
    // `source` is what it was drawn on, for layouts that hold a part of it only.
    void add(const std::string& title, const Canvas& picture, const AVFrame* source = nullptr);

    Sheet take() { return std::move(m_sheet); }

private:
    int m_cellsPerLine;
    Sheet m_sheet;
    int m_next = 0;
};
