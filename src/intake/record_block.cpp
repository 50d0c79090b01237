#include "intake/record_block.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/workspace.h"
#include "intake/record_reader.h"

namespace anomalis::intake {

void RecordRange::add(double value) {
    low_ = any_ ? std::min(low_, value) : value;
    high_ = any_ ? std::max(high_, value) : value;
    begun_ = any_ = true;
}

void RecordRange::append(const RecordRange& following) {
    if (!begun_) {
        *this = following;
    } else if (following.any_) {
        add(following.low_);
        add(following.high_);
    }
}

// A range that begins at a missing value begins empty, and numbers beyond its empty ends leave them.
double RecordRange::low() const {
    if (!any_) return static_cast<double>(empty_low);
    return begins_missing_ ? std::min(static_cast<double>(empty_low), low_) : low_;
}

double RecordRange::high() const {
    if (!any_) return static_cast<double>(empty_high);
    return begins_missing_ ? std::max(static_cast<double>(empty_high), high_) : high_;
}

RecordBlock::RecordBlock(std::uint8_t wanted)
    : wanted_(static_cast<std::uint8_t>(wanted | 1U << quantity_x | 1U << quantity_y)) {}

void RecordBlock::reserve(std::size_t rows) {
    for (const Quantity q : {quantity_x, quantity_y, quantity_z, quantity_dtm})
        if (is_wanted(q)) doubles_[q].reserve(rows);
    for (const Quantity q : {quantity_mag, quantity_grav})
        if (is_wanted(q)) singles_[q - quantity_mag].reserve(rows);
}

float RecordBlock::reading(const RecordReader& record, Quantity quantity) {
    const double value = record.values()[quantity];
    if (value > missing_limit) return record.single(quantity);
    if (misfit_line_ == 0 && std::isinf(static_cast<float>(value))) misfit_line_ = record.line_number();
    return static_cast<float>(never_read);
}

void RecordBlock::add(const RecordReader& record) {
    const RecordValues& values = record.values();
    for (const Quantity q : {quantity_z, quantity_dtm}) {
        if (!is_wanted(q)) continue;
        if (values[q] > missing_limit) record.single(q);
        doubles_[q].push_back(values[q]);
    }
    for (const Quantity q : {quantity_mag, quantity_grav})
        if (is_wanted(q)) singles_[q - quantity_mag].push_back(reading(record, q));
    if (!record.all_read())
        for (std::size_t q = quantity_z; q < quantity_count; ++q)
            if (!record.was_read(static_cast<Quantity>(q))) ++unread_[q];
    doubles_[quantity_x].push_back(values[quantity_x]);
    doubles_[quantity_y].push_back(values[quantity_y]);
}

void RecordBlock::add_value(Quantity quantity, double value) {
    if (quantity == quantity_mag || quantity == quantity_grav) {
        singles_[quantity - quantity_mag].push_back(static_cast<float>(value));
    } else {
        doubles_[quantity].push_back(value);
    }
}

template <class Real>
void RecordBlock::find_range(Quantity quantity, const std::vector<Real>& column) {
    RecordRange& range = ranges_[quantity];
    // What no row had so far is in the range, and so marks it.
    if (unread_[quantity] > 0) range.add(static_cast<double>(empty_high));
    // Local numbers, and no branch at a reading: a few instructions a row.
    constexpr float beyond = std::numeric_limits<float>::infinity();
    float low = beyond, high = -beyond;
    bool first = true;
    for (std::size_t i = unread_[quantity]; i < column.size(); ++i) {
        if (!(static_cast<double>(column[i]) > missing_limit)) {
            if (first) range.add_missing();
            continue;
        }
        first = false;
        const auto value = static_cast<float>(column[i]);
        low = value < low ? value : low;
        high = high < value ? value : high;
    }
    if (low <= high) range.add(static_cast<double>(low));
    if (low <= high) range.add(static_cast<double>(high));
}

void RecordBlock::find_place_range(Quantity quantity) {
    const std::vector<double>& column = doubles_[quantity];
    double low = column.front(), high = low;
    for (const double value : column) {
        low = value < low ? value : low;
        high = high < value ? value : high;
    }
    ranges_[quantity].add(low);
    ranges_[quantity].add(high);
}

void RecordBlock::find_ranges() {
    if (rows() == 0) return;
    find_place_range(quantity_x);
    find_place_range(quantity_y);
    for (const Quantity q : {quantity_z, quantity_dtm, quantity_mag, quantity_grav}) {
        if (!is_wanted(q)) {
            ranges_[q].add(static_cast<double>(empty_high));
        } else if (q == quantity_z || q == quantity_dtm) {
            find_range(q, doubles_[q]);
        } else {
            find_range(q, singles_[q - quantity_mag]);
        }
    }
}

void RecordBlock::release() {
    for (auto& column : doubles_) std::vector<double>().swap(column);
    for (auto& column : singles_) std::vector<float>().swap(column);
}

}  // namespace anomalis::intake
