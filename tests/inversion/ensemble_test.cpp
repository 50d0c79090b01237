#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/model_mark.h"
#include "coverage_line.h"
#include "inversion/ensemble/ensemble_bands.h"
#include "inversion/ensemble/find_ensemble.h"
#include "inversion/ensemble/noise_draw.h"
#include "inversion/line_session.h"
#include "inversion/noisy_line.h"

namespace anomalis::inversion {

namespace {

EnsembleResult ensemble_of(const Workspace& workspace, const EnsembleRequest& request) {
    EnsembleObserver nobody;
    return find_ensemble(workspace, request, nobody);
}

LineKind dyke_in(Disturbance noise, int degree = -1) {
    return {"", Bodies::thin_dyke, noise, degree, degree};
}
LineKind two_dykes(int true_degree = -1, int fitted_degree = -1) {
    return {"", Bodies::two_dykes, Disturbance::white, true_degree, fitted_degree};
}

const EnsembleParameter& of(const Ensemble& ensemble, std::int32_t body, int code) {
    for (const EnsembleParameter& parameter : ensemble.parameters)
        if (parameter.body == body && parameter.param_code == code) return parameter;
    throw std::out_of_range("no such parameter");
}

double length(const EnsembleParameter& band) {
    return band.upper - band.lower;
}

bool said(const std::vector<std::string>& words, const std::string& begins, const std::string& holds) {
    return std::ranges::any_of(words, [&](const std::string& text) {
        return text.starts_with(begins) && text.find(holds) != std::string::npos;
    });
}

std::string only_fault(const EnsembleResult& result) {
    return result.faults.entries().size() == 1 ? result.faults.entries()[0].text : "not one";
}

/// Stops after so many samples.
class StopAfter : public EnsembleObserver {
  public:
    explicit StopAfter(int samples) : samples_(samples) {}
    bool working(double) override { return done >= samples_; }
    void samples_done(int now, int) override { done = now; }
    int done = 0;

  private:
    int samples_;
};

}  // namespace

TEST(Ensemble, the_same_seed_gives_the_same_models_on_any_number_of_cores) {
    CoverageLine line(two_dykes());
    const Workspace& workspace = line.prepare(3);
    const EnsembleResult one = ensemble_of(workspace, {.samples = 6, .seed = 5, .cores = 1});
    const EnsembleResult three = ensemble_of(workspace, {.samples = 6, .seed = 5, .cores = 3});
    const EnsembleResult other = ensemble_of(workspace, {.samples = 6, .seed = 6});
    ASSERT_TRUE(one.ensemble && three.ensemble && other.ensemble);
    ASSERT_EQ(one.ensemble->samples.size(), 6U);
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(one.ensemble->samples[i].values, three.ensemble->samples[i].values);
        EXPECT_NE(one.ensemble->samples[i].values, other.ensemble->samples[i].values);
    }
    EXPECT_EQ(one.ensemble->fans.at(0).lower, three.ensemble->fans.at(0).lower);
    EXPECT_EQ(one.ensemble->words, three.ensemble->words);
}

TEST(Ensemble, it_is_of_the_fitted_model_and_leaves_the_workspace_as_it_is) {
    CoverageLine line(two_dykes());
    Workspace workspace = line.prepare(4);
    const std::string before = model_mark(workspace);
    const float start = workspace.body(1).distance.value;
    const EnsembleResult result = ensemble_of(workspace, {.samples = 4});
    ASSERT_TRUE(result.ensemble && result.record);
    EXPECT_EQ(model_mark(workspace), before);
    EXPECT_EQ(workspace.body(1).distance.value, start);
    ASSERT_EQ(result.bodies.size(), 2U);
    EXPECT_NE(result.bodies[0].distance.value, start);
    for (std::size_t i = 0; i < 2; ++i) workspace.bodies[i + 1] = result.bodies[i];
    EXPECT_EQ(model_mark(workspace), result.ensemble->model_mark);
    EXPECT_EQ(result.ensemble->parameters.size(), result.record->parameters.size());
    EXPECT_EQ(result.ensemble->parameters[0].value, result.record->parameters[0].value);
    EXPECT_EQ(result.ensemble->parameters[0].profile_lower, result.record->parameters[0].lower);
}

