#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/line_reader.h"
#include "core/point_transform.h"
#include "intake/record_columns.h"
#include "intake/record_lines.h"
#include "intake/row_notes.h"

namespace anomalis::intake {

struct DataBlock;

/// What a row of which nothing was read has.
inline constexpr double never_read = -1e32;

/// What the rows behind some lines must know of them.
struct RecordState {
    RecordValues values{};  ///< -1E32 where none was read yet
    std::uint8_t read = 0;  ///< the quantities that were, a bit each
    long lines = 0;
    RowNotes notes;  ///< of these lines
};

/// Reads the records of an observed data file one after the other. The values stay from record to record: a
/// short row keeps the earlier row's values for the columns that it lacks, but for one without a line end at
/// the end of the file, which was cut and is no record.
class RecordReader {
  public:
    /// A reader at the start of a file, `style` that of its lines.
    RecordReader(const DataDefinition& definition, const PointTransform& transform, int style);

    /// Goes on with the next lines of the file; those before the first data line are skipped.
    /// The text must stay meanwhile.
    void begin(const DataBlock& block);
    /// Forgets all lines so far and begins with a block somewhere behind the first data line.
    void begin_apart(const DataBlock& block);
    /// Takes lines as read that another reader read apart.
    void pass(const RecordState& apart);

    /// Goes to the next record of the block whose wanted tokens are all numbers; false when there is none.
    /// Raises Fault overflow when a transformed coordinate does not fit.
    bool next();
    const RecordValues& values() const { return state_.values; }
    /// Whether some row so far had this column.
    bool was_read(Quantity quantity) const { return (state_.read >> quantity & 1U) != 0; }
    /// The quantities for which there is a column, a bit each.
    std::uint8_t wanted() const { return columns_.quantities(); }
    /// All of them were read: what comes now does not hang on earlier lines.
    bool all_read() const { return state_.read == wanted(); }
    /// Lines before the first data line are still to come.
    bool in_head() const { return head_left_ > 0; }
    /// The final data line was reached: what follows is not read.
    bool ended() const { return lines_.ended(); }
    /// Whether it may be, so many lines on.
    bool may_end_within(long lines) const { return lines_.may_end_within(lines); }
    long line_number() const { return lines_before_ + lines_of_block_.line_number(); }
    /// What was met on the way, as far as the block was read.
    RecordState take_state();
    const RowNotes& notes() const { return state_.notes; }

    /// A value of this record as a single; raises Fault overflow with the line when it does not fit.
    float single(Quantity quantity) const {
        const auto value = static_cast<float>(state_.values[quantity]);
        if (value - value != 0) raise_overflow();
        return value;
    }

  private:
    bool find_record(std::string_view& line);
    bool at_end_of_file();
    void note_missing_heights();
    void transform_point();
    [[noreturn]] void raise_overflow() const;

    PointTransform transform_;
    std::string path_;
    int style_;
    LineScanner lines_of_block_;
    bool in_last_block_ = false;
    long lines_before_ = 0;
    std::int32_t head_left_;
    RecordLines lines_, first_line_;
    RecordColumns columns_;
    RecordState state_;
};

}  // namespace anomalis::intake
