#pragma once

#include <array>
#include <pybind11/pybind11.h>
#include <string>

#include "core/workspace.h"

// Words and small tuples of Python as the program knows them. What is none raises ValueError or TypeError
// with what it must be.
namespace anomalis::python {

/// "exact" or "classic".
Formulas formulas_of(const std::string& name);

/// Three finite numbers; `form` is what it must look like.
std::array<double, 3> three_numbers(const pybind11::object& values, const char* name, const char* form);

/// (nT, inclination, declination).
EarthField field_of(const pybind11::object& field);

/// channel_mag or channel_grav of "mag" or "grav".
int channel_of(const std::string& name);

/// "raw" to "total_gradient".
int row_of(const std::string& name);

}  // namespace anomalis::python
