#include "survey/desk/desk_rows.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <tuple>

namespace anomalis::survey {

namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The digits at its start, without zeros in front.
std::string_view take_number(std::string_view& text) {
    const auto end = static_cast<std::size_t>(std::ranges::find_if_not(text, is_digit) - text.begin());
    std::string_view digits = text.substr(0, end);
    text.remove_prefix(end);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

bool name_before(std::string_view a, std::string_view b) {
    while (!a.empty() && !b.empty()) {
        if (is_digit(a.front()) && is_digit(b.front())) {
            const std::string_view x = take_number(a), y = take_number(b);
            if (x != y) return std::tuple(x.size(), x) < std::tuple(y.size(), y);
            continue;
        }
        if (a.front() != b.front()) return a.front() < b.front();
        a.remove_prefix(1);
        b.remove_prefix(1);
    }
    return a.size() < b.size();
}

bool contains(std::string_view text, std::string_view wanted) {
    const auto same = [](char one, char other) { return lower(one) == lower(other); };
    return wanted.empty() ||
           std::search(text.begin(), text.end(), wanted.begin(), wanted.end(), same) != text.end();
}

/// Infinite where the data leave one side open.
double interval_width(const IntervalValue& value) {
    const bool low = std::isfinite(value.lower), high = std::isfinite(value.upper);
    if (low && high) return value.upper - value.lower;
    return low || high ? std::numeric_limits<double>::infinity() : unknown;
}

/// Lines of gravity behind those of magnetics: their rms is in another unit.
using Key = std::tuple<int, double>;

Key key_of(const DeskRow& row, DeskColumn column) {
    switch (column) {
        case DeskColumn::line:
            break;
        case DeskColumn::status:
            return {0, static_cast<double>(row.status)};
        case DeskColumn::bodies:
            return {0, row.status == RowStatus::done ? row.bodies : unknown};
        case DeskColumn::rms:
            return std::isnan(row.rms_nT) ? Key{1, row.rms_mGal} : Key{0, row.rms_nT};
        case DeskColumn::depth:
            return {0, row.least_depth};
        case DeskColumn::depth_interval:
            return {0, row.depth_interval};
        case DeskColumn::criterion:
            return {0, row.criterion};
        case DeskColumn::flag:
            return {0, row.mark.flag == LineFlag::none ? unknown : static_cast<double>(row.mark.flag)};
    }
    return {0, unknown};
}

}  // namespace

DeskRow desk_row(const LineResult* result) {
    DeskRow row;
    if (!result) return row;
    row.bodies = static_cast<int>(result->bodies.size());
    row.rms_nT = result->rms_nT;
    row.rms_mGal = result->rms_mGal;
    row.criterion = result->criterion;
    row.message = result->message;
    for (const BodyResult& body : result->bodies) {
        const auto [depth, below_sensor] = told_depth(body);
        if (std::isnan(depth.value) || depth.value >= row.least_depth) continue;
        row.below_sensor = below_sensor;
        row.least_depth = depth.value;
        row.depth_interval = interval_width(depth);
    }
    return row;
}

bool holds(const RowFilter& filter, const DeskRow& row) {
    if (!contains(row.line, filter.text) && !contains(row.message, filter.text) &&
        !contains(row.mark.note, filter.text))
        return false;
    if (filter.status && row.status != *filter.status) return false;
    if (filter.flag && row.mark.flag != *filter.flag) return false;
    if (filter.rms_above && !(row.rms_nT > *filter.rms_above) && !(row.rms_mGal > *filter.rms_above))
        return false;
    if (filter.depth_from && !(row.least_depth >= *filter.depth_from)) return false;
    if (filter.depth_to && !(row.least_depth <= *filter.depth_to)) return false;
    return !filter.interval_above || row.depth_interval > *filter.interval_above;
}

void sort_rows(std::vector<DeskRow>& rows, DeskColumn column, bool ascending) {
    std::ranges::stable_sort(rows, [=](const DeskRow& a, const DeskRow& b) {
        if (column == DeskColumn::line)
            return ascending ? name_before(a.line, b.line) : name_before(b.line, a.line);
        const Key x = key_of(a, column), y = key_of(b, column);
        const bool x_unknown = std::isnan(std::get<double>(x)), y_unknown = std::isnan(std::get<double>(y));
        if (x_unknown || y_unknown) return !x_unknown && y_unknown;
        return ascending ? x < y : y < x;
    });
}

}  // namespace anomalis::survey
