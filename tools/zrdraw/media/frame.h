// What travels on the road: frames on their canvases, and packets of other streams on their way
// through.
#pragma once

#include "picture/canvas.h"
#include "sound/audio_levels.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <variant>

struct Frame {
    explicit Frame(Canvas drawnOn) : canvas(std::move(drawnOn)) {}

    Canvas canvas;
    FramePtr picture;          // as it was read; without pixels if the canvas is its memory
    std::int64_t number = 0;   // in the clip, counted from 0
    std::int64_t clock = 0;    // frames since the clip's first by time, which time code counts
    std::int64_t time = 0;     // in the clip's time base
    std::int64_t duration = 0; // in the same
    MeterLevels levels{};
};

using Item = std::variant<std::unique_ptr<Frame>, PacketPtr>;

// The frames from `first` up to but excluding `end`, counted from 0.
struct FrameRange {
    static constexpr std::int64_t open = std::numeric_limits<std::int64_t>::max();
    std::int64_t first = 0;
    std::int64_t end = open;
};
