#include "common/mux_modes.h"
#include "common/transition.h"
#include "common/wipe_names.h"
#include "gallery/cell_sheet.h"
#include "gallery/pictures.h"
#include "gallery/sheets.h"
#include "picture/convert.h"
#include "zrdraw/mux.h"

#include <fmt/format.h>

namespace {

const zrLayout& bgra() {
    return *zrFindLayout(ptBGRA32);
}

Canvas canvasOf(const AVFrame& picture) {
    Canvas canvas(bgra(), cellWidth, cellHeight);
    Loader(canvas.shape()).load(picture, canvas);
    return canvas;
}

} // namespace

Sheet makeWipesSheet() {
    constexpr double positions[] = {0.1, 0.3, 0.5, 0.7, 0.9};
    constexpr int columns = 5;
    Canvas from = canvasOf(*makeLandscape()), to = canvasOf(*makeBars());
    Canvas result(bgra(), cellWidth, cellHeight);
    const std::vector<zrWipe> wipes = namedWipes();
    CellSheet sheet(static_cast<int>(wipes.size()) * columns, columns);
    for (const zrWipe& wipe : wipes) {
        Transition transition(bgra(), cellWidth, cellHeight, wipe.first, false, false);
        for (const double position : positions) {
            transition.draw(from.view(), to.view(), result.view(),
                            static_cast<unsigned>(position * Transition::scale));
            result.colors = from.colors;
            sheet.add(fmt::format("{} {:.1f}", wipe.name, position), result);
        }
    }
    return sheet.take();
}

Sheet makeMuxSheet() {
    const FramePtr landscape = makeLandscape(), bars = makeBars();
    CellSheet sheet(static_cast<int>(muxModeNames().size()));
    for (const MuxModeName& mode : muxModeNames()) {
        Canvas a = canvasOf(*landscape), b = canvasOf(*bars);
        Canvas result(bgra(), cellWidth, cellHeight);
        MuxParameters parameters;
        parameters.flags = mode.mode;
        parameters.wipeCode = zrWipeFourCorners;
        parameters.param = mode.mode == zrMuxKey ? 64 : 0;
        if (mode.mode == zrMuxBlocks)
            parameters.position = 16 << 8;
        composeMux(parameters, a.view(), b.view(), result.view());
        result.colors = a.colors;
        sheet.add(mode.name, result);
    }
    return sheet.take();
}
