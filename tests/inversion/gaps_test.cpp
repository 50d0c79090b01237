// Fits of lines with gaps: what is missing has no influence, and neither has what lies behind a gap.

#include "core/gaps.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "inversion/ensemble/find_ensemble.h"
#include "inversion/find_line.h"
#include "inversion/fit_rows.h"
#include "inversion/noise.h"
#include "inversion/perform.h"
#include "inversion/residual_covariance.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

constexpr float none = -1e32F;
constexpr int first_missing = 36, last_missing = 45;

/// Two sheets under 61 stations every 20 m; readings may be missing above the slope of the second.
class GapLine : public FindLine {
  public:
    explicit GapLine(int count = stations) : FindLine(count) {}
    void take_survey() {
        add_dyke(420, 40, 20, 70, 20000);
        add_dyke(880, 60, 30, 110, 30000);
        workspace().definition.grav_column = 6;
        bury();
        workspace().body_count = 2;
        workspace().gap_distance = 60;
    }
    void lose(Channel& channel, float mark = none) {
        for (int i = first_missing; i <= last_missing; ++i) channel.data(i, row_raw, stage_observed) = mark;
        renew();
    }
    /// Starts off the truth, with these parameters free.
    void start() {
        workspace().body(1).top.value -= 8;
        workspace().body(2).susc.value *= 1.2F;
        for (int number = 1; number <= 2; ++number) {
            ModelBody& body = workspace().body(number);
            for (BodyParam ModelBody::*free : {&ModelBody::distance, &ModelBody::top, &ModelBody::susc})
                (body.*free).vary = 1;
        }
        workspace().body(1).density.vary = workspace().body(2).density.vary = 1;
        renew();
    }
    RunResult fit(std::int32_t channel = channel_mag,
                  InversionMethod method = InversionMethod::least_squares) {
        RunObserver nobody;
        RunResult result;
        perform_inversion(workspace(), session.inversion,
                          {.channel = channel, .max_iterations = 40, .method = method, .starts = 1}, nobody,
                          result);
        return result;
    }
};

/// The line without the stations at which readings are missing.
GapLine without_stations(const Workspace& w) {
    GapLine less(w.station_count - (last_missing - first_missing + 1));
    Workspace& own = less.workspace();
    copy_definitions(w, own);
    own.first_station = 1;
    own.last_station = own.station_count;
    own.last_distance = w.last_distance;
    for (int i = 1, k = 0; i <= w.station_count; ++i) {
        if (i >= first_missing && i <= last_missing) continue;
        ++k;
        own.distances[k] = w.distances[i];
        for (int column = column_east; column <= column_ground; ++column)
            own.stations(k, column) = w.stations(i, column);
        for (const int channel : {channel_mag, channel_grav})
            own.channel(channel).data(k, row_raw, stage_observed) =
                w.channel(channel).data(i, row_raw, stage_observed);
    }
    own.bodies = w.bodies;
    own.body_count = w.body_count;
    for (ModelBody& body : own.bodies) {
        body.response.assign(own.station_count);
        body.mag_response_valid = body.grav_response_valid = false;
    }
    less.renew();
    return less;
}

void expect_same_values(const Workspace& one, const Workspace& other, double part) {
    for (int number = 1; number <= one.body_count; ++number)
        for (const BodyParameter& row : body_parameters()) {
            const auto a = static_cast<double>((one.body(number).*row.slot).value);
            EXPECT_NEAR(a, static_cast<double>((other.body(number).*row.slot).value), part * std::abs(a))
                << row.name << " of body " << number;
        }
}

void expect_same_records(const FittedChannel& one, const FittedChannel& other) {
    EXPECT_EQ(one.stations, other.stations);
    EXPECT_NEAR(one.rms, other.rms, 1e-4 * one.rms);
    EXPECT_NEAR(one.noise, other.noise, 1e-6 * one.noise);
    EXPECT_NEAR(one.chi_square, other.chi_square, 1e-3 * one.chi_square);
}

}  // namespace

TEST(GapsOfFits, a_line_with_missing_readings_is_fitted_as_the_line_without_their_stations) {
    GapLine line;
    line.take_survey();
    line.lose(line.workspace().mag);
    line.lose(line.workspace().grav);
    line.start();
    GapLine less = without_stations(line.workspace());
    for (const std::int32_t channel : {channel_mag, channel_joint}) {
        const RunResult result = line.fit(channel), wanted = less.fit(channel);
        ASSERT_TRUE(result.record && wanted.record) << channel;
        expect_same_values(line.workspace(), less.workspace(), 1e-4);
        expect_same_records(*result.record->mag, *wanted.record->mag);
        EXPECT_EQ(result.record->mag->stations, stations - 10);
        for (std::size_t i = 0; i < wanted.record->parameters.size(); ++i) {
            const FittedParameter& p = result.record->parameters[i];
            EXPECT_NEAR(p.error, wanted.record->parameters[i].error, 1e-2 * p.error) << i;
        }
    }
}

