#include "python/body_attributes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <pybind11/stl.h>
#include <set>
#include <string_view>
#include <utility>

#include "core/near_names.h"
#include "core/text.h"

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

std::string plain_name(std::string_view name) {
    std::string plain;
    for (const char c : lower_case(name)) plain += c == ' ' || c == '-' ? '_' : c;
    return plain;
}

std::string colour_text(std::int32_t colour) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::uint32_t one_digit = 15;
    std::string text = "#";
    for (const std::uint32_t shift : {4U, 0U, 12U, 8U, 20U, 16U})
        text += digits[static_cast<std::uint32_t>(colour) >> shift & one_digit];
    return text;
}

std::int32_t colour_of(const std::string& text) {
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::size_t length = 7;
    std::array<std::size_t, 6> value{};
    bool good = text.size() == length && text[0] == '#';
    const std::string lower = lower_case(text);
    for (std::size_t i = 0; good && i < value.size(); ++i) {
        value[i] = digits.find(lower[i + 1]);
        good = value[i] != std::string_view::npos;
    }
    if (!good) throw py::value_error("colour must be \"#rrggbb\": " + text);
    constexpr std::size_t base = 16;
    std::size_t colour = 0;  // the blue byte is the highest
    for (const std::size_t byte : {4, 2, 0}) colour = (colour * base + value[byte]) * base + value[byte + 1];
    return static_cast<std::int32_t>(colour);
}

std::set<std::string> varied(const ModelBody& body) {
    std::set<std::string> names;
    for (const BodyParameter& row : body_parameters())
        if ((body.*row.slot).vary == 1) names.emplace(row.name);
    return names;
}

void set_varied(ModelBody& body, const std::set<std::string>& names) {
    for (const std::string& name : names) parameter_of(name);
    for (const BodyParameter& row : body_parameters())
        (body.*row.slot).vary = names.contains(std::string(row.name)) ? 1.0F : 0.0F;
}

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

}  // namespace

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

const BodyParameter& parameter_of(const std::string& name) {
    std::string names;
    for (const BodyParameter& row : body_parameters()) {
        if (row.name == name) return row;
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    }
    throw py::value_error("there is no parameter '" + name + "'; there are " + names);
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

const std::vector<Attribute>& attributes() {
    static const std::vector<Attribute> all = all_attributes();
    return all;
}

const Attribute& attribute_of(const std::string& name) {
    const auto found = std::ranges::find(attributes(), name, &Attribute::name);
    if (found != attributes().end()) return *found;
    std::vector<std::string> known;
    for (const Attribute& one : attributes()) known.push_back(one.name);
    throw py::type_error("a body has no '" + name + "'; nearest in name is '" +
                         nearest_names(name, known).front() + "'");
}

}  // namespace anomalis::python
