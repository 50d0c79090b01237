#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "chart/chart_table.h"
#include "chart/detail/block_extremes.h"
#include "chart/detail/chart_properties.h"
#include "chart/detail/view_state.h"
#include "chart/drawing_types.h"

namespace anomalis::chart {

/// What a host sets for a series. It outlives the data: a new registration that is not larger keeps it.
struct SeriesOptions {
    Colour colour = black;
    int marker = 0;
    bool visible = true;
    int width = 1;
    LineStyle style = LineStyle::solid;
    bool cased = false;  ///< a darker edge where the colour is seen badly on the ground
    std::string name;
    bool operator==(const SeriesOptions&) const = default;
};

struct SeriesData {
    double code = chart_type_series;
    std::vector<double> y;              ///< transformed, null_value where missing
    BlockExtremes extremes;             ///< of `y`
    std::vector<std::int32_t> markers;  ///< of single points; empty or one a point, 0 = the series' marker
    std::vector<std::int32_t> colours;  ///< likewise, -1 = the series' colour
    std::uint64_t revision = 0;         ///< another one whenever a place, a kind or a mark has changed
};

struct SeriesGroup {
    int first = 0;  ///< series number from 1
    int last = 0;
    int count = 0;           ///< points
    std::vector<double> x;   ///< transformed, null_value where missing
    bool ascending = false;  ///< all of `x` is there and no value is less than the one before
};

/// How a series is drawn.
struct SeriesStyle {
    bool bars = false;
    bool line = false;
    bool markers = false;
};
SeriesStyle series_style(double code, int chart_type, bool plot_points);

/// The registered data in transformed units, in groups that share their X values.
class SeriesTable {
  public:
    SeriesTable();

    /// Replaces the data; groups without a series are dropped. A table without cells is ignored.
    void register_rows(std::span<const ChartRow> rows, const ChartProperties& properties,
                       Colour first_colour);
    void clear();
    bool empty() const { return groups_.empty(); }

    int group_count() const { return static_cast<int>(groups_.size()); }
    int series_count() const { return static_cast<int>(series_.size()); }
    int point_count() const { return point_count_; }
    /// The number of the series that is drawn first, below the others; 0 = there is none.
    int lowest() const { return groups_.empty() ? 0 : groups_.back().first; }
    const SeriesGroup& group(int number) const { return groups_[index(number)]; }
    const SeriesData& series(int number) const { return series_[index(number)]; }
    const SeriesOptions& options(int number) const { return options_[index(number)]; }
    SeriesOptions& options(int number) { return options_[index(number)]; }

    /// Null, or the message about a group or series that does not exist.
    const char* check(int group, int series) const;
    bool has_point(int group, int series, int point) const;
    /// The position of a point in transformed units, or no value for a null.
    std::optional<Point> position(int group, int series, int point) const;

    enum class PointTable { markers, colours };
    /// Null, or a message; see AX_Grapher::RegisterMarker.
    const char* set_points(PointTable which, const MarkerTable& values, int group, int series, int point);
    int marker(int series, int point) const;
    void set_marker(int series, int point, int style);

    /// The extent of all valid values, transformed.
    const std::optional<Interval>& x_extent() const { return x_extent_; }
    const std::optional<Interval>& y_extent() const { return y_extent_; }

  private:
    static std::size_t index(int number) { return static_cast<std::size_t>(number - 1); }
    void size_for(std::span<const ChartRow> rows);
    void store(std::span<const ChartRow> rows, const ChartProperties& properties);
    std::vector<std::int32_t>& cells(PointTable which, int series);

    std::vector<SeriesGroup> groups_;
    std::vector<SeriesData> series_;
    std::vector<SeriesOptions> options_;
    int point_count_ = 0;
    std::uint64_t revisions_ = 0;
    std::optional<Interval> x_extent_;
    std::optional<Interval> y_extent_;
};

/// The colour of a series number before it is given one; the index counts modulo 16.
Colour default_pen_colour(int index);

}  // namespace anomalis::chart
