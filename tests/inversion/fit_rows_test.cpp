#include "inversion/fit_rows.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/body_parameters.h"
#include "core/threads.h"
#include "inversion/line_session.h"
#include "inversion/parameters.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

struct Rows {
    const char* name;
    Formulas formulas = Formulas::exact;
    std::int32_t target = target_data;
    void (*processing)(Workspace&) = [](Workspace&) {};
};

void PrintTo(const Rows& rows, std::ostream* out) {
    *out << rows.name;
}

const std::vector<InversionParamPlace> places{{1, param_distance}, {1, param_top},     {1, param_dip},
                                              {2, param_top},      {2, param_density}, {2, param_susc}};

/// Two free sheets and one that is held, on a line whose readings have a slope, seen in a part of it.
class FitRowsOf : public ::testing::TestWithParam<Rows> {
  protected:
    FitRowsOf() {
        Workspace& w = line.workspace();
        w.formulas = GetParam().formulas;
        line.add_body(thick_sheet, 400).length.value = 0;
        line.add_body(thick_sheet, 903).dip.value = 60;
        line.add_body(thin_sheet, 600, -30).length.value = 0;
        line.take_model_as_data();
        for (ChannelTable* data : {&w.mag.data, &w.grav.data})
            for (int i = 1; i <= w.station_count; ++i)
                (*data)(i, row_raw, stage_observed) +=
                    static_cast<float>(0.05 * i + 2 * std::sin(0.7 * i) + 0.001 * i * i);
        w.first_station = 11;
        w.last_station = 131;
        w.first_distance = w.distances[11];
        w.last_distance = w.distances[131];
        GetParam().processing(w);
        w.body(1).top.value = -70;
        w.body(2).density.value = 3.1F;
        w.body(2).susc.value = 40000;
        line.session.inversion.inversion_target = GetParam().target;
        line.refresh();
        for (const InversionParamPlace& place : places)
            values.push_back(body_param(w.body(place.body), place.param_code).value);
    }

    FitRows make() {
        return {
            line.workspace(), {{channel_mag, channel_grav}, GetParam().target, places}, faults, no_pace()};
    }
    /// The row that a channel is fitted in, as the usual route leaves it.
    std::span<const float> row(std::int32_t channel, int stage) {
        const Workspace& w = line.workspace();
        const int number = GetParam().target == target_gradient ? w.gradient_row_in_use() : w.residual_row;
        return w.channel(channel).data.row(number, stage).subspan(10, 121);
    }
    VectorXd residuals(FitRows& rows, const std::vector<float>& at) {
        VectorXd out(static_cast<Index>(rows.row_count()));
        rows.residuals(at, out);
        return out;
    }

    LineSession line{161, 10};
    Faults faults;
    std::vector<float> values;
};

}  // namespace

TEST_P(FitRowsOf, residuals_are_those_of_the_usual_route_to_single_precision) {
    FitRows rows = make();
    const VectorXd found = residuals(rows, values);
    ASSERT_EQ(found.size(), 2 * 121);
    Index at = 0;
    for (const std::int32_t channel : {channel_mag, channel_grav}) {
        const auto observed = row(channel, stage_observed), calculated = row(channel, stage_calculated);
        double largest = 0;
        for (const float value : observed) largest = std::max(largest, std::abs(static_cast<double>(value)));
        for (const float value : calculated)
            largest = std::max(largest, std::abs(static_cast<double>(value)));
        ASSERT_GT(largest, 0);
        for (std::size_t i = 0; i < 121; ++i, ++at)
            EXPECT_NEAR(found[at], static_cast<double>(calculated[i]) - static_cast<double>(observed[i]),
                        4e-6 * largest)
                << channel << " " << i;
    }
}

TEST_P(FitRowsOf, columns_are_the_slopes_of_the_residuals) {
    FitRows rows = make();
    MatrixXd columns(static_cast<Index>(rows.row_count()), static_cast<Index>(places.size()));
    rows.columns(values, columns);
    for (std::size_t k = 0; k < places.size(); ++k) {
        const float step = std::max(std::abs(values[k]) * 0x1p-7F, 0.01F);
        std::vector<float> ahead = values, behind = values;
        ahead[k] += step;
        behind[k] -= step;
        const double width = static_cast<double>(ahead[k]) - static_cast<double>(behind[k]);
        const VectorXd slope = (residuals(rows, ahead) - residuals(rows, behind)) / width;
        const auto own = columns.col(static_cast<Index>(k));
        EXPECT_GT(own.norm(), 0);
        EXPECT_LT((own - slope).norm(), 5e-3 * own.norm()) << param_name(places[k].param_code);
    }
}

TEST_P(FitRowsOf, another_thread_sees_the_same) {
    FitRows rows = make();
    const VectorXd first = residuals(rows, values);
    FitRows other(rows, no_pace());
    std::vector<float> moved = values;
    moved[0] += 20;
    residuals(other, moved);
    EXPECT_EQ(residuals(rows, values), first);
    EXPECT_EQ(residuals(other, values), first);
}

