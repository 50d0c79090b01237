#include "workspace_file/axm_text.h"

#include <algorithm>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::workspace_file {

namespace {

/// Enough of a text to find it by.
std::string quoted(std::string_view text) {
    constexpr std::size_t longest = 40;
    return "\"" + std::string(text.substr(0, longest)) + (text.size() > longest ? "...\"" : "\"");
}

}  // namespace

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

LineItems AxmLines::items(Severity severity) {
    const std::string_view line = next();
    return {line, *this, severity};
}

void AxmLines::note(long line, const std::string& what, Severity severity) {
    notes_.add("line " + std::to_string(line) + ": " + what, 1, severity);
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
    if (parse_number(text, value)) return value;
    value = prefix_number(text);
    note_unreadable(text, shortest_text(value));
    return value;
}

void LineItems::end() {
    const std::string_view text = trim_blanks(rest_);
    if (notes_ && !text.empty())
        notes_->note(line_,
                     quoted(text) + " is left over and was not read; is there a comma for a decimal point?",
                     severity_);
}

void LineItems::note_unreadable(std::string_view token, const std::string& taken) {
    if (!notes_) return;
    const std::string what = token.empty() ? "a number is missing; " : quoted(token) + " is no number; ";
    notes_->note(line_, what + taken + " was taken", severity_);
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
