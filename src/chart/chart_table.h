#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// The tables that a host gives to a chart. Rows are series: row 0 is (1, x1 ... xn), row k is
// (style code, y1 ... yn); a later row with the kind 1 opens a new group with its own X values.
namespace anomalis::chart {

/// The kinds in column 0 of a row. Any other number leaves the style to the chart's type.
inline constexpr double x_row = 1.0;
inline constexpr double chart_type_series = 0.0;
inline constexpr double line_series = -2.0;
inline constexpr double line_and_marker_series = -3.0;
inline constexpr double bar_series = -4.0;

/// The cells of a row where they stand: doubles, or singles that widen as they are read.
class Cells {
  public:
    Cells() = default;
    Cells(std::span<const double> doubles) : doubles_(doubles) {}
    Cells(std::span<const float> singles) : singles_(singles) {}
    Cells(const std::vector<double>& doubles) : doubles_(doubles) {}

    std::size_t size() const { return doubles_.size() + singles_.size(); }
    bool empty() const { return size() == 0; }
    double operator[](std::size_t i) const {
        return singles_.empty() ? doubles_[i] : static_cast<double>(singles_[i]);
    }
    /// Calls `work` with the span that the cells stand in, so that its loop asks once what they are.
    template <class Work>
    void visit(Work&& work) const {
        singles_.empty() ? work(doubles_) : work(singles_);
    }

  private:
    std::span<const double> doubles_;
    std::span<const float> singles_;
};

/// One row without copying: its kind and its cells.
struct ChartRow {
    double code = chart_type_series;
    Cells cells;
};

/// The room between two curves, filled. A place is left open where one of the three is missing.
struct ChartBand {
    Cells x, low, high;
    std::int32_t fill = 0;  ///< a Colour
};

/// A line across the plot in the colours of its points: the track of a survey. A place is left open where X
/// or Y is missing.
struct ChartTrack {
    Cells x, y;
    std::span<const std::int32_t> colours;  ///< a Colour a point: of the piece that begins there
    int width = 1;                          ///< screen pixels
};

enum class DotShape : std::int32_t { circle, square, cross };

/// A sign of its own size and colour at a place: the top of a body on a map. Left out where X or Y is
/// missing.
struct ChartDot {
    double x = 0, y = 0;
    double radius = 0;       ///< surface units; a square has the area of the circle
    std::int32_t fill = 0;   ///< a Colour
    std::int32_t edge = -1;  ///< a Colour; none: no edge
    double hole = 0;         ///< part of the radius that is left white in the middle
    DotShape shape = DotShape::circle;
    bool operator==(const ChartDot&) const = default;
};

/// A table with its kinds in column 0; the first empty cell ends a row.
using ChartTable = std::vector<std::vector<std::optional<double>>>;

/// Marker styles or colours by absolute series number and point: element [series - 1][point - 1].
/// A cell that is not there leaves what the chart holds.
using MarkerTable = std::vector<std::vector<std::int32_t>>;

/// The number of dimensions of the chart's table types; `array_rank` is 0 without a data block.
template <class Cell>
struct TableRank {
    static constexpr int value = 0;
};
template <class Cell>
struct TableRank<std::vector<Cell>> {
    static constexpr int value = 1 + TableRank<Cell>::value;
};

/// True when the table has a data block.
template <class Cell>
bool array_is_initialized(const std::vector<Cell>& table) {
    return !table.empty();
}
/// The number of dimensions, 0 for a table without a data block.
template <class Cell>
int array_rank(const std::vector<Cell>& table) {
    return table.empty() ? 0 : TableRank<std::vector<Cell>>::value;
}
/// The upper bound of a dimension (1 the rows, 2 the longest row), counted from 0; -1 without a data block or
/// for a dimension that the table has not.
template <class Cell>
int array_upper_bound(const std::vector<Cell>& table, int dimension) {
    if (table.empty() || dimension < 1 || dimension > TableRank<std::vector<Cell>>::value) return -1;
    if (dimension == 1) return static_cast<int>(table.size()) - 1;
    int bound = -1;
    if constexpr (TableRank<Cell>::value > 0) {
        for (const Cell& row : table) {
            const int inner = array_upper_bound(row, dimension - 1);
            bound = inner > bound ? inner : bound;
        }
    }
    return bound;
}

}  // namespace anomalis::chart
