#pragma once

#include <string>

#include "batch/batch_prompts.h"

namespace anomalis::batch {

/// A JSON value as text with a line end. Bytes that are no UTF-8 become the replacement character.
template <class Json>
std::string json_text(const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

/// All that was told while the object was made.
template <class Json>
void add_told(Json& json, const BatchPrompts& told) {
    json["messages"] = told.messages();
    json["failures"] = told.failures();
    json["remarks"] = told.remarks();
}

}  // namespace anomalis::batch
