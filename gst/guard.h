// Exceptions end where GStreamer's C begins.
#pragma once

#include "debug.h"

#include <exception>

// Does the work of a frame; what it throws becomes the element's error.
template <class Work>
GstFlowReturn guarded(gpointer element, Work work) {
    try {
        return work();
    } catch (const std::exception& error) {
        GST_ELEMENT_ERROR(element, LIBRARY, FAILED, ("%s.", error.what()), (nullptr));
        return GST_FLOW_ERROR;
    }
}
