#include "common/overlay_stream.h"

#include "common/layout_names.h"
#include "common/tool_error.h"
#include "common/watermark_picture.h"
#include "zrdraw/overlay_settings.h"
#include "zrdraw/platform/config_store.h"
#include "zrdraw/zrhost.h"

#include <fmt/format.h>

#include <cstring>

namespace {

// How a stream in a layout describes itself.
struct Description {
    unsigned code;
    unsigned compression;
    unsigned short depth;
};
constexpr Description descriptions[] = {
    {ptBGRA32, zrWatermarkBgra, 32}, {ptUYVY, zrWatermarkYuv2, 16}, {ptV210, zrWatermarkV210, 16}};

const Description& descriptionOf(const zrLayout& layout) {
    for (const Description& row : descriptions)
        if (row.code == layout.code)
            return row;
    throw UsageError(fmt::format("overlays are burnt in bgra, uyvy or v210, not in {}: use one of "
                                 "them as --layout, or leave it out",
                                 layoutName(layout)));
}

} // namespace

unsigned overlayCompression(const zrLayout& layout) {
    return descriptionOf(layout).compression;
}

std::unique_ptr<KPXVIDEO> describeStream(const OverlayStream& stream) {
    const Description& description = descriptionOf(*stream.layout);
    auto video = std::make_unique<KPXVIDEO>();
    tagBITMAPINFO header{};
    header.biSize = offsetof(tagBITMAPINFO, biMask);
    header.biWidth = stream.width;
    header.biHeight = stream.height;
    header.biPlanes = 1;
    header.biBitCount = description.depth;
    header.biCompression = description.compression;
    header.biSizeImage = GetDrawSize(description.code, stream.width, stream.height, 0);
    video->header = header;
    video->rate = static_cast<unsigned>(stream.rate);
    video->scale = static_cast<unsigned>(stream.scale);
    video->flags = stream.interlaced ? zrScanInterlaced : 0;
    return video;
}

void setOverlayText(CZrOverlay& overlay, int slot, const std::string& text) {
    char*& owned = overlay.CustomText[slot];
    delete[] owned;
    auto copy = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    owned = copy.release(); // the overlay's own, which frees it so
}

bool loadStoredSettings(CZrOverlay& overlay, std::string& watermark) {
    // Loading from an empty store would fill it.
    if (zrCFGKeyExists(zrCFGDefaultStore, zrOverlayKeyPath) == 0)
        return false;
    // Texts are loaded into what a slot has, and the watermark not at all.
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot)
        setOverlayText(overlay, slot, std::string(zrOverlayTextLimit, '\0'));
    overlay.LoadConfig();
    char path[zrOverlayTextLimit + 1] = {};
    overlay.LoadSetting("Watermark", static_cast<char*>(path));
    watermark = path;
    return true;
}

bool createOverlay(CZrOverlay& overlay, KPXVIDEO& video, KPXSYSTEM& system) {
    zrOSSetLogSink([](const char*) {});
    overlay.Create(&video, &system);
    zrOSSetLogSink(nullptr);
    cutWatermark(overlay);
    return overlay.WatermarkEnable == 0 || overlay.wmBgra || overlay.wmYuv2 || overlay.wmV210;
}
