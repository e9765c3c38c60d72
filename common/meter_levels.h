// How loud the channels of sound are, as the overlay's meters take it.
#pragma once

#include "zrdraw/zroverlay.h"

#include <array>
#include <cmath>
#include <cstddef>

inline constexpr unsigned mostMeters = CZrOverlay::historyChannels;

// The greatest amplitudes of each channel, 0 to 65535.
using MeterLevels = std::array<unsigned, mostMeters>;

inline constexpr double fullMeterLevel = 65535.0;

// As a part of the greatest, 0 to 1.
inline double levelPart(unsigned level) {
    return level / fullMeterLevel;
}

// Of an amplitude on a scale of -1 to 1. Floats may be anything: what is no number is silence.
inline unsigned meterLevel(double amplitude) {
    const double level = std::fabs(amplitude) * fullMeterLevel;
    return static_cast<unsigned>(level >= fullMeterLevel ? fullMeterLevel
                                 : level > 0             ? level
                                                         : 0.0);
}

// Two channels a word, the even one low.
using MeterWords = std::array<unsigned, mostMeters / 2>;

inline MeterWords packedLevels(const MeterLevels& levels) {
    MeterWords words{};
    for (std::size_t i = 0; i < levels.size(); ++i)
        words[i / 2] |= levels[i] << (i % 2 * 16);
    return words;
}
