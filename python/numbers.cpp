#include "python/numbers.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdlib>
#include <limits>

#include <pybind11/numpy.h>

namespace {

constexpr double mostDegrees = 3600;
constexpr std::size_t longestText = 32767;

std::string shown(py::handle source) {
    return py::repr(source).cast<std::string>();
}

bool loadWhole(py::handle source, const char* what, int low, int high, int& number) {
    if (PyIndex_Check(source.ptr()) == 0)
        return false;
    const auto whole = py::reinterpret_steal<py::object>(PyNumber_Index(source.ptr()));
    if (!whole)
        throw py::error_already_set();
    int overflow = 0;
    const long value = PyLong_AsLongAndOverflow(whole.ptr(), &overflow);
    if (overflow != 0 || value < low || value > high)
        throw py::value_error(
            fmt::format("{} is a number from {} to {}, not {}", what, low, high, shown(source)));
    number = static_cast<int>(value);
    return true;
}

bool loadReal(py::handle source, const char* what, double low, double high, double& number) {
    if (PyNumber_Check(source.ptr()) == 0 || py::isinstance<py::array>(source))
        return false;
    number = PyFloat_AsDouble(source.ptr());
    if (PyErr_Occurred() != nullptr)
        throw py::error_already_set();
    if (!(number >= low && number <= high)) // so that not-a-number is refused
        throw py::value_error(
            fmt::format("{} is a number from {} to {}, not {}", what, low, high, shown(source)));
    return true;
}

void addPoint(Points& points, double x, double y) {
    if (std::fabs(x) > farthest || std::fabs(y) > farthest)
        throw py::value_error(
            fmt::format("point {} is ({:.0f}, {:.0f}): a coordinate is a number from {} to {}",
                        points.points.size(), x, y, -farthest, farthest));
    points.points.push_back({static_cast<int>(x), static_cast<int>(y)});
}

// Tuples of whole numbers in a list or tuple, the usual case. Of anything else nothing is taken.
bool loadPairs(py::handle source, Points& points) {
    if (!PyList_Check(source.ptr()) && !PyTuple_Check(source.ptr()))
        return false;
    const auto isWhole = [](PyObject* number) { return PyLong_CheckExact(number); };
    const Py_ssize_t count = PySequence_Fast_GET_SIZE(source.ptr());
    PyObject* const* const items = PySequence_Fast_ITEMS(source.ptr());
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyObject* const pair = items[i];
        if (!PyTuple_CheckExact(pair) || PyTuple_GET_SIZE(pair) != 2 ||
            !isWhole(PyTuple_GET_ITEM(pair, 0)) || !isWhole(PyTuple_GET_ITEM(pair, 1)))
            return false;
    }
    for (Py_ssize_t i = 0; i < count; ++i) {
        const auto number = [&](Py_ssize_t which) {
            const double value = PyLong_AsDouble(PyTuple_GET_ITEM(items[i], which));
            if (PyErr_Occurred() == nullptr)
                return value;
            PyErr_Clear(); // beyond the numbers of double, too
            return HUGE_VAL;
        };
        addPoint(points, number(0), number(1));
    }
    return true;
}

} // namespace

int withinRange(Whole number, const char* what, int low, int high) {
    if (number.value < low || number.value > high)
        throw py::value_error(
            fmt::format("{} is a number from {} to {}, not {}", what, low, high, number.value));
    return number.value;
}

void requireEdge(Coordinate centre, Length radius) {
    if (std::abs(centre.value) + radius.value > farthest)
        throw py::value_error(
            fmt::format("a radius of {} around {} reaches beyond the largest coordinate, {}",
                        radius.value, centre.value, farthest));
}

bool loadNumber(py::handle source, Coordinate& number) {
    return loadWhole(source, "a coordinate", -farthest, farthest, number.value);
}

bool loadNumber(py::handle source, Length& number) {
    return loadWhole(source, "a length", 0, farthest, number.value);
}

bool loadNumber(py::handle source, Whole& number) {
    using Limits = std::numeric_limits<int>;
    return loadWhole(source, "a whole number", Limits::min(), Limits::max(), number.value);
}

bool loadNumber(py::handle source, Degrees& number) {
    double degrees = 0;
    if (!loadReal(source, "an angle in degrees", -mostDegrees, mostDegrees, degrees))
        return false;
    number.value = static_cast<float>(degrees);
    return true;
}

bool loadNumber(py::handle source, Fraction& number) {
    return loadReal(source, "a fraction", 0, 1, number.value);
}

bool loadNumber(py::handle source, Colour& colour) {
    if (PySequence_Check(source.ptr()) == 0 || py::isinstance<py::str>(source))
        return false;
    const auto parts = py::reinterpret_borrow<py::sequence>(source);
    const std::size_t count = parts.size();
    if (count != 3 && count != 4)
        throw py::value_error(fmt::format("a colour has three components, or four with its alpha, "
                                          "not {}: {}",
                                          count, shown(source)));
    double* const components[] = {&colour.red, &colour.green, &colour.blue, &colour.alpha};
    for (std::size_t i = 0; i < count; ++i)
        if (!loadReal(parts[i], "a colour's component", 0, 1, *components[i]))
            return false;
    return true;
}

// All but the usual case by way of one array, which takes pairs of any kind and arrays of any type.
bool loadNumber(py::handle source, Points& points) {
    if (loadPairs(source, points))
        return true;
    const py::array given = py::array::ensure(source);
    if (!given) {
        PyErr_Clear();
        return false;
    }
    if (given.size() == 0)
        return true;
    if (given.ndim() != 2 || given.shape(1) != 2 ||
        (given.dtype().kind() != 'i' && given.dtype().kind() != 'u'))
        throw py::type_error("points are pairs of whole numbers, such as [(0, 0), (10, 20)] or an "
                             "array of shape (n, 2)");
    // Wide enough to tell what is beyond the range, whatever the type was.
    const auto numbers =
        py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(given);
    const auto pairs = numbers.unchecked<2>();
    points.points.reserve(static_cast<std::size_t>(pairs.shape(0)));
    for (py::ssize_t i = 0; i < pairs.shape(0); ++i)
        addPoint(points, pairs(i, 0), pairs(i, 1));
    return true;
}

bool loadNumber(py::handle source, Text& text) {
    if (PyUnicode_Check(source.ptr()) == 0)
        return false;
    constexpr Py_UCS4 last = 127;
    const auto length = static_cast<std::size_t>(PyUnicode_GetLength(source.ptr()));
    if (length > longestText)
        throw py::value_error(
            fmt::format("a text has {} characters at most, this one has {}", longestText, length));
    text.text.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        const Py_UCS4 code = PyUnicode_ReadChar(source.ptr(), static_cast<Py_ssize_t>(i));
        if (code == 0 || code > last)
            throw py::value_error(
                fmt::format("the font has no {}, character {} of the text: it has the codes 1 to "
                            "127",
                            py::repr(source[py::slice(static_cast<py::ssize_t>(i),
                                                      static_cast<py::ssize_t>(i + 1), 1)])
                                .cast<std::string>(),
                            i));
        text.text += static_cast<char>(code);
    }
    return true;
}
