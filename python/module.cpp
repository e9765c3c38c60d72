#include "python/module.h"

#include "python/canvas.h"
#include "zrdraw/version.h"

PYBIND11_MODULE(zrdraw, module) {
    module.doc() = "Draws on uncompressed video frames, numpy arrays in the frames' own pixel "
                   "layouts; transitions, the display mux and overlays.";
    module.attr("__version__") = ZRDRAW_VERSION_STRING;
    bindFrames(module);
    CanvasClass canvas = bindCanvas(module);
    bindState(canvas);
    bindPixels(canvas);
    bindLines(canvas);
    bindCurves(canvas);
    bindAreas(canvas);
    bindText(canvas);
    bindWipe(module);
    bindMux(module);
    bindOverlay(module);
    bindSpans(module);
    bindHalfFloats(module);
}
