// Which pixels of a line a wipe takes from which source.
#pragma once

#include "zrdraw/wipes.h"

#include <cstdint>
#include <vector>

class WipeMask {
public:
    struct Run {
        int begin, end; // columns
        bool second;    // from the second source
    };

    // Of a code whose kernel only copies: no dissolve and no slide.
    static bool serves(unsigned code);

    WipeMask(int width, int height, unsigned code);

    // The runs of a line, in order and without gaps; valid until the next call.
    const std::vector<Run>& runsOf(int y, unsigned position, unsigned scale);

private:
    void findRuns();

    unsigned m_width, m_height, m_code;
    zrfxKernel* m_kernel;
    std::vector<std::uint32_t> m_first, m_second; // lines of the sources, all 0 and all 1
    std::vector<std::uint32_t> m_line, m_before;  // what the kernel makes of them
    std::vector<Run> m_runs;                      // of m_before
};
