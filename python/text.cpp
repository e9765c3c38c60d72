// Labels, and text laid out in rectangles.
#include "common/near_names.h"
#include "python/canvas.h"

#include <fmt/format.h>

#include <tuple>
#include <utility>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

constexpr int largestScale = 64;

unsigned alignmentNamed(const std::string& name) {
    for (const auto& [word, format] : {std::pair{"left", 0U},
                                       {"centre", unsigned{zrTextCentre}},
                                       {"center", unsigned{zrTextCentre}},
                                       {"right", unsigned{zrTextRight}}})
        if (name == word)
            return format;
    throw py::value_error(fmt::format("align: expected left, centre or right, got '{}'", name));
}

bool label(Canvas& canvas, Coordinate x, Coordinate y, const Text& text, bool inverse,
           bool opaque) {
    canvas.requireRoom(inverse || opaque);
    return canvas.run([&](ZRDraw& draw) {
        return draw.Label(x.value, y.value, text.text.c_str(), inverse, opaque);
    });
}

std::tuple<int, int, int, int> drawText(Canvas& canvas, Coordinate left, Coordinate top,
                                        Coordinate right, Coordinate bottom, const Text& text,
                                        const std::string& align, bool keepBottom, bool opaque) {
    canvas.requireRoom(opaque);
    const unsigned format =
        alignmentNamed(align) | zrTextReport | (keepBottom ? zrTextKeepBottom : 0U);
    RECT rect{left.value, top.value, right.value, bottom.value};
    canvas.with([&](ZRDraw& draw) {
        const bool before = std::exchange(draw.textTransparent, !opaque);
        draw.DrawText(text.text.c_str(), static_cast<int>(text.text.size()), &rect, format);
        return draw.textTransparent = before;
    });
    return {rect.left, rect.top, rect.right, rect.bottom};
}

int labelScale(Canvas& canvas) {
    return canvas.with([](const ZRDraw& draw) { return static_cast<int>(draw.labelScale); });
}

void setLabelScale(Canvas& canvas, Whole scale) {
    const int number = withinRange(scale, "label_scale", 1, largestScale);
    canvas.with([=](ZRDraw& draw) { return draw.LabelFont(0U, number); });
}

std::tuple<int, int> cell(Canvas& canvas) {
    return canvas.with([](ZRDraw& draw) {
        return std::tuple(draw.LabelGetFontWidth(), draw.LabelGetFontHeight());
    });
}

} // namespace

void bindText(CanvasClass& canvas) {
    canvas
        .def_property("label_scale", &labelScale, &setLabelScale,
                      "int: size of labels, 1 to 64, that many times 8 by 10 pixels a character.")
        .def_property_readonly("label_cell", &cell,
                               "Width and height of a character of labels, pixels.")
        .def("label", &label, "x"_a, "y"_a, "text"_a, "inverse"_a = false, "opaque"_a = false,
             "Write text from its top left corner on, in the built-in font, in one line. The text "
             "has characters of the codes 1 to 127; another one is a ValueError that names it.\n\n"
             "inverse: exchange the two colours; opaque: draw the empty pixels of the cells too.")
        .def("draw_text", &drawText, "left"_a, "top"_a, "right"_a, "bottom"_a, "text"_a,
             "align"_a = "left", "keep_bottom"_a = false, "opaque"_a = false,
             "Write text in a rectangle, at a scale of a tenth of its height, 1 to 20. Nothing is "
             "wrapped or cut. Returns the rectangle of the text: left, top, right, bottom.\n\n"
             "align: left, centre or right; keep_bottom: stand on the bottom and not below the "
             "top; opaque: paint the cells in the background colour.");
}
