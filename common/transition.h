// One frame of a transition between two pictures.
#pragma once

#include "common/picture_view.h"
#include "common/wipe_mask.h"

#include <cstdint>
#include <optional>
#include <vector>

class Transition {
public:
    static constexpr unsigned scale = 65536; // of positions

    // What a swapped slide does not draw in the library is done here: the sources are exchanged.
    // Layouts that no transition knows are UsageErrors. With `frontEnd` v210 takes the library's
    // own way, of eight bits a sample.
    Transition(const zrLayout& layout, int width, int height, unsigned code, bool swapped,
               bool frontEnd);

    // All of the layout and size, and at the pitch that is needed.
    void draw(const PictureView& from, const PictureView& to, const PictureView& result,
              unsigned position);

    // 0: any. Of whole pixels the result has the pitch of the second source, and slides take lines
    // for packed.
    int neededPitch() const {
        const int width = static_cast<int>(m_width);
        if (!isWhole(m_layout))
            return 0;
        return m_slides ? wholeLineBytes(m_layout, width) : wordPitch(m_layout, width);
    }

    static bool isKnown(const zrLayout& layout) {
        return isWhole(layout) || layout.isPairs() || layout.code == ptV210;
    }

private:
    // Whose pixels are bytes or words of their own.
    static bool isWhole(const zrLayout& layout) {
        return layout.bytes.r >= 0 || layout.code == ptRGB48 || layout.code == ptARGB64;
    }

    // Wipes where pixels share samples, line by line: what is not on an edge is copied.
    void drawLines(const PictureView& from, const PictureView& to, const PictureView& result,
                   unsigned position);

    // v210 as words at full precision.
    void mixWords(const PictureView& from, const PictureView& to, const PictureView& result,
                  unsigned position);
    void moveWords(const PictureView& from, const PictureView& to, const PictureView& result,
                   unsigned position);

    void expandWords(const PictureView& frame, std::vector<std::uint8_t>& words) const;

    const zrLayout& m_layout;
    unsigned m_width;
    unsigned m_height;
    unsigned m_code;
    bool m_frontEnd;
    bool m_slides;
    bool m_exchanges;
    std::optional<WipeMask> m_mask;                  // where it is drawn by lines
    std::vector<std::uint8_t> m_from, m_to, m_moved; // words of v210
};
