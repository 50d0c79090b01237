#pragma once

#include <pybind11/pybind11.h>

namespace anomalis::python {

/// Survey files, runs of whole surveys and what they gave.
void define_surveys(pybind11::module_& module);

}  // namespace anomalis::python
