// The key of a setting that each text slot has.
#pragma once

#include "zrdraw/overlay_settings.h"

#include <cstdio>

struct SlotKey {
    SlotKey(const char* format, int slot) {
        // The formats are those of the table. NOLINTNEXTLINE(clang-diagnostic-format-nonliteral)
        std::snprintf(text, sizeof text, format, slot);
    }
    char text[zrOverlayKeyBytes];
};
