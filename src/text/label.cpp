// Labels: strings in the built-in font at an integer scale, through Point and LineHoriz.
#include "draw/run.h"
#include "zrdraw/font.h"

#include <bit>
#include <type_traits>

namespace {

// How the pixels of a cell are written.
struct CellStyle {
    int scale;
    bool inverse;
    bool opaque;
};

// Writes dots of a glyph, each `scale` columns wide. By contract: in the foreground, from scale 2
// up, a dot is one column wider than its cell and refused whole where it lies partly off the
// canvas; in the background it has the width of the cell and loses single pixels. Single pixels
// become the current position.
class CallingDots {
public:
    CallingDots(ZRDraw& draw, int scale) : m_draw(draw), m_scale(scale) {}

    static constexpr bool takesLines = false;
    void put(int column, int row, int dots, bool selector, int = 1) const {
        for (; dots > 0; --dots, column += m_scale)
            if (m_scale > 1 && selector)
                m_draw.LineHoriz(column, row, column + m_scale);
            else
                for (int k = 0; k < m_scale; ++k)
                    m_draw.Point(column + k, row, selector);
    }

private:
    ZRDraw& m_draw;
    int m_scale;
};

// The same for an object exactly of a class of ours: adjacent dots are one run.
template <typename Fore, typename Back>
class DirectDots {
public:
    DirectDots(ZRDraw& draw, const Fore& fore, const Back& back, int scale)
        : m_draw(draw), m_fore(fore), m_back(back), m_scale(scale) {}

    static constexpr bool takesLines = true;

    void put(int column, int row, int dots, bool selector, int lines) const {
        const int pixels = dots * m_scale;
        if (m_scale == 1 || !selector) {
            m_draw.currentX = column + pixels - 1;
            m_draw.currentY = row + lines - 1;
            if (selector)
                m_fore.block(column, row, pixels, lines);
            else
                m_back.block(column, row, pixels, lines);
        } else if (column >= 0 && column + pixels <= static_cast<int>(m_draw.width)) {
            m_fore.block(column, row, pixels + 1, lines);
        } else {
            for (int line = 0; line < lines; ++line)
                CallingDots(m_draw, m_scale).put(column, row + line, dots, selector);
        }
    }

private:
    ZRDraw& m_draw;
    const Fore& m_fore;
    const Back& m_back;
    int m_scale;
};

template <typename Dots>
void drawRow(const Dots& dots, int column, int row, unsigned char bits, const CellStyle& style,
             int lines = 1) {
    for (int at = 0; at < zrFontWidth;) {
        const auto rest = static_cast<unsigned char>(bits << at);
        const bool ink = (rest & 0x80) != 0;
        const int count =
            ink ? std::countl_one(rest) : std::min(std::countl_zero(rest), zrFontWidth - at);
        if (ink || style.opaque)
            dots.put(column + at * style.scale, row, count, ink != style.inverse, lines);
        at += count;
    }
}

} // namespace

int ZRDraw::LabelFont(unsigned int, int scale) {
    labelScale = static_cast<unsigned int>(scale);
    labelFont = gFont8x10;
    labelWidth = zrFontWidth;
    labelHeight = zrFontHeight;
    return 0;
}

int ZRDraw::LabelFont(const char*, unsigned int) {
    return 0;
}

int ZRDraw::LabelGetFontWidth() {
    return labelWidth * static_cast<int>(labelScale);
}

int ZRDraw::LabelGetFontHeight() {
    return labelHeight * static_cast<int>(labelScale);
}

int ZRDraw::Label(int x, int y, const char* text, bool inverse, bool opaque) {
    const CellStyle style{static_cast<int>(labelScale), inverse, opaque};
    const int cellHeight = labelHeight * style.scale;
    const int advance = labelWidth * style.scale;
    // By contract: as unsigned numbers, which drops labels that start above the canvas while their
    // cells reach onto it, and those of scale 0.
    if (static_cast<unsigned int>(y) >= static_cast<unsigned int>(y + cellHeight))
        return 0;
    const auto drawCells = [&](const auto& dots) {
        for (; *text != '\0'; ++text, x += advance) {
            const auto code = static_cast<signed char>(*text);
            const unsigned char* glyph = labelFont + code * labelHeight;
            int row = y;
            for (int line = labelHeight - 1; line >= 0; --line)
                if constexpr (std::decay_t<decltype(dots)>::takesLines)
                    drawRow(dots, x, y + (labelHeight - 1 - line) * style.scale, glyph[line], style,
                            style.scale);
                else
                    for (unsigned int repeat = 0; repeat < labelScale; ++repeat, ++row)
                        drawRow(dots, x, row, glyph[line], style);
        }
    };
    const auto direct = [&](const auto& fore, const auto& back) {
        drawCells(DirectDots(*this, fore, back, style.scale));
    };
    constexpr int greatest = 0xFFFF; // beyond it runs are not within the numbers of int
    const Slots slots = opaque ? Slots::Both : inverse ? Slots::Background : Slots::Foreground;
    const bool may = style.scale > 0 && style.scale <= greatest && linesAreApart(*this);
    if (!may || !useDirect(*this, slots, direct))
        drawCells(CallingDots(*this, style.scale));
    return 0;
}
