#include "session.h"

namespace {

int side(Input& input) {
    return input.between(1, input.flag() ? 8 : 40);
}

// Mostly whole words, as other pitches are an exception of 32-bit layouts.
int padding(Input& input) {
    return 4 * input.below(5) + (input.below(4) == 3 ? input.below(4) : 0);
}

} // namespace

Session::Session(const zrLayout& layout, Input choices) : input(choices), m_layout(layout) {
    makeFrame();
    const FrameShape& shape = m_frame->shape();
    ZRDraw* made = nullptr;
    GetDraw(layout.code, shape.width, shape.height, shape.pitch(), m_frame->bytes(), made);
    m_draw.reset(made);
}

void Session::makeFrame() {
    const int width = side(input);
    const int height = side(input);
    const FrameShape shape{&m_layout, width, height, padding(input)};
    m_frame = std::make_unique<GuardedFrame>(shape);
    // By contract: lines of words start at a multiple of four bytes, which may lie in the padding
    // of the line before.
    if ((hasWords() && shape.pitch() % 4 != 0) || writesBehindLines(width))
        m_linesApart = false;
}

void Session::changeFrame() {
    checkFrame();
    // The new one may start without exceptions only if none is in force.
    m_linesApart =
        !is24() || (!m_draw->transparency && !m_draw->alphaAdditive && m_draw->textTransparent);
    makeFrame();
    const FrameShape& shape = m_frame->shape();
    char* canvas = input.below(8) == 7 ? nullptr : m_frame->bytes();
    // The signs say nothing about where the pixels are, or that there are none; 0 is the natural
    // line.
    const int height = input.flag() ? -shape.height : shape.height;
    const int pitch = input.flag() && !keepsSigns() ? -shape.pitch() : shape.pitch();
    const bool natural = shape.padding == 0 && input.flag();
    m_draw->SetCanvas(canvas, height, shape.width, natural ? 0 : pitch);
}

// By contract: on 24-bit layouts background writes have four bytes at column 4x.
bool Session::slot() {
    const bool foreground = input.flag();
    if (is24() && !foreground)
        m_linesApart = false;
    return foreground;
}

// By contract: on 24-bit layouts mixing writes have four bytes at column 4x.
bool Session::mixing() {
    const bool on = input.flag();
    if (is24() && on)
        m_linesApart = false;
    return on;
}

// By contract: such a fill of 32-bit pixels takes the rows for contiguous.
void Session::notePaintedWhole() {
    if (is32())
        m_linesApart = false;
}

bool Session::pixelOnCanvas(_POINT& at) {
    const int lines = static_cast<int>(m_draw->height);
    if (m_draw->canvas == nullptr || lines < 0)
        return false;
    at.x = input.between(0, static_cast<int>(m_draw->width));
    at.y = input.between(0, lines);
    return true;
}
