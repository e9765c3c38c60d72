// Half floats as the layouts rgbhalf48 and rgbahalf hold them.
#include "python/module.h"
#include "zrdraw/half_float.h"

#include <algorithm>

#include <pybind11/numpy.h>

namespace py = pybind11;
using namespace py::literals;

namespace {

template <typename Number>
using Array = py::array_t<Number, py::array::c_style | py::array::forcecast>;

template <typename To, typename From, typename Convert>
py::array_t<To> converted(const Array<From>& from, Convert convert) {
    py::array_t<To> to(std::vector<py::ssize_t>(from.shape(), from.shape() + from.ndim()));
    To* const result = to.mutable_data();
    const py::gil_scoped_release released;
    std::transform(from.data(), from.data() + from.size(), result, convert);
    return to;
}

py::array halves(const py::array& numbers) {
    return converted<std::uint16_t>(Array<float>(numbers), zrFloatToHalf).attr("view")("float16");
}

py::array floats(const py::array& numbers) {
    if (!numbers.dtype().equal(py::dtype("float16")))
        throw py::type_error("expected an array of float16, got " +
                             py::str(numbers.dtype()).cast<std::string>());
    const Array<std::uint16_t> bits(numbers.attr("copy")().attr("view")("uint16"));
    return converted<float>(bits, zrHalfToFloat);
}

} // namespace

void bindHalfFloats(py::module_& module) {
    module.def("to_half", &halves, "numbers"_a,
               "The nearest half floats, ties to even, as an array of float16 of the same shape. "
               "What is too large becomes infinity.");
    module.def("from_half", &floats, "halves"_a,
               "Half floats, an array of float16, exactly as an array of float32.");
}
