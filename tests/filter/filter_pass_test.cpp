#include <gtest/gtest.h>
#include <numeric>

#include "filter/filters.h"
#include "filter/plain_filter.h"
#include "support/told.h"

namespace anomalis::filter {

namespace {

/// One pass over a row of its own.
class OnePass {
  public:
    explicit OnePass(std::vector<float> row) : input(std::move(row)) {
        data.assign(static_cast<int>(input.size()));
        std::copy(input.begin(), input.end(), data.row(row_raw, stage_observed).begin());
        pass.station_count = static_cast<int>(input.size());
    }
    std::vector<float> run(int code, int half_width, int step = 1, bool subtract = false) {
        pass.filter_code = code;
        pass.half_width = half_width;
        pass.tap_step = step;
        pass.subtract = subtract;
        apply_filter(pass, data, scratch, faults);
        const auto out = data.row(row_smoothed, stage_observed);
        return {out.begin(), out.end()};
    }

    std::vector<float> input;
    ChannelTable data;
    FilterPass pass;
    FilterScratch scratch;
    Faults faults;
};

}  // namespace

TEST(ApplyFilter, every_kernel_gives_the_bits_of_the_plain_rule) {
    for (const int code : {100, 101, 102, 103, 104, 2, 3}) {
        for (const int half_width : {1, 5, 99, 100, 101, 1000}) {
            for (const int step : {1, 3, 98, 99, 100, 2147483647}) {
                OnePass one(rough_row(100, 56000));
                const auto out = one.run(code, half_width, step, code == 100);
                EXPECT_EQ(out,
                          plain_filter(one.input, one.scratch.coefficients, step, code == 3, code == 100))
                    << code << " " << half_width << " " << step;
                EXPECT_TRUE(one.faults.empty());
            }
        }
    }
}

TEST(ApplyFilter, lines_of_one_and_two_stations_are_filtered_too) {
    for (const int n : {1, 2, 3}) {
        OnePass one(rough_row(n));
        const auto out = one.run(filter_triangular, 4);
        EXPECT_EQ(out, plain_filter(one.input, one.scratch.coefficients, 1, false, false));
    }
}

TEST(ApplyFilter, a_step_of_0_adds_the_station_itself) {
    OnePass one(rough_row(40));
    const auto out = one.run(filter_boxcar, 3, 0);
    EXPECT_EQ(out, plain_filter(one.input, one.scratch.coefficients, 0, false, false));
}

TEST(ApplyFilter, a_negative_step_is_a_subscript_fault_and_changes_nothing) {
    OnePass one(rough_row(40));
    EXPECT_EQ(one.run(filter_boxcar, 3, -1), std::vector<float>(40, 0.0F));
    EXPECT_EQ(texts_of(one.faults),
              std::vector<std::string>{"An error occurred applying the filer: Subscript out of range"});
}

TEST(ApplyFilter, a_code_without_a_kernel_finds_no_taps) {
    OnePass one(rough_row(40));
    one.run(0, 3);
    EXPECT_TRUE(told(one.faults, "An error occurred applying the filer: "));
}

TEST(ApplyFilter, sums_beyond_single_precision_are_an_overflow) {
    OnePass one(std::vector<float>(20, 3e38F));
    one.run(filter_hanning, 3);
    EXPECT_EQ(texts_of(one.faults),
              std::vector<std::string>{"An error occurred applying the filer: Overflow"});
}

TEST(ApplyFilter, the_widest_half_width_ends_soon_with_the_mean_of_the_ends) {
    std::vector<float> row = rough_row(200);
    row.front() = 10;
    row.back() = 30;
    for (const int code : {filter_triangular, filter_boxcar}) {
        for (const int half_width : {20000000, 2147483647}) {
            OnePass one(row);
            for (const float value : one.run(code, half_width)) EXPECT_NEAR(value, 20, 0.02) << half_width;
            EXPECT_TRUE(one.faults.empty());
        }
    }
    for (const int code : {filter_sinc2, filter_hanning, filter_hamming}) {
        OnePass one(row);
        const auto out = one.run(code, 2147483647);
        for (std::size_t i = 0; i < out.size(); ++i) EXPECT_NEAR(out[i], row[i] + 20, 0.02) << code;
    }
}

TEST(ApplyFilter, the_widest_gradient_of_a_constant_is_zero) {
    OnePass one(std::vector<float>(50, 100.0F));
    for (const float value : one.run(filter_vertical_gradient, 2147483647)) EXPECT_NEAR(value, 0, 1e-3);
    OnePass still(std::vector<float>(50, 100.0F));
    for (const float value : still.run(filter_boxcar, 2147483647, 0)) EXPECT_NEAR(value, 100, 0.1);
}

TEST(ApplyFilter, no_pass_allocates_after_the_first) {
    OnePass one(rough_row(300));
    one.run(filter_hanning, 50);
    const float* const taps = one.scratch.coefficients.data();
    const double* const padded = one.scratch.padded.data();
    one.run(filter_vertical_gradient, 5);
    one.run(filter_triangular, 50);
    EXPECT_EQ(one.scratch.coefficients.data(), taps);
    EXPECT_EQ(one.scratch.padded.data(), padded);
    one.run(filter_triangular, 70000);
    one.run(filter_vertical_gradient, 70000);
    const double* const wide[] = {one.scratch.sums.data(), one.scratch.boxcar.data(),
                                  one.scratch.phase.data(), one.scratch.padded.data()};
    one.run(filter_triangular, 80000);
    one.run(filter_vertical_gradient, 80000);
    EXPECT_EQ(one.scratch.sums.data(), wide[0]);
    EXPECT_EQ(one.scratch.boxcar.data(), wide[1]);
    EXPECT_EQ(one.scratch.phase.data(), wide[2]);
    EXPECT_EQ(one.scratch.padded.data(), wide[3]);
}

TEST(ApplyFilter, a_boxcar_too_wide_to_add_tap_by_tap_is_the_mean_of_line_and_ends) {
    constexpr int n = 300, half_width = 70000;
    ASSERT_FALSE(is_added_tap_by_tap(filter_boxcar, half_width, n));
    OnePass smoothing(rough_row(n, 300)), residual(rough_row(n, 300));
    const auto smooth = smoothing.run(filter_boxcar, half_width);
    const auto rest = residual.run(filter_boxcar, half_width, 1, true);
    const auto& row = smoothing.input;
    const double line = std::accumulate(row.begin(), row.end(), 0.0);
    for (int i = 0; i < n; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const double ends = static_cast<double>(row.front()) * (half_width - i) +
                            static_cast<double>(row.back()) * (half_width - (n - 1 - i));
        const double mean = (line + ends) / (2 * half_width + 1);
        EXPECT_NEAR(smooth[at], mean, 1e-7 * mean);
        EXPECT_NEAR(rest[at], static_cast<double>(row[at]) - mean, 1e-7 * mean);
    }
}

TEST(ApplyFilter, wide_sums_beyond_single_precision_are_an_overflow) {
    OnePass one(std::vector<float>(300, 3e38F));
    one.run(filter_hanning, 70000);
    EXPECT_EQ(texts_of(one.faults),
              std::vector<std::string>{"An error occurred applying the filer: Overflow"});
}

TEST(ApplyFilter, the_widest_kernels_take_a_bounded_room_a_station) {
    constexpr int n = 20000;
    OnePass one(rough_row(n));
    for (const int code : {100, 101, 102, 103, 104, 2, 3})
        for (const int half_width : {10000, 2147483647}) one.run(code, half_width, code < 100 ? 3 : 1);
    const FilterScratch& s = one.scratch;
    EXPECT_LE(s.padded.capacity() + s.sums.capacity() + s.boxcar.capacity() + s.phase.capacity() +
                  s.phase_sums.capacity(),
              std::size_t{8} * n);
    EXPECT_LE(s.coefficients.capacity(), longest_stored_kernel + std::size_t{1});
    EXPECT_TRUE(one.faults.empty());
}

}  // namespace anomalis::filter
