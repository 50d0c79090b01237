#include "coverage_line.h"

#include <algorithm>
#include <cmath>

#include "../tests/inversion/noisy_line.h"
#include "core/body_parameters.h"
#include "core/faults.h"
#include "flow/inversion_report.h"
#include "forward/driver.h"
#include "intake/profile.h"
#include "inversion/ensemble/find_ensemble.h"
#include "level_line.h"
#include "model/refresh_model.h"

namespace anomalis {

namespace {

constexpr int stations = 300;
constexpr double spacing = 10;               // m
constexpr double white_mag = 2;              // nT
constexpr double white_grav = 0.02;          // mGal
constexpr double geology = 5;                // nT
constexpr double geology_length = 100;       // m
constexpr double white_below_geology = 0.5;  // nT
constexpr double sensor = 10;                // m above the ground, which lies at 0

/// Bodies and noise take numbers of their own from a seed.
constexpr unsigned second_stream = 100000, third_stream = 200000;

ModelBody& add_dyke(Workspace& workspace, double distance, float top, float width, float dip,
                    float susceptibility) {
    ModelBody& body = add_body(workspace, thick_sheet, distance);
    body.vary = 1;
    body.top.value = top;
    body.width.value = width;
    body.dip.value = dip;
    body.susc.value = susceptibility;
    body.density.value = 2.9F;
    body.depth_extent.value = body.length.value = 0;
    for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
    body.distance.vary = body.top.vary = body.dip.vary = body.width.vary = body.susc.vary = 1;
    return body;
}

}  // namespace

std::vector<LineKind> line_kinds() {
    const std::pair<Bodies, std::string> bodies[] = {{Bodies::thin_dyke, "one thin dyke"},
                                                     {Bodies::two_dykes, "two thick dykes"}};
    std::vector<LineKind> kinds;
    for (const auto& [which, name] : bodies) {
        kinds.push_back({"White noise, " + name, which});
        kinds.push_back({"White noise and a regional of degree 2, " + name, which, Disturbance::white, 2, 2});
        kinds.push_back({"Exponential geology and a level, " + name, which, Disturbance::exponential, 0, 0});
        kinds.push_back({"Gaussian geology and a level, " + name, which, Disturbance::gaussian, 0, 0});
        kinds.push_back({"Exponential geology and a regional of degree 2, " + name, which,
                         Disturbance::exponential, 2, 2});
        kinds.push_back({"Both channels, white noise, " + name, which, Disturbance::white, -1, -1, true});
        kinds.push_back({"Both channels, exponential geology in magnetics, levels, " + name, which,
                         Disturbance::exponential, 0, 0, true});
    }
    return kinds;
}

std::vector<LineKind> ensemble_kinds() {
    std::vector<LineKind> kinds;
    for (const auto& [which, name] : {std::pair{Bodies::thin_dyke, std::string("one thin dyke")},
                                      std::pair{Bodies::two_dykes, std::string("two thick dykes")}}) {
        kinds.push_back({"White noise, " + name, which});
        kinds.push_back({"White noise and a regional of degree 2, " + name, which, Disturbance::white, 2, 2});
        kinds.push_back({"Exponential geology and a level, " + name, which, Disturbance::exponential, 0, 0});
        LineKind strike{"White noise and a level, strikes unknown within 25 degrees, " + name, which,
                        Disturbance::white, 0, 0};
        strike.strike_within = 25;
        kinds.push_back(strike);
    }
    return kinds;
}

CoverageLine::CoverageLine(const LineKind& kind) : kind_(kind) {
    session_.workspace = level_line(stations);
    Workspace& w = session_.workspace;
    w.definition.mag_column = 3;
    w.definition.grav_column = kind.both_channels ? 4 : 0;
    w.definition.z_column = 5;
    w.formulas = Formulas::exact;
    for (int i = 1; i <= stations; ++i) {
        w.distances[i] = static_cast<float>(spacing * (i - 1));
        w.stations(i, column_east) = 350000 + spacing * (i - 1);
        w.stations(i, column_sensor) = sensor;
    }
    w.first_station = 1;
    w.last_station = stations;
    w.last_distance = spacing * (stations - 1);
    w.mag.base = w.grav.base = 0;
    w.mag.regional_degree = kind.fitted_degree;
    w.grav.regional_degree = kind.fitted_degree;
    intake::setup_graphics_arrays(w, prompts_);
    add_bodies();
    model::finish_load(session_);
    for (int i = 1; i <= w.body_count; ++i) truth_.push_back(w.body(i));
    calculate_truth();
}

/// What the bodies give where they stand is what the line has of them.
void CoverageLine::calculate_truth() {
    Workspace& w = session_.workspace;
    model::refresh_model(session_);
    const auto mag = w.mag.data.row(row_raw, stage_calculated);
    const auto grav = w.grav.data.row(row_raw, stage_calculated);
    mag_.assign(mag.begin(), mag.end());
    grav_.assign(grav.begin(), grav.end());
}

/// The true bodies do not strike as the model has it.
void CoverageLine::turn_strikes(unsigned seed) {
    inversion::NormalNumbers number(seed + 4 * second_stream);
    Workspace& w = session_.workspace;
    for (int i = 1; i <= w.body_count; ++i) {
        w.body(i) = truth_[static_cast<std::size_t>(i - 1)];
        w.body(i).strike.value += static_cast<float>(kind_.strike_within * (2 * number.uniform() - 1));
    }
    reset_calculated_data(w, prompts_);
    calculate_truth();
}

void CoverageLine::add_bodies() {
    Workspace& w = session_.workspace;
    if (kind_.bodies == Bodies::thin_dyke) {
        add_dyke(w, 1500, -60, 15, 70, 60000);
    } else {
        add_dyke(w, 1000, -50, 120, 60, 20000);
        add_dyke(w, 1900, -70, 90, 110, 25000);
    }
    if (kind_.both_channels)
        for (int i = 1; i <= w.body_count; ++i) w.body(i).density.vary = 1;
}

void CoverageLine::add_noise(unsigned seed) {
    using inversion::NoiseKind;
    const Eigen::VectorXd distance = inversion::equal_spacing(stations, spacing);
    Eigen::VectorXd mag = inversion::white_noise(
        stations, kind_.noise == Disturbance::white ? white_mag : white_below_geology, seed);
    if (kind_.noise != Disturbance::white)
        mag += inversion::correlated_noise(
            distance, kind_.noise == Disturbance::gaussian ? NoiseKind::gaussian : NoiseKind::exponential,
            geology, geology_length, seed + second_stream);
    Eigen::VectorXd grav = inversion::white_noise(stations, white_grav, seed + 2 * second_stream);
    inversion::NormalNumbers normal(seed + third_stream + 1);
    double scale = 1;
    for (int k = 0; k <= kind_.true_degree; ++k) {
        const Eigen::VectorXd power =
            ((distance.array() - distance.mean()) / (0.5 * distance.maxCoeff())).pow(k);
        mag += 15 * scale * normal() * power;
        grav += 0.2 * scale * normal() * power;
        scale *= 0.7;
    }
    Workspace& w = session_.workspace;
    for (int i = 1; i <= stations; ++i) {
        const auto at = static_cast<std::size_t>(i - 1);
        w.mag.data(i, row_raw, stage_observed) = mag_[at] + static_cast<float>(mag[i - 1]);
        if (kind_.both_channels)
            w.grav.data(i, row_raw, stage_observed) = grav_[at] + static_cast<float>(grav[i - 1]);
    }
}

/// Bodies as someone would set them by eye.
void CoverageLine::go_off(unsigned seed) {
    inversion::NormalNumbers number(seed + 3 * second_stream);
    const auto off = [&](double by) { return static_cast<float>(by * (2 * number.uniform() - 1)); };
    Workspace& w = session_.workspace;
    for (int i = 1; i <= w.body_count; ++i) {
        ModelBody& body = w.body(i);
        body = truth_[static_cast<std::size_t>(i - 1)];
        body.distance.value += off(20);
        body.top.value *= 1 + off(0.2);
        body.dip.value += off(10);
        body.width.value *= 1 + off(0.3);
        body.susc.value *= 1 + off(0.3);
        body.density.value += off(0.05);
    }
}

const Workspace& CoverageLine::prepare(unsigned seed) {
    Workspace& w = session_.workspace;
    if (kind_.strike_within > 0) turn_strikes(seed);
    go_off(seed);
    add_noise(seed);
    reset_calculated_data(w, prompts_);
    invalidate_filtered_data(0, w);
    model::refresh_model(session_);
    return w;
}

FittedAgainstTruth CoverageLine::against_truth(const FittedParameter& fitted) const {
    const ModelBody& truth = truth_[static_cast<std::size_t>(fitted.body - 1)];
    return {fitted, static_cast<double>(body_param(truth, fitted.param_code).value)};
}

TruthAndFit CoverageLine::fit(unsigned seed) {
    prepare(seed);
    flow::InvertOptions options;
    options.channel = kind_.both_channels ? channel_joint : channel_mag;
    options.method = InversionMethod::least_squares;
    options.iterations = 100;
    const flow::InversionReport report = flow::run_inversion(session_, options);
    TruthAndFit told;
    told.fitted = report.result.status == inversion::run_succeeded && report.result.record.has_value();
    if (!report.result.record) return told;
    for (const FittedParameter& fitted : report.result.record->parameters)
        told.parameters.push_back(against_truth(fitted));
    return told;
}

TruthAndFit CoverageLine::ensemble(unsigned seed, int samples) {
    inversion::EnsembleObserver nobody;
    inversion::EnsembleRequest request;
    request.channel = kind_.both_channels ? channel_joint : channel_mag;
    request.samples = samples;
    request.seed = seed;
    request.strike_within = kind_.strike_within;
    const inversion::EnsembleResult result = inversion::find_ensemble(prepare(seed), request, nobody);
    TruthAndFit told;
    told.fitted = result.ensemble.has_value();
    if (!told.fitted) return told;
    for (const EnsembleParameter& band : result.ensemble->parameters) {
        if (band.param_code == param_strike) continue;
        told.parameters.push_back(against_truth({.body = band.body,
                                                 .param_code = band.param_code,
                                                 .value = band.value,
                                                 .lower = band.lower,
                                                 .upper = band.upper}));
    }
    return told;
}

}  // namespace anomalis
