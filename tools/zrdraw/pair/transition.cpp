#include "pair/transition.h"

#include "layout_names.h"
#include "pair/v210_words.h"
#include "tool_error.h"
#include "zrdraw/transitions.h"

#include <fmt/format.h>

namespace {

constexpr int wordBytes = 4; // what canvases round their lines to

bool isDirect(const zrLayout& layout) {
    return layout.bytes.r >= 0 || layout.code == ptRGB48 || layout.code == ptARGB64;
}

bool isKnown(const zrLayout& layout) {
    return isDirect(layout) || layout.pair.y0 >= 0 || layout.code == ptV210;
}

std::string knownNames() {
    std::vector<std::string> names;
    for (const zrLayout& layout : zrLayouts)
        if (isKnown(layout))
            names.push_back(layoutName(layout));
    return fmt::format("{}", fmt::join(names, ", "));
}

unsigned char* bytesOf(Canvas& frame) {
    return reinterpret_cast<unsigned char*>(frame.data());
}

unsigned char* lineOf(Canvas& frame, unsigned y) {
    return bytesOf(frame) + std::size_t{y} * static_cast<unsigned>(frame.pitch());
}

} // namespace

Transition::Transition(const zrLayout& layout, int width, int height, unsigned code, bool swapped,
                       bool frontEnd)
    : m_layout(layout), m_width(static_cast<unsigned>(width)),
      m_height(static_cast<unsigned>(height)), m_code(code | (swapped ? zrWipeSwap : 0)),
      m_frontEnd(frontEnd) {
    if (!isKnown(layout))
        throw UsageError(fmt::format("there are no transitions in layout {}; use one of: {}",
                                     layoutName(layout), knownNames()));
    if (frontEnd && layout.code != ptV210)
        throw UsageError("--front-end: only v210 has another way; add --layout v210");
    // These take lines for packed.
    const bool slides = code >= zrSlideUp && code <= zrSlideDown7;
    if (slides && isDirect(layout) && wholeLineBytes(layout, width) % wordBytes != 0)
        throw UsageError(fmt::format("slides in {} need a width that {} divides, not {}: use "
                                     "--layout bgra",
                                     layoutName(layout), wordBytes, width));
    if (layout.code != ptV210 || frontEnd)
        return;
    const std::size_t bytes = std::size_t{m_width} * wordPixelBytes * m_height + wordOverhang;
    m_from.resize(bytes);
    m_to.resize(bytes);
    // What moves nothing is drawn over the first source, which touches less memory.
    if (slides)
        m_moved.resize(bytes);
}

void Transition::draw(Canvas& from, Canvas& to, Canvas& result, unsigned position) {
    if (m_layout.code == ptV210 && !m_frontEnd)
        return drawWords(from, to, result, position);
    const auto pitch = static_cast<unsigned>(from.pitch());
    const auto door = m_layout.code == ptV210 ? ZRDraw_DisplayWipeV210
                      : m_layout.pair.y0 >= 0 ? ZRDraw_DisplayWipeYCbCr
                                              : ZRDraw_DisplayWipe;
    if (door(bytesOf(from), pitch, bytesOf(to), pitch, bytesOf(result), pitch, m_code,
             m_layout.code, m_width, m_height, 1, 1, 0, 0, 0, 0, scale, position) != 0)
        throw Failure("out of memory");
}

void Transition::drawWords(Canvas& from, Canvas& to, Canvas& result, unsigned position) {
    expandWords(from, m_from);
    expandWords(to, m_to);
    std::vector<std::uint8_t>& words = m_moved.empty() ? m_from : m_moved;
    const unsigned pitch = m_width * wordPixelBytes;
    ZRDraw_DisplayWipe(m_from.data(), pitch, m_to.data(), pitch, words.data(), pitch, m_code,
                       zrWipeWord3, m_width, m_height, 1, 1, 0, 0, 0, 0, scale, position);
    for (unsigned y = 0; y < m_height; ++y)
        packV210Line(words.data() + std::size_t{y} * pitch, lineOf(result, y),
                     static_cast<int>(m_width));
}

void Transition::expandWords(Canvas& frame, std::vector<std::uint8_t>& words) const {
    for (unsigned y = 0; y < m_height; ++y)
        expandV210Line(lineOf(frame, y), words.data() + std::size_t{y} * m_width * wordPixelBytes,
                       static_cast<int>(m_width));
}
