#include "gallery/cell_sheet.h"
#include "gallery/sheets.h"

#include "layout_names.h"
#include "script/parser.h"

#include <fmt/format.h>

#include <iterator>
#include <new>

namespace {

constexpr int barsHeight = 88;
constexpr int barCount = 8;
constexpr int pixelBytes = 4;

// Lines at every slope, areas on edges that cut pixel pairs, thin text, and a mix with the picture.
constexpr const char* drawing =
    "color 1 1 1; backcolor 0 0 0; label 8 6 \"Label 0123\"; label 100 6 \"opaque\" opaque;"
    "color 1 0.2 0.2; line 8 20 184 60; vert 101 20 60; horiz 8 64 90; wu 8 60 184 24;"
    "color 0.2 0.4 1; fillcircle 40 42 14; circle 150 42 16; ellipse 150 42 24 8;"
    "color 1 0.9 0.1; fillrect 71 32 90 52; dash 100 70 184 84 5 3;"
    "color 0.1 0.8 0.3; transparency 0.5; fillrect 113 28 128 56";

// Bars in 75 % of full colour above a ramp of grey.
FramePtr makePicture() {
    FramePtr picture(av_frame_alloc());
    if (!picture)
        throw std::bad_alloc();
    picture->format = AV_PIX_FMT_BGRA;
    picture->width = cellWidth;
    picture->height = cellHeight;
    if (av_frame_get_buffer(picture.get(), 0) < 0)
        throw std::bad_alloc();
    for (int y = 0; y < cellHeight; ++y) {
        std::uint8_t* pixel = picture->data[0] + std::ptrdiff_t{picture->linesize[0]} * y;
        for (int x = 0; x < cellWidth; ++x, pixel += pixelBytes) {
            const int bar = barCount - 1 - x * barCount / cellWidth; // its bits: green, red, blue
            const auto ramp = static_cast<std::uint8_t>(x * 255 / (cellWidth - 1));
            const auto channel = [&](int bit) {
                return static_cast<std::uint8_t>((bar & bit) != 0 ? 191 : 0);
            };
            pixel[0] = y < barsHeight ? channel(1) : ramp;
            pixel[1] = y < barsHeight ? channel(4) : ramp;
            pixel[2] = y < barsHeight ? channel(2) : ramp;
            pixel[3] = 255;
        }
    }
    return picture;
}

} // namespace

Sheet makeLayoutsSheet() {
    const Script script = parseScript(drawing, "layouts");
    const FramePtr picture = makePicture();
    CellSheet sheet(static_cast<int>(std::size(zrLayouts)));
    for (const zrLayout& layout : zrLayouts) {
        WorkingFrame canvas(layout, cellWidth, cellHeight);
        canvas.load(*picture);
        const DrawPtr draw = makeDraw(canvas);
        for (const Command& command : script)
            command.run(*draw);
        sheet.add(fmt::format("{} {}", layoutName(layout), layout.code), canvas);
    }
    return sheet.take();
}
