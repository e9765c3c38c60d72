// A grid over a composed picture.
#pragma once

#include "mux/mux_args.h"

struct Grid {
    unsigned int mode, x, y;
};

void drawGrid(const MuxArgs& m, const Grid& grid);
