// The pass over one frame, layer by layer.
#include "pixel/fatal.h"
#include "zrdraw/platform/media.h"
#include "zrdraw/zroverlay.h"

#include <cstdio>
#include <cstring>
#include <initializer_list>

namespace {

constexpr std::size_t textBytes = 512;
constexpr unsigned int linesPerScale = 10;
constexpr unsigned int smallTextLines = 30; // scale 3

RECT rectOf(unsigned int left, unsigned int top, unsigned int right, unsigned int bottom) {
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right),
            static_cast<int>(bottom)};
}

// The text's own rectangle comes back in `rect`.
void drawText(ZRDraw& draw, const char* text, RECT& rect) {
    draw.DrawText(text, static_cast<int>(std::strlen(text)), &rect, zrTextReport);
}

// By contract: one line below the other on the same field, for good.
void evenLines(CZrOverlay& overlay) {
    for (unsigned int* line :
         {&overlay.SourceFormatY, &overlay.AudioY, &overlay.TimeCodeY, &overlay.TimeCodeSize})
        *line &= ~1U;
    for (unsigned int& line : overlay.CustomTextY)
        line &= ~1U;
}

void setTextColors(ZRDraw& draw, bool filled) {
    constexpr double grey = 0.9;
    draw.SetColorRGBA(grey, grey, grey, 1.0, true);
    draw.textTransparent = !filled;
    if (!filled)
        return;
    draw.textColor0 = {grey, grey, grey, 1.0};
    draw.SetColorRGBA(0.0, 0.0, 0.0, 0.0, false);
    draw.textColor1 = {0.0, 0.0, 0.0, 0.0};
}

void drawTimeCodes(const CZrOverlay& overlay, const DFRAME& frame, unsigned int adjust,
                   char* text) {
    const unsigned int lines = overlay.TimeCodeSize * linesPerScale;
    RECT rect = rectOf(overlay.TimeCodeX, overlay.TimeCodeY, 0, overlay.TimeCodeY + lines);
    const auto drawLine = [&](unsigned int count) {
        tc2String(count - adjust, overlay.tcType | zrTimeCodeTextFlags, text);
        drawText(*overlay.draw, text, rect);
        rect.top += static_cast<int>(lines);
        rect.bottom += static_cast<int>(lines);
    };
    if (overlay.TimeCodeLTCEnable != 0)
        drawLine(frame.ltc);
    if (overlay.TimeCodeVITCEnable != 0) // by contract, in the place of the other when that is off
        drawLine(frame.vitc);
}

const char* scanName(unsigned int flags) {
    const unsigned int scan = flags & (zrScanInterlaced | zrScanSegmented);
    return scan == zrScanInterlaced ? "i" : scan == zrScanSegmented ? "sf" : "p";
}

void drawSourceFormat(const CZrOverlay& overlay, char* text) {
    const KPXVIDEO& video = overlay.video;
    const tagBITMAPINFO& header = video.header;
    RECT rect =
        rectOf(overlay.SourceFormatX, overlay.SourceFormatY,
               static_cast<unsigned int>(header.biWidth), overlay.SourceFormatY + smallTextLines);
    const float rate = static_cast<float>(video.rate) / static_cast<float>(video.scale);
    std::snprintf(text, textBytes, "%.2f %s %s %dx%d %s", static_cast<double>(rate),
                  kpxutilFileTypeString(overlay.system.fileType),
                  kpxutilCodecTypeString(header.biCompression), header.biWidth, header.biHeight,
                  scanName(video.flags));
    drawText(*overlay.draw, text, rect);
}

void drawCustomTexts(const CZrOverlay& overlay, char* text) {
    for (int slot = 0; slot < CZrOverlay::textSlots; ++slot) {
        if (overlay.CustomTextEnabled[slot] == 0 || overlay.CustomText[slot] == nullptr)
            continue;
        const unsigned int top = overlay.CustomTextY[slot];
        RECT rect =
            rectOf(overlay.CustomTextX[slot], top,
                   static_cast<unsigned int>(overlay.video.header.biWidth), top + smallTextLines);
        copyText(text, textBytes, overlay.CustomText[slot], "a custom text");
        drawText(*overlay.draw, text, rect);
    }
}

} // namespace

int CZrOverlay::BurnIn(DFRAME* frame, unsigned int* audioLevels, unsigned int* audioPeaks,
                       unsigned int tcAdjust) {
    if (bitmapHeader.biSizeImage == 0 || frame == nullptr)
        return 0;
    // By contract: the object is made even while the overlay is off.
    if (draw == nullptr && GetDraw(&bitmapHeader, frame->videoData, draw) != 0)
        return 0;
    if (Enabled == 0 || draw == nullptr)
        return 0;
    draw->SetCanvas(frame->videoData, bitmapHeader.biHeight, bitmapHeader.biWidth, 0);
    if ((video.flags & zrScanInterlaced) != 0)
        evenLines(*this);
    setTextColors(*draw, FillBackground == 1);
    char text[textBytes] = {};
    drawTimeCodes(*this, *frame, tcAdjust, text);
    if (WatermarkEnable != 0)
        ApplyWatermark(frame);
    if (SourceFormatEnable != 0)
        drawSourceFormat(*this, text);
    drawCustomTexts(*this, text);
    if (AudioEnable != 0)
        drawAudMeters(audioLevels, audioPeaks);
    return 0;
}

void fillRect(ZRDraw* draw, int x, int y, int height, int width) {
    for (int row = y; height > 0; --height, ++row)
        draw->Line(x, row, x + width, row);
}
