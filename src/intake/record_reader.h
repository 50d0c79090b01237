#pragma once

#include <string_view>

#include "core/line_reader.h"
#include "core/point_transform.h"
#include "intake/record_columns.h"
#include "intake/record_lines.h"
#include "intake/row_notes.h"

namespace anomalis::intake {

/// Reads the records of an observed data file one after the other. The values stay from record to record: a
/// short row keeps the earlier row's values for the columns that it lacks, but for one without a line end at
/// the end of the file, which was cut and is no record.
class RecordReader {
  public:
    /// Opens the file and skips the lines before the first data line. Raises FileFault.
    RecordReader(const DataDefinition& definition, const PointTransform& transform);

    /// Goes to the next record whose wanted tokens are all numbers; false when there is none.
    /// Raises FileFault, and Fault overflow when a transformed coordinate does not fit.
    bool next();
    const RecordValues& values() const { return values_; }
    /// Whether some row so far had this column.
    bool was_read(Quantity quantity) const { return (read_ >> quantity & 1U) != 0; }
    /// What was met on the way.
    const RowNotes& notes() const { return notes_; }

    /// A value of this record as a single; raises Fault overflow with file and line when it does not fit.
    float single(Quantity quantity) const;
    /// The same of a reading; -1E32 of one that is missing, however it is marked.
    float reading(Quantity quantity) const;

  private:
    bool find_record(std::string_view& line);
    void note_missing_heights();
    void transform_point();
    [[noreturn]] void raise_overflow() const;

    PointTransform transform_;
    LineReader reader_;
    int style_ = 0;
    RecordLines lines_;
    RecordColumns columns_;
    RowNotes notes_;
    RecordValues values_{};  ///< -1E32 where none was read yet
    std::uint8_t read_ = 0;  ///< the quantities that were, a bit each
};

}  // namespace anomalis::intake
