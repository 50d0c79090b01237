#include "chart/detail/series_table.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace anomalis::chart {

namespace {

constexpr std::size_t first_option_capacity = 128;
constexpr const char* invalid_group = "The group number is invalid";
constexpr const char* invalid_series = "The series index is invalid";

/// Low above high: nothing was seen.
constexpr Interval nothing{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

void widen(std::optional<Interval>& extent, const Interval& seen) {
    if (seen.low > seen.high) return;
    if (!extent) extent = seen;
    extent->low = std::min(extent->low, seen.low);
    extent->high = std::max(extent->high, seen.high);
}

struct Stored {
    Interval seen = nothing;  ///< the extent of what is not missing
    bool changed = false;     ///< something else was there before

    void add(const Stored& other) {
        seen.low = std::min(seen.low, other.seen.low);
        seen.high = std::max(seen.high, other.seen.high);
        changed |= other.changed;
    }
};

constexpr std::size_t lanes = 2;
using Lanes = double __attribute__((vector_size(lanes * sizeof(double))));
using LaneMarks = std::int64_t __attribute__((vector_size(lanes * sizeof(std::int64_t))));

/// store_cells for the first cells of a linear axis, as far as lanes are full.
template <class Cell>
Stored store_lanes(std::span<const Cell> cells, double data_null, std::span<double> out) {
    constexpr Lanes none{};
    const Lanes least = none + null_bound, most = none + std::numeric_limits<double>::max();
    const Lanes unknown = none + data_null, null = none + null_value;
    const Lanes no_low = none + nothing.low, no_high = none + nothing.high;
    Lanes low = no_low, high = no_high;
    LaneMarks differing{};
    for (std::size_t i = 0; i + lanes <= out.size(); i += lanes) {
        const Lanes value{static_cast<double>(cells[i]), static_cast<double>(cells[i + 1])};
        // Every comparison but the last is false for a value that is no number.
        const LaneMarks there = (value > least) & (value <= most) & (value != unknown);
        const Lanes stored = there ? value : null;
        Lanes before;
        std::memcpy(&before, out.data() + i, sizeof before);
        differing |= before != stored;
        std::memcpy(out.data() + i, &stored, sizeof stored);
        const Lanes for_low = there ? value : no_low, for_high = there ? value : no_high;
        low = for_low < low ? for_low : low;
        high = for_high > high ? for_high : high;
    }
    Stored result;
    for (std::size_t k = 0; k < lanes; ++k) result.add({{low[k], high[k]}, differing[k] != 0});
    return result;
}

/// Transforms cells into `out`, null_value where one is missing.
template <class Cell>
Stored store_cells(std::span<const Cell> cells, const AxisTransform& scale, double data_null,
                   std::span<double> out) {
    Stored result;
    std::size_t i = 0;
    if (!scale.logarithmic()) {
        result = store_lanes(cells, data_null, out);
        i = out.size() / lanes * lanes;
    }
    for (; i < out.size(); ++i) {
        const double stored = forward_or_null(scale, static_cast<double>(cells[i]), data_null);
        const Interval seen = is_null(stored) ? nothing : Interval{stored, stored};
        result.add({seen, out[i] != stored});
        out[i] = stored;
    }
    return result;
}

/// The same a stretch at a time, so that the extremes of what has changed are found while it is near.
/// `extremes` null: there are none to keep.
template <class Cell>
Stored store_row(std::span<const Cell> cells, const AxisTransform& scale, double data_null,
                 std::span<double> out, BlockExtremes* extremes) {
    constexpr std::size_t stretch = 2048;
    Stored result;
    for (std::size_t at = 0; at < out.size(); at += stretch) {
        const std::size_t count = std::min(stretch, out.size() - at);
        const Stored part = store_cells(cells.subspan(at, count), scale, data_null, out.subspan(at, count));
        if (extremes && part.changed) extremes->update(out, at, at + count);
        result.add(part);
    }
    return result;
}

bool opens_group(std::span<const ChartRow> rows, std::size_t row) {
    return row == 0 || rows[row].code == x_row;
}

}  // namespace

SeriesStyle series_style(double code, int chart_type, bool plot_points) {
    SeriesStyle style;
    style.bars = code == bar_series || chart_type == 2;
    style.line = !style.bars && (code == line_series || chart_type == 1 || code == line_and_marker_series);
    style.markers = code == line_and_marker_series || !style.line || plot_points;
    return style;
}

SeriesTable::SeriesTable() : options_(first_option_capacity) {}

void SeriesTable::register_rows(std::span<const ChartRow> rows, const ChartProperties& properties,
                                Colour first_colour) {
    const bool no_cells =
        std::all_of(rows.begin(), rows.end(), [](const ChartRow& row) { return row.cells.empty(); });
    if (rows.empty() || no_cells) return;
    size_for(rows);
    if (groups_.empty() || point_count_ < 1) {
        clear();
        return;
    }
    store(rows, properties);
    // Options are made anew only when the table outgrows them, so a host sets its markers once.
    if (options_.size() < series_.size()) options_.assign(series_.size(), SeriesOptions{});
    for (std::size_t i = 0; i < series_.size(); ++i) {
        options_[i].colour = i == 0 ? first_colour : default_pen_colour(static_cast<int>(i));
        options_[i].width = 1;
        options_[i].style = LineStyle::solid;
    }
}

/// Finds the groups and sizes the tables. A group without a series takes none of the next one's.
void SeriesTable::size_for(std::span<const ChartRow> rows) {
    std::size_t group_total = 0;
    int series_total = 0;
    point_count_ = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (opens_group(rows, row)) continue;
        ++series_total;
        if (opens_group(rows, row - 1)) ++group_total;
    }
    groups_.resize(group_total);
    series_.resize(static_cast<std::size_t>(series_total));

