// The plugin: its debug category and its elements.
#include "debug.h"
#include "levels_element.h"
#include "mux_element.h"
#include "overlay_element.h"
#include "script_element.h"
#include "wipe_element.h"
#include "zrdraw/version.h"

GST_DEBUG_CATEGORY(zrdraw_debug);

namespace {

gboolean registerElements(GstPlugin* plugin) {
    GST_DEBUG_CATEGORY_INIT(zrdraw_debug, "zrdraw", 0, "ZRDraw's elements");
    const struct {
        const char* name;
        GType type;
    } elements[] = {{"zroverlay", ZR_TYPE_OVERLAY},
                    {"zrlevels", ZR_TYPE_LEVELS},
                    {"zrscript", ZR_TYPE_SCRIPT},
                    {"zrwipe", ZR_TYPE_WIPE},
                    {"zrmux", ZR_TYPE_MUX}};
    for (const auto& [name, type] : elements)
        if (!gst_element_register(plugin, name, GST_RANK_NONE, type))
            return FALSE;
    return TRUE;
}

} // namespace

#define PACKAGE "zrdraw"
GST_PLUGIN_DEFINE(
    GST_VERSION_MAJOR, GST_VERSION_MINOR, zrdraw,
    "Overlays, drawing, transitions and the display mux on frames in their own layouts",
    registerElements, ZRDRAW_VERSION_STRING, "MIT", "zrdraw", "zrdraw")
