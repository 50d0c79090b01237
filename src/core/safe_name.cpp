#include "core/safe_name.h"

#include <cctype>
#include <cstddef>

#include "core/text.h"

namespace anomalis {

namespace {

constexpr std::size_t longest = 100;

bool is_safe(unsigned char letter) {
    return letter >= 0x80 || std::isalnum(letter) != 0 || letter == '-' || letter == '_' || letter == '.' ||
           letter == '+';
}

}  // namespace

std::string safe_name(std::string_view name) {
    std::string safe;
    for (const char letter : trim_blanks(name))
        safe += is_safe(static_cast<unsigned char>(letter)) ? letter : '_';
    if (safe.starts_with('.')) safe.front() = '_';
    if (safe.size() > longest) {
        std::size_t end = longest;
        while (end > 0 && (static_cast<unsigned char>(safe[end]) & 0xC0U) == 0x80U) --end;
        safe.resize(end);
    }
    return safe;
}

}  // namespace anomalis
