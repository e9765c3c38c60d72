// Writing and reading single pixels.
#include "common/picture_color.h"
#include "python/canvas.h"

#include <tuple>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

bool putPixel(Canvas& canvas, Coordinate x, Coordinate y, bool background) {
    canvas.requireRoom(background);
    return canvas.run([=](ZRDraw& draw) { return draw.PutPixel(x.value, y.value, !background); });
}

bool setPixel(Canvas& canvas, Coordinate x, Coordinate y, const Colour& c) {
    return canvas.run([&](ZRDraw& draw) {
        setPictureColor(draw, c.red, c.green, c.blue, c.alpha, true);
        return draw.PutPixel(x.value, y.value, true);
    });
}

bool point(Canvas& canvas, Coordinate x, Coordinate y, bool background) {
    canvas.requireRoom(background);
    return canvas.run([=](ZRDraw& draw) { return draw.Point(x.value, y.value, !background); });
}

std::tuple<double, double, double, double> getPixel(Canvas& canvas, Coordinate x, Coordinate y) {
    canvas.requireInside(x, y);
    double r = 0, g = 0, b = 0, a = 1;
    canvas.with([&](ZRDraw& draw) { return draw.GetPixelRGBA(x.value, y.value, r, g, b, a); });
    return {r, g, b, a};
}

// The readers of three components of YCbCr, as numbers of one kind.
template <typename Number>
auto ycbcrBy(int (ZRPixel::*read)(int, int, Number&, Number&, Number&, Number&)) {
    return [read](Canvas& canvas, Coordinate x, Coordinate y) {
        canvas.requireInside(x, y);
        Number luma{}, cb{}, cr{}, alpha{};
        canvas.with(
            [&](ZRDraw& draw) { return (draw.*read)(x.value, y.value, luma, cb, cr, alpha); });
        return std::tuple(luma, cb, cr);
    };
}

std::optional<std::tuple<double, double, double>> getHsv(Canvas& canvas, Coordinate x,
                                                         Coordinate y) {
    canvas.requireInside(x, y);
    double h = 0, s = 0, v = 0, alpha = 0;
    const bool read = canvas.run(
        [&](ZRDraw& draw) { return draw.GetPixelHSV(x.value, y.value, h, s, v, alpha); });
    return read ? std::optional(std::tuple(h, s, v)) : std::nullopt;
}

double getLuma(Canvas& canvas, Coordinate x, Coordinate y) {
    canvas.requireInside(x, y);
    return canvas.with([=](ZRDraw& draw) { return draw.GetLuma(x.value, y.value); });
}

void bindWriters(CanvasClass& canvas) {
    canvas
        .def("put_pixel", &putPixel, "x"_a, "y"_a, "background"_a = false,
             "Write a pixel in a colour, as the switches say. False off the frame.")
        .def("set_pixel", &setPixel, "x"_a, "y"_a, "color"_a,
             "Set the foreground colour, which stays, and write a pixel. False off the frame.")
        .def("point", &point, "x"_a, "y"_a, "background"_a = false,
             "As put_pixel; (x, y) becomes the current position in any case.");
}

void bindReaders(CanvasClass& canvas) {
    canvas
        .def("get_pixel", &getPixel, "x"_a, "y"_a,
             "Red, green, blue and alpha of a pixel, 0 to 1; alpha 1 where there is none. All "
             "readers raise IndexError off the frame, its right and bottom edge included.")
        .def("get_pixel_ycbcr", ycbcrBy<double>(&ZRPixel::GetPixelYCbCr), "x"_a, "y"_a,
             "Y, Cb and Cr of a pixel, 0 to 1, by the matrix where it is RGB.")
        .def("get_pixel_ycbcr8", ycbcrBy<unsigned char>(&ZRPixel::GetPixelYCbCr8), "x"_a, "y"_a,
             "The same as whole numbers on a scale of 255.")
        .def("get_pixel_ycbcr10", ycbcrBy<unsigned int>(&ZRPixel::GetPixelYCbCr10), "x"_a, "y"_a,
             "The same as whole numbers on a scale of 1024: full scale reads 1024.")
        .def("get_pixel_hsv", &getHsv, "x"_a, "y"_a,
             "Hue in degrees, -1 for grey, saturation and value of a pixel; None in layouts that "
             "have no such reader.")
        .def("get_luma", &getLuma, "x"_a, "y"_a,
             "Luma of a pixel, 0 to 1, by weights of the library's own.");
}

} // namespace

void bindPixels(CanvasClass& canvas) {
    bindWriters(canvas);
    bindReaders(canvas);
}
