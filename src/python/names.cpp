#include "python/names.h"

#include <cmath>
#include <utility>

namespace anomalis::python {

namespace py = pybind11;

Formulas formulas_of(const std::string& name) {
    if (const auto formulas = formulas_of_name(name)) return *formulas;
    throw py::value_error("formulas must be 'exact' or 'classic': " + name);
}

std::array<double, 3> three_numbers(const py::object& values, const char* name, const char* form) {
    std::array<double, 3> numbers{};
    const std::string must = std::string(name) + " must be three numbers " + form;
    if (!py::isinstance<py::sequence>(values) || py::isinstance<py::str>(values) || py::len(values) != 3)
        throw py::type_error(must);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        try {
            numbers[i] = values[py::int_(i)].cast<double>();
        } catch (const py::cast_error&) {
            throw py::type_error(must);
        }
        if (!std::isfinite(numbers[i])) throw py::value_error(must + ", all finite");
    }
    return numbers;
}

EarthField field_of(const py::object& field) {
    constexpr double steepest = 90, farthest = 360;
    const auto [total, inclination, declination] =
        three_numbers(field, "field", "(nT, inclination, declination)");
    if (!(total > 0) || std::abs(inclination) > steepest || std::abs(declination) > farthest)
        throw py::value_error(
            "field must be (nT above 0, inclination from -90 to 90, declination from -360 to 360 degrees)");
    return {static_cast<float>(total), static_cast<float>(inclination), static_cast<float>(declination)};
}

int channel_of(const std::string& name) {
    if (name == "mag") return channel_mag;
    if (name == "grav") return channel_grav;
    throw py::value_error("channel must be 'mag' or 'grav': " + name);
}

int row_of(const std::string& name) {
    constexpr std::array<std::pair<const char*, int>, 6> rows{{{"raw", row_raw},
                                                               {"smoothed", row_smoothed},
                                                               {"residual", row_residual},
                                                               {"gradient", row_gradient},
                                                               {"horizontal", row_horizontal},
                                                               {"total_gradient", row_total_gradient}}};
    for (const auto& [word, row] : rows)
        if (name == word) return row;
    throw py::value_error(
        "row must be 'raw', 'smoothed', 'residual', 'gradient', 'horizontal' or 'total_gradient': " + name);
}

}  // namespace anomalis::python
