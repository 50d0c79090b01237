#include "intake/record_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "transform/transform.h"

namespace anomalis {

namespace {

constexpr double never_read = -1e32;

bool is_comment(std::string_view line) {
    return !line.empty() && (line.front() == '!' || line.front() == '\\');
}

}  // namespace

RecordReader::RecordReader(const DataDefinition& definition, const PointTransform& transform)
    : definition_(definition), transform_(transform), reader_(definition.data_file) {
    const DataDefinition& d = definition_;
    highest_column_ =
        std::max({d.x_column, d.y_column, d.z_column, d.dtm_column, d.mag_column, d.grav_column});
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

/// False when a wanted token is no number. What was taken before it stays.
bool RecordReader::take_values(std::string_view line) {
    for (std::int32_t column = 1; column <= highest_column_ && !line.empty(); ++column) {
        if (!take_token(column, next_token(line))) return false;
    }
    return true;
}

/// Position columns exclude each other; the others may share a column with them and among themselves.
bool RecordReader::take_token(std::int32_t column, std::string_view token) {
    const DataDefinition& d = definition_;
    const bool x = column == d.x_column;
    const bool y = !x && column == d.y_column;
    const bool z = !x && !y && column == d.z_column;
    const bool dtm = column == d.dtm_column;
    const bool mag = column == d.mag_column;
    const bool grav = column == d.grav_column;
    if (!(x || y || z || dtm || mag || grav)) return true;
    double value = 0;
    if (!parse_number(token, value)) return false;
    if (x) values_[quantity_x] = value;
    if (y) values_[quantity_y] = value;
    if (z) values_[quantity_z] = value;
    if (dtm) values_[quantity_dtm] = value;
    if (mag) values_[quantity_mag] = value;
    if (grav) values_[quantity_grav] = value;
    return true;
}

/// In place: a later row that lacks a coordinate sees the transformed one.
void RecordReader::transform_point() {
    apply_transform(transform_, 1, values_[quantity_x], values_[quantity_y], values_[quantity_z]);
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

}  // namespace anomalis
