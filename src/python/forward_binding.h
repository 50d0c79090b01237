#pragma once

#include <pybind11/pybind11.h>

namespace anomalis::python {

/// The function forward of the module.
void define_forward(pybind11::module_& module);

}  // namespace anomalis::python
