#include "filter/wide_pass.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "core/faults.h"
#include "filter/plain_filter.h"

namespace anomalis::filter {

namespace {

constexpr int all_codes[] = {100, 101, 102, 103, 104, 2, 3};

long double raw_tap(int code, int half_width, int j) {
    const long double x = 3.14159265358979L * j / (half_width + 1.0L);
    if (code == filter_hanning) return (1 + std::cos(x)) / 2;
    if (code == filter_hamming) return 0.54L + 0.46L * std::cos(x);
    return std::pow(std::sin(x) / x, 2);
}

/// A kernel tap by tap, rounded to singles only where all taps, or the largest, are rounded alike.
std::vector<long double> taps_of(int code, int half_width, const std::vector<float>& stored) {
    std::vector<long double> taps(stored.begin(), stored.end());
    const long double base = half_width + 1.0L;
    long double sum = 1;
    for (int j = 1; j <= half_width; ++j) {
        long double& tap = taps[static_cast<std::size_t>(j)];
        if (code == filter_triangular) tap = taps[0] * (base - j) / base;
        if (code > filter_triangular && code < filter_boxcar) tap = raw_tap(code, half_width, j);
        if (code < filter_smoothing && j > 64 && j % 2 == 1)
            tap = (code == filter_horizontal_derivative && j % 4 == 1 ? 2 : -2) / 3.14159265358979L / j / j;
        sum += 2 * tap;
    }
    if (code > filter_triangular && code < filter_boxcar)
        for (std::size_t j = 1; j < taps.size(); ++j) taps[j] /= sum;
    return taps;
}

/// The row and its filtered values by moving windows.
class WideRow {
  public:
    explicit WideRow(std::vector<float> row) : row_(std::move(row)) {}

    std::vector<double> run(int code, int half_width, int step = 1) {
        pass_.filter_code = code;
        pass_.half_width = half_width;
        pass_.tap_step = step;
        pass_.station_count = static_cast<int>(row_.size());
        Faults faults;
        define_filter_coefficients(code, half_width, longest_stored_kernel, scratch_, faults);
        reach_ = std::min(half_width, (pass_.station_count - 2) / step);
        const auto margin = static_cast<std::size_t>(reach_) * static_cast<std::size_t>(step);
        std::vector<double> padded(margin, static_cast<double>(row_.front()));
        padded.insert(padded.end(), row_.begin(), row_.end());
        padded.insert(padded.end(), margin, static_cast<double>(row_.back()));
        const auto sums = wide_pass(pass_, reach_, padded.data() + margin, scratch_, no_pace());
        return {sums.begin(), sums.end()};
    }

    const std::vector<float>& stored_taps() const { return scratch_.coefficients; }

    /// Largest error in units of the sum of |tap x value|, against the taps added one by one.
    long double error(int code, int half_width, int step = 1) {
        const std::vector<double> out = run(code, half_width, step);
        const std::vector<long double> taps = taps_of(code, half_width, scratch_.coefficients);
        long double worst = 0;
        for (std::size_t i = 0; i < out.size(); i += 7) {
            const auto [sum, size] = by_hand(taps, static_cast<long>(i));
            const long double off = std::abs(static_cast<long double>(out[i]) - sum);
            worst = std::max(worst, off == 0 ? 0 : off / size);
        }
        return worst;
    }

  private:
    std::pair<long double, long double> by_hand(const std::vector<long double>& taps, long i) const {
        const long n = static_cast<long>(row_.size());
        const auto at = [&](long k) {
            return static_cast<long double>(row_[static_cast<std::size_t>(std::clamp(k, 0L, n - 1))]);
        };
        long double sum = taps[0] * at(i), size = std::abs(sum);
        for (long j = 1; j < static_cast<long>(taps.size()); ++j) {
            const long double right = taps[static_cast<std::size_t>(j)] * at(i + j * pass_.tap_step);
            const long double left = taps[static_cast<std::size_t>(j)] * at(i - j * pass_.tap_step);
            sum += right + (pass_.filter_code == filter_horizontal_derivative ? -left : left);
            size += std::abs(right) + std::abs(left);
        }
        return {sum, size};
    }

