#pragma once

#include <string>

namespace anomalis::batch {

/// A JSON value as text with a line end. Bytes that are no UTF-8 become the replacement character.
template <class Json>
std::string json_text(const Json& json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace anomalis::batch
