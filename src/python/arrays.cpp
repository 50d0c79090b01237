#include "python/arrays.h"

#include <string_view>

namespace anomalis::python {

namespace py = pybind11;

InputArray::InputArray(py::handle values, const char* name) {
    const py::array any = py::array::ensure(values);
    constexpr std::string_view real_numbers = "fiu";
    if (!any || real_numbers.find(any.dtype().kind()) == std::string_view::npos) {
        PyErr_Clear();
        throw py::type_error(std::string(name) + " must be an array of real numbers, not " +
                             (any ? "of " + std::string(py::str(any.dtype()))
                                  : std::string(py::str(py::type::handle_of(values).attr("__name__")))));
    }
    if (any.ndim() != 1)
        throw py::value_error(std::string(name) + " must have one dimension, one number a station, not " +
                              std::to_string(any.ndim()));
    array_ = py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(any);
    if (!array_) throw py::error_already_set();
}

void require_stations(const InputArray& values, const char* name, std::size_t stations) {
    if (values.size() != stations)
        throw py::value_error(std::string(name) + " has " + std::to_string(values.size()) + " values for " +
                              std::to_string(stations) + " stations of east");
}

}  // namespace anomalis::python
