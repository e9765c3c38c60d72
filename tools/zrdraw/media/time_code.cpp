#include "media/time_code.h"

#include "common/time_code_text.h"
#include "zrdraw/zrhost.h"

std::string TimeCode::at(std::int64_t frame) const {
    return timeCodeText(first + static_cast<unsigned>(frame), type);
}

std::optional<TimeCode> timeCodeIn(const std::string& text, AVRational rate) {
    const int drop = text.find(';') != text.npos;
    TimeCode code;
    code.type = zrTimeCodeType(rate.num, rate.den, drop);
    if (code.type == 0) // a text may claim what there is not
        code.type = zrTimeCodeType(rate.num, rate.den, -1);
    if (text.empty() || code.type == 0 ||
        zrTimeCodeFrames(text.c_str(), code.type, &code.first) != 0)
        return std::nullopt;
    return code;
}