TEST(Ensemble, bands_hold_the_truth_and_the_fan_the_curve) {
    CoverageLine line(two_dykes());
    int inside = 0, count = 0;
    for (unsigned seed = 1; seed <= 2; ++seed)
        for (const FittedAgainstTruth& one : line.ensemble(seed, 40).parameters) {
            inside += one.fitted.lower <= one.truth && one.truth <= one.fitted.upper;
            ++count;
        }
    EXPECT_EQ(count, 20);
    EXPECT_GE(inside, 15);
    const EnsembleResult result = ensemble_of(line.prepare(1), {.samples = 20});
    const EnsembleFan& fan = result.ensemble->fans.at(0);
    EXPECT_EQ(fan.channel, channel_mag);
    EXPECT_EQ(fan.first_station, 1);
    ASSERT_EQ(fan.lower.size(), 300U);
    const float crest = *std::ranges::max_element(fan.upper);
    EXPECT_GT(crest, 100);
    for (std::size_t i = 0; i < fan.lower.size(); ++i) {
        EXPECT_LE(fan.lower[i], fan.upper[i]);
        EXPECT_LT(fan.upper[i] - fan.lower[i], 0.1F * crest);
    }
}

TEST(Ensemble, samples_explain_the_line_within_its_noise) {
    CoverageLine line(two_dykes());
    const EnsembleResult result = ensemble_of(line.prepare(2), {.samples = 20});
    ASSERT_TRUE(result.ensemble);
    for (const EnsembleSample& sample : result.ensemble->samples) {
        EXPECT_GE(sample.mag_rms, 0.99 * result.record->mag->rms);
        EXPECT_LE(sample.mag_rms, 1.15 * result.record->mag->rms);
        EXPECT_EQ(sample.grav_rms, 0);
    }
}

TEST(Ensemble, more_noise_makes_wider_bands) {
    CoverageLine quiet(dyke_in(Disturbance::white)), loud(dyke_in(Disturbance::exponential));
    const EnsembleResult a = ensemble_of(quiet.prepare(1), {.samples = 30});
    const EnsembleResult b = ensemble_of(loud.prepare(1), {.samples = 30});
    ASSERT_TRUE(a.ensemble && b.ensemble);
    for (const int code : {param_dip, param_top})
        EXPECT_GT(length(of(*b.ensemble, 1, code)), 1.3 * length(of(*a.ensemble, 1, code)));
}

TEST(Ensemble, words_say_depths_and_what_is_open_alone) {
    CoverageLine line(dyke_in(Disturbance::white));
    Workspace workspace = line.prepare(1);
    const EnsembleResult result = ensemble_of(workspace, {.samples = 20});
    ASSERT_TRUE(result.ensemble);
    const std::vector<std::string>& words = result.ensemble->words;
    // A column of the sensor alone does not tell the ground.
    EXPECT_TRUE(said(words, "Top of body 1: ", " m below the sensor (90 %)"));
    workspace.definition.dtm_column = 4;
    const EnsembleResult known = ensemble_of(workspace, {.samples = 20});
    ASSERT_TRUE(known.ensemble);
    EXPECT_TRUE(said(known.ensemble->words, "Top of body 1: ", " m below ground (90 %)"));
    EXPECT_TRUE(said(words, "Width of body 1: below ", " m (90 %)"));
    EXPECT_TRUE(said(words, "Dip of body 1: ", "° (90 %)"));
    EXPECT_TRUE(said(words, "Susceptibility of body 1: ", " µSI (90 %)"));
    EXPECT_TRUE(said(words, "Width times susceptibility of body 1: 0.", " m SI (90 %)"));
    EXPECT_TRUE(std::isnan(of(*result.ensemble, 1, param_width).lower));
}

TEST(Ensemble, an_unknown_strike_widens_the_bands_and_is_part_of_each_model) {
    CoverageLine line(two_dykes());
    const Workspace& workspace = line.prepare(1);
    const EnsembleResult known = ensemble_of(workspace, {.samples = 30});
    const EnsembleResult unknown = ensemble_of(workspace, {.samples = 30, .strike_within = 25});
    ASSERT_TRUE(known.ensemble && unknown.ensemble);
    EXPECT_GT(length(of(*unknown.ensemble, 1, param_top)), 1.2 * length(of(*known.ensemble, 1, param_top)));
    const EnsembleParameter& strike = of(*unknown.ensemble, 1, param_strike);
    EXPECT_GT(length(strike), 35);
    EXPECT_LT(length(strike), 50);
    EXPECT_TRUE(said(unknown.ensemble->words, "Strikes were let vary by 25", "to each side"));
    EXPECT_FALSE(said(unknown.ensemble->words, "Strike of body", ""));
}

