// Time code that counts the frames of a clip.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

extern "C" {
#include <libavutil/rational.h>
}

struct TimeCode {
    unsigned type = 0;  // how frames are counted, by the table in zrhost.h
    unsigned first = 0; // of the clip's first frame, counted from midnight

    std::string at(std::int64_t frame) const;
};

// As a text has it, with ';' for drop-frame; nothing if it cannot be at that rate.
std::optional<TimeCode> timeCodeIn(const std::string& text, AVRational rate);

// The same, or one that begins at 00:00:00:00 where the text is empty or cannot be; nothing if
// there is none at that rate.
std::optional<TimeCode> timeCodeFrom(const std::string& text, AVRational rate);
