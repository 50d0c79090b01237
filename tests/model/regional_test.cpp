#include "model/regional.h"

#include <cmath>
#include <gtest/gtest.h>

#include "inversion/line_session.h"

namespace anomalis::model {

namespace {

/// A line whose readings are those of a sheet on a polynomial of the distance in km, nT.
struct RegionalLine : inversion::LineSession {
    explicit RegionalLine(std::array<double, 4> polynomial = {40, -25, 30, 12}) {
        add_body(thin_sheet);
        take_model_as_data();
        Workspace& w = workspace();
        for (int i = 1; i <= w.station_count; ++i) {
            const double x = w.distances[i] / 1000;
            w.mag.data(i, row_raw, stage_observed) += static_cast<float>(
                polynomial[0] + x * (polynomial[1] + x * (polynomial[2] + x * polynomial[3])));
        }
        invalidate_filtered_data(0, w);
    }
    double misfit(int degree) {
        workspace().mag.regional_degree = degree;
        return static_cast<double>(refresh()[0]);
    }
};

}  // namespace

TEST(Regional, a_polynomial_of_its_degree_is_taken_off_whole) {
    RegionalLine line;
    EXPECT_GT(line.misfit(2), 0.01);
    EXPECT_LT(line.misfit(3), 1e-4);
    const Workspace& w = line.workspace();
    EXPECT_EQ(w.mag.regional.degree, 3);
    EXPECT_NEAR(w.mag.regional.at(0), 40, 1e-3);
    EXPECT_NEAR(w.mag.regional.at(1000), 57, 1e-3);
}

TEST(Regional, the_misfit_falls_with_the_degree) {
    RegionalLine line;
    double before = line.misfit(no_regional);
    for (int degree = 0; degree <= most_regional_degree; ++degree) {
        const double now = line.misfit(degree);
        EXPECT_LT(now, before) << degree;
        before = now;
    }
}

TEST(Regional, degree_0_is_a_floating_base) {
    RegionalLine line;
    const double level = line.misfit(0);
    line.workspace().mag.float_base = 1;
    EXPECT_NEAR(line.misfit(no_regional), level, 1e-6 * level);
    EXPECT_NEAR(line.misfit(0), level, 1e-6 * level);
}

TEST(Regional, none_leaves_every_row_as_it_was) {
    RegionalLine line;
    line.refresh();
    const ChannelTable before = line.workspace().mag.data;
    line.misfit(3);
    EXPECT_NE(line.workspace().mag.data, before);
    line.misfit(no_regional);
    EXPECT_EQ(line.workspace().mag.data, before);
}

TEST(Regional, under_a_residual_filter_it_is_off) {
    RegionalLine line;
    line.workspace().processing.residual_filter_width = 20;
    const double none = line.misfit(no_regional);
    EXPECT_EQ(line.misfit(2), none);
    EXPECT_FALSE(regional_in_force(line.workspace(), channel_mag));
    EXPECT_EQ(line.workspace().mag.regional, Regional{});
}

TEST(Regional, it_follows_the_window_and_reaches_beyond_it) {
    RegionalLine line;
    Workspace& w = line.workspace();
    w.first_station = 20;
    w.last_station = 60;
    EXPECT_LT(line.misfit(3), 1e-4);
    EXPECT_NEAR(w.mag.regional.centre, (w.distances[20] + w.distances[60]) / 2, 1e-9);
    EXPECT_NEAR(w.mag.data(100, row_residual, stage_observed),
                w.mag.data(100, row_residual, stage_calculated), 0.02);
}

TEST(Regional, few_stations_carry_no_high_degree) {
    RegionalLine line;
    Workspace& w = line.workspace();
    w.first_station = 50;
    w.last_station = 52;
    line.misfit(3);
    EXPECT_EQ(w.mag.regional.degree, 2);
}

TEST(Regional, stations_at_one_place_carry_a_level) {
    RegionalLine line;
    Workspace& w = line.workspace();
    for (int i = 1; i <= w.station_count; ++i) w.distances[i] = 500;
    line.misfit(2);
    EXPECT_EQ(w.mag.regional.degree, 0);
    EXPECT_TRUE(std::isfinite(w.mag.regional.coefficients[0]));
}

TEST(Regional, finding_it_again_changes_no_bit) {
    RegionalLine line;
    line.misfit(3);
    const ChannelTable before = line.workspace().mag.data;
    lay_regionals(line.workspace(), line.workspace().mag.data, line.workspace().grav.data);
    EXPECT_EQ(line.workspace().mag.data, before);
}

}  // namespace anomalis::model