    std::vector<float> row_;
    FilterPass pass_;
    FilterScratch scratch_;
    int reach_ = 0;
};

std::vector<float> row_of(int stations, float (*value)(int station)) {
    std::vector<float> row;
    for (int i = 0; i < stations; ++i) row.push_back(value(i));
    return row;
}

/// Lines that filters have trouble with, 300 stations each.
std::vector<std::vector<float>> signals() {
    constexpr int n = 300;
    return {rough_row(n),
            rough_row(n, 58000),
            std::vector<float>(n, 58147.25F),
            row_of(n, [](int i) { return 58000 + 0.01F * static_cast<float>(i % 3); }),
            row_of(n, [](int i) { return i < 111 ? 0.0F : 1000.0F; }),
            row_of(n, [](int i) { return i == 150 ? 1.0F : 0.0F; }),
            row_of(n, [](int i) { return i % 2 == 0 ? 1e-3F : -1e-3F; }),
            row_of(n, [](int i) { return static_cast<float>(i) * 30; }),
            row_of(n, [](int i) { return i % 50 == 49 ? 1e30F : 58000.0F; })};
}

}  // namespace

TEST(WidePass, gives_what_the_taps_one_by_one_give) {
    for (const auto& row : signals()) {
        WideRow line(row);
        for (const int code : all_codes)
            for (const int half_width : {1, 2, 65, 66, 150, 297, 298, 299, 900})
                EXPECT_LT(line.error(code, half_width), 1e-8L) << code << " " << half_width;
    }
}

TEST(WidePass, is_the_narrow_way_within_the_rounding_of_its_sums_to_singles) {
    const std::vector<float> row = rough_row(500, 300);
    for (const int code : all_codes)
        for (const int half_width : {100, 499, 3000}) {
            WideRow line(row);
            const std::vector<double> wide = line.run(code, half_width);
            const auto narrow = plain_filter(row, line.stored_taps(), 1, code == 3, false);
            const double of_a_sum = 800 * 0x1p-24;  // sums stay below twice the largest value
            for (std::size_t i = 0; i < row.size(); ++i)
                ASSERT_NEAR(wide[i], static_cast<double>(narrow[i]), of_a_sum * half_width)
                    << code << " " << half_width;
        }
}

TEST(WidePass, takes_every_tap_step) {
    WideRow line(rough_row(420, 300));
    for (const int code : all_codes)
        for (const int half_width : {70, 500})
            for (const int step : {2, 3, 5, 210, 418, 419, 2147483647})
                EXPECT_LT(line.error(code, half_width, step), 1e-8L)
                    << code << " " << half_width << " " << step;
}

TEST(WidePass, details_of_a_hundredth_stand_out_of_a_field_of_58000) {
    const auto detail = [](int i) { return 0.01 * std::sin(0.02 * i); };
    std::vector<float> calm(2000), whole(2000);
    for (int i = 0; i < 2000; ++i) {
        calm[static_cast<std::size_t>(i)] = static_cast<float>(std::round(detail(i) * 256) / 256);
        whole[static_cast<std::size_t>(i)] = calm[static_cast<std::size_t>(i)] + 58000;
    }
    for (const int code : {100, 101, 102, 103, 104}) {
        const std::vector<double> small = WideRow(calm).run(code, 80);
        const std::vector<double> large = WideRow(whole).run(code, 80);
        const double level = large[0] - small[0];
        for (std::size_t i = 0; i < small.size(); ++i) EXPECT_NEAR(large[i] - level, small[i], 1e-9) << code;
    }
}

TEST(WidePass, a_wild_value_reaches_as_far_as_the_kernel_and_no_farther) {
    constexpr std::size_t place = 200;
    for (const int code : all_codes) {
        for (const float wild : {1e30F, -3e38F, std::numeric_limits<float>::infinity(),
                                 std::numeric_limits<float>::quiet_NaN()}) {
            std::vector<float> row = rough_row(400, 58000);
            const std::vector<double> calm = WideRow(row).run(code, 77);
            row[place] = wild;
            const std::vector<double> out = WideRow(row).run(code, 77);
            for (std::size_t i = 0; i < row.size(); ++i) {
                if (i + 77 >= place && i <= place + 77) continue;
                ASSERT_EQ(out[i], calm[i]) << code << " " << i;
            }
            EXPECT_NE(out[place + 77], calm[place + 77]) << code;
        }
    }
}

TEST(WidePass, the_taps_beyond_the_line_see_its_ends) {
    std::vector<float> row = rough_row(300);
    row.front() = 10;
    row.back() = 30;
    for (const int half_width : {20000000, 2147483647}) {
        for (const int code : {filter_triangular, filter_boxcar}) {
            for (const double value : WideRow(row).run(code, half_width)) EXPECT_NEAR(value, 20, 0.02);
        }
        for (const int code : {filter_sinc2, filter_hanning, filter_hamming}) {
            const std::vector<double> out = WideRow(row).run(code, half_width);
            for (std::size_t i = 0; i < out.size(); ++i)
                EXPECT_NEAR(out[i], static_cast<double>(row[i]) + 20, 0.02) << code;
        }
        for (const double value :
             WideRow(std::vector<float>(300, 100)).run(filter_vertical_gradient, half_width))
            EXPECT_NEAR(value, 0, 1e-4);
    }
}

TEST(WidePass, lines_of_two_and_three_stations_are_filtered_too) {
    for (const int stations : {2, 3})
        for (const int code : all_codes)
            EXPECT_LT(WideRow(rough_row(stations, 100)).error(code, 400), 1e-8L) << stations << " " << code;
}

}  // namespace anomalis::filter
