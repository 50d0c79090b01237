#include "show/fit_quality.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "core/model_mark.h"
#include "inversion/line_session.h"

namespace anomalis::show {

namespace {

/// Readings of 50000 nT with noise of 2 nT, a calculated curve that is 6 nT off at every other station.
struct NoisyLine : inversion::LineSession {
    NoisyLine() {
        std::mt19937 random(3);
        std::normal_distribution<float> noise(0, 2);
        Workspace& w = workspace();
        for (int i = 1; i <= w.station_count; ++i) {
            w.mag.data(i, row_raw, stage_observed) = 50000 + noise(random);
            w.mag.data(i, row_residual, stage_observed) = i % 2 == 0 ? 6.0F : 0.0F;
        }
    }
};

}  // namespace

TEST(FitQuality, is_the_root_mean_square_over_the_stations_of_the_window) {
    NoisyLine line;
    line.workspace().first_station = 2;
    line.workspace().last_station = 4;
    const auto quality = fit_quality(line.workspace(), channel_mag);
    ASSERT_TRUE(quality);
    EXPECT_EQ(quality->stations, 3);
    EXPECT_NEAR(quality->rms, std::sqrt((36.0 + 0 + 36) / 3), 1e-6);
}

TEST(FitQuality, a_keyed_noise_stands_above_that_of_the_fit_and_this_above_an_estimate) {
    NoisyLine line;
    Workspace& w = line.workspace();
    const ChannelNoise estimate = channel_noise(w, channel_mag);
    EXPECT_EQ(estimate.source, NoiseSource::estimated);
    EXPECT_NEAR(estimate.value, 2, 0.6);
    w.fit.emplace().mag.emplace().noise = 3.5;
    w.fit->model_mark = model_mark(w);
    EXPECT_EQ(channel_noise(w, channel_mag).source, NoiseSource::fitted);
    EXPECT_EQ(channel_noise(w, channel_mag).value, 3.5);
    w.sensor_offset += 1;
    EXPECT_EQ(channel_noise(w, channel_mag).source, NoiseSource::estimated);
    w.mag.noise = 5;
    EXPECT_EQ(channel_noise(w, channel_mag).source, NoiseSource::keyed);
    EXPECT_EQ(channel_noise(w, channel_mag).value, 5);
}

TEST(FitQuality, says_both_with_their_units) {
    EXPECT_EQ(fit_quality_text({412, 13.0894, {5, NoiseSource::keyed}}, channel_mag),
              "rms 13.09 nT over 412 stations, 2.6 times the noise of 5.0 nT");
    EXPECT_EQ(fit_quality_text({98, 0.0123449, {0.0123, NoiseSource::estimated}}, channel_grav),
              "rms 0.01234 mGal over 98 stations, 1.0 times the noise of 0.012 mGal");
    EXPECT_EQ(fit_quality_text({3, 1234.5, {}}, channel_mag), "rms 1235 nT over 3 stations");
    EXPECT_EQ(fit_quality_text({1, 0, {}}, channel_grav), "rms 0.000 mGal over 1 station");
}

TEST(FitQuality, a_line_that_tells_no_noise_has_none) {
    inversion::LineSession line;
    EXPECT_EQ(channel_noise(line.workspace(), channel_mag).source, NoiseSource::none);
}

TEST(FitQuality, is_nothing_without_column_stations_or_window) {
    NoisyLine line;
    Workspace& w = line.workspace();
    EXPECT_TRUE(fit_quality(w, channel_grav));
    w.definition.grav_column = 0;
    EXPECT_FALSE(fit_quality(w, channel_grav));
    w.last_station = w.station_count + 1;
    EXPECT_FALSE(fit_quality(w, channel_mag));
    drop_stations(w);
    EXPECT_FALSE(fit_quality(w, channel_mag));
}

}  // namespace anomalis::show
