// What the contact sheet shows.
#pragma once

#include <span>

// The canvas of a cell, pixels.
inline constexpr int cellWidth = 192;
inline constexpr int cellHeight = 124;

// The script starts with light foreground, red background colour and a dark ground.
struct Cell {
    const char* title;
    const char* script;
};

std::span<const Cell> galleryCells();
