// The pictures of the gallery.
#pragma once

#include "sheet.h"

// Every row of galleryCells(), drawn on a canvas of its own under its title.
Sheet makeOperationsSheet(const zrLayout& layout);

// The 256 glyphs of the built-in font by the two digits of their hexadecimal code.
Sheet makeFontSheet(const zrLayout& layout);

// One drawing on one picture in each of the layouts.
Sheet makeLayoutsSheet();

// Every transition at five positions.
Sheet makeWipesSheet();

// Two pictures composed in every mode of the mux.
Sheet makeMuxSheet();
