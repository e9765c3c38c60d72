#include "common/layout_names.h"
#include "gallery/cell_sheet.h"
#include "gallery/pictures.h"
#include "gallery/sheets.h"
#include "picture/convert.h"
#include "script/player.h"

#include <fmt/format.h>

#include <iterator>

namespace {

// Lines at every slope, areas on edges that cut pixel pairs, thin text, and a mix with the picture.
constexpr const char* drawing =
    "color 1 1 1; backcolor 0 0 0; label 8 6 \"Label 0123\"; label 100 6 \"opaque\" opaque;"
    "color 1 0.2 0.2; line 8 20 184 60; vert 101 20 60; horiz 8 64 90; wu 8 60 184 24;"
    "color 0.2 0.4 1; fillcircle 40 42 14; circle 150 42 16; ellipse 150 42 24 8;"
    "color 1 0.9 0.1; fillrect 71 32 90 52; dash 100 70 184 84 5 3;"
    "color 0.1 0.8 0.3; transparency 0.5; fillrect 113 28 128 56";

} // namespace

Sheet makeLayoutsSheet() {
    const Script script = parseScript(drawing, "layouts");
    const FramePtr picture = makeBars();
    CellSheet sheet(static_cast<int>(std::size(zrLayouts)));
    for (const zrLayout& layout : zrLayouts) {
        Canvas canvas(layout, cellWidth, cellHeight);
        Loader(canvas.shape()).load(*picture, canvas);
        const DrawPtr draw = makeDraw(canvas);
        drawOnce(script, *draw, canvas.view());
        sheet.add(fmt::format("{} {}", layoutName(layout), layout.code), canvas, picture.get());
    }
    return sheet.take();
}
