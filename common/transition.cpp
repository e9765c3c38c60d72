#include "common/transition.h"

#include "common/layout_names.h"
#include "common/tool_error.h"
#include "common/v210_words.h"
#include "common/wipe_lines.h"
#include "zrdraw/transitions.h"

#include <fmt/format.h>

namespace {

std::string knownNames() {
    std::vector<std::string> names;
    for (const zrLayout& layout : zrLayouts)
        if (Transition::isKnown(layout))
            names.push_back(layoutName(layout));
    return fmt::format("{}", fmt::join(names, ", "));
}

} // namespace

Transition::Transition(const zrLayout& layout, int width, int height, unsigned code, bool swapped,
                       bool frontEnd)
    : m_layout(layout), m_width(static_cast<unsigned>(width)),
      m_height(static_cast<unsigned>(height)), m_code(code | (swapped ? zrWipeSwap : 0)),
      m_frontEnd(frontEnd), m_slides(code >= zrSlideUp && code <= zrSlideDown7),
      m_exchanges(m_slides && swapped) {
    if (m_exchanges)
        m_code = code;
    if (!isKnown(layout))
        throw UsageError(fmt::format("there are no transitions in layout {}; use one of: {}",
                                     layoutName(layout), knownNames()));
    if (frontEnd && layout.code != ptV210)
        throw UsageError("--front-end: only v210 has another way; add --layout v210");
    const bool sharesSamples = layout.isPairs() || layout.code == ptV210;
    if (sharesSamples && !frontEnd && WipeMask::serves(code))
        m_mask.emplace(width, height, m_code);
    if (layout.code != ptV210 || frontEnd || m_mask)
        return;
    // Mixing takes a line at a time, moving the whole frame.
    const std::size_t lines = m_slides ? m_height : 1;
    const std::size_t bytes = std::size_t{m_width} * wordPixelBytes * lines + wordOverhang;
    m_from.resize(bytes);
    m_to.resize(bytes);
    if (m_slides)
        m_moved.resize(bytes);
}

void Transition::draw(const PictureView& from, const PictureView& to, const PictureView& result,
                      unsigned position) {
    const PictureView& outgoing = m_exchanges ? to : from;
    const PictureView& incoming = m_exchanges ? from : to;
    if (m_mask)
        return drawLines(from, to, result, position);
    if (m_layout.code == ptV210 && !m_frontEnd)
        return m_slides ? moveWords(outgoing, incoming, result, position)
                        : mixWords(outgoing, incoming, result, position);
    const auto pitch = [](const PictureView& picture) {
        return static_cast<unsigned>(picture.pitch);
    };
    // All bytes of a pair are mixed alike, and so a pair may pass for a pixel of four.
    const bool mixesPairs = m_layout.isPairs() && !m_slides && incoming.pitch == result.pitch;
    const auto door = m_layout.code == ptV210             ? ZRDraw_DisplayWipeV210
                      : m_layout.isPairs() && !mixesPairs ? ZRDraw_DisplayWipeYCbCr
                                                          : ZRDraw_DisplayWipe;
    const unsigned type = mixesPairs ? unsigned{zrWipeByte4} : m_layout.code;
    const unsigned width = mixesPairs ? (m_width + 1) / 2 : m_width;
    if (door(outgoing.data, pitch(outgoing), incoming.data, pitch(incoming), result.data,
             pitch(result), m_code, type, width, m_height, 1, 1, 0, 0, 0, 0, scale, position) != 0)
        throw Failure("out of memory");
}

void Transition::drawLines(const PictureView& from, const PictureView& to,
                           const PictureView& result, unsigned position) {
    for (int y = 0; y < result.height; ++y) {
        const std::vector<WipeMask::Run>& runs = m_mask->runsOf(y, position, scale);
        if (m_layout.code == ptV210)
            wipeV210(runs, from.line(y), to.line(y), result.line(y));
        else
            wipePairs(runs, from.line(y), to.line(y), result.line(y));
    }
}

// In lines that stay in the nearest cache.
void Transition::mixWords(const PictureView& from, const PictureView& to, const PictureView& result,
                          unsigned position) {
    for (unsigned y = 0; y < m_height; ++y) {
        const int line = static_cast<int>(y);
        expandV210Line(from.line(line), m_from.data(), result.width);
        expandV210Line(to.line(line), m_to.data(), result.width);
        zrfxDISSOLVE(m_from.data(), 0, m_to.data(), 0, m_from.data(), 0, m_code, zrWipeWord3,
                     m_width, m_height, 1, 1, 0, 0, 0, 0, scale, position, 0, m_width, y, y + 1);
        packV210Line(m_from.data(), result.line(line), result.width);
    }
}

void Transition::moveWords(const PictureView& from, const PictureView& to,
                           const PictureView& result, unsigned position) {
    expandWords(from, m_from);
    expandWords(to, m_to);
    const unsigned pitch = m_width * wordPixelBytes;
    ZRDraw_DisplayWipe(m_from.data(), pitch, m_to.data(), pitch, m_moved.data(), pitch, m_code,
                       zrWipeWord3, m_width, m_height, 1, 1, 0, 0, 0, 0, scale, position);
    for (int y = 0; y < result.height; ++y)
        packV210Line(m_moved.data() + static_cast<std::size_t>(y) * pitch, result.line(y),
                     result.width);
}

void Transition::expandWords(const PictureView& frame, std::vector<std::uint8_t>& words) const {
    const std::size_t pitch = std::size_t{m_width} * wordPixelBytes;
    for (int y = 0; y < frame.height; ++y)
        expandV210Line(frame.line(y), words.data() + static_cast<std::size_t>(y) * pitch,
                       frame.width);
}
