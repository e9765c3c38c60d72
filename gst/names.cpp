#include "names.h"

#include "common/mux_modes.h"
#include "common/wipe_names.h"

#include <vector>

namespace {

// GObject keeps the rows for as long as the process runs.
GType registerEnum(const char* name, std::vector<GEnumValue>& rows) {
    rows.push_back({0, nullptr, nullptr});
    return g_enum_register_static(name, rows.data());
}

} // namespace

GType wipeCodeType() {
    static std::vector<GEnumValue> rows;
    static const GType type = [] {
        for (const zrWipe& wipe : namedWipes())
            rows.push_back({static_cast<gint>(wipe.first), wipe.help, wipe.name});
        return registerEnum("ZrWipeCode", rows);
    }();
    return type;
}

GType muxModeType() {
    static std::vector<GEnumValue> rows;
    static const GType type = [] {
        for (const MuxModeName& mode : muxModeNames())
            rows.push_back({static_cast<gint>(mode.mode), mode.help, mode.name});
        return registerEnum("ZrMuxMode", rows);
    }();
    return type;
}

GType muxFlipType() {
    static std::vector<GEnumValue> rows = {{0, "As it is", "none"},
                                           {1, "Left and right exchanged", "horizontal"},
                                           {2, "Top and bottom exchanged", "vertical"},
                                           {3, "Both", "both"}};
    static const GType type = registerEnum("ZrMuxFlip", rows);
    return type;
}
