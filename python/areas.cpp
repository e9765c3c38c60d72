// Rectangles, fills and gradients.
#include "python/canvas.h"

#include <utility>

using namespace py::literals;

namespace {

constexpr int mostDegrees = 3600;

// Whether the library would fill the lines of the canvas as if there were no gaps between them,
// and so what stands there.
bool fillsGaps(const Canvas& canvas) {
    return canvas.layout().bytes.a >= 0 && !canvas.isPacked();
}

int eraseByLines(ZRDraw& draw, bool background) {
    if (background)
        std::swap(draw.foreColor, draw.backColor);
    for (int y = 0; y < static_cast<int>(draw.height); ++y)
        draw.LineHoriz(0, y, static_cast<int>(draw.width) - 1);
    if (background)
        std::swap(draw.foreColor, draw.backColor);
    return 0;
}

bool erase(Canvas& canvas, bool background) {
    canvas.requireRoom(background);
    return canvas.run([&](ZRDraw& draw) {
        return fillsGaps(canvas) ? eraseByLines(draw, background) : draw.EraseCanvas(background);
    });
}

bool fillRect(Canvas& canvas, Coordinate left, Coordinate top, Coordinate right,
              Coordinate bottom) {
    const RECT rect{left.value, top.value, right.value, bottom.value};
    const bool isWhole =
        rect.right - rect.left == canvas.width() && rect.bottom - rect.top == canvas.height();
    return canvas.run([&](ZRDraw& draw) {
        return isWhole && fillsGaps(canvas) ? eraseByLines(draw, false) : draw.FillRect(&rect);
    });
}

bool roundRect(Canvas& canvas, Coordinate left, Coordinate top, Coordinate right, Coordinate bottom,
               Length cornerWidth, Length cornerHeight) {
    return canvas.run([=](ZRDraw& draw) {
        return draw.RoundRect(left.value, top.value, right.value, bottom.value, cornerWidth.value,
                              cornerHeight.value);
    });
}

bool gradientRect(Canvas& canvas, Coordinate left, Coordinate top, Coordinate right,
                  Coordinate bottom, Whole angle) {
    const int degrees = withinRange(angle, "angle", -mostDegrees, mostDegrees);
    return canvas.run([=](ZRDraw& draw) {
        return draw.GradientRect(left.value, top.value, right.value, bottom.value, degrees);
    });
}

bool fill(Canvas& canvas, Coordinate x, Coordinate y, Fraction tolerance) {
    return canvas.run([=](ZRDraw& draw) { return draw.Fill(x.value, y.value, tolerance.value); });
}

} // namespace

void bindAreas(CanvasClass& canvas) {
    canvas
        .def("rectangle", byCoordinates(&ZRDraw::Rectangle), "left"_a, "top"_a, "right"_a,
             "bottom"_a, "The outline of a rectangle, all four edges included.")
        .def("fill_rect", &fillRect, "left"_a, "top"_a, "right"_a, "bottom"_a,
             "A filled rectangle: its right column belongs to it, its bottom row does not. Rows "
             "that lie partly off the frame are left out whole. On 32-bit RGB one of the frame's "
             "size fills the frame, wherever it stands.")
        .def("round_rect", &roundRect, "left"_a, "top"_a, "right"_a, "bottom"_a, "corner_width"_a,
             "corner_height"_a,
             "An outline with elliptic corners, of which two together have the width and height "
             "given. False where they do not fit.")
        .def("gradient_rect", &gradientRect, "left"_a, "top"_a, "right"_a, "bottom"_a, "angle"_a,
             "A blend from the foreground to the background colour: at 0 degrees from left to "
             "right, at 90 from top to bottom. The foreground is left as the last pixel's colour.")
        .def("fill", &fill, "x"_a, "y"_a, "tolerance"_a = 0.0,
             "Flood what has the colour at (x, y), within a tolerance of 0 to 1 of each component. "
             "False off the frame.")
        .def("erase", &erase, "background"_a = false, "Paint the whole frame in a colour.");
}
