// How much red and blue weigh in the luma of the usual colour spaces.
#pragma once

#include <optional>

extern "C" {
#include <libavutil/pixfmt.h>
}

struct LumaWeights {
    double red, blue;
    constexpr double green() const { return 1 - red - blue; }
};

// None for a colour space that is no matrix or is little used.
constexpr std::optional<LumaWeights> lumaWeights(AVColorSpace space) {
    switch (space) {
    case AVCOL_SPC_BT709:
        return LumaWeights{0.2126, 0.0722};
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return LumaWeights{0.299, 0.114};
    case AVCOL_SPC_BT2020_NCL:
        return LumaWeights{0.2627, 0.0593};
    default:
        return std::nullopt;
    }
}
