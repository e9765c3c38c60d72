#include "python/canvas.h"

#include "common/layout_names.h"

#include <fmt/format.h>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

constexpr char about[] = R"(Draws on a frame that lies in a numpy array, in place.

array: the frame, in the shape that zrdraw.layouts() tells for the layout. Lines may be farther
    apart than they are long, as in a view of a larger picture; the pixels of a line may not. It is
    kept alive and stays the caller's.
layout: its name, such as "bgra", "v210" or "rgb48"
width: pixels of a line, where the shape does not tell: v210, odd widths of 4:2:2 and mosaics

Operations answer True when done and False when the library refuses them, and then nothing is
drawn; where a refusal is possible their text tells. What lies off the frame is cut, pixel by pixel
unless told otherwise. Coordinates are pixels, x to the right and y down, from -32767 to 32767; a
coordinate equal to the width or the height lands on the last pixel or line. Whatever is of a wrong
kind is a TypeError, whatever is out of range a ValueError.

Threads may share an object: one works at a time. Other threads of Python run meanwhile.)";

constexpr const char* noRoom =
    "on this array {0} can only be drawn on in the foreground colour and opaque, as all other "
    "writes have four bytes a pixel: draw on zrdraw.frame(\"{0}\", {1}, {2}), which has room";

} // namespace

Canvas::Canvas(const py::array& array, const std::string& layout, std::optional<int> width)
    : m_frame(frameIn(array, layoutOf(layout), width, Access::Write)) {
    const PictureView& view = m_frame.view;
    const bool is24 = view.layout->bytes.r >= 0 && view.layout->bytes.a < 0;
    if (!m_frame.hasRoom && !is24)
        throw py::value_error(fmt::format("the library reads or writes behind a frame of {} x {} "
                                          "in {}, where the array has no room: draw on "
                                          "zrdraw.frame(\"{}\", {}, {})",
                                          view.width, view.height, layout, layout, view.width,
                                          view.height));
    ZRDraw* draw = nullptr;
    GetDraw(view.layout->code, view.width, view.height, view.pitch,
            reinterpret_cast<char*>(view.data), draw);
    m_draw.reset(draw);
}

bool Canvas::isPacked() const {
    return pitch() == static_cast<int>(zrLineBytes(layout().line, static_cast<unsigned>(width())));
}

void Canvas::requireRoom(bool isNeeded) const {
    if (isNeeded && !m_frame.hasRoom)
        throw py::value_error(fmt::format(noRoom, layoutName(layout()), width(), height()));
}

void Canvas::requireInside(Coordinate x, Coordinate y) const {
    if (x.value < 0 || y.value < 0 || x.value >= width() || y.value >= height())
        throw py::index_error(fmt::format("({}, {}) is not on the {} x {} frame", x.value, y.value,
                                          width(), height()));
}

CanvasClass bindCanvas(py::module_& module) {
    CanvasClass canvas(module, "Draw", about);
    canvas
        .def(py::init<const py::array&, const std::string&, std::optional<int>>(), "array"_a,
             "layout"_a, "width"_a = py::none())
        .def_property_readonly(
            "array", [](const Canvas& self) { return self.array(); }, "The array that is drawn on.")
        .def_property_readonly(
            "layout", [](const Canvas& self) { return layoutName(self.layout()); },
            "Name of the layout.")
        .def_property_readonly("width", &Canvas::width, "Pixels of a line.")
        .def_property_readonly("height", &Canvas::height, "Lines.")
        .def_property_readonly("pitch", &Canvas::pitch, "Bytes from one line to the next.");
    return canvas;
}
