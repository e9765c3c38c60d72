// The element zrscript.
#pragma once

#include "level_track.h"

#include <gst/video/gstvideofilter.h>

G_BEGIN_DECLS

#define ZR_TYPE_SCRIPT (zr_script_get_type())
G_DECLARE_FINAL_TYPE(ZrScript, zr_script, ZR, SCRIPT, GstVideoFilter)

G_END_DECLS

// Where the sound that the script asks for is fed; the element must be kept meanwhile.
LevelTrack& zrScriptLevels(ZrScript* script);
