// The picture of a watermark as an overlay caches it for a stream, with an owner.
#pragma once

#include "zrdraw/platform/memory.h"
#include "zrdraw/zroverlay.h"

#include <memory>
#include <optional>
#include <vector>

// By contract an overlay never frees its caches, and in 4:2:2 it shows what reaches over the right
// edge in the next line, and behind the frame.
class WatermarkPicture {
public:
    // Takes over what an overlay has read.
    explicit WatermarkPicture(const CZrOverlay& reader);

    bool isThere() const { return m_v210 || m_pairs || m_bgra; }

    // Gives the overlay the use of the picture for as long as this lives.
    void lend(CZrOverlay& overlay);
    static void takeBack(CZrOverlay& overlay);

    // Before each frame: puts it on pixel pairs, as loading does, and cuts it at the right edge
    // where it has moved.
    void fit(CZrOverlay& overlay);

private:
    struct Free {
        void operator()(void* memory) const { ZRFree(memory); }
    };

    unsigned m_width, m_height, m_layout;
    std::unique_ptr<unsigned, Free> m_v210;
    std::unique_ptr<unsigned char, Free> m_pairs, m_bgra;
    std::vector<unsigned char> m_whole; // pairs that are not cut
    std::optional<unsigned> m_fittedX;  // none: not cut yet
};

// Cuts a watermark in 4:2:2 at the right edge of the picture, at the place that it has.
void cutWatermark(CZrOverlay& overlay);
