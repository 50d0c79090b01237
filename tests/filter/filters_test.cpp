#include "filter/filters.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "filter/plain_filter.h"
#include "support/told.h"

namespace anomalis::filter {

namespace {

std::vector<float> values(const ChannelTable& data, int row, int stage = stage_observed) {
    const auto span = data.row(row, stage);
    return {span.begin(), span.end()};
}

void set_row(ChannelTable& data, const std::vector<float>& row, int stage = stage_observed) {
    std::copy(row.begin(), row.end(), data.row(row_raw, stage).begin());
}

/// A workspace with one magnetic channel and no model.
class FilterChain : public ::testing::Test {
  protected:
    void load(const std::vector<float>& observed, const std::vector<float>& calculated = {}) {
        w.station_count = static_cast<int>(observed.size());
        w.mag.data.assign(w.station_count);
        w.grav.data.assign(w.station_count);
        set_row(w.mag.data, observed);
        if (!calculated.empty()) set_row(w.mag.data, calculated, stage_calculated);
        w.first_station = 1;
        w.last_station = w.station_count;
        w.mag.base = 0;
        w.distances.assign(w.station_count);
    }
    void run(int stage = stage_observed) { filter_data(w, 0, stage, w.mag.data, faults); }
    std::vector<float> row(int number, int stage = stage_observed) {
        return values(w.mag.data, number, stage);
    }
    double window_mean(int number, int stage) {
        double sum = 0;
        for (int i = w.first_station; i <= w.last_station; ++i)
            sum += static_cast<double>(w.mag.data(i, number, stage));
        return sum / (w.last_station - w.first_station + 1);
    }

