// What Python hands over as numbers, texts, colours and points: a type a kind, checked where it
// arrives. What is of another kind is a TypeError that tells the signature, and what is beyond its
// range a ValueError that tells the range. The names are those of the signatures in help texts,
// from which the type stubs are made.
#pragma once

#include "zrdraw/types.h"

#include <string>
#include <vector>

#include <pybind11/pybind11.h>

namespace py = pybind11;

// Positions of the library are 16.16 fixed point, so larger ones would overflow.
inline constexpr int farthest = 32767;

struct Coordinate {
    int value = 0; // -farthest to farthest
};
struct Length {
    int value = 0; // 0 to farthest
};
struct Whole {
    int value = 0; // for withinRange
};
struct Degrees {
    float value = 0; // a few turns either way
};
struct Fraction {
    double value = 0; // 0 to 1
};
struct Colour {
    double red = 0, green = 0, blue = 0, alpha = 1; // or Y, Cb and Cr; each 0 to 1
};
struct Points {
    std::vector<_POINT> points;
};
struct Text {
    std::string text; // of characters that the font has: codes 1 to 127
};

// For what has a name and a range of its own.
int withinRange(Whole number, const char* what, int low, int high);

// Refuses a radius by which an edge comes back on the other side of the coordinates.
void requireEdge(Coordinate centre, Length radius);

// These answer false for what is of another kind.
bool loadNumber(py::handle source, Coordinate& number);
bool loadNumber(py::handle source, Length& number);
bool loadNumber(py::handle source, Whole& number);
bool loadNumber(py::handle source, Degrees& number);
bool loadNumber(py::handle source, Fraction& number);
bool loadNumber(py::handle source, Colour& colour);
bool loadNumber(py::handle source, Points& points);
bool loadNumber(py::handle source, Text& text);

namespace pybind11::detail {

#define ZRDRAW_PYTHON_NUMBER(Number, shown)                                                        \
    template <>                                                                                    \
    struct type_caster<Number> {                                                                   \
        PYBIND11_TYPE_CASTER(Number, const_name(shown));                                           \
        bool load(handle source, bool) { return loadNumber(source, value); }                       \
    }

ZRDRAW_PYTHON_NUMBER(Coordinate, "int");
ZRDRAW_PYTHON_NUMBER(Length, "int");
ZRDRAW_PYTHON_NUMBER(Whole, "int");
ZRDRAW_PYTHON_NUMBER(Degrees, "float");
ZRDRAW_PYTHON_NUMBER(Fraction, "float");
ZRDRAW_PYTHON_NUMBER(Colour, "Iterable[float]");
ZRDRAW_PYTHON_NUMBER(Points, "Iterable[Tuple[int, int]]");
ZRDRAW_PYTHON_NUMBER(Text, "str");

#undef ZRDRAW_PYTHON_NUMBER

} // namespace pybind11::detail
