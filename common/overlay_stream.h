// What an overlay is told of the stream that it burns into.
#pragma once

#include "zrdraw/layouts.h"
#include "zrdraw/zroverlay.h"

#include <memory>
#include <string>

// Those that the overlay knows.
inline constexpr unsigned overlayLayouts[] = {ptBGRA32, ptUYVY, ptV210};

struct OverlayStream {
    const zrLayout* layout;
    int width;
    int height;
    int rate; // frames in `scale` seconds
    int scale;
    bool interlaced;
    bool operator==(const OverlayStream&) const = default;
};

// The overlay's name of a layout. One that it does not know is a UsageError.
unsigned overlayCompression(const zrLayout& layout);

std::unique_ptr<KPXVIDEO> describeStream(const OverlayStream& stream);

// Hands the overlay a text of its own.
void setOverlayText(CZrOverlay& overlay, int slot, const std::string& text);

// Takes the settings that the store holds and the path of the watermark; false: it holds none.
bool loadStoredSettings(CZrOverlay& overlay, std::string& watermark);

// Tells the overlay of its stream and cuts its watermark, while the lines of the log are kept back:
// the caller tells of the watermark with its file's name. Returns false if the watermark is enabled
// and could not be read.
bool createOverlay(CZrOverlay& overlay, KPXVIDEO& video, KPXSYSTEM& system);
