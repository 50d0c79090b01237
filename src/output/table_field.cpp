#include "output/table_field.h"

#include <cmath>

#include "core/numbers.h"

namespace anomalis::output {

std::string fixed_field(float value, std::string_view pattern) {
    return std::isfinite(value) ? format_number(value, pattern) : std::string(no_number);
}

std::string fixed_field(double value, std::string_view pattern) {
    return std::isfinite(value) ? format_number(value, pattern) : std::string(no_number);
}

}  // namespace anomalis::output
