// The names that expressions know: what each frame tells, and variables.
#pragma once

#include "common/meter_levels.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The place of a constant among the values of a frame; the peaks of the sound's channels follow,
// and then the variables.
enum class Constant : std::size_t { Width, Height, Number, Time, Rate, SampleAspect, TextWidth };

struct ConstantName {
    const char* name;
    const char* help;
};

inline constexpr std::array constantNames = {
    ConstantName{"w", "width of the frame, or of the grid that unit sets"},
    ConstantName{"h", "height of the same"},
    ConstantName{"n", "number of the frame, counted from 0"},
    ConstantName{"t", "seconds since the first frame"},
    ConstantName{"fps", "frames a second"},
    ConstantName{"sar", "width of a pixel by its height"},
    ConstantName{"dw", "width of the last text"},
};

inline constexpr const char* peakName = "peak";
inline constexpr const char* peakHelp = "peak of the sound in channel 1, 2, ... over the frame, "
                                        "0 to 1";

inline constexpr std::size_t firstPeak = constantNames.size();
inline constexpr std::size_t firstVariable = firstPeak + mostMeters;

// By the place of each name.
using Values = std::vector<double>;

// Variables can be seen from where they are set up to the end of the block.
class Names {
public:
    Names();

    std::size_t size() const { return m_names.size(); }
    std::optional<std::size_t> find(std::string_view name) const;

    // All names that can be seen now.
    std::vector<std::string> visible() const;

    // Those that may have been meant by a name that is not there, as nearNames() tells them. A
    // letter is near too much.
    std::string near(const std::string& name) const;

    // By their places, as libavutil takes them, with what matches nothing for those that cannot be
    // seen, and null at the end. Valid until a name is added.
    const std::vector<const char*>& list() const;

    // The place of a variable: its own if it can be seen, else a new one.
    std::size_t define(const std::string& name);

    void openBlock() { m_blocks.push_back(m_names.size()); }
    void closeBlock();

private:
    struct Name {
        std::string text;
        bool isVisible = true;
    };
    std::vector<Name> m_names;
    std::vector<std::size_t> m_blocks; // how many names there were before each open block
    mutable std::vector<const char*> m_list;
};
