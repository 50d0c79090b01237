// The chain of filters on a line with gaps: each stretch is a line of its own.

#include "core/gaps.h"

#include <gtest/gtest.h>

#include "core/faults.h"
#include "filter/filters.h"
#include "filter/plain_filter.h"

namespace anomalis::filter {
namespace {

constexpr float none = -1e32F;

struct Line {
    explicit Line(const std::vector<float>& observed) {
        w.station_count = static_cast<int>(observed.size());
        w.mag.data.assign(w.station_count);
        w.grav.data.assign(w.station_count);
        w.distances.assign(w.station_count);
        for (int i = 1; i <= w.station_count; ++i) {
            w.distances[i] = 10.0 * i;
            w.mag.data(i, row_raw, stage_observed) = observed[static_cast<std::size_t>(i - 1)];
            // A model goes on where readings are missing.
            w.mag.data(i, row_raw, stage_calculated) = static_cast<float>(i * i % 37);
        }
        w.first_station = 1;
        w.last_station = w.station_count;
        w.mag.base = 0;
        w.processing = {.smooth_filter_width = 2,
                        .residual_filter_width = 7,
                        .display_total_gradient = 1,
                        .vg_filter_width = 4,
                        .vg_filter_step = 2};
    }
    void run() {
        for (const Stage stage : {stage_observed, stage_calculated})
            filter_data(w, channel_mag, stage, w.mag.data, faults);
        EXPECT_TRUE(faults.empty());
    }
    float at(int station, int row, int stage) const { return w.mag.data(station, row, stage); }

    Workspace w;
    Faults faults;
};

std::vector<float> with_gap(std::vector<float> row, int from, int to, float value = none) {
    for (int i = from; i <= to; ++i) row[static_cast<std::size_t>(i - 1)] = value;
    return row;
}

/// Stations `first` to `first + count - 1` as a line of their own have the same rows, to the bit.
void expect_a_line_of_its_own(const Line& line, int first, int count) {
    std::vector<float> observed;
    for (int i = first; i < first + count; ++i) observed.push_back(line.at(i, row_raw, stage_observed));
    Line own(observed);
    own.w.processing = line.w.processing;
    for (int i = 1; i <= count; ++i)
        own.w.mag.data(i, row_raw, stage_calculated) = line.at(first + i - 1, row_raw, stage_calculated);
    own.run();
    for (int row = row_raw; row <= row_total_gradient; ++row)
        for (const Stage stage : {stage_observed, stage_calculated})
            for (int i = 1; i <= count; ++i)
                EXPECT_EQ(own.at(i, row, stage), line.at(first + i - 1, row, stage))
                    << "row " << row << ", stage " << stage << ", station " << first + i - 1;
}

TEST(GapsOfFilters, the_stretches_beside_missing_readings_are_filtered_as_lines_of_their_own) {
    Line line(with_gap(rough_row(60), 21, 27));
    line.run();
    EXPECT_EQ(line.w.mag.gaps.stretches, (std::vector<Stretch>{{1, 20}, {28, 60}}));
    expect_a_line_of_its_own(line, 1, 20);
    expect_a_line_of_its_own(line, 28, 33);
}

TEST(GapsOfFilters, so_are_those_beside_a_distance_that_is_a_gap) {
    Line line(rough_row(60));
    for (int i = 31; i <= 60; ++i) line.w.distances[i] += 500;
    line.w.gap_distance = 30;
    line.run();
    expect_a_line_of_its_own(line, 1, 30);
    expect_a_line_of_its_own(line, 31, 30);
}

TEST(GapsOfFilters, a_stretch_whose_kernels_are_wider_than_any_line_too) {
    Line line(with_gap(rough_row(3000), 1500, 1520));
    line.w.processing.smooth_filter_width = 400;
    line.w.processing.residual_filter_width = 1400;
    line.run();
    expect_a_line_of_its_own(line, 1, 1499);
    expect_a_line_of_its_own(line, 1521, 1480);
}

TEST(GapsOfFilters, where_no_reading_is_the_filtered_rows_of_both_stages_are_missing) {
    Line line(with_gap(rough_row(60), 21, 27));
    line.w.mag.base = 12;
    line.run();
    for (const Stage stage : {stage_observed, stage_calculated})
        for (int row = row_smoothed; row <= row_total_gradient; ++row)
            for (int i = 21; i <= 27; ++i) EXPECT_EQ(line.at(i, row, stage), none);
    EXPECT_EQ(line.at(21, row_raw, stage_calculated), 441 % 37) << "the model itself is there";
}

TEST(GapsOfFilters, a_missing_reading_that_is_no_gap_is_passed_over_as_if_its_station_were_not) {
    std::vector<float> row = rough_row(40);
    Line line(with_gap(row, 15, 15));
    line.run();
    row.erase(row.begin() + 14);
    Line without(row);
    for (int i = 15; i <= 39; ++i)
        without.w.mag.data(i, row_raw, stage_calculated) = line.at(i + 1, row_raw, stage_calculated);
    without.run();
    for (const Stage stage : {stage_observed, stage_calculated})
        for (int i = 1; i <= 39; ++i)
            EXPECT_EQ(line.at(i < 15 ? i : i + 1, row_total_gradient, stage),
                      without.at(i, row_total_gradient, stage));
}

TEST(GapsOfFilters, garbage_for_a_missing_reading_and_the_model_under_it_have_no_influence) {
    Line line(with_gap(rough_row(60), 21, 27));
    Line garbage(with_gap(rough_row(60), 21, 27, -3e38F));
    for (int i = 21; i <= 27; ++i) garbage.w.mag.data(i, row_raw, stage_calculated) = 1e6F;
    line.run();
    garbage.run();
    for (const Stage stage : {stage_observed, stage_calculated})
        for (int row = row_smoothed; row <= row_total_gradient; ++row)
            for (int i = 1; i <= 60; ++i) EXPECT_EQ(line.at(i, row, stage), garbage.at(i, row, stage));
}

TEST(GapsOfFilters, means_and_a_base_that_floats_are_over_readings) {
    Line line({10, none, 20, 60});
    line.w.processing = {.vg_filter_width = 0};
    line.w.mag.float_base = 1;
    line.run();
    EXPECT_EQ(line.w.mag.mean, 30);
    EXPECT_EQ(line.w.mag.base, 30);
    EXPECT_EQ(line.at(4, row_residual, stage_observed), 30);
    EXPECT_EQ(line.w.mag.calc_mean, static_cast<float>((1.0 + 9 + 16) / 3));
    line.w.first_station = line.w.last_station = 2;
    invalidate_filtered_data(0, line.w);
    line.run();
    EXPECT_EQ(line.w.mag.mean, 0) << "a window without a reading has no mean";
}

TEST(GapsOfFilters, a_window_of_stations_in_a_row_is_filtered_without_the_others) {
    ChannelTable data;
    data.assign(9);
    for (int i = 1; i <= 9; ++i) data(i, row_raw, stage_observed) = i < 4 || i > 6 ? 1e6F : 5;
    FilterScratch scratch;
    Faults faults;
    apply_filter({.filter_code = filter_boxcar, .half_width = 2, .first_station = 4, .station_count = 3},
                 data, scratch, faults);
    for (int i = 1; i <= 9; ++i) EXPECT_EQ(data(i, row_smoothed, stage_observed), i < 4 || i > 6 ? 0 : 5);
    apply_filter({.filter_code = filter_boxcar, .half_width = 2, .first_station = 8, .station_count = 3},
                 data, scratch, faults);
    EXPECT_FALSE(faults.empty());
}

}  // namespace
}  // namespace anomalis::filter