    std::size_t group_number = 0;
    int series_number = 0;
    for (std::size_t row = 1; row < rows.size(); ++row) {
        if (opens_group(rows, row)) continue;
        ++series_number;
        if (opens_group(rows, row - 1)) {
            SeriesGroup& opened = groups_[group_number++];
            opened.first = series_number;
            opened.count = static_cast<int>(rows[row - 1].cells.size());
            point_count_ = std::max(point_count_, opened.count);
        }
        groups_[group_number - 1].last = series_number;
    }
}

void SeriesTable::store(std::span<const ChartRow> rows, const ChartProperties& properties) {
    x_extent_.reset();
    y_extent_.reset();
    std::size_t group_number = 0;
    std::size_t series_number = 0;
    bool moved = false;  // the X values of the group
    for (std::size_t row = 1; row < rows.size(); ++row) {
        if (opens_group(rows, row)) continue;
        if (opens_group(rows, row - 1)) {
            SeriesGroup& opened = groups_[group_number++];
            moved = opened.x.size() != rows[row - 1].cells.size();
            opened.x.resize(rows[row - 1].cells.size());
            rows[row - 1].cells.visit([&](auto cells) {
                const Stored stored = store_row(cells, properties.x.scale, null_value, opened.x, nullptr);
                widen(x_extent_, stored.seen);
                moved |= stored.changed;
            });
            if (moved)
                opened.ascending = std::is_sorted(opened.x.begin(), opened.x.end()) &&
                                   (opened.x.empty() || !is_null(opened.x.front()));
        }
        SeriesData& data = series_[series_number++];
        const auto count = static_cast<std::size_t>(groups_[group_number - 1].count);
        const Cells cells = rows[row].cells;
        const bool resized = data.y.size() != count;
        bool changed =
            moved || resized || data.code != rows[row].code || !data.markers.empty() || !data.colours.empty();
        data.code = rows[row].code;
        data.markers.clear();
        data.colours.clear();
        data.y.resize(count);
        const std::span given = std::span(data.y).first(std::min(count, cells.size()));
        const std::span rest = std::span(data.y).subspan(given.size());
        const bool rest_changed = std::any_of(rest.begin(), rest.end(), [](double y) { return !is_null(y); });
        std::fill(rest.begin(), rest.end(), null_value);
        // Blocks reach over the end of what is given, so the kept extremes hold for a row that is given
        // whole.
        const bool kept = !resized && !rest_changed && rest.empty();
        cells.visit([&](auto values) {
            const Stored stored = store_row(values, properties.y.scale, properties.data_null, given,
                                            kept ? &data.extremes : nullptr);
            widen(y_extent_, stored.seen);
            changed |= stored.changed || rest_changed;
        });
        if (!changed && data.revision != 0) continue;
        data.revision = ++revisions_;
        if (!kept) data.extremes.build(data.y);
    }
}

