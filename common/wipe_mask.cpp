#include "common/wipe_mask.h"

#include <algorithm>
#include <utility>

bool WipeMask::serves(unsigned code) {
    zrfxKernel* kernel = zrWipeOf(code).kernel;
    return kernel != zrfxDISSOLVE && kernel != zrfxSLIDE_Basic;
}

WipeMask::WipeMask(int width, int height, unsigned code)
    : m_width(static_cast<unsigned>(width)), m_height(static_cast<unsigned>(height)), m_code(code),
      m_kernel(zrWipeOf(code).kernel), m_first(m_width, 0U), m_second(m_width, ~0U),
      m_line(m_width), m_before(m_width) {}

const std::vector<WipeMask::Run>& WipeMask::runsOf(int y, unsigned position, unsigned scale) {
    const auto line = static_cast<unsigned>(y);
    const auto pitch = static_cast<unsigned>(m_width * sizeof m_line[0]);
    // Where a frame would begin whose line this is, so that all lines are one, which stays in the
    // nearest cache.
    const auto frameOf = [&](std::vector<std::uint32_t>& only) {
        return reinterpret_cast<unsigned char*>(reinterpret_cast<std::uintptr_t>(only.data()) -
                                                std::uintptr_t{line} * pitch);
    };
    m_kernel(frameOf(m_first), pitch, frameOf(m_second), pitch, frameOf(m_line), pitch, m_code,
             zrWipeByte4, m_width, m_height, 1, 1, 0, 0, 0, 0, scale, position, 0, m_width, line,
             line + 1);
    if (m_runs.empty() || m_line != m_before) {
        std::swap(m_line, m_before);
        findRuns();
    }
    return m_runs;
}

void WipeMask::findRuns() {
    m_runs.clear();
    for (auto begin = m_before.begin(); begin != m_before.end();) {
        const std::uint32_t source = *begin;
        const auto end = std::find_if(begin, m_before.end(),
                                      [source](std::uint32_t other) { return other != source; });
        m_runs.push_back({static_cast<int>(begin - m_before.begin()),
                          static_cast<int>(end - m_before.begin()), source != 0});
        begin = end;
    }
}
