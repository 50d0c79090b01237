#pragma once

#include <string>

namespace anomalis::batch {

inline constexpr const char* program_name = "anomalis-batch";
inline constexpr const char* program_purpose =
    "Magnetic and gravity anomalies along a survey profile, without a window";

/// "--output" of "-o,--output".
inline std::string long_name(const std::string& names) {
    return names.substr(names.rfind(',') + 1);
}

/// "VIEW" for "--view".
std::string value_name(const std::string& names);

}  // namespace anomalis::batch
