// The element zrlevels.
#pragma once

#include <gst/audio/gstaudiofilter.h>

G_BEGIN_DECLS

#define ZR_TYPE_LEVELS (zr_levels_get_type())
G_DECLARE_FINAL_TYPE(ZrLevels, zr_levels, ZR, LEVELS, GstAudioFilter)

G_END_DECLS