TEST(GapsOfFits, so_it_is_swept_and_measured) {
    GapLine line;
    line.take_survey();
    line.lose(line.workspace().mag);
    line.workspace().mag.float_base = 1;
    line.start();
    GapLine less = without_stations(line.workspace());
    const RunResult result = line.fit(channel_mag, InversionMethod::sweep);
    const RunResult wanted = less.fit(channel_mag, InversionMethod::sweep);
    ASSERT_TRUE(result.initial_misfit && wanted.initial_misfit);
    EXPECT_GT((*result.initial_misfit)[0], 0.1F);
    EXPECT_NEAR((*result.initial_misfit)[0], (*wanted.initial_misfit)[0], 1e-4);
    EXPECT_NEAR(result.misfit_pair[0], wanted.misfit_pair[0], 1e-3);
    EXPECT_LT(result.misfit_pair[0], (*result.initial_misfit)[0]);
}

TEST(GapsOfFits, what_stands_for_a_missing_reading_has_no_influence) {
    GapLine line, garbage;
    for (GapLine* one : {&line, &garbage}) {
        one->take_survey();
        one->lose(one->workspace().mag, one == &line ? none : -3e38F);
        one->start();
    }
    const RunResult result = line.fit(), other = garbage.fit();
    ASSERT_TRUE(result.record && other.record);
    expect_same_values(line.workspace(), garbage.workspace(), 0);
    EXPECT_EQ(result.misfit_pair, other.misfit_pair);
}

TEST(GapsOfFits, only_gravity_may_lack_readings_in_a_joint_fit) {
    GapLine line;
    line.take_survey();
    line.lose(line.workspace().grav);
    line.start();
    const RunResult result = line.fit(channel_joint);
    ASSERT_TRUE(result.record && result.record->mag && result.record->grav);
    EXPECT_EQ(result.record->mag->stations, stations);
    EXPECT_EQ(result.record->grav->stations, stations - 10);
    EXPECT_NEAR(line.workspace().body(2).susc.value, 30000, 3000);
    EXPECT_NEAR(line.workspace().body(1).distance.value, 420, 3);
    EXPECT_LT(result.record->grav->rms, 0.02);
}

TEST(GapsOfFits, rows_are_those_of_the_filters_and_nothing_comes_over_a_gap) {
    for (const std::int32_t target : {target_data, target_gradient}) {
        GapLine line;
        line.take_survey();
        Workspace& w = line.workspace();
        w.mag.regional_degree = no_regional;
        w.processing = {.smooth_filter_width = 2,
                        .residual_filter_width = 8,
                        .display_total_gradient = 1,
                        .vg_filter_width = 4,
                        .vg_filter_step = 2};
        line.lose(w.mag);
        RowChain chain(w, channel_mag, target, line.faults);
        ASSERT_EQ(chain.row_count(), static_cast<std::size_t>(stations - 10));
        EXPECT_EQ(chain.starts(), (std::vector<std::size_t>{0, first_missing - 1}));
        EXPECT_EQ(chain.stations()[first_missing - 1], last_missing + 1);
        std::vector<double> raw, rows(chain.row_count()), changed(chain.row_count());
        for (int i = 1; i <= stations; ++i)
            raw.push_back(static_cast<double>(w.mag.data(i, row_raw, stage_calculated)));
        chain.values(raw, rows);
        const int number = target == target_data ? w.residual_row : w.total_gradient_row;
        for (std::size_t row = 0; row < rows.size(); ++row)
            EXPECT_NEAR(rows[row], w.mag.data(chain.stations()[row], number, stage_calculated), 2e-3) << row;
        // Whatever the model has in the gap and behind it.
        for (std::size_t i = first_missing - 1; i < raw.size(); ++i) raw[i] = 1e5;
        chain.values(raw, changed);
        for (std::size_t row = 0; row < first_missing - 1; ++row) EXPECT_EQ(rows[row], changed[row]);
    }
}

TEST(GapsOfFits, a_regional_is_found_by_the_readings_alone) {
    GapLine line;
    line.take_survey();
    line.workspace().mag.regional_degree = 2;
    line.lose(line.workspace().mag);
    GapLine less = without_stations(line.workspace());
    const Regional& found = line.workspace().mag.regional;
    const Regional& wanted = less.workspace().mag.regional;
    ASSERT_EQ(found.degree, 2);
    for (const double at : {0.0, 300.0, 750.0, 1200.0}) EXPECT_NEAR(found.at(at), wanted.at(at), 1e-6);
}

