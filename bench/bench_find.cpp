// Bodies found on lines of more stations and of more bodies, and how that grows.

#include <benchmark/benchmark.h>
#include <cmath>
#include <memory>

#include "../tests/inversion/noisy_line.h"
#include "core/session.h"
#include "intake/profile.h"
#include "inversion/find/find_bodies.h"
#include "level_line.h"
#include "model/refresh_model.h"
#include "quiet_prompts.h"

namespace anomalis {
namespace {

constexpr double spacing = 10, sensor = 60;  // m

/// Thick dykes spread along a line, 1 nT of white noise.
struct Line {
    QuietPrompts prompts;
    Session session{prompts, Settings()};

    Line(int stations, int bodies) {
        session.workspace = level_line(stations);
        Workspace& w = session.workspace;
        w.definition.mag_column = 3;
        w.definition.z_column = 5;
        w.formulas = Formulas::exact;
        for (int i = 1; i <= stations; ++i) {
            w.distances[i] = spacing * (i - 1);
            w.stations(i, column_east) = 350000 + spacing * (i - 1);
            w.stations(i, column_sensor) = sensor;
        }
        w.first_station = 1;
        w.last_station = stations;
        w.last_distance = spacing * (stations - 1);
        w.mag.base = 0;
        w.mag.regional_degree = 1;
        intake::setup_graphics_arrays(w, prompts);
        for (int i = 0; i < bodies; ++i) {
            ModelBody& body = add_body(w, thick_sheet, (i + 0.5) * spacing * stations / bodies);
            body.top.value = -40.0F - 15.0F * static_cast<float>(i);
            body.width.value = 40;
            body.dip.value = 60.0F + 15.0F * static_cast<float>(i);
            body.susc.value = 30000;
            body.depth_extent.value = body.length.value = 0;
        }
        model::finish_load(session);
        model::refresh_model(session);
        const Eigen::VectorXd noise = inversion::white_noise(stations, 1, 1);
        for (int i = 1; i <= stations; ++i)
            w.mag.data(i, row_raw, stage_observed) =
                w.mag.data(i, row_raw, stage_calculated) + static_cast<float>(noise[i - 1]);
        w.body_count = 0;
        invalidate_filtered_data(0, w);
        model::refresh_model(session);
    }
};

void find(benchmark::State& state) {
    const Line line(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    int found = 0;
    for (auto _ : state) {
        inversion::FindObserver nobody;
        const inversion::FindResult result =
            inversion::find_bodies(line.session.workspace, inversion::FindRequest(), nobody);
        found = result.models.empty() ? 0 : result.models.front().found;
    }
    state.counters["found"] = found;
}
BENCHMARK(find)
    ->ArgNames({"stations", "bodies"})
    ->Args({800, 1})
    ->Args({800, 2})
    ->Args({800, 4})
    ->Args({800, 6})
    ->Args({1600, 4})
    ->Args({2500, 4})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MeasureProcessCPUTime()
    ->Iterations(1);

}  // namespace
}  // namespace anomalis
