#pragma once

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "core/failure.h"
#include "survey/results/line_result.h"

// The fields of the files of a survey as JSON. Private to this room.
namespace anomalis::survey {

using Json = nlohmann::ordered_json;

inline Json number_json(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

inline double number_of(const Json& json) {
    return json.is_null() ? unknown : json.get<double>();
}

/// One object from a file. Raises Fault with the path and what is wrong.
template <class Read>
auto read_json_file(const std::string& text, const std::string& path, Read&& read) {
    try {
        return read(Json::parse(text));
    } catch (const Json::exception& error) {
        throw Fault(path + " is damaged: " + error.what());
    }
}

}  // namespace anomalis::survey
