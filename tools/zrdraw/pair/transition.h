// One frame of a transition between two canvases.
#pragma once

#include "picture/canvas.h"

#include <cstdint>
#include <vector>

class Transition {
public:
    static constexpr unsigned scale = 65536; // of positions

    // Layouts that no transition knows are UsageErrors. With `frontEnd` v210 takes the library's
    // own way, of eight bits a sample.
    Transition(const zrLayout& layout, int width, int height, unsigned code, bool swapped,
               bool frontEnd);

    void draw(Canvas& from, Canvas& to, Canvas& result, unsigned position);

private:
    void drawWords(Canvas& from, Canvas& to, Canvas& result, unsigned position);

    void expandWords(Canvas& frame, std::vector<std::uint8_t>& words) const;

    const zrLayout& m_layout;
    unsigned m_width;
    unsigned m_height;
    unsigned m_code;
    bool m_frontEnd;
    std::vector<std::uint8_t> m_from, m_to; // words of v210 at full precision
    std::vector<std::uint8_t> m_moved;      // and of the result, where a transition moves them
};
