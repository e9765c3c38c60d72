// What the contact sheet shows.
#pragma once

#include <span>

// The script starts with light foreground, red background colour and a dark ground.
struct Cell {
    const char* title;
    const char* script;
};

std::span<const Cell> galleryCells();