TEST(Ensemble, a_strike_that_the_line_tells_is_found_and_every_model_still_explains_it) {
    LineSession line(121);
    Workspace& workspace = line.workspace();
    workspace.formulas = Formulas::exact;
    ModelBody& body = line.add_body(thick_sheet, 600);
    body.length.value = 60;  // a short body beside the line tells how it strikes
    body.offset.value = 40;
    body.strike.value = 30;
    body.distance.vary = body.top.vary = body.susc.vary = 1;
    line.take_model_as_data();
    const Eigen::VectorXd noise = white_noise(121, 0.05, 7);
    for (int i = 1; i <= 121; ++i)
        workspace.mag.data(i, row_raw, stage_observed) += static_cast<float>(noise[i - 1]);
    line.refresh();
    const EnsembleResult result = ensemble_of(workspace, {.samples = 20, .strike_within = 40});
    ASSERT_TRUE(result.ensemble);
    EXPECT_LT(length(of(*result.ensemble, 1, param_strike)), 30);
    EXPECT_TRUE(said(result.ensemble->words, "Strike of body 1: ", "° (90 %)"));
    for (const EnsembleSample& sample : result.ensemble->samples)
        EXPECT_LT(sample.mag_rms, 1.15 * result.record->mag->rms);
}

TEST(Ensemble, regionals_that_explain_as_well_take_part) {
    CoverageLine line(two_dykes(0, 0));
    const Workspace& workspace = line.prepare(1);
    const auto degrees = [](const Ensemble& ensemble) {
        std::vector<int> found;
        for (const EnsembleSample& sample : ensemble.samples) found.push_back(sample.mag_degree);
        std::ranges::sort(found);
        found.erase(std::unique(found.begin(), found.end()), found.end());
        return found;
    };
    const EnsembleResult held = ensemble_of(workspace, {.samples = 30, .vary_regional = false});
    const EnsembleResult varied = ensemble_of(workspace, {.samples = 30});
    ASSERT_TRUE(held.ensemble && varied.ensemble);
    EXPECT_EQ(degrees(*held.ensemble), std::vector{0});
    EXPECT_GT(degrees(*varied.ensemble).size(), 1U);
}

TEST(Ensemble, a_better_regional_is_named) {
    CoverageLine line(two_dykes(2, 0));
    const EnsembleResult result = ensemble_of(line.prepare(1), {.samples = 2});
    ASSERT_TRUE(result.ensemble);
    EXPECT_TRUE(said(result.ensemble->words, "A regional of degree 2", "explains the line better"));
}

TEST(Ensemble, models_with_a_body_less_take_part_where_it_is_not_needed) {
    LineSession line;
    Workspace& workspace = line.workspace();
    workspace.formulas = Formulas::exact;
    ModelBody& dyke = line.add_body(thick_sheet);
    dyke.distance.vary = dyke.top.vary = dyke.susc.vary = 1;
    line.take_model_as_data();
    const Eigen::VectorXd noise = white_noise(101, 3, 7);
    for (int i = 1; i <= 101; ++i)
        workspace.mag.data(i, row_raw, stage_observed) += static_cast<float>(noise[i - 1]);
    ModelBody& other = line.add_body(thick_sheet, 850);
    other.susc.value = 10;
    other.distance.vary = other.susc.vary = 1;
    line.refresh();
    const EnsembleResult all = ensemble_of(workspace, {.samples = 12});
    const EnsembleResult fewer = ensemble_of(workspace, {.samples = 12, .vary_bodies = true});
    ASSERT_TRUE(all.ensemble && fewer.ensemble);
    const auto without = [](const Ensemble& ensemble) {
        return std::ranges::count_if(
            ensemble.samples, [](const EnsembleSample& sample) { return std::isnan(sample.values.back()); });
    };
    EXPECT_EQ(without(*all.ensemble), 0);
    EXPECT_GT(without(*fewer.ensemble), 0);
    EXPECT_TRUE(said(fewer.ensemble->words, std::to_string(without(*fewer.ensemble)) + " of 12 models",
                     "do without body 2"));
}