INSTANTIATE_TEST_SUITE_P(
    Processing, FitRowsOf,
    ::testing::Values(
        Rows{"plain"}, Rows{"classic", Formulas::classic},
        Rows{"floating", Formulas::exact, target_data,
             [](Workspace& w) { w.mag.float_base = w.grav.float_base = 1; }},
        Rows{"regional", Formulas::exact, target_data,
             [](Workspace& w) { w.mag.regional_degree = 2, w.grav.regional_degree = 3; }},
        Rows{"smoothed", Formulas::exact, target_data,
             [](Workspace& w) { w.processing.smooth_filter_width = 3, w.mag.regional_degree = 1; }},
        Rows{"residual_filter", Formulas::exact, target_data,
             [](Workspace& w) { w.processing.residual_filter_width = 20, w.mag.float_base = 1; }},
        Rows{"hanning", Formulas::exact, target_data,
             [](Workspace& w) { w.processing.smooth_filter_width = 4, w.processing.smooth_filter_type = 2; }},
        Rows{"gradient", Formulas::exact, target_gradient},
        Rows{"classic_gradient", Formulas::classic, target_gradient},
        Rows{"total_gradient", Formulas::exact, target_gradient,
             [](Workspace& w) { w.processing.display_total_gradient = 1, w.processing.vg_filter_step = 2; }}),
    [](const auto& tested) { return std::string(tested.param.name); });

namespace {

/// One sheet with noisy readings, where amplitudes are off.
class Amplitudes : public ::testing::Test {
  protected:
    Amplitudes() {
        line.workspace().formulas = Formulas::exact;
        for (const float place : {400.0F, 900.0F}) line.add_body(thick_sheet, place).length.value = 0;
        line.take_model_as_data();
        line.workspace().body(1).susc.value = 2000;
        line.refresh();
    }
    LineSession line{161, 10};
    Faults faults;
};

}  // namespace

TEST_F(Amplitudes, come_to_their_best_without_a_calculation) {
    FitRows rows(line.workspace(), {{channel_mag}, target_data, {{1, param_susc}, {2, param_susc}}}, faults,
                 no_pace());
    const std::vector<float> lower{1, 1};
    std::vector<float> values{2000, 40000};
    VectorXd out(161);
    rows.residuals_at_best_amplitudes(values, lower, std::vector<float>{1e6F, 1e6F}, 100, out);
    EXPECT_NEAR(values[0], 50000, 1);
    EXPECT_NEAR(values[1], 50000, 1);
    rows.residuals_at_best_amplitudes(values, lower, std::vector<float>{1e6F, 45000}, 100, out);
    EXPECT_EQ(values[1], 50000.0F) << "what stands beyond a limit stays";
    values = {2000, 40000};
    rows.residuals_at_best_amplitudes(values, lower, std::vector<float>{1e6F, 45000}, 100, out);
    EXPECT_EQ(values[1], 45000.0F);
    EXPECT_EQ(rows.evaluations(), 3);
    VectorXd anew(161);
    FitRows(rows, no_pace()).residuals(values, anew);
    EXPECT_LT((anew - out).norm(), 1e-3);
}

TEST_F(Amplitudes, change_no_more_than_by_the_factor) {
    FitRows rows(line.workspace(), {{channel_mag}, target_data, {{1, param_susc}}}, faults, no_pace());
    const std::vector<float> lower{1}, upper{1e6F};
    std::vector<float> values{2000};
    VectorXd out(161);
    rows.residuals_at_best_amplitudes(values, lower, upper, 3, out);
    EXPECT_FLOAT_EQ(values[0], 6000);
}

TEST(FitRows, any_count_of_cores_gives_the_same_bits_and_notes_in_the_order_of_the_bodies) {
    for (const Formulas formulas : {Formulas::exact, Formulas::classic}) {
        VectorXd residuals[2];
        MatrixXd columns[2];
        std::vector<std::string> texts[2];
        for (const int turn : {0, 1}) {
            limit_threads(turn == 0 ? 1 : 3);
            LineSession line;
            line.workspace().formulas = formulas;
            FitRequest request{{channel_mag, channel_grav}, target_data, {}};
            std::vector<float> values;
            for (int number = 1; number <= 24; ++number) {
                ModelBody& body = line.add_body(number % 2 == 0 ? thick_sheet : pipe, 60 * number);
                if (number > 20) body.width.value = std::nanf("");
                const int free = number > 18 ? 0 : 3;
                for (const int code : {param_top, param_susc, param_density}) {
                    if (free == 0) break;
                    request.places.push_back({number, code});
                    values.push_back(body_param(body, code).value);
                }
            }
            line.refresh();
            Faults faults;
            FitRows rows(line.workspace(), request, faults, no_pace());
            residuals[turn].resize(static_cast<Index>(rows.row_count()));
            columns[turn].resize(residuals[turn].size(), static_cast<Index>(values.size()));
            rows.residuals(values, residuals[turn]);
            rows.columns(values, columns[turn]);
            for (const Faults::Entry& entry : rows.faults().entries())
                texts[turn].push_back(counted_text(entry));
            limit_threads(0);
        }
        EXPECT_EQ(residuals[0], residuals[1]);
        EXPECT_EQ(columns[0], columns[1]);
        EXPECT_GT(columns[0].norm(), 0);
        EXPECT_GE(texts[0].size(), 4U);
        EXPECT_EQ(texts[0], texts[1]);
    }
}

TEST(FitRows, what_a_body_that_is_held_shares_is_nothing_that_a_parameter_changes) {
    LineSession line;
    line.add_body(thick_sheet, 300);
    line.add_body(thick_sheet, 900);
    line.refresh();
    Faults faults;
    FitRows rows(line.workspace(), {{channel_mag}, target_data, {{2, param_top}}}, faults, no_pace());
    VectorXd out(static_cast<Index>(rows.row_count()));
    const std::vector<float> values{line.workspace().body(2).top.value};
    rows.residuals(values, out);
    EXPECT_EQ(rows.share_of(1).norm(), 0);
    EXPECT_GT(rows.share_of(2).norm(), 0);
    EXPECT_EQ(rows.sum_of_squares_without(1, values), out.squaredNorm());
    EXPECT_NE(rows.sum_of_squares_without(2, values), out.squaredNorm());
}

}  // namespace anomalis::inversion
