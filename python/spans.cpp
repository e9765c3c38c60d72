// The kernels on runs of pixels.
#include "python/frame_array.h"
#include "python/module.h"
#include "python/wipe_code.h"
#include "zrdraw/span.h"
#include "zrdraw/transitions.h"

#include <fmt/format.h>

#include <cmath>

using namespace py::literals;

namespace {

const zrLayout& fourBytes() {
    return *zrFindLayout(ptBGRA32);
}

void blendOver(const py::array& destination, const py::array& source) {
    const PictureView to = frameIn(destination, fourBytes(), {}, Access::Write).view;
    const PictureView from = frameIn(source, fourBytes(), {}, Access::Read).view;
    requireSameSize(to, from, to);
    if (overlap(to, from))
        throw py::value_error("the two arrays share memory");
    const py::gil_scoped_release released;
    for (int y = 0; y < to.height; ++y)
        zrdraw_blend_bgra_over(to.line(y), from.line(y), static_cast<unsigned long>(to.width));
}

// A piece of memory of whatever type.
struct Bytes {
    char* data;
    std::size_t size;
};

Bytes bytesOf(const py::array& array, const char* name) {
    if ((array.flags() & py::array::c_style) == 0)
        throw py::value_error(
            fmt::format("{}: the bytes of the array must follow each other", name));
    return {static_cast<char*>(const_cast<void*>(array.data())),
            static_cast<std::size_t>(array.nbytes())};
}

void fillPattern(const py::array& array, const py::bytes& pattern) {
    const Bytes to = bytesOf(array, "array");
    if (!array.writeable())
        throw py::value_error("the array is read-only");
    const std::string bytes = pattern;
    if (bytes.empty() || to.size % bytes.size() != 0)
        throw py::value_error(fmt::format("{} bytes are no whole number of patterns of {} bytes",
                                          to.size, bytes.size()));
    const py::gil_scoped_release released;
    zrdraw_fill_pattern(to.data, bytes.data(), static_cast<unsigned>(bytes.size()),
                        to.size / bytes.size());
}

unsigned packedPixelBytes(const std::string& layout) {
    return zrdraw_packed_pixel_bytes(layoutOf(layout).code);
}

} // namespace

void bindSpans(py::module_& module) {
    module.def("blend_over", &blendOver, "destination"_a, "source"_a,
               "Lay pixels over others in place. Both are uint8[height, width, 4], three colours "
               "and a straight alpha; pixels with an alpha of 16 or less are skipped, and the "
               "destination takes the source's alpha.");
    module.def("fill_pattern", &fillPattern, "array"_a, "pattern"_a,
               "Fill an array of any type, whose bytes follow each other, with a pattern of bytes: "
               "a whole number of times.");
    module.def("packed_pixel_bytes", &packedPixelBytes, "layout"_a,
               "Bytes of a pixel in the layouts whose runs are copies of a pixel; 0 for the "
               "others, and for 32-bit RGB, whose runs are words.");
    module.def(
        "avx2_available", [] { return zrdraw_avx2_available() != 0; },
        "Whether the processor has AVX2, which the kernels then use.");
}
