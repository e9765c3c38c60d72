// The overlay's life: construction, the description of a stream, and the end.
#include "zrdraw/overlay_settings.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/platform/memory.h"

namespace {

// By contract: an object that never heard of a stream has this time code type.
constexpr unsigned int firstTimeCodeType = 4;

} // namespace

CZrOverlay::CZrOverlay()
    : tcType(firstTimeCodeType), Watermark(nullptr), CustomText{}, draw(nullptr), bitmapHeader{},
      reservedArray(nullptr), iniPath(nullptr), iniFile(nullptr), wmWidth(0), wmHeight(0),
      wmLayout(0), wmV210(nullptr), wmYuv2(nullptr), wmBgra(nullptr),
      pixelCode(0), video{}, system{} {
    for (const zrOverlaySetting& setting : zrOverlaySettings)
        if (setting.number != nullptr)
            this->*setting.number = setting.initial;
    for (const zrOverlaySlotSetting& setting : zrOverlaySlotSettings)
        for (unsigned int slot = 0; slot < textSlots; ++slot)
            (this->*setting.numbers)[slot] = setting.initial + setting.step * slot;
}

// By contract: the watermark caches stay allocated.
CZrOverlay::~CZrOverlay() {
    for (char*& text : CustomText) {
        delete[] text;
        text = nullptr;
    }
    if (draw != nullptr)
        ReleaseDraw(draw);
    draw = nullptr;
    delete[] reservedArray;
}

int CZrOverlay::Create(KPXVIDEO* newVideo, KPXSYSTEM* newSystem) {
    if (newVideo == nullptr || newSystem == nullptr)
        return 0;
    CopyMemoryFast(&bitmapHeader, newVideo, sizeof bitmapHeader);
    zrOSCopyMemory(&video, newVideo, sizeof video);
    pixelCode = bitmapHeader.biCompression;
    tcType = vidGetTCType(static_cast<double>(video.rate) / static_cast<double>(video.scale));
    zrOSCopyMemory(&system, newSystem, sizeof system);
    if (WatermarkEnable != 0)
        LoadWatermark();
    for (auto& levels : levelHistory)
        for (unsigned int& level : levels)
            level = 0;
    return 0;
}

int CZrOverlay::Destroy() {
    if (draw != nullptr)
        ReleaseDraw(draw);
    draw = nullptr;
    return 0;
}

int CZrOverlay::SetAppName(const char*) {
    return 0;
}
