#include "python/body_object.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <functional>
#include <pybind11/operators.h>
#include <pybind11/stl.h>
#include <set>
#include <utility>

#include "core/body_defaults.h"
#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/recording_prompts.h"
#include "core/settings.h"
#include "core/text.h"
#include "core/workspace.h"
#include "model/burial_depth.h"
#include "python/workspace_object.h"

namespace anomalis::python {

namespace py = pybind11;

namespace {

constexpr std::array<std::pair<std::int32_t, const char*>, 8> type_names{{{thin_sheet, "thin_sheet"},
                                                                          {thick_sheet, "thick_sheet"},
                                                                          {edge, "edge"},
                                                                          {sloping_step, "sloping_step"},
                                                                          {polygon, "polygon"},
                                                                          {sphere, "sphere"},
                                                                          {pipe, "pipe"},
                                                                          {wire, "wire"}}};

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

std::string plain_name(std::string_view name) {
    std::string plain;
    for (const char c : name)
        plain += c == ' ' || c == '-' ? '_' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return plain;
}

/// A number of Python as it is kept.
float single_of(py::handle value, std::string_view name) {
    double number = 0;
    try {
        number = value.cast<double>();
    } catch (const py::cast_error&) {
        throw py::type_error(std::string(name) + " must be a number, not " +
                             std::string(py::str(py::type::handle_of(value).attr("__name__"))));
    }
    const auto single = static_cast<float>(number);
    if (!std::isfinite(single))
        throw py::value_error(std::string(name) +
                              " must be a finite number of single precision: " + std::string(py::str(value)));
    return single;
}

std::string colour_text(std::int32_t colour) {
    constexpr int byte = 255, bits = 8;
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", colour & byte, colour >> bits & byte,
                  colour >> 2 * bits & byte);
    return text.data();
}

std::int32_t colour_of(const std::string& text) {
    unsigned red = 0, green = 0, blue = 0;
    constexpr std::size_t length = 7;
    int end = 0;
    if (text.size() != length || text[0] != '#' ||
        std::sscanf(text.c_str(), "#%2x%2x%2x%n", &red, &green, &blue, &end) != 3 ||
        end != static_cast<int>(length))
        throw py::value_error("colour must be \"#rrggbb\": " + text);
    constexpr unsigned bits = 8;
    return static_cast<std::int32_t>(blue << 2 * bits | green << bits | red);
}

std::set<std::string> varied(const ModelBody& body) {
    std::set<std::string> names;
    for (const BodyParameter& row : body_parameters())
        if ((body.*row.slot).vary == 1) names.emplace(row.name);
    return names;
}

const BodyParameter& parameter_of(const std::string& name) {
    std::string names;
    for (const BodyParameter& row : body_parameters()) {
        if (row.name == name) return row;
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    }
    throw py::value_error("there is no parameter '" + name + "'; there are " + names);
}

void set_varied(ModelBody& body, const std::set<std::string>& names) {
    for (const std::string& name : names) parameter_of(name);
    for (const BodyParameter& row : body_parameters())
        (body.*row.slot).vary = names.contains(std::string(row.name)) ? 1.0F : 0.0F;
}

/// One attribute that a body takes by keyword and shows.
struct Attribute {
    std::string name, doc;
    std::function<py::object(const ModelBody&)> get;
    std::function<void(ModelBody&, py::handle)> set;
};

template <class Value>
Value cast_or_tell(py::handle value, const std::string& name, const char* what) {
    try {
        return value.cast<Value>();
    } catch (const py::cast_error&) {
        throw py::type_error(name + " must be " + what + ", not " +
                             std::string(py::str(py::type::handle_of(value).attr("__name__"))));
    }
}

Attribute text_attribute(const char* name, const char* doc, std::string ModelBody::*member) {
    return {name, doc, [member](const ModelBody& body) { return py::str(body.*member); },
            [name, member](ModelBody& body, py::handle value) {
                body.*member = single_line(cast_or_tell<std::string>(value, name, "a str"));
            }};
}

Attribute flag_attribute(const char* name, const char* doc, std::int32_t ModelBody::*member, int when_true) {
    return {name, doc,
            [member, when_true](const ModelBody& body) {
                return py::bool_((body.*member == 1) == (when_true == 1));
            },
            [name, member, when_true](ModelBody& body, py::handle value) {
                body.*member = cast_or_tell<bool>(value, name, "a bool") ? when_true : 1 - when_true;
            }};
}

Attribute count_attribute(const char* name, const char* doc, std::int32_t ModelBody::*member) {
    return {name, doc, [member](const ModelBody& body) { return py::int_(body.*member); },
            [name, member](ModelBody& body, py::handle value) {
                body.*member = cast_or_tell<std::int32_t>(value, name, "an int");
            }};
}

Attribute length_attribute(const char* name, const char* doc, float ModelBody::*member) {
    return {name, doc,
            [member](const ModelBody& body) { return py::float_(static_cast<double>(body.*member)); },
            [name, member](ModelBody& body, py::handle value) { body.*member = single_of(value, name); }};
}

std::string doc_of(const BodyParameter& row) {
    std::string doc = std::string(row.tip.meaning.sheet) + ". " + std::string(row.tip.measure.sheet) + ".";
    if (row.code == param_susc) doc += " Of a wire its current in mA.";
    return doc + " Kept in single precision.";
}

std::vector<Attribute> all_attributes() {
    std::vector<Attribute> all{
        {"type", "thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, pipe or wire",
         [](const ModelBody& body) { return py::str(name_of_type(body.type)); },
         [](ModelBody& body, py::handle value) {
             body.type = type_of_name(cast_or_tell<std::string>(value, "type", "a str"));
         }},
        text_attribute("name", "Name of the body", &ModelBody::name)};
    for (const BodyParameter& row : body_parameters())
        all.push_back({std::string(row.name), doc_of(row),
                       [slot = row.slot](const ModelBody& body) {
                           return py::float_(static_cast<double>((body.*slot).value));
                       },
                       [slot = row.slot, name = row.name](ModelBody& body, py::handle value) {
                           (body.*slot).value = single_of(value, name);
                       }});
    all.push_back({"vary", "Names of the parameters that a fit may change, a set of str",
                   [](const ModelBody& body) { return py::frozenset(py::cast(varied(body))); },
                   [](ModelBody& body, py::handle value) {
                       std::set<std::string> names;
                       if (py::isinstance<py::str>(value))
                           throw py::type_error("vary must be names in a set, list or tuple");
                       for (const py::handle one : py::reinterpret_borrow<py::iterable>(value))
                           names.insert(cast_or_tell<std::string>(one, "vary", "names"));
                       set_varied(body, names);
                   }});
    all.push_back(flag_attribute("fixed", "No fit changes the body", &ModelBody::vary, 0));
    all.push_back(flag_attribute("on", "False leaves the body out of the model", &ModelBody::turned_off, 0));
    all.push_back(flag_attribute("demagnetisation", "The body demagnetises itself",
                                 &ModelBody::include_demagnetisation, 1));
    all.push_back({"colour", "\"#rrggbb\"",
                   [](const ModelBody& body) { return py::str(colour_text(body.colour)); },
                   [](ModelBody& body, py::handle value) {
                       body.colour = colour_of(cast_or_tell<std::string>(value, "colour", "a str"));
                   }});
    all.push_back(text_attribute("description", "What there is to say of it", &ModelBody::description));
    all.push_back(text_attribute("rock_type", "Its rock", &ModelBody::rock_type));
    all.push_back(length_attribute("shell_thickness",
                                   "Of a hollow pipe, m; 0: it is full. Kept in single precision.",
                                   &ModelBody::shell_thickness));
    all.push_back(length_attribute("end_thickness",
                                   "Of the ends of a hollow pipe, m. Kept in single precision.",
                                   &ModelBody::end_thickness));
    all.push_back(
        count_attribute("num_sectors", "Corners of a pipe's cross-section", &ModelBody::num_sectors));
    all.push_back(count_attribute("num_segments", "Segments along a pipe", &ModelBody::num_segments));
    all.push_back(length_attribute(
        "max_triangle_size", "Greatest side of the triangles of a pipe, m; 0: any. Kept in single precision.",
        &ModelBody::max_triangle_size));
    return all;
}

const std::vector<Attribute>& attributes() {
    static const std::vector<Attribute> all = all_attributes();
    return all;
}

/// How many letters to change, put in or leave out (Levenshtein 1966).
std::size_t edits(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t corner = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, corner + (a[i - 1] == b[j - 1] ? 0 : 1)});
            corner = above;
        }
    }
    return row.back();
}

const Attribute& attribute_of(const std::string& name) {
    const auto found = std::ranges::find(attributes(), name, &Attribute::name);
    if (found != attributes().end()) return *found;
    const auto nearest = std::ranges::min_element(
        attributes(), {}, [&](const Attribute& one) { return edits(name, one.name); });
    throw py::type_error("a body has no '" + name + "'; nearest in name is '" + nearest->name + "'");
}

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

std::int32_t type_of_name(const std::string& name) {
    const std::string plain = plain_name(name);
    std::string names;
    for (const auto& [type, word] : type_names) {
        if (plain == word || plain == plain_name(body_type_name(type))) return type;
        names += (names.empty() ? "" : ", ") + std::string(word);
    }
    throw py::value_error("there is no type '" + name + "'; there are " + names);
}

std::string name_of_type(std::int32_t type) {
    for (const auto& [code, word] : type_names)
        if (code == type) return word;
    return "type " + std::to_string(type);
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
