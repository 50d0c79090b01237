#include "intake/record_reader.h"

#include <cmath>
#include <string>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/workspace.h"
#include "transform/transform.h"

namespace anomalis::intake {

namespace {

constexpr double never_read = -1e32;
constexpr std::size_t longest_shown = 300;

}  // namespace

RecordReader::RecordReader(const DataDefinition& definition, const PointTransform& transform)
    : transform_(transform), reader_(definition.data_file), lines_(definition), columns_(definition) {
    values_.fill(never_read);
    style_ = reader_.detect_line_style();
    for (std::int32_t i = 1; i < definition.first_data_line && !reader_.at_end(); ++i)
        notes_.see_head(reader_.next(style_));
}

bool RecordReader::next() {
    for (;;) {
        std::string_view line;
        if (lines_.ended() || !find_record(line)) return false;
        const RowReading row = columns_.read(line, values_);
        read_ |= row.taken;
        const bool cut = row.fit == RowReading::too_short && !reader_.line_ended() && reader_.at_end();
        if (row.fit != RowReading::no_number && !cut) {
            if (notes_.records == 0) notes_.first_record = line.substr(0, longest_shown);
            notes_.take(reader_.line_number(), row.fit == RowReading::too_short);
            break;
        }
        if (cut) {
            notes_.cut_line = reader_.line_number();
        } else {
            notes_.drop(reader_.line_number(), row.token, row.column);
        }
    }
    note_missing_heights();
    if (transform_.active) transform_point();
    lines_.accept_record();
    return true;
}

/// False when the file ends first.
bool RecordReader::find_record(std::string_view& line) {
    do {
        notes_.to_the_end = reader_.at_end();
        if (notes_.to_the_end) return false;
        line = record_text(reader_.next(style_));
    } while (lines_.take(line) != LineUse::record);
    return true;
}

void RecordReader::note_missing_heights() {
    const auto missing = [this](Quantity q) { return was_read(q) && !is_reading(values_[q]); };
    if (missing(quantity_z)) ++notes_.missing_sensor_heights;
    if (missing(quantity_dtm)) ++notes_.missing_ground_heights;
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

float RecordReader::reading(Quantity quantity) const {
    const float value = single(quantity);
    return is_reading(static_cast<double>(value)) ? value : static_cast<float>(never_read);
}

void RecordReader::raise_overflow() const {
    throw Fault(FaultKind::overflow, reader_.path() + ", line " + std::to_string(reader_.line_number()));
}

}  // namespace anomalis::intake
