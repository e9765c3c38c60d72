// The catalogue of layouts, and frames of their sizes.
#include "common/layout_names.h"
#include "python/frame_array.h"
#include "python/module.h"

#include <fmt/format.h>

using namespace py::literals;

namespace {

py::dict layouts() {
    py::dict all;
    for (const zrLayout& layout : zrLayouts)
        all[py::str(layoutName(layout))] = py::dict(
            "code"_a = layout.code, "memory"_a = layout.memory, "array"_a = expectedArray(layout),
            "group_pixels"_a = layout.line.groupPixels, "group_bytes"_a = layout.line.groupBytes,
            "whole_groups"_a = layout.line.wholeGroups, "mosaic"_a = layout.mosaic);
    return all;
}

int sizeOf(Whole number, const char* what) {
    return withinRange(number, what, 1, farthest);
}

py::array frame(const std::string& layout, Whole width, Whole height) {
    return makeFrame(layoutOf(layout), sizeOf(width, "width"), sizeOf(height, "height"));
}

unsigned long frameSize(const std::string& name, Whole width, Whole height, Whole pitch) {
    constexpr int farthestLine = 1 << 20;
    const zrLayout& layout = layoutOf(name);
    const int columns = sizeOf(width, "width"), lines = sizeOf(height, "height");
    const auto natural = static_cast<int>(zrLineBytes(layout.line, static_cast<unsigned>(columns)));
    const int given = withinRange(pitch, "pitch", 0, farthestLine);
    if (given != 0 && given < natural)
        throw py::value_error(fmt::format("pitch: a line of {} pixels of {} has {} bytes, not {}",
                                          columns, name, natural, given));
    return static_cast<unsigned long>(given == 0 ? natural : given) *
           static_cast<unsigned long>(lines);
}

} // namespace

void bindFrames(py::module_& module) {
    module.def("layouts", &layouts,
               "The layouts by name, each with its facts: code, a pixel in memory, the array that "
               "holds a frame, how many bytes a group of pixels has, and the cell of a mosaic.");
    module.def("frame", &frame, "layout"_a, "width"_a, "height"_a,
               "A new array of zeros for a frame, in the shape that layouts() tells. Its memory "
               "goes on behind the frame where the library touches more: for mosaics, chroma "
               "planes of 8 bits, odd widths of 4:2:2, and some writes of 24-bit pixels.");
    module.def("frame_size", &frameSize, "layout"_a, "width"_a, "height"_a, "pitch"_a = 0,
               "Bytes of a frame; `pitch` are those from one line to the next, 0 for no gaps.");
}
