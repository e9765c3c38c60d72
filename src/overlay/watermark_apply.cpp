// Laying the watermark on a frame, in one of three layouts.
#include "overlay/watermark.h"
#include "span/bodies.h"
#include "zrdraw/layouts.h"
#include "zrdraw/platform/files.h"
#include "zrdraw/span.h"
#include "zrdraw/zroverlay.h"

#include <algorithm>

namespace {

// The frame's size as unsigned numbers; a height that is not positive ends the work at once.
struct Area {
    explicit Area(const CZrOverlay& overlay)
        : width(static_cast<unsigned int>(overlay.video.header.biWidth)),
          height(static_cast<unsigned int>(std::max(0, overlay.video.header.biHeight))) {}
    unsigned int width, height;
};

void applyYuv2(const CZrOverlay& overlay, unsigned char* frame) {
    constexpr unsigned int pixelBytes = 2;
    if (frame == nullptr || overlay.wmYuv2 == nullptr)
        return;
    const Area area(overlay);
    const unsigned int pairs = overlay.wmWidth / 2;
    const unsigned char* entry = overlay.wmYuv2;
    for (unsigned int row = 0; row < overlay.wmHeight; ++row) {
        const unsigned int y = overlay.WatermarkY + row;
        if (y >= area.height)
            return;
        // Offsets are 32-bit numbers that wrap.
        const unsigned int offset = (y * area.width + overlay.WatermarkX) * pixelBytes;
        // By contract: pairs are counted against pixels, so an overhang runs into the next line.
        if (overlay.WatermarkX < area.width)
            span::blendPairs(frame + offset, entry,
                             std::min(pairs, area.width - overlay.WatermarkX));
        entry += watermarkPairEntries * pairs;
    }
}

// By contract: an object is made for each frame.
void applyV210(const CZrOverlay& overlay, char* frame) {
    if (frame == nullptr || overlay.wmV210 == nullptr || overlay.wmHeight == 0)
        return;
    const Area area(overlay);
    const auto pitch = zrLineBytes(zrFindLayout(ptV210)->line, area.width);
    ZRDraw* target = nullptr;
    GetDraw(ptV210, static_cast<int>(area.width), overlay.video.header.biHeight,
            static_cast<int>(pitch), frame, target);
    if (target == nullptr)
        return;
    const unsigned int pairs = overlay.wmWidth / 2;
    for (unsigned int row = 0; row < overlay.wmHeight && overlay.WatermarkX < area.width; ++row) {
        const unsigned int y = overlay.WatermarkY + row;
        if (y >= area.height)
            break;
        writeWatermarkV210(*target, static_cast<int>(overlay.WatermarkX), static_cast<int>(y),
                           overlay.wmV210 + watermarkPairEntries * (pairs * row),
                           std::min(overlay.wmWidth, area.width - overlay.WatermarkX));
    }
    ReleaseDraw(target);
}

// By contract: lines have 4 bytes a pixel and no more.
void applyBgra(const CZrOverlay& overlay, unsigned char* frame) {
    if (frame == nullptr || overlay.wmBgra == nullptr)
        return;
    const Area area(overlay);
    for (unsigned int row = 0; row < overlay.wmHeight; ++row) {
        const unsigned int y = overlay.WatermarkY + row;
        if (y >= area.height)
            return;
        if (overlay.WatermarkX >= area.width)
            continue;
        const unsigned int offset = (y * area.width + overlay.WatermarkX) * watermarkBgraBytes;
        zrdraw_blend_bgra_over(frame + offset,
                               overlay.wmBgra + row * overlay.wmWidth * watermarkBgraBytes,
                               std::min(area.width - overlay.WatermarkX, overlay.wmWidth));
    }
}

} // namespace

int CZrOverlay::ApplyWatermark(DFRAME* frame) {
    auto* const bytes = reinterpret_cast<unsigned char*>(frame->videoData);
    switch (wmLayout) {
    case zrWatermarkYuv2:
        applyYuv2(*this, bytes);
        break;
    case zrWatermarkV210:
        applyV210(*this, frame->videoData);
        break;
    case zrWatermarkBgra:
        applyBgra(*this, bytes);
        break;
    default:
        ErrOut("Error: No colourspace for watermark ");
        break;
    }
    return 0;
}
