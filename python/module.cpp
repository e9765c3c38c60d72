#include "python/module.h"

#include "common/tool_error.h"
#include "python/canvas.h"
#include "zrdraw/version.h"

namespace {

// What the parts that the tool has as well throw; all else is a runtime error.
void tellUsageErrors(std::exception_ptr thrown) { // NOLINT: so pybind11 has it
    try {
        if (thrown)
            std::rethrow_exception(thrown);
    } catch (const UsageError& error) {
        PyErr_SetString(PyExc_ValueError, error.what());
    }
}

} // namespace

PYBIND11_MODULE(zrdraw, module) {
    py::register_exception_translator(&tellUsageErrors);
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
