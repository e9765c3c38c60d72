// The weights of luma by FFmpeg's name of the colour space.
#pragma once

#include "common/luma_weights.h"

#include <optional>

extern "C" {
#include <libavutil/pixfmt.h>
}

// None for a colour space that is no matrix or is little used.
constexpr std::optional<LumaWeights> lumaWeights(AVColorSpace space) {
    switch (space) {
    case AVCOL_SPC_BT709:
        return bt709Weights;
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
        return bt601Weights;
    case AVCOL_SPC_BT2020_NCL:
        return bt2020Weights;
    default:
        return std::nullopt;
    }
}
