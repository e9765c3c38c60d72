// Colours, the colour matrix and the switches of a drawing object.
#include "common/near_names.h"
#include "common/picture_color.h"
#include "python/canvas.h"

#include <fmt/format.h>

#include <iterator>
#include <tuple>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

constexpr struct Matrix {
    const char* name;
    cmYCbCr mode;
} matrices[] = {
    {"rec601", cmRec601},
    {"rec601full", cmRec601Full},
    {"rec709", cmRec709},
    {"rec709full", cmRec709Full},
    {"rec2020", cmRec2020},
    {"rec2020full", cmRec2020Full},
    {"rec2020cl", cmRec2020CL},
    {"rec2020cluncentred", cmRec2020CLUncentred},
    {"rec601raw", cmRec601Raw},
    {"rec601fullraw", cmRec601FullRaw},
    {"rec709raw", cmRec709Raw},
    {"rec709fullraw", cmRec709FullRaw},
    {"rec2020raw", cmRec2020Raw},
    {"rec2020fullraw", cmRec2020FullRaw},
    {"rec2020clraw", cmRec2020CLRaw},
    {"rec2020cluncentredraw", cmRec2020CLUncentredRaw},
};

cmYCbCr matrixNamed(const std::string& name) {
    std::vector<std::string> names;
    for (const Matrix& matrix : matrices) {
        if (name == matrix.name)
            return matrix.mode;
        names.emplace_back(matrix.name);
    }
    const std::string near = nearNames(name, names);
    throw py::value_error(
        fmt::format("there is no matrix '{}'{}", name,
                    near.empty() ? fmt::format("; use one of: {}", fmt::join(names, ", ")) : near));
}

std::string matrixName(cmYCbCr mode) {
    for (const Matrix& matrix : matrices)
        if (mode == matrix.mode)
            return matrix.name;
    return matrices[0].name; // the default mode is the same
}

using Four = std::tuple<double, double, double, double>;
using Three = std::tuple<double, double, double>;

template <bool foreground>
Four color(Canvas& canvas) {
    double r = 0, g = 0, b = 0, a = 0;
    canvas.with([&](ZRDraw& draw) { return draw.GetColorRGBA(r, g, b, a, foreground); });
    return {r, g, b, a};
}

template <bool foreground>
void setColor(Canvas& canvas, const Colour& c) {
    canvas.with([&](ZRDraw& draw) {
        return setPictureColor(draw, c.red, c.green, c.blue, c.alpha, foreground);
    });
}

Three ycbcr(Canvas& canvas, bool background) {
    double y = 0, cb = 0, cr = 0, alpha = 0;
    canvas.with([&](ZRDraw& draw) { return draw.GetColorYCbCr(y, cb, cr, alpha, !background); });
    return {y, cb, cr};
}

void setYCbCr(Canvas& canvas, Fraction y, Fraction cb, Fraction cr, bool background) {
    canvas.with([&](ZRDraw& draw) {
        return draw.SetColorYCbCr(y.value, cb.value, cr.value, 1.0, !background);
    });
}

void setYCbCr10(Canvas& canvas, Whole y, Whole cb, Whole cr, bool background) {
    const auto sample = [](Whole number) {
        return static_cast<unsigned>(withinRange(number, "a sample of ten bits", 0, 1023));
    };
    const unsigned samples[] = {sample(y), sample(cb), sample(cr)};
    canvas.with([&](ZRDraw& draw) {
        return draw.SetColorYCbCr10(samples[0], samples[1], samples[2], 0, !background);
    });
}

std::optional<double> transparency(Canvas& canvas) {
    return canvas.with([](const ZRDraw& draw) {
        return draw.transparency ? std::optional(draw.foreTransparency) : std::nullopt;
    });
}

void setTransparency(Canvas& canvas, std::optional<Fraction> value) {
    canvas.requireRoom(value.has_value());
    canvas.with([&](ZRDraw& draw) {
        draw.SetTransparency(value.has_value());
        for (const bool foreground : {true, false})
            if (value)
                draw.SetTransparency(value->value, foreground);
        return 0;
    });
}

void setAdditive(Canvas& canvas, bool on) {
    canvas.requireRoom(on);
    canvas.with([=](ZRDraw& draw) {
        draw.SetAlphaAdditive(on);
        return 0;
    });
}

// A member that is a switch.
template <bool ZRPixel::*member>
bool isOn(Canvas& canvas) {
    return canvas.with([](const ZRDraw& draw) { return draw.*member; });
}

