#include "workspace_file/axm_text.h"

#include <algorithm>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::workspace_file {

AxmLines::AxmLines(std::string_view text) : text_(text) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (text_.starts_with(byte_order_mark)) text_.remove_prefix(byte_order_mark.size());
}

std::string_view AxmLines::next() {
    ++number_;
    if (at_end()) throw Fault(FaultKind::input_past_end);
    const auto end = std::find_if(text_.begin(), text_.end(), [](char c) { return c == '\r' || c == '\n'; });
    const std::string_view line(text_.begin(), end);
    text_.remove_prefix(line.size());
    text_.remove_prefix(text_.starts_with("\r\n") ? 2 : text_.empty() ? 0 : 1);
    return trim_blanks(line);
}

void AxmLines::skip(int count) {
    for (int i = 0; i < count; ++i) next();
}

bool LineItems::left() const {
    return !trim_blanks(rest_).empty();
}

std::string_view LineItems::token() {
    return next_token(rest_);
}

double LineItems::number() {
    const std::string_view text = token();
    double value = 0;
    return parse_number(text, value) ? value : prefix_number(text);
}

float LineItems::single() {
    return to_single(number());
}

std::int32_t LineItems::integer() {
    return round_to_even(number());
}

void LineItems::if_left(float& value) {
    if (left()) value = single();
}

void LineItems::if_left(std::int32_t& value) {
    if (left()) value = integer();
}

AxmWriter& AxmWriter::operator<<(std::int32_t value) {
    text_ += number_to_text(value);
    text_ += ' ';
    return *this;
}

AxmWriter& AxmWriter::operator<<(float value) {
    text_ += number_to_text(value);
    text_ += ' ';
    return *this;
}

AxmWriter& AxmWriter::operator<<(double value) {
    text_ += number_to_text(value);
    text_ += ' ';
    return *this;
}

AxmWriter& AxmWriter::operator<<(std::string_view text) {
    text_ += single_line(text);
    return *this;
}

}  // namespace anomalis::workspace_file
