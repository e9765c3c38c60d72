// The debug category of all elements of the plugin: GST_DEBUG=zrdraw:5.
#pragma once

#include <gst/gst.h>

GST_DEBUG_CATEGORY_EXTERN(zrdraw_debug);
#define GST_CAT_DEFAULT zrdraw_debug
