#pragma once

#include <string>
#include <string_view>

#include "core/recording_prompts.h"

namespace anomalis::report {

/// A JSON text, valid UTF-8, with the characters that steer a terminal or turn the order of reading round as
/// \uXXXX. Those below a blank are escaped in every JSON text; these stand in its strings alone.
std::string without_hidden_controls(std::string_view json);

/// A JSON value as text. Bytes that are no UTF-8 become the replacement character.
template <class Json>
std::string indented_json(const Json& json, int indent) {
    return without_hidden_controls(json.dump(indent, ' ', false, Json::error_handler_t::replace));
}

/// The same with a line end.
template <class Json>
std::string json_text(const Json& json, int indent) {
    return indented_json(json, indent) + "\n";
}

/// All that was told while the object was made.
template <class Json>
void add_told(Json& json, const RecordingPrompts& told) {
    json["messages"] = told.messages();
    json["failures"] = told.failures();
    json["remarks"] = told.remarks();
}

}  // namespace anomalis::report
