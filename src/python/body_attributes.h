#pragma once

#include <cstdint>
#include <functional>
#include <pybind11/pybind11.h>
#include <string>
#include <string_view>
#include <vector>

#include "core/body_parameters.h"
#include "core/model_body.h"

// What a body shows of itself by name, and takes.
namespace anomalis::python {

/// One attribute that a body takes by keyword and shows.
struct Attribute {
    std::string name, doc;
    std::function<pybind11::object(const ModelBody&)> get;
    std::function<void(ModelBody&, pybind11::handle)> set;  ///< raises TypeError, ValueError
};

/// All of them, the type first.
const std::vector<Attribute>& attributes();
/// Raises TypeError with the name that is nearest.
const Attribute& attribute_of(const std::string& name);

/// The row of a parameter by its name. Raises ValueError with the names that there are.
const BodyParameter& parameter_of(const std::string& name);

/// A number of Python as it is kept. Raises TypeError, ValueError with `name`.
float single_of(pybind11::handle value, std::string_view name);

/// "thin_sheet"; also in the words of the program, "Thin Sheet". Raises ValueError with those that there are.
std::int32_t type_of_name(const std::string& name);
std::string name_of_type(std::int32_t type);

}  // namespace anomalis::python
