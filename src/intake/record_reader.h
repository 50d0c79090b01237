#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/line_reader.h"
#include "core/point_transform.h"
#include "core/workspace.h"

namespace anomalis::intake {

enum Quantity : std::size_t {
    quantity_x = 0,
    quantity_y,
    quantity_z,
    quantity_dtm,
    quantity_mag,
    quantity_grav
};

/// One value for each quantity, -1E32 where none was read yet.
using RecordValues = std::array<double, 6>;

/// A column and what it feeds, a bit for each quantity.
struct WantedColumn {
    std::int32_t column = 0;
    std::uint8_t quantities = 0;
};

/// Reads the records of an observed data file one after the other. The values stay from record to record: a
/// short row keeps the earlier row's values for the columns that it lacks.
class RecordReader {
  public:
    /// Opens the file and skips the lines before the first data line. Raises FileFault.
    RecordReader(const DataDefinition& definition, const PointTransform& transform);

    /// Goes to the next record whose wanted tokens are all numbers; false when there is none.
    /// Raises FileFault, and Fault overflow when a transformed coordinate does not fit.
    bool next();
    const RecordValues& values() const { return values_; }

    /// A value of this record as a single; raises Fault overflow with file and line when it does not fit.
    float single(Quantity quantity) const;

  private:
    bool read_group(std::string_view& line);
    bool take_values(std::string_view line);
    void want(std::int32_t column, Quantity quantity);
    void transform_point();
    [[noreturn]] void raise_overflow() const;

    DataDefinition definition_;
    PointTransform transform_;
    LineReader reader_;
    int style_ = 0;
    std::array<WantedColumn, 6> wanted_{};  ///< in rising order
    std::size_t wanted_count_ = 0;
    long lines_read_ = 0;  ///< without those before the first data line
    bool finished_ = false;
    RecordValues values_{};
};

}  // namespace anomalis::intake
