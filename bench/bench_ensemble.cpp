// How long an ensemble takes: 3 dykes with five free parameters each, 300 models of 800 stations, beside a
// plain fit of the same line from the same start.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>

#include "../tests/inversion/noisy_line.h"
#include "core/body_parameters.h"
#include "core/session.h"
#include "intake/profile.h"
#include "inversion/ensemble/find_ensemble.h"
#include "inversion/perform.h"
#include "level_line.h"
#include "model/refresh_model.h"
#include "quiet_prompts.h"

namespace anomalis {
namespace {

constexpr int bodies = 3;

double wall_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Dykes along a line of stations 1 m apart; the data are theirs with a level and noise, white or of geology.
void make_line(Session& session, int stations, bool geology) {
    session.workspace = level_line(stations);
    Workspace& w = session.workspace;
    w.definition.z_column = 4;
    w.first_station = 1;
    w.last_station = stations;
    w.first_distance = w.distances[1];
    w.last_distance = w.distances[stations];
    w.mag.base = 0;
    w.formulas = Formulas::exact;
    w.mag.regional_degree = 1;
    intake::setup_graphics_arrays(w, session.prompts);
    for (int i = 0; i < bodies; ++i) {
        ModelBody& body = add_body(w, thick_sheet, (i + 0.5) * stations / bodies);
        body.vary = 1;
        body.length.value = body.depth_extent.value = 0;
        body.width.value = 20;
        body.top.value = 130;
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        for (BodyParam* param : {&body.distance, &body.top, &body.dip, &body.width, &body.susc})
            param->vary = 1;
    }
    model::finish_load(session);
    model::refresh_model(session);
    Eigen::VectorXd noise = inversion::white_noise(stations, 2, 3);
    if (geology)
        noise += inversion::correlated_noise(inversion::equal_spacing(stations, 1),
                                             inversion::NoiseKind::exponential, 5, 20, 4);
    for (int i = 1; i <= stations; ++i)
        w.mag.data(i, row_raw, stage_observed) =
            w.mag.data(i, row_raw, stage_calculated) + static_cast<float>(noise[i - 1]);
    for (int i = 1; i <= bodies; ++i) {
        ModelBody& body = w.body(i);
        body.distance.value += i % 2 == 0 ? 2.0F : -1.5F;
        body.top.value -= 3;
        body.dip.value += 8;
        body.width.value *= 1.3F;
        body.susc.value *= 0.8F;
    }
    invalidate_filtered_data(0, w);
    reset_calculated_data(w, session.prompts);
    model::refresh_model(session);
}

double plain_fit_seconds(const Workspace& line) {
    Workspace workspace = line;
    InversionState inversion;
    inversion::RunResult result;
    inversion::RunObserver nobody;
    inversion::RunRequest request{.max_iterations = 25, .method = InversionMethod::least_squares};
    request.starts = 1;
    const double begin = wall_seconds();
    inversion::perform_inversion(workspace, inversion, request, nobody, result);
    return wall_seconds() - begin;
}

/// `fits_a_model`: how many plain fits, with their errors and intervals, a model takes.
void ensemble(benchmark::State& state) {
    const auto stations = static_cast<int>(state.range(0)), samples = static_cast<int>(state.range(1));
    const bool geology = state.range(2) != 0;
    for (auto _ : state) {
        QuietPrompts prompts;
        Session session(prompts, Settings());
        make_line(session, stations, geology);
        const double fit = plain_fit_seconds(session.workspace);
        inversion::EnsembleObserver nobody;
        const double begin = wall_seconds();
        const inversion::EnsembleResult result =
            inversion::find_ensemble(session.workspace, {.samples = samples}, nobody);
        const double seconds = wall_seconds() - begin;
        state.SetLabel(geology ? "geology" : "white noise");
        state.counters["ensemble_s"] = seconds;
        state.counters["plain_fit_ms"] = 1e3 * fit;
        state.counters["fits_a_model"] = seconds / fit / samples;
        state.counters["models"] =
            result.ensemble ? static_cast<double>(result.ensemble->samples.size()) : 0.0;
    }
}
BENCHMARK(ensemble)
    ->Args({800, 300, 0})
    ->Args({800, 300, 1})
    ->Args({8000, 300, 0})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
