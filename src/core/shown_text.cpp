#include "core/shown_text.h"

#include "core/utf8.h"

namespace anomalis {

namespace {

std::string hex(unsigned value, std::size_t least_digits) {
    std::string text;
    for (; value > 0 || text.size() < least_digits; value /= 16)
        text.insert(text.begin(), "0123456789ABCDEF"[value % 16]);
    return text;
}

std::string escaped(char32_t code) {
    if (code == U'\n') return "\\n";
    if (code == U'\r') return "\\r";
    if (code == U'\t') return "\\t";
    return "\\u{" + hex(static_cast<unsigned>(code), 2) + "}";
}

/// What lays a message out stands at the start of the text.
bool starts_with_layout(std::string_view text) {
    return text.starts_with('\n') || text.starts_with('\t') || text.starts_with("\r\n");
}

std::string shown(std::string_view text, bool keep_layout) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Utf8Character found = first_character(text);
        const std::size_t length = found.length > 0 ? found.length : 1;
        if (found.length == 0) {
            result += "\\x" + hex(static_cast<unsigned char>(text.front()), 2);
        } else if (is_hidden_control(found.code) && !(keep_layout && starts_with_layout(text))) {
            result += escaped(found.code);
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace

bool is_hidden_control(char32_t code) {
    const auto within = [code](char32_t low, char32_t high) { return code >= low && code <= high; };
    return code < 0x20 || within(0x7F, 0x9F) || code == 0x061C || within(0x200E, 0x200F) ||
           within(0x2028, 0x202E) || within(0x2066, 0x2069) || code == 0xFEFF;
}

std::string shown_text(std::string_view text) {
    return shown(text, false);
}

std::string shown_lines(std::string_view text) {
    return shown(text, true);
}

}  // namespace anomalis
