// Values and columns of one body, as a fit asks for them, at 2000 stations: how many calculations of the
// values they cost, with the values and without them, and how many times less than columns by forward
// differences, for some body kinds and numbers of parameters. All that is compared takes turns in one run.

#include <benchmark/benchmark.h>
#include <iterator>
#include <span>
#include <vector>

#include "core/body_parameters.h"
#include "core/faults.h"
#include "forward/body_columns.h"
#include "level_line.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int stations = 2000;
constexpr int turns = 15;

struct Kind {
    const char* name;
    BodyType type;
    float depth_extent, length;
    int channel;
};
constexpr Kind kinds[] = {
    {"thin sheet without end, mag", thin_sheet, 0, 0, channel_mag},
    {"thick sheet, mag", thick_sheet, 300, 0, channel_mag},
    {"thick sheet, grav", thick_sheet, 300, 0, channel_grav},
    {"thick sheet without end, grav", thick_sheet, 0, 0, channel_grav},
    {"step, mag", sloping_step, 200, 0, channel_mag},
    {"limited sheet, mag", thick_sheet, 300, 500, channel_mag},
    {"limited sheet, grav", thick_sheet, 300, 500, channel_grav},
    {"limited sheet without lower end, mag", thick_sheet, 0, 500, channel_mag},
    {"limited sheet without lower end, grav", thick_sheet, 0, 500, channel_grav},
    {"pipe, mag", pipe, 0, 400, channel_mag},
};
/// In the order in which they are taken.
constexpr int codes[] = {param_distance, param_top,   param_dip,  param_width, param_strike,
                         param_slope,    param_rem_i, param_susc, param_rem_d};

void columns(benchmark::State& state) {
    const Kind& kind = kinds[state.range(0)];
    const auto count = static_cast<std::size_t>(state.range(1));
    Workspace workspace = level_line(stations);
    workspace.formulas = Formulas::exact;
    ModelBody body;
    body.type = kind.type;
    body.distance.value = 900;
    body.top.value = 110;
    body.strike.value = 30;
    body.dip.value = kind.type == pipe ? 20 : 65;
    body.width.value = 80;
    body.depth_extent.value = kind.depth_extent;
    body.length.value = kind.length;
    body.slope.value = kind.type == pipe ? 0 : 5;
    body.susc.value = 20000;
    body.rem_q.value = 0.5F;
    body.rem_i.value = 40;
    body.density.value = 0.4F;
    forward::BodyBench bench;
    forward::ExactNotes exact;
    Faults faults;
    forward::BodyNotes notes{1, exact, faults};
    const forward::StationRange range{1, stations};
    std::vector<double> values(stations), slopes(stations * count);
    const auto value = [&] {
        forward::body_values(workspace, body, kind.channel, range, bench, values, notes);
    };
    BestTime of_value, of_columns, alone, of_differences;
    for (auto _ : state)
        for (int turn = 0; turn < turns; ++turn) {
            of_value.take(value);
            of_columns.take([&] {
                forward::body_columns(workspace, body, kind.channel, range, bench, std::span(codes, count),
                                      values, slopes, notes);
            });
            alone.take([&] {
                forward::body_columns(workspace, body, kind.channel, range, bench, std::span(codes, count),
                                      {}, slopes, notes);
            });
            of_differences.take([&] {
                value();
                for (std::size_t k = 0; k < count; ++k) {
                    BodyParam& param = body_param(body, codes[k]);
                    const float kept = param.value;
                    param.value += 0.01F;
                    value();
                    param.value = kept;
                }
            });
        }
    state.SetLabel(kind.name);
    state.counters["value_us"] = of_value.seconds() * 1e6;
    state.counters["cost_in_values"] = of_columns.seconds() / of_value.seconds();
    state.counters["without_values"] = alone.seconds() / of_value.seconds();
    state.counters["times_faster"] = of_differences.seconds() / of_columns.seconds();
}
BENCHMARK(columns)
    ->ArgsProduct({benchmark::CreateDenseRange(0, static_cast<int>(std::size(kinds)) - 1, 1), {1, 3, 6, 9}})
    ->ArgNames({"kind", "parameters"})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