    Workspace w;
    Faults faults;
};

}  // namespace

TEST_F(FilterChain, without_filters_the_residual_is_the_raw_row_less_the_typed_base) {
    const std::vector<float> raw = rough_row(60, 56000);
    load(raw);
    w.mag.base = 55990;
    run();
    EXPECT_EQ(row(row_smoothed), raw);
    const auto residual = row(row_residual);
    for (std::size_t i = 0; i < raw.size(); ++i) EXPECT_EQ(residual[i], raw[i] - 55990.0F);
    EXPECT_TRUE(w.mag.observed_filtered);
}

TEST_F(FilterChain, with_half_widths_of_0_no_taps_are_built) {
    load(rough_row(60));
    w.processing.vg_filter_width = 0;
    run();
    EXPECT_TRUE(w.filter_scratch.coefficients.empty());
}

TEST_F(FilterChain, with_a_gradient_width_of_0_the_gradient_rows_keep_what_they_held) {
    load(rough_row(30));
    w.processing.vg_filter_width = 0;
    w.processing.display_total_gradient = 1;
    for (const int number : {row_gradient, row_horizontal, row_total_gradient}) w.mag.data(7, number, 1) = 42;
    run();
    for (const int number : {row_gradient, row_horizontal, row_total_gradient})
        EXPECT_EQ(w.mag.data(7, number, 1), 42);
}

TEST_F(FilterChain, it_is_lazy) {
    load(rough_row(30));
    w.mag.observed_filtered = true;
    run();
    EXPECT_EQ(row(row_smoothed), std::vector<float>(30, 0.0F));
    w.mag.observed_filtered = false;
    run();
    EXPECT_FALSE(w.mag.calculated_filtered);
    EXPECT_FALSE(w.grav.observed_filtered);
}

TEST_F(FilterChain, without_stations_nothing_happens) {
    run();
    EXPECT_FALSE(w.mag.observed_filtered);
    EXPECT_TRUE(faults.empty());
}

TEST_F(FilterChain, the_residual_filter_takes_off_what_the_smoothed_row_passes) {
    load(rough_row(80));
    w.processing.smooth_filter_type = 4;
    w.processing.smooth_filter_width = 2;
    w.processing.residual_filter_width = 9;
    run();
    FilterScratch taps;
    define_filter_coefficients(filter_boxcar, 2, 1000, taps, faults);
    const auto smoothed = plain_filter(row(row_raw), taps.coefficients, 1, false, false);
    EXPECT_EQ(row(row_smoothed), smoothed);
    define_filter_coefficients(filter_boxcar, 9, 1000, taps, faults);
    EXPECT_EQ(row(row_residual), plain_filter(smoothed, taps.coefficients, 1, false, true));
}

TEST_F(FilterChain, a_residual_has_no_base_left_to_take_off) {
    load(std::vector<float>(60, 56000.0F));
    w.mag.base = 56000;
    w.processing.residual_filter_width = 10;
    run();
    for (const float value : row(row_residual)) EXPECT_NEAR(value, 0, 0.1);
    EXPECT_EQ(w.mag.base, 56000.0F);
}

TEST_F(FilterChain, a_floating_base_is_the_mean_of_the_residual_too) {
    load(rough_row(60, 500));
    w.processing.residual_filter_width = 10;
    w.processing.smooth_filter_type = 2;
    w.mag.float_base = 1;
    run();
    EXPECT_NEAR(window_mean(row_residual, stage_observed), 0, 1e-3);
    EXPECT_EQ(w.mag.base, w.mag.mean);
}

TEST_F(FilterChain, with_a_floating_base_both_stages_have_mean_0_in_the_window) {
    load(rough_row(60, 56000), rough_row(60, 12));
    w.mag.float_base = 1;
    w.first_station = 11;
    w.last_station = 40;
    run(stage_observed);
    run(stage_calculated);
    EXPECT_NEAR(window_mean(row_residual, stage_observed), 0, 5e-3);
    EXPECT_NEAR(window_mean(row_residual, stage_calculated), 0, 1e-4);
    EXPECT_EQ(w.mag.base, w.mag.mean);
    EXPECT_EQ(w.mag.calc_base, w.mag.calc_mean);
}

TEST_F(FilterChain, the_base_comes_off_outside_the_window_too) {
    load(std::vector<float>(20, 7.0F));
    w.mag.base = 5;
    w.first_station = 5;
    w.last_station = 8;
    run();
    EXPECT_EQ(row(row_residual), std::vector<float>(20, 2.0F));
    EXPECT_EQ(w.mag.mean, 7.0F);
}

TEST_F(FilterChain, without_floating_the_calculated_base_is_0) {
    load(rough_row(20), std::vector<float>(20, 9.0F));
    w.mag.calc_base = 4;
    run(stage_calculated);
    EXPECT_EQ(row(row_residual, stage_calculated), std::vector<float>(20, 9.0F));
    EXPECT_EQ(w.mag.calc_base, 0.0F);
    EXPECT_EQ(w.mag.calc_mean, 9.0F);
}

TEST_F(FilterChain, gravity_has_settings_of_its_own) {
    load(rough_row(20));
    for (int i = 1; i <= 20; ++i) w.grav.data(i, row_raw, stage_observed) = 3;
    w.grav.base = 1;
    filter_data(w, 1, stage_observed, w.grav.data, faults);
    EXPECT_EQ(w.grav.data(4, row_residual, stage_observed), 2.0F);
    EXPECT_EQ(w.grav.mean, 3.0F);
    EXPECT_TRUE(w.grav.observed_filtered);
    EXPECT_FALSE(w.mag.observed_filtered);
}

TEST_F(FilterChain, a_constant_row_has_no_gradient) {
    load(std::vector<float>(40, 100.0F));
    w.processing.display_total_gradient = 1;
    run();
    for (const float value : row(row_gradient)) EXPECT_NEAR(value, 0, 5e-5);
    for (const float value : row(row_horizontal)) EXPECT_EQ(value, 0);
    for (const float value : row(row_total_gradient)) EXPECT_NEAR(value, 0, 5e-5);
}

TEST_F(FilterChain, gradients_come_from_the_smoothed_row) {
    load(rough_row(60));
    w.processing.residual_filter_width = 8;
    w.mag.base = 1000;
    w.processing.vg_filter_step = 3;
    w.processing.display_total_gradient = 1;
    run();
    FilterScratch taps;
    define_filter_coefficients(filter_vertical_gradient, 5, 1000, taps, faults);
    EXPECT_EQ(row(row_gradient), plain_filter(row(row_smoothed), taps.coefficients, 3, false, false));
    define_filter_coefficients(filter_horizontal_derivative, 1, 1000, taps, faults);
    EXPECT_EQ(row(row_horizontal), plain_filter(row(row_smoothed), taps.coefficients, 3, true, false));
    const double h = static_cast<double>(row(row_horizontal)[10]);
    const double v = static_cast<double>(row(row_gradient)[10]);
    EXPECT_FLOAT_EQ(row(row_total_gradient)[10], static_cast<float>(std::sqrt(h * h + v * v)));
}

TEST_F(FilterChain, without_the_total_gradient_its_rows_stay) {
    load(rough_row(60));
    run();
    EXPECT_NE(row(row_gradient), std::vector<float>(60, 0.0F));
    EXPECT_EQ(row(row_horizontal), std::vector<float>(60, 0.0F));
    EXPECT_EQ(row(row_total_gradient), std::vector<float>(60, 0.0F));
}

TEST_F(FilterChain, the_ends_see_their_own_value_beyond_the_line) {
    std::vector<float> step(21, 0.0F);
    step.back() = 1;
    load(step);
    w.processing.smooth_filter_width = 1;
    run();
    EXPECT_EQ(row(row_smoothed).back(), 0.5F + 0.25F);
    EXPECT_EQ(row(row_smoothed)[19], 0.25F);
    EXPECT_EQ(row(row_smoothed).front(), 0.0F);
}

TEST_F(FilterChain, a_type_out_of_range_is_the_nearest_one) {
    for (const auto& [type, code] : {std::pair{-3, 100}, std::pair{9, 104}}) {
        load(rough_row(30));
        w.mag.observed_filtered = false;
        w.processing.smooth_filter_width = 3;
        w.processing.smooth_filter_type = type;
        run();
        FilterScratch taps;
        define_filter_coefficients(code, 3, 1000, taps, faults);
        EXPECT_EQ(row(row_smoothed), plain_filter(row(row_raw), taps.coefficients, 1, false, false));
    }
}

TEST_F(FilterChain, every_half_width_is_legal) {
    for (const int half_width : {0, 1, 50, 500, 2147483647}) {
        load(rough_row(50));
        w.mag.observed_filtered = false;
        w.processing.smooth_filter_width = w.processing.residual_filter_width = w.processing.vg_filter_width =
            half_width;
        w.processing.display_total_gradient = 1;
        run();
        EXPECT_TRUE(w.mag.observed_filtered) << half_width;
        for (const int number : {row_smoothed, row_residual, row_total_gradient})
            for (const float value : row(number)) EXPECT_TRUE(std::isfinite(value));
    }
    EXPECT_TRUE(faults.empty());
}

TEST_F(FilterChain, an_empty_window_is_a_division_by_zero_and_is_tried_again) {
    load(rough_row(30));
    w.first_station = 6;
    w.last_station = 5;
    run();
    EXPECT_EQ(texts_of(faults),
              std::vector<std::string>{"An error occurred while filtering the data: Division by zero"});
    EXPECT_FALSE(w.mag.observed_filtered);
    w.last_station = 30;
    run();
    EXPECT_TRUE(w.mag.observed_filtered);
}

TEST_F(FilterChain, a_window_beyond_the_line_is_a_subscript_fault) {
    for (const auto& [first, last] :
         {std::pair{0, 10}, std::pair{1, 31}, std::pair{-2147483647, 2147483647}}) {
        load(rough_row(30));
        w.mag.observed_filtered = false;
        w.first_station = first;
        w.last_station = last;
        faults.clear();
        run();
        EXPECT_TRUE(told(faults, "An error occurred while filtering the data: Subscript out of range"));
        EXPECT_FALSE(w.mag.observed_filtered);
    }
}

TEST_F(FilterChain, a_failed_pass_is_told_and_the_chain_goes_on) {
    std::vector<float> raw = rough_row(30);
    raw[3] = std::numeric_limits<float>::infinity();
    load(raw);
    run();
    EXPECT_TRUE(told(faults, "An error occurred applying the filer: "));
    EXPECT_TRUE(w.mag.observed_filtered);
}

}  // namespace anomalis::filter
