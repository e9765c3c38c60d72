// What the parts of the module add to it, beside the class Draw of canvas.h.
#pragma once

#include <pybind11/pybind11.h>

void bindFrames(pybind11::module_& module);
void bindHalfFloats(pybind11::module_& module);
void bindMux(pybind11::module_& module);
void bindOverlay(pybind11::module_& module);
void bindSpans(pybind11::module_& module);
void bindWipe(pybind11::module_& module);
