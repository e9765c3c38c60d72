// Time code as people read it.
#pragma once

#include "zrdraw/platform/media.h"

#include <string>

// Frames since midnight; `type` is one of zrTimeCode.
inline std::string timeCodeText(unsigned frames, unsigned type) {
    char text[512] = {};
    tc2String(frames, type | zrTimeCodeTextFlags, text);
    return text;
}
