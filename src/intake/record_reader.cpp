#include "intake/record_reader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <string>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "transform/transform.h"

namespace anomalis::intake {

namespace {

constexpr double never_read = -1e32;

bool is_comment(std::string_view line) {
    return !line.empty() && (line.front() == '!' || line.front() == '\\');
}

}  // namespace

RecordReader::RecordReader(const DataDefinition& definition, const PointTransform& transform)
    : definition_(definition), transform_(transform), reader_(definition.data_file) {
    const DataDefinition& d = definition_;
    // The position columns exclude each other; the others may share a column with them and among themselves.
    want(d.x_column, quantity_x);
    if (d.y_column != d.x_column) want(d.y_column, quantity_y);
    if (d.z_column != d.x_column && d.z_column != d.y_column) want(d.z_column, quantity_z);
    want(d.dtm_column, quantity_dtm);
    want(d.mag_column, quantity_mag);
    want(d.grav_column, quantity_grav);
    values_.fill(never_read);
    style_ = reader_.detect_line_style();
    for (std::int32_t i = 1; i < d.first_data_line && !reader_.at_end(); ++i) reader_.next(style_);
}

bool RecordReader::next() {
    std::string_view line;
    do {
        if (finished_ || !read_group(line)) return false;
    } while (!take_values(line));
    if (transform_.active) transform_point();
    finished_ = definition_.last_data_line != 0 && lines_read_ >= definition_.last_data_line;
    return true;
}

/// The last line of the next group of `read_increment` lines, comments left out; an empty one is passed over.
/// False when the file ends first.
bool RecordReader::read_group(std::string_view& line) {
    line = {};
    for (long step = 0; line.empty() || step < definition_.read_increment;) {
        if (reader_.at_end()) return false;
        line = trim_blanks(reader_.next(style_));
        ++lines_read_;
        if (is_comment(line)) {
            line = {};
        } else {
            ++step;
        }
    }
    return true;
}

void RecordReader::want(std::int32_t column, Quantity quantity) {
    if (column <= 0) return;
    const auto bit = static_cast<std::uint8_t>(1U << quantity);
    const auto end = wanted_.begin() + static_cast<std::ptrdiff_t>(wanted_count_);
    const auto place =
        std::find_if(wanted_.begin(), end, [&](const WantedColumn& w) { return w.column >= column; });
    if (place != end && place->column == column) {
        place->quantities |= bit;
        return;
    }
    std::move_backward(place, end, end + 1);
    *place = {column, bit};
    ++wanted_count_;
}

/// False when a wanted token is no number. What was taken before it stays.
bool RecordReader::take_values(std::string_view line) {
    std::int32_t column = 1;
    for (std::size_t i = 0; i < wanted_count_; ++i) {
        for (; column < wanted_[i].column && !line.empty(); ++column) next_token(line);
        if (line.empty()) return true;
        double value = 0;
        if (!next_number(line, value)) return false;
        ++column;
        for (unsigned bits = wanted_[i].quantities; bits != 0; bits &= bits - 1)
            values_[static_cast<std::size_t>(std::countr_zero(bits))] = value;
    }
    return true;
}

/// In place: a later row that lacks a coordinate sees the transformed one.
void RecordReader::transform_point() {
    transform::apply_transform(transform_, 1, values_[quantity_x], values_[quantity_y], values_[quantity_z]);
    for (const Quantity q : {quantity_x, quantity_y, quantity_z}) {
        if (!std::isfinite(values_[q])) raise_overflow();
    }
}

float RecordReader::single(Quantity quantity) const {
    const auto value = static_cast<float>(values_[quantity]);
    if (std::isinf(value)) raise_overflow();
    return value;
}

void RecordReader::raise_overflow() const {
    throw Fault(FaultKind::overflow, reader_.path() + ", line " + std::to_string(reader_.line_number()));
}

}  // namespace anomalis::intake