void SeriesTable::clear() {
    groups_.clear();
    series_.clear();
    point_count_ = 0;
    x_extent_.reset();
    y_extent_.reset();
}

const char* SeriesTable::check(int group_number, int series_number) const {
    if (group_number < 1 || group_number > group_count()) return invalid_group;
    const SeriesGroup& in = group(group_number);
    if (series_number < 1 || series_number > in.last - in.first + 1) return invalid_series;
    return nullptr;
}

bool SeriesTable::has_point(int group_number, int series_number, int point) const {
    return check(group_number, series_number) == nullptr && point >= 1 && point <= group(group_number).count;
}

std::optional<Point> SeriesTable::position(int group_number, int series_number, int point) const {
    if (!has_point(group_number, series_number, point)) return std::nullopt;
    const SeriesGroup& in = group(group_number);
    const double x = in.x[index(point)];
    const double y = series(in.first + series_number - 1).y[index(point)];
    if (is_null(x) || is_null(y)) return std::nullopt;
    return Point{x, y};
}

std::vector<std::int32_t>& SeriesTable::cells(PointTable which, int number) {
    SeriesData& data = series_[index(number)];
    std::vector<std::int32_t>& values = which == PointTable::markers ? data.markers : data.colours;
    data.revision = ++revisions_;
    if (values.empty()) values.assign(data.y.size(), which == PointTable::markers ? 0 : no_colour);
    return values;
}

const char* SeriesTable::set_points(PointTable which, const MarkerTable& values, int group_number,
                                    int series_number, int point) {
    int first = 1;
    int last = series_count();
    if (group_number > 0) {
        if (group_number > group_count()) return invalid_group;
        const SeriesGroup& in = group(group_number);
        last = in.last;
        first = series_number > 0 ? std::min(in.first + series_number - 1, last) : in.first;
    }
    for (int row = first; row <= last; ++row) {
        if (index(row) >= values.size()) continue;
        const std::vector<std::int32_t>& from = values[index(row)];
        std::vector<std::int32_t>& to = cells(which, row);
        for (std::size_t i = 0; i < std::min(from.size(), to.size()); ++i)
            if (point <= 0 || i == index(point)) to[i] = from[i];
    }
    return nullptr;
}

int SeriesTable::marker(int number, int point) const {
    if (number < 1 || number > series_count() || point < 1) return 0;
    const std::vector<std::int32_t>& values = series(number).markers;
    return index(point) < values.size() ? values[index(point)] : 0;
}

void SeriesTable::set_marker(int number, int point, int style) {
    if (number < 1 || number > series_count() || point < 1) return;
    std::vector<std::int32_t>& values = cells(PointTable::markers, number);
    if (index(point) < values.size()) values[index(point)] = style;
}

Colour default_pen_colour(int number) {
    constexpr Colour orange = colour_of(255, 127, 0);
    // 8 to 14 are the bright half of the usual palette of sixteen.
    constexpr std::array<Colour, 16> colours{orange,
                                             colour_of(255, 0, 0),
                                             colour_of(0, 255, 0),
                                             colour_of(0, 0, 255),
                                             colour_of(255, 0, 255),
                                             colour_of(255, 255, 0),
                                             colour_of(0, 255, 255),
                                             colour_of(51, 255, 178),
                                             colour_of(128, 128, 128),
                                             colour_of(0, 0, 255),
                                             colour_of(0, 255, 0),
                                             colour_of(0, 255, 255),
                                             colour_of(255, 0, 0),
                                             colour_of(255, 0, 255),
                                             colour_of(255, 255, 0),
                                             orange};
    const int entry = number % 16;
    // A negative remainder names no entry of the palette.
    return entry < 0 ? black : colours[static_cast<std::size_t>(entry)];
}

}  // namespace anomalis::chart
