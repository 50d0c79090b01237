#include "output/table_field.h"

#include <cmath>

#include "core/append_number.h"

namespace anomalis::output {

namespace {

template <class Number>
void append(std::string& text, Number value, int decimals) {
    std::isfinite(value) ? append_fixed(text, value, decimals) : void(text += no_number);
}

template <class Number>
std::string field(Number value, int decimals) {
    std::string text;
    append(text, value, decimals);
    return text;
}

}  // namespace

void append_field(std::string& text, float value, int decimals) {
    append(text, value, decimals);
}

void append_field(std::string& text, double value, int decimals) {
    append(text, value, decimals);
}

std::string fixed_field(float value, int decimals) {
    return field(value, decimals);
}

std::string fixed_field(double value, int decimals) {
    return field(value, decimals);
}

}  // namespace anomalis::output
