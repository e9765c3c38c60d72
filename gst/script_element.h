// The element zrscript.
#pragma once

#include <gst/video/gstvideofilter.h>

G_BEGIN_DECLS

#define ZR_TYPE_SCRIPT (zr_script_get_type())
G_DECLARE_FINAL_TYPE(ZrScript, zr_script, ZR, SCRIPT, GstVideoFilter)

G_END_DECLS
