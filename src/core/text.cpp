#include "core/text.h"

#include <algorithm>

#include "core/token_scan.h"

namespace anomalis {

namespace {

bool skips(char c) {
    return c == ' ' || c == '\t';
}

void skip_blanks(std::string_view& line) {
    while (!line.empty() && skips(line.front())) line.remove_prefix(1);
}

void drop_separator(std::string_view& line) {
    skip_blanks(line);
    if (!line.empty() && ends_token(line.front())) line.remove_prefix(1);
}

std::string_view plain_token(std::string_view& line) {
    std::size_t end = 0;
    while (end < line.size() && !ends_token(line[end])) ++end;
    const std::string_view token = line.substr(0, end);
    line.remove_prefix(end);
    drop_separator(line);
    return token;
}

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::string_view trim_blanks(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::string_view next_token(std::string_view& line) {
    line = trim_blanks(line);
    skip_blanks(line);
    if (line.empty() || line == "\"") return line = {};
    if (line.front() != '"') return plain_token(line);
    line.remove_prefix(1);
    const auto close = line.find('"');
    if (close == std::string_view::npos) {
        // A quote with no partner is dropped and what follows is read as plain text.
        skip_blanks(line);
        return plain_token(line);
    }
    const std::string_view token = line.substr(0, close);
    line.remove_prefix(close + 1);
    drop_separator(line);
    return trim_blanks(token);
}

bool next_number(std::string_view& line, double& value) {
    return scan_number(line, value);
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upper(x) == upper(y); });
}

bool text_to_flag(std::string_view text) {
    return !(equal_ignoring_case(text, "NO") || equal_ignoring_case(text, "FALSE") || text == "0");
}

std::string flag_to_text(bool flag) {
    return flag ? "Yes" : "No";
}

std::string single_line(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' && i > 0 && text[i - 1] == '\r') continue;
        line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
    }
    return line;
}

std::string trim_at_nul(std::string_view text) {
    return std::string(trim_blanks(text.substr(0, text.find('\0'))));
}

}  // namespace anomalis
