// Peaks that stay for a second and then fall.
#pragma once

#include "common/meter_levels.h"

#include <algorithm>
#include <array>
#include <cmath>

class PeakHold {
public:
    explicit PeakHold(double framesPerSecond = 25.0)
        : m_held(static_cast<int>(std::lround(framesPerSecond))),
          m_fall(std::pow(10.0, -fallPerSecond / 20.0 / framesPerSecond)) {}

    // The peaks of a frame, given its levels.
    MeterLevels next(const MeterLevels& levels) {
        MeterLevels peaks{};
        for (std::size_t i = 0; i < levels.size(); ++i) {
            Peak& peak = m_peaks[i];
            if (levels[i] >= peak.level)
                peak = {static_cast<double>(levels[i]), m_held};
            else if (peak.framesLeft > 0)
                --peak.framesLeft;
            else
                peak.level = std::max(peak.level * m_fall, static_cast<double>(levels[i]));
            peaks[i] = static_cast<unsigned>(peak.level);
        }
        return peaks;
    }

private:
    static constexpr double fallPerSecond = 20.0; // dB

    struct Peak {
        double level = 0.0;
        int framesLeft = 0;
    };

    int m_held;
    double m_fall;
    std::array<Peak, mostMeters> m_peaks{};
};
