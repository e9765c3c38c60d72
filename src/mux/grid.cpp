#include "mux/grid.h"

#include <cstring>

namespace {

constexpr int gridByte = 0xBF;
constexpr unsigned int gridPixel = 0xBFBFBFBFU;
constexpr unsigned int pixelForm = 2; // from here on steps are counted in pixels

struct Steps {
    unsigned int rows, columns;
};

Steps stepsOf(const MuxArgs& m, const Grid& grid) {
    constexpr unsigned int percent = 100;
    if (grid.mode >= pixelForm)
        return {grid.y, grid.x};
    const unsigned int parts = percent / grid.x;
    return {m.height / parts, m.width / parts};
}

} // namespace

void drawGrid(const MuxArgs& m, const Grid& grid) {
    if (m.height == 0)
        return;
    const Steps steps = stepsOf(m, grid);
    for (unsigned int y = 0; y < m.height; ++y) {
        unsigned char* line = m.dst + m.line(y);
        if (y % steps.rows == 0)
            std::memset(line, gridByte, m.pitch);
        else if (grid.mode >= pixelForm && steps.columns == 1)
            std::memset(line, gridByte, std::size_t{m.width} * MuxArgs::pixelBytes);
        else
            for (std::size_t x = 0; x < m.width; x += steps.columns)
                storePixel(line + x * MuxArgs::pixelBytes, gridPixel);
    }
}
