#include "inversion/noise.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace anomalis::inversion {

namespace {

constexpr std::size_t stations = 600;
constexpr double spacing = 10;

/// Two strong bodies and a regional of 30 nT, below normal noise.
std::vector<double> noisy_line(double sigma, unsigned seed) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> normal;
    std::vector<double> line(stations);
    for (std::size_t i = 0; i < stations; ++i) {
        const double x = spacing * static_cast<double>(i);
        const double deep = (x - 2000) / 150, shallow = (x - 4200) / 60;
        line[i] = 57000 + 900 / (1 + deep * deep) - 400 * shallow / (1 + shallow * shallow) + 0.005 * x +
                  sigma * normal(generator);
    }
    return line;
}

double round_to(double value, double step) {
    return std::round(value / step) * step;
}

}  // namespace

TEST(Noise, white_noise_under_strong_anomalies_is_found_within_15_percent) {
    for (const double sigma : {0.05, 0.5, 2.0, 20.0})
        for (unsigned seed = 1; seed <= 20; ++seed)
            EXPECT_NEAR(estimate_noise(noisy_line(sigma, seed)) / sigma, 1, 0.15) << sigma << ' ' << seed;
}

TEST(Noise, spikes_at_2_percent_of_the_stations_do_not_count) {
    for (const double size : {10.0, 100.0, 1e5})
        for (unsigned seed = 1; seed <= 20; ++seed) {
            std::vector<double> line = noisy_line(1, seed);
            for (std::size_t i = seed; i < stations; i += 50) line[i] += i % 100 < 50 ? size : -size;
            EXPECT_NEAR(estimate_noise(line), 1, 0.15) << size << ' ' << seed;
        }
}

/// Readings are off by the noise and by the rounding.
TEST(Noise, rounding_below_at_and_above_the_noise_counts_as_noise) {
    for (const double step : {0.1, 1.0, 3.0})
        for (unsigned seed = 1; seed <= 20; ++seed) {
            std::vector<double> line = noisy_line(1, seed);
            for (double& reading : line) reading = round_to(reading, step);
            const double due = std::sqrt(1 + step * step / 12);
            EXPECT_NEAR(estimate_noise(line) / due, 1, 0.15) << step << ' ' << seed;
        }
}

TEST(Noise, smooth_readings_have_at_least_the_noise_of_their_rounding) {
    std::vector<double> line = noisy_line(0, 1);
    for (double& reading : line) reading = round_to(reading, 1);
    EXPECT_NEAR(estimate_noise(line), 1 / std::sqrt(12.0), 0.06);
    std::vector<double> level(200, 57000);
    for (std::size_t i = 100; i < level.size(); ++i) level[i] = 57001;
    EXPECT_NEAR(estimate_noise(level), 1 / std::sqrt(12.0), 1e-6);
}

TEST(Noise, the_step_of_readings_is_seen_through_single_precision) {
    std::vector<double> line = noisy_line(0, 1);
    EXPECT_EQ(reading_step(line), 0);
    for (const double step : {0.1, 0.5, 1.0, 2.0}) {
        std::vector<double> rounded = line;
        for (double& reading : rounded)
            reading = static_cast<double>(static_cast<float>(round_to(reading - 57000, step)));
        EXPECT_NEAR(reading_step(rounded), step, 1e-6 * step);
    }
}

TEST(Noise, readings_that_tell_no_noise_give_0) {
    EXPECT_EQ(estimate_noise({}), 0);
    EXPECT_EQ(estimate_noise(std::vector<double>(9, 1.5)), 0);
    EXPECT_EQ(estimate_noise(std::vector<double>(100, 57000)), 0);
    EXPECT_EQ(estimate_noise(std::vector<double>(100, std::numeric_limits<double>::quiet_NaN())), 0);
}

TEST(Noise, readings_that_are_no_numbers_are_left_out) {
    std::vector<double> line = noisy_line(1, 3);
    line[7] = std::numeric_limits<double>::quiet_NaN();
    line[300] = std::numeric_limits<double>::infinity();
    EXPECT_NEAR(estimate_noise(line), 1, 0.15);
}

}  // namespace anomalis::inversion
