// The element zroverlay, as the plugin's other elements see it.
#pragma once

#include <gst/video/gstvideofilter.h>

class LevelTrack;

G_BEGIN_DECLS

#define ZR_TYPE_OVERLAY (zr_overlay_get_type())
G_DECLARE_FINAL_TYPE(ZrOverlay, zr_overlay, ZR, OVERLAY, GstVideoFilter)

G_END_DECLS

// Where the sound that the meters show is fed; the overlay must be kept meanwhile.
LevelTrack& zrOverlayLevels(ZrOverlay* overlay);
