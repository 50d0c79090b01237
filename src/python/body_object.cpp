#include "python/body_object.h"

#include <algorithm>
#include <pybind11/operators.h>
#include <pybind11/stl.h>
#include <utility>

#include "core/body_defaults.h"
#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/recording_prompts.h"
#include "core/settings.h"
#include "core/workspace.h"
#include "model/burial_depth.h"
#include "python/body_attributes.h"
#include "python/workspace_object.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

constexpr const char* body_doc = R"(One body: its type, and its parameters as attributes.

Lengths in m, angles in degrees, `susc` in micro SI (of a wire its current in mA), `density` the contrast in
g/cc. All numbers are kept in single precision, about 7 digits: what is read back may differ from what was
written in the eighth. A depth extent or a length of 0 goes on without end.

A body of a workspace (`Workspace.bodies`) is the one that stands there: a change of it is a change of the
model, which `Workspace.forward` then brings up to date. `copy()` gives one by itself.

>>> import anomalis
>>> dyke = anomalis.Body("thin_sheet", distance=850, top=297, dip=84, width=18, susc=31500)
>>> dyke.type, dyke.dip
('thin_sheet', 84.0)
>>> dyke.width = 12.5
>>> dyke.parameters()["width"]
12.5
>>> anomalis.Body("thin_sheet", widht=3)
Traceback (most recent call last):
    ...
TypeError: a body has no 'widht'; nearest in name is 'width'
)";

/// With the values of a new body.
BodyObject make_body(const std::string& type, const py::kwargs& values) {
    Workspace scratch;
    RecordingPrompts untold;
    scratch.bodies.resize(2);
    scratch.body(1).type = type_of_name(type);
    initialise_body(scratch, 1, Settings{}, untold);
    ModelBody body = std::move(scratch.body(1));
    body.name.clear();
    for (const auto& [name, value] : values) attribute_of(name.cast<std::string>()).set(body, value);
    return BodyObject(std::move(body));
}

std::string representation(const ModelBody& body) {
    std::string text = "anomalis.Body('" + name_of_type(body.type) + "'";
    if (!body.name.empty()) text += ", name=" + std::string(py::repr(py::str(body.name)));
    for (const BodyParameter& row : body_parameters())
        if (has_parameter(body.type, row.code))
            text += ", " + std::string(row.name) + "=" + round_trip_text((body.*row.slot).value);
    if (body.turned_off == 1) text += ", on=False";
    return text + ")";
}

py::dict parameters(const ModelBody& body) {
    py::dict values;
    for (const BodyParameter& row : body_parameters())
        values[py::str(std::string(row.name))] = static_cast<double>((body.*row.slot).value);
    return values;
}

py::dict to_dict(const ModelBody& body) {
    py::dict values;
    for (const Attribute& one : attributes()) values[py::str(one.name)] = one.get(body);
    return values;
}

py::object limit(float value) {
    return value == unset ? py::object(py::none()) : py::float_(static_cast<double>(value));
}

bool same(const ModelBody& a, const ModelBody& b) {
    if (body_field_values(a) != body_field_values(b)) return false;
    return std::ranges::all_of(body_parameters(),
                               [&](const BodyParameter& row) { return a.*row.slot == b.*row.slot; });
}

py::object derived(BodyObject& object, double (*of)(const Workspace&, const ModelBody&)) {
    if (object.number() == 0) return py::none();
    const Workspace& workspace = object.workspace()->workspace();
    if (workspace.station_count < 1) return py::none();
    return py::float_(of(workspace, object.body()));
}

}  // namespace

ModelBody& BodyObject::body() {
    if (number_ == 0) return own_;
    Workspace& workspace = workspace_->workspace();
    if (number_ > workspace.body_count)
        throw Fault("body " + std::to_string(number_) + " is gone: its workspace has " +
                    std::to_string(workspace.body_count));
    return workspace.body(number_);
}

ModelBody plain_copy(const ModelBody& body) {
    ModelBody copy;
    body_field_values(copy) = body_field_values(body);
    for (const BodyParameter& row : body_parameters()) copy.*row.slot = body.*row.slot;
    copy.east = body.east;
    copy.north = body.north;
    return copy;
}

std::vector<ModelBody> bodies_of(const py::iterable& bodies) {
    std::vector<ModelBody> all;
    for (const py::handle one : bodies) {
        if (!py::isinstance<BodyObject>(one))
            throw py::type_error("bodies must be anomalis.Body, not " +
                                 std::string(py::str(py::type::handle_of(one).attr("__name__"))));
        all.push_back(plain_copy(one.cast<BodyObject&>().body()));
    }
    return all;
}

