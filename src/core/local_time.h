#pragma once

#include <array>
#include <ctime>
#include <string>

namespace anomalis {

/// A time as the clock on the wall shows it, by a pattern of strftime with at most 31 letters: "%Y-%m-%d".
inline std::string local_time_text(std::time_t time, const char* pattern) {
    std::tm local{};
    std::array<char, 32> text{};
    if (::localtime_r(&time, &local)) std::strftime(text.data(), text.size(), pattern, &local);
    return text.data();
}

}  // namespace anomalis
