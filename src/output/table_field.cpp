#include "output/table_field.h"

#include <algorithm>
#include <cmath>

#include "core/append_number.h"

namespace anomalis::output {

namespace {

template <class Number>
char* write(char* at, Number value, int decimals) {
    if (std::isfinite(value)) return write_fixed(at, value, decimals);
    return std::copy(no_number.begin(), no_number.end(), at);
}

template <class Number>
std::string field(Number value, int decimals) {
    char buffer[longest_fixed];
    return {buffer, write(buffer, value, decimals)};
}

}  // namespace

char* write_field(char* at, float value, int decimals) {
    return write(at, value, decimals);
}

char* write_field(char* at, double value, int decimals) {
    return write(at, value, decimals);
}

std::string fixed_field(float value, int decimals) {
    return field(value, decimals);
}

std::string fixed_field(double value, int decimals) {
    return field(value, decimals);
}

}  // namespace anomalis::output