template <bool ZRPixel::*member>
void switchTo(Canvas& canvas, bool on) {
    canvas.with([=](ZRDraw& draw) { return draw.*member = on; });
}

void bindColors(CanvasClass& canvas) {
    canvas
        .def_property("color", &color<true>, &setColor<true>,
                      "Tuple[float, ...]: the foreground colour, red, green, blue and, unless it "
                      "is 1, alpha, numbers "
                      "0 to 1. It is set so that the picture shows that colour, in YCbCr by the "
                      "matrix, and reads as the layout stores it: layouts of YCbCr, words and "
                      "mosaics keep no RGB.")
        .def_property("back_color", &color<false>, &setColor<false>,
                      "Tuple[float, ...]: the background colour, as color.")
        .def("set_ycbcr", &setYCbCr, "y"_a, "cb"_a, "cr"_a, "background"_a = false,
             "Set a colour in YCbCr, numbers 0 to 1 with the zero of cb and cr at 0.5; on RGB by "
             "the matrix, with alpha 0.")
        .def("set_ycbcr10", &setYCbCr10, "y"_a, "cb"_a, "cr"_a, "background"_a = false,
             "Set a colour by samples of ten bits, 0 to 1023: on v210 as they are stored.")
        .def("get_ycbcr", &ycbcr, "background"_a = false,
             "A colour in YCbCr, converted by the matrix from what color reads.")
        .def_property(
            "matrix",
            [](Canvas& self) {
                return self.with([](const ZRDraw& draw) { return matrixName(draw.yCbCrMode); });
            },
            [](Canvas& self, const std::string& name) {
                const cmYCbCr mode = matrixNamed(name);
                self.with([=](ZRDraw& draw) { return draw.SetYCbCrMode(mode); });
            },
            "str: name of the colour matrix, rec601, rec709 or rec2020, with \"full\" behind it "
            "for "
            "full range, and \"raw\" for results that are not clamped; rec2020cl for constant "
            "luminance. Frames of YCbCr above 720 pixels begin with rec709, all else with rec601. "
            "Colours that are set already stay.");
}

void bindSwitches(CanvasClass& canvas) {
    canvas
        .def_property("transparency", &transparency, &setTransparency,
                      "Optional[float]: how transparent both colours are, 0 opaque to 1, or None, "
                      "by which writes are stored. "
                      "Only 8-bit RGB and DPX words blend; horizontal runs of 32-bit RGB do not.")
        .def_property("additive", &isOn<&ZRPixel::alphaAdditive>, &setAdditive,
                      "Whether the foreground is added to what is there, scaled by its alpha. In 8-"
                      "bit RGB and DPX words.")
        .def_property(
            "antialias", &isOn<&ZRPixel::antiAlias>, &switchTo<&ZRPixel::antiAlias>,
            "Whether line and line_to take a weighted path for sloped lines, which draws "
            "nearly black and changes the foreground colour; line_wu is the smooth line.");
}

Three converted(Canvas& canvas,
                int (ZRPixel::*conversion)(double, double, double, double, double&, double&,
                                           double&, double&),
                const Three& from) {
    Three to{};
    double alpha = 0;
    canvas.with([&](ZRDraw& draw) {
        return (draw.*conversion)(std::get<0>(from), std::get<1>(from), std::get<2>(from), 1.0,
                                  std::get<0>(to), std::get<1>(to), std::get<2>(to), alpha);
    });
    return to;
}

void bindConversions(CanvasClass& canvas) {
    canvas
        .def(
            "ycbcr_to_rgb",
            [](Canvas& self, double y, double cb, double cr) {
                return converted(self, &ZRPixel::YCbCrToRGB, {y, cb, cr});
            },
            "y"_a, "cb"_a, "cr"_a, "YCbCr to RGB by the matrix, all numbers 0 to 1.")
        .def(
            "rgb_to_ycbcr",
            [](Canvas& self, double r, double g, double b) {
                return converted(self, &ZRPixel::RGBToYCbCr, {r, g, b});
            },
            "r"_a, "g"_a, "b"_a, "RGB to YCbCr by the matrix, never clamped.")
        .def(
            "rgb_to_hsv",
            [](Canvas& self, double r, double g, double b) {
                return converted(self, &ZRPixel::RGBToHSV, {r, g, b});
            },
            "r"_a, "g"_a, "b"_a,
            "RGB to hue in degrees, saturation and value; greys have the hue -1.");
}

} // namespace

void bindState(CanvasClass& canvas) {
    bindColors(canvas);
    bindSwitches(canvas);
    bindConversions(canvas);
}
