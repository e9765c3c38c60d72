#include "pair/in_point.h"

#include "common/tool_error.h"
#include "media/time_code.h"

#include <fmt/format.h>

#include <algorithm>

extern "C" {
#include <libavutil/parseutils.h>
}

namespace {

bool looksLikeTimeCode(const std::string& text) {
    return std::count_if(
               text.begin(), text.end(), [](char c) { return c == ':' || c == ';'; }) == 3;
}

} // namespace

std::int64_t frameAt(const std::string& text, const char* option, const StreamInfo& info) {
    std::int64_t frame = -1;
    if (looksLikeTimeCode(text)) {
        const auto wanted = timeCodeIn(text, info.frameRate);
        const auto start = timeCodeIn(info.timeCode, info.frameRate);
        if (wanted)
            frame = std::int64_t{wanted->first} - (start ? start->first : 0);
        else
            throw UsageError(
                fmt::format("{}: the time code '{}' cannot be at {:.6g} frames a second", option,
                            text, av_q2d(info.frameRate)));
    } else {
        std::int64_t time = 0;
        if (av_parse_time(&time, text.c_str(), 1) < 0)
            throw UsageError(fmt::format(
                "{}: expected a time such as 12.5, or a time code such as 01:00:12:00, got '{}'",
                option, text));
        frame = av_rescale_q_rnd(time, timeBaseUnit, av_inv_q(info.frameRate), AV_ROUND_NEAR_INF);
    }
    if (frame < 0)
        throw UsageError(fmt::format("{}: {} lies before the clip's beginning{}", option, text,
                                     info.timeCode.empty() ? "" : " at " + info.timeCode));
    return frame;
}