py::tuple as_tuple(const std::vector<ModelBody>& bodies) {
    py::tuple all(bodies.size());
    for (std::size_t i = 0; i < bodies.size(); ++i) all[i] = BodyObject(plain_copy(bodies[i]));
    return all;
}

void define_body(py::module_& module) {
    py::class_<BodyObject> type(module, "Body", body_doc);
    type.def(
        py::init(&make_body), py::arg("type") = "thick_sheet",
        "A body with the values of a new one: dip 90 (a pipe 0), width 100, depth extent and length 250 m, "
        "susceptibility 50000 micro SI, density 2.67 g/cc, all others 0; then those given by name.");
    for (const Attribute& one : attributes())
        type.def_property(
            one.name.c_str(), [&one](BodyObject& object) { return one.get(object.body()); },
            [&one](BodyObject& object, const py::object& value) { one.set(object.body(), value); },
            one.doc.c_str());
    type.def(
        "parameters", [](BodyObject& object) { return parameters(object.body()); },
        "The fifteen parameters by their names, a dict of float.");
    type.def(
        "to_dict", [](BodyObject& object) { return to_dict(object.body()); },
        "All that a file holds of it, by the names of the attributes: a row of a DataFrame.");
    type.def(
        "copy", [](BodyObject& object) { return BodyObject(plain_copy(object.body())); },
        "A body by itself with the same values.");
    type.def(
        "limits",
        [](BodyObject& object, const std::string& name) {
            const BodyParam& param = object.body().*parameter_of(name).slot;
            return py::make_tuple(limit(param.min), limit(param.max));
        },
        py::arg("name"), "(low, high) that a fit keeps the parameter between; None where there is no limit.");
    type.def(
        "set_limits",
        [](BodyObject& object, const std::string& name, const py::object& low, const py::object& high) {
            const BodyParameter& row = parameter_of(name);
            const float least = low.is_none() ? unset : single_of(low, "low");
            const float most = high.is_none() ? unset : single_of(high, "high");
            if (least != unset && most != unset && !(least < most))
                throw py::value_error("low must be below high");
            BodyParam& param = object.body().*row.slot;
            param.min = least;
            param.max = most;
        },
        py::arg("name"), py::arg("low") = py::none(), py::arg("high") = py::none(),
        "Keeps a parameter between two values in a fit, in its unit; None for no limit.");
    type.def_property_readonly(
        "number",
        [](const BodyObject& object) {
            return object.number() == 0 ? py::object(py::none()) : py::int_(object.number());
        },
        "Its number in its workspace, from 1; None for a body by itself.");
    type.def_property_readonly(
        "east",
        [](BodyObject& object) {
            return derived(object, [](const Workspace&, const ModelBody& b) { return b.east; });
        },
        "Map position of its reference point, m, as of the last calculation; None without a line.");
    type.def_property_readonly(
        "north",
        [](BodyObject& object) {
            return derived(object, [](const Workspace&, const ModelBody& b) { return b.north; });
        },
        "Map position of its reference point, m, as of the last calculation; None without a line.");
    type.def_property_readonly(
        "depth_below_ground", [](BodyObject& object) { return derived(object, model::burial_depth); },
        "Depth of its top below the ground at its place, m; None without a line.");
    type.def("__repr__", [](BodyObject& object) { return representation(object.body()); });
    type.def(
        "__eq__", [](BodyObject& a, BodyObject& b) { return same(a.body(), b.body()); }, py::is_operator());
    type.attr("__hash__") = py::none();
    type.def(py::pickle(
        [](BodyObject& object) {
            py::dict limits;
            for (const BodyParameter& row : body_parameters()) {
                const BodyParam& param = object.body().*row.slot;
                limits[py::str(std::string(row.name))] = py::make_tuple(limit(param.min), limit(param.max));
            }
            return py::make_tuple(to_dict(object.body()), limits);
        },
        [](const py::tuple& state) {
            const auto values = state[0].cast<py::dict>();
            BodyObject object = make_body(values["type"].cast<std::string>(), py::kwargs());
            for (const auto& [name, value] : values)
                attribute_of(name.cast<std::string>()).set(object.body(), value);
            for (const auto& [name, pair] : state[1].cast<py::dict>()) {
                BodyParam& param = object.body().*parameter_of(name.cast<std::string>()).slot;
                const auto ends = pair.cast<py::tuple>();
                param.min = ends[0].is_none() ? unset : ends[0].cast<float>();
                param.max = ends[1].is_none() ? unset : ends[1].cast<float>();
            }
            return object;
        }));
}

}  // namespace anomalis::python
