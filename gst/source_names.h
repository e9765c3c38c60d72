// The overlay's names of container and codec, from what demuxers and parsers say of a stream.
#pragma once

#include "live_overlay.h"

#include <gst/gst.h>

// Takes what the tags tell; the rest stays.
void readSourceNames(const GstTagList* tags, SourceNames& names);
