#include "intake/record_reader.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "core/failure.h"
#include "core/workspace.h"
#include "intake/data_blocks.h"
#include "transform/transform.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t longest_shown = 300;

RecordState nothing_read() {
    RecordState state;
    state.values.fill(never_read);
    return state;
}

}  // namespace

RecordReader::RecordReader(const DataDefinition& definition, const PointTransform& transform, int style)
    : transform_(transform),
      path_(definition.data_file),
      style_(style),
      head_left_(std::max(definition.first_data_line - 1, 0)),
      lines_(definition),
      first_line_(definition),
      columns_(definition),
      state_(nothing_read()) {}

void RecordReader::begin(const DataBlock& block) {
    lines_before_ += lines_of_block_.line_number();
    in_last_block_ = block.last;
    lines_of_block_.begin(block.bytes.data(), block.size);
    for (; head_left_ > 0 && !lines_of_block_.at_end(); --head_left_)
        state_.notes.see_head(lines_of_block_.next(style_));
}

void RecordReader::begin_apart(const DataBlock& block) {
    lines_before_ = 0;
    head_left_ = 0;
    lines_ = first_line_;
    state_ = nothing_read();
    in_last_block_ = block.last;
    lines_of_block_.begin(block.bytes.data(), block.size);
}

RecordState RecordReader::take_state() {
    state_.lines = line_number();
    return std::move(state_);
}

void RecordReader::pass(const RecordState& apart) {
    state_.notes.append(apart.notes, line_number());
    for (std::size_t q = 0; q < quantity_count; ++q)
        if ((apart.read >> q & 1U) != 0) state_.values[q] = apart.values[q];
    state_.read |= apart.read;
    lines_before_ += apart.lines;
    lines_.pass(apart.lines);
}

bool RecordReader::next() {
    for (;;) {
        std::string_view line;
        if (lines_.ended() || !find_record(line)) return false;
        const RowReading row = columns_.read(line, state_.values);
        state_.read |= row.taken;
        RowNotes& notes = state_.notes;
        const bool cut = row.fit == RowReading::too_short && at_end_of_file();
        if (row.fit != RowReading::no_number && !cut) {
            if (notes.records == 0) notes.first_record = line.substr(0, longest_shown);
            notes.take(line_number(), row.fit == RowReading::too_short);
            break;
        }
        if (cut) {
            notes.cut_line = line_number();
        } else {
            notes.drop(line_number(), row.token, row.column);
        }
    }
    note_missing_heights();
    if (transform_.active) transform_point();
    lines_.accept_record();
    return true;
}

/// The file ends within the line that was read last.
bool RecordReader::at_end_of_file() {
    return in_last_block_ && !lines_of_block_.line_ended() && lines_of_block_.at_end();
}

/// False when the block ends first.
bool RecordReader::find_record(std::string_view& line) {
    do {
        if (lines_of_block_.at_end()) return false;
        line = record_text(lines_of_block_.next(style_));
    } while (lines_.take(line) != LineUse::record);
    return true;
}

void RecordReader::note_missing_heights() {
    const auto missing = [this](Quantity q) { return was_read(q) && !(state_.values[q] > missing_limit); };
    if (missing(quantity_z)) ++state_.notes.missing_sensor_heights;
    if (missing(quantity_dtm)) ++state_.notes.missing_ground_heights;
}

/// In place: a later row that lacks a coordinate sees the transformed one.
void RecordReader::transform_point() {
    RecordValues& values = state_.values;
    transform::apply_transform(transform_, 1, values[quantity_x], values[quantity_y], values[quantity_z]);
    for (const Quantity q : {quantity_x, quantity_y, quantity_z}) {
        if (!std::isfinite(values[q])) raise_overflow();
    }
}

void RecordReader::raise_overflow() const {
    throw Fault(FaultKind::overflow, path_ + ", line " + std::to_string(line_number()));
}

}  // namespace anomalis::intake
