#include "media/time_code.h"

#include "common/time_code_text.h"
#include "zrdraw/zrhost.h"

std::string TimeCode::at(std::int64_t frame) const {
    return timeCodeText(first + static_cast<unsigned>(frame), type);
}

namespace {

unsigned typeOf(const std::string& text, AVRational rate) {
    const int drop = text.empty() ? -1 : text.find(';') != text.npos;
    const unsigned type = zrTimeCodeType(rate.num, rate.den, drop);
    // A text may claim what there is not.
    return type != 0 ? type : zrTimeCodeType(rate.num, rate.den, -1);
}

} // namespace

std::optional<TimeCode> timeCodeIn(const std::string& text, AVRational rate) {
    TimeCode code{typeOf(text, rate)};
    if (text.empty() || code.type == 0 ||
        zrTimeCodeFrames(text.c_str(), code.type, &code.first) != 0)
        return std::nullopt;
    return code;
}

std::optional<TimeCode> timeCodeFrom(const std::string& text, AVRational rate) {
    if (const std::optional<TimeCode> code = timeCodeIn(text, rate))
        return code;
    const TimeCode code{typeOf(text, rate)};
    return code.type != 0 ? std::optional(code) : std::nullopt;
}
