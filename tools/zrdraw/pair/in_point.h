// Where in a clip something begins, as users write it.
#pragma once

#include "media/stream_info.h"

#include <cstdint>
#include <string>

// The frame, counted from 0, at a time such as 12.5 or 0:00:12.5, or at a time code of the clip
// such as 01:00:12:00. A text that is neither, and a place before the clip's beginning, are
// UsageErrors.
std::int64_t frameAt(const std::string& text, const char* option, const StreamInfo& info);
