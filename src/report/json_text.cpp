#include "report/json_text.h"

#include <algorithm>

#include "core/shown_text.h"
#include "core/utf8.h"

namespace anomalis::report {

namespace {

void append_escaped(std::string& text, char32_t code) {
    text += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) text += "0123456789abcdef"[code >> shift & 0xFU];
}

bool is_below_del(char letter) {
    return static_cast<unsigned char>(letter) < 0x7F;
}

}  // namespace

std::string without_hidden_controls(std::string_view json) {
    std::string text;
    text.reserve(json.size());
    while (!json.empty()) {
        const auto plain =
            static_cast<std::size_t>(std::find_if_not(json.begin(), json.end(), is_below_del) - json.begin());
        text += json.substr(0, plain);
        json.remove_prefix(plain);
        if (json.empty()) break;
        const Utf8Character found = first_character(json);
        const std::size_t length = std::max<std::size_t>(found.length, 1);
        if (is_hidden_control(found.code)) {
            append_escaped(text, found.code);
        } else {
            text += json.substr(0, length);
        }
        json.remove_prefix(length);
    }
    return text;
}

}  // namespace anomalis::report