TEST(Ensemble, a_stop_gives_what_there_was) {
    CoverageLine line(two_dykes());
    StopAfter some(3), none(0);
    const EnsembleResult result = find_ensemble(line.prepare(1), {.samples = 100000}, some);
    EXPECT_TRUE(result.stopped);
    ASSERT_TRUE(result.ensemble);
    EXPECT_GE(result.ensemble->samples.size(), 3U);
    EXPECT_LT(result.ensemble->samples.size(), 100000U);
    EXPECT_EQ(static_cast<int>(result.ensemble->samples.size()), some.done);
    EXPECT_FALSE(result.ensemble->words.empty());
    const EnsembleResult nothing = find_ensemble(line.prepare(1), {.samples = 100000}, none);
    EXPECT_TRUE(nothing.stopped);
    EXPECT_FALSE(nothing.ensemble);
    for (const Faults::Entry& told : nothing.faults.entries()) EXPECT_EQ(told.severity, Severity::remark);
}

TEST(Ensemble, what_cannot_be_told_is_refused_in_words) {
    LineSession line;
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {})),
              "The model has no bodies: add one before asking how sure it is");
    line.add_body(thick_sheet);
    line.take_model_as_data();
    line.refresh();
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {})), "There are no parameters free to invert on");
    line.workspace().body(1).distance.vary = 1;
    line.workspace().last_station = 900;
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {})),
              "The station window 1 to 900 is outside the line, which has stations 1 to 101");
    line.workspace().last_station = 101;
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {.samples = 0})),
              "An ensemble needs at least 1 sample, not 0");
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {.strike_within = 120})),
              "Strikes can vary by 0 to 90 degrees to each side, not by 120");
    line.workspace().definition.grav_column = 0;
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {.channel = channel_grav})),
              "The line has no gravity column to tell how sure the model is");
    line.workspace().station_count = 0;
    EXPECT_EQ(only_fault(ensemble_of(line.workspace(), {})),
              "No stations are loaded: load the data file first");
}

TEST(Ensemble, fewer_stations_than_unknowns_are_refused) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    body.distance.vary = body.top.vary = body.susc.vary = 1;
    line.take_model_as_data();
    line.workspace().last_station = 2;
    line.refresh();
    const EnsembleResult result = ensemble_of(line.workspace(), {});
    EXPECT_FALSE(result.ensemble);
    EXPECT_NE(only_fault(result).find("There are 2 stations for 3 unknowns"), std::string::npos);
}

TEST(Ensemble, data_without_noise_give_one_model_again_and_again) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    body.distance.vary = body.top.vary = body.susc.vary = 1;
    line.workspace().formulas = Formulas::exact;
    line.take_model_as_data();
    line.refresh();
    const EnsembleResult result = ensemble_of(line.workspace(), {.samples = 5});
    ASSERT_TRUE(result.ensemble);
    EXPECT_NEAR(of(*result.ensemble, 1, param_distance).lower, 500, 0.01);
    EXPECT_NEAR(of(*result.ensemble, 1, param_distance).upper, 500, 0.01);
}

TEST(NoiseDraw, has_the_size_and_the_correlation_that_were_found) {
    ResidualCovariance covariance;
    covariance.white = 0.5;
    covariance.correlated = 2;
    covariance.smoothness = 1;
    covariance.rate = 0.05;
    const Eigen::VectorXd distance = equal_spacing(4000, 10);
    ChanceNumbers chance(1, 2);
    const Eigen::VectorXd noise = draw_noise(covariance, distance, chance);
    const double squares = noise.squaredNorm() / 4000;
    EXPECT_NEAR(squares, 4.25, 0.6);
    // Matern 3/2 over 20 m: (1 + t) exp(-t), t = 1.
    const double product = noise.head(3998).dot(noise.tail(3998)) / 3998;
    EXPECT_NEAR(product, 4 * 2 * std::exp(-1.0), 0.6);
}

TEST(Quantile, of_nine_values_the_first_stands_for_a_tenth) {
    std::vector<double> values{9, 1, 8, 2, 7, 3, 6, 4, 5};
    EXPECT_DOUBLE_EQ(quantile(values, 0.1), 1);
    EXPECT_DOUBLE_EQ(quantile(values, 0.15), 1.5);
    EXPECT_DOUBLE_EQ(quantile(values, 0.9), 9);
    EXPECT_DOUBLE_EQ(quantile(values, 0.01), 1);
}

TEST(Quantile, is_straight_between_two_values) {
    std::vector<double> values{40, 10, 30, 20};
    EXPECT_DOUBLE_EQ(quantile(values, 0), 10);
    EXPECT_DOUBLE_EQ(quantile(values, 0.5), 25);
    EXPECT_DOUBLE_EQ(quantile(values, 1), 40);
    std::vector<double> none;
    EXPECT_TRUE(std::isnan(quantile(none, 0.5)));
}

}  // namespace anomalis::inversion