TEST(GapsOfFits, a_window_without_a_reading_cannot_be_fitted_and_says_so) {
    GapLine line;
    line.take_survey();
    line.lose(line.workspace().mag);
    line.start();
    line.workspace().first_station = first_missing + 1;
    line.workspace().last_station = last_missing - 1;
    line.renew();
    const RunResult result = line.fit();
    EXPECT_EQ(result.status, run_failed);
    EXPECT_TRUE(tells(result.faults, "There is no magnetic reading at the stations 37 to 44 of the window"));
    const FindResult found = line.find(at_most(1));
    EXPECT_TRUE(tells(found.faults, "no magnetics to find bodies by"));
}

TEST(GapsOfFits, noise_is_not_told_by_steps_over_gaps) {
    std::vector<std::vector<double>> stretches;
    for (int k = 0; k < 12; ++k) {
        const Eigen::VectorXd noise = white_noise(9, 1, static_cast<unsigned>(k + 1));
        stretches.emplace_back(noise.begin(), noise.end());
        for (double& value : stretches.back()) value += 1000 * (k % 3);
    }
    stretches.push_back({5000});
    EXPECT_NEAR(estimate_stretches_noise(stretches), 1, 0.25);
}

TEST(GapsOfFits, readings_that_are_alike_count_as_fewer_data_with_gaps_between_them_too) {
    Eigen::VectorXd distance(400);
    for (Eigen::Index i = 0; i < 400; ++i)
        distance[i] = 10 * static_cast<double>(i) + 20000 * std::floor(static_cast<double>(i) / 100);
    const Eigen::VectorXd noise = correlated_noise(distance, NoiseKind::exponential, 1, 60, 3);
    const Eigen::MatrixXd columns = Eigen::MatrixXd::Ones(400, 1);
    const ResidualCovariance found = find_residual_covariance(distance, noise, columns, no_pace(), 10);
    EXPECT_GT(found.length(), 25);
    EXPECT_LT(found.length(), 130);
    // (1 - r) / (1 + r) of them for r the squared correlation from one to the next.
    EXPECT_GT(found.independent, 25);
    EXPECT_LT(found.independent, 130);
}

TEST(GapsOfFits, bodies_are_found_beside_a_gap) {
    GapLine line;
    line.add_dyke(420, 40, 20, 70, 20000);
    line.bury();
    line.workspace().gap_distance = 60;
    line.lose(line.workspace().mag);
    FindRequest request = at_most(1);
    request.thick = false;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    ASSERT_EQ(result.models.front().found, 1);
    expect_sheet(result.models.front().bodies.front(), 420, 40);
    EXPECT_EQ(result.models.front().record.mag->stations, stations - 10);
    EXPECT_LT(result.models.front().rms, 1.5);
}

TEST(GapsOfFits, a_search_by_both_channels_stands_a_gap_in_one) {
    GapLine line;
    line.add_dyke(420, 40, 20, 70, 20000);
    line.workspace().definition.grav_column = 6;
    line.bury();
    line.lose(line.workspace().grav);
    FindRequest request = at_most(1);
    request.channel = channel_joint;
    request.thick = false;
    const FindResult result = line.find(request);
    ASSERT_FALSE(result.models.empty());
    EXPECT_NEAR(result.models.front().bodies.front().distance.value, 420, 15);
    EXPECT_LT(result.models.front().rms, 2);
    EXPECT_EQ(result.models.front().record.grav->stations, stations - 10);
}

TEST(GapsOfFits, an_ensemble_knows_where_the_curve_runs_but_in_the_gap) {
    GapLine line;
    line.take_survey();
    line.lose(line.workspace().mag);
    line.start();
    EnsembleObserver nobody;
    const EnsembleResult result =
        find_ensemble(line.workspace(), {.samples = 6, .vary_regional = false}, nobody);
    ASSERT_TRUE(result.ensemble);
    ASSERT_EQ(result.ensemble->fans.size(), 1U);
    const EnsembleFan& fan = result.ensemble->fans.front();
    EXPECT_EQ(fan.first_station, 1);
    ASSERT_EQ(fan.lower.size(), static_cast<std::size_t>(stations));
    for (int i = 1; i <= stations; ++i) {
        const auto at = static_cast<std::size_t>(i - 1);
        if (i >= first_missing && i <= last_missing) {
            EXPECT_EQ(fan.lower[at], none);
            EXPECT_EQ(fan.upper[at], none);
        } else {
            EXPECT_LE(fan.lower[at], fan.upper[at]);
            EXPECT_GT(fan.lower[at], -1e6F);
        }
    }
}

}  // namespace anomalis::inversion
