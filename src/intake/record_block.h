#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "intake/record_columns.h"

namespace anomalis::intake {

class RecordReader;

/// Between what the values of a quantity lie.
class RecordRange {
  public:
    /// A row that has none: no range begins at it.
    void add_missing() {
        if (!begun_) begins_missing_ = begun_ = true;
    }
    void add(double value);
    /// Adds the rows that follow.
    void append(const RecordRange& following);

    /// An empty range, low above high, of a quantity that is missing in all rows.
    double low() const;
    double high() const;

  private:
    bool begun_ = false, begins_missing_ = false, any_ = false;
    double low_ = 0, high_ = 0;  ///< of those that are there
};

/// Rows of a data file in columns, and their ranges.
class RecordBlock {
  public:
    /// Columns for these quantities (a bit each) and for the place.
    explicit RecordBlock(std::uint8_t wanted);

    /// Adds the record that the reader stands at. Raises Fault overflow when a value that is kept as a single
    /// does not fit.
    void add(const RecordReader& record);
    /// One value of a quantity that is wanted, of the next row; -1E32 of one that is missing. REQUIRES: in
    /// the end each of them has as many.
    void add_value(Quantity quantity, double value);
    /// Finds the ranges; to be called once, behind the last row.
    void find_ranges();
    /// Makes room for about so many rows.
    void reserve(std::size_t rows);

    std::size_t rows() const { return doubles_[quantity_x].size(); }
    /// X, Y, Z or DTM, m; empty for a quantity without a column.
    const std::vector<double>& place(Quantity quantity) const { return doubles_[quantity]; }
    /// Mag or Grav, nT or mGal; -1E32 of one that is missing, however it is marked.
    const std::vector<float>& readings(Quantity quantity) const { return singles_[quantity - quantity_mag]; }
    const RecordRange& range(Quantity quantity) const { return ranges_[quantity]; }
    /// The line of the first missing reading that is too far below 0 for a single; 0 for none.
    long misfit_line() const { return misfit_line_; }
    /// Gives the memory back.
    void release();

  private:
    bool is_wanted(Quantity quantity) const { return (wanted_ >> quantity & 1U) != 0; }
    float reading(const RecordReader& record, Quantity quantity);
    void find_place_range(Quantity quantity);
    template <class Real>
    void find_range(Quantity quantity, const std::vector<Real>& column);

    std::uint8_t wanted_;
    std::array<std::vector<double>, 4> doubles_;
    std::array<std::vector<float>, 2> singles_;
    std::array<std::size_t, quantity_count> unread_{};  ///< first rows, before any had the quantity
    std::array<RecordRange, quantity_count> ranges_;
    long misfit_line_ = 0;
};

}  // namespace anomalis::intake
