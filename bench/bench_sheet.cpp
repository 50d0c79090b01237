// A two-dimensional sheet at 8193 stations against one logarithm and two arc tangents a station, and against
// a scalar version of its formula; the driver with many sheets.

#include <benchmark/benchmark.h>
#include <cmath>
#include <vector>

#include "allocations.h"
#include "core/faults.h"
#include "forward/driver.h"
#include "level_line.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int stations = 8193;
constexpr int turns = 20;

struct Terms {
    double p = 12, q = -30, first = 0, second = 100, depth = 250, offset = 90;
};

/// The cost to compare with: nothing but the elementary functions, in a plain loop.
void elementary(const std::vector<double>& x, std::vector<double>& t) {
    for (std::size_t i = 0; i < x.size(); ++i)
        t[i] = std::log(x[i]) + std::atan(x[i]) + std::atan(x[i] * 0.5);
}

/// The formula of the sheet as one writes it down.
double scalar_sheet(const Terms& s, double x, double h) {
    const auto level = [&](double shift, double down) {
        const double u1 = (x - s.first - shift) / down;
        const double u2 = (x - s.second - shift) / down;
        return s.p * std::log((u1 * u1 + 1) / (u2 * u2 + 1)) + s.q * (std::atan(u1) - std::atan(u2));
    };
    return level(0, h) - level(s.offset, h + s.depth);
}

void scalar_sheets(const Workspace& workspace, const ModelBody& body, std::vector<float>& t) {
    const Terms terms;
    for (int i = 1; i <= workspace.station_count; ++i) {
        const double x = 0.9 * (workspace.stations(i, column_east) - body.east) -
                         0.3 * (workspace.stations(i, column_north) - body.north);
        const double h = workspace.stations(i, column_sensor) - 90;
        t[static_cast<std::size_t>(i - 1)] = static_cast<float>(scalar_sheet(terms, x, h > 0 ? h : 0.1));
    }
}

Workspace line_of_sheets(int bodies, BodyType type = thick_sheet) {
    Workspace workspace = level_line(stations);
    for (int i = 0; i < bodies; ++i)
        add_body(workspace, type, 8000.0 * (i + 1) / (bodies + 1)).length.value = 0;
    return workspace;
}

void calculate_one(Workspace& workspace, Faults& faults) {
    workspace.body(1).mag_response_valid = false;
    forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults);
}

void sheet_against_elementary(benchmark::State& state) {
    Faults faults;
    Workspace workspace = line_of_sheets(1, static_cast<BodyType>(state.range(0)));
    calculate_one(workspace, faults);
    std::vector<double> x(stations), t(stations);
    std::vector<float> response(stations);
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = 0.01 + 0.03 * static_cast<double>(i);
    BestTime sheet, functions, scalar;
    long allocations = 0;
    for (auto _ : state) {
        for (int turn = 0; turn < turns; ++turn) {
            const long before = allocation_count();
            state.SetIterationTime(sheet.take([&] { calculate_one(workspace, faults); }));
            allocations += allocation_count() - before;
            functions.take([&] { elementary(x, t); });
            scalar.take([&] { scalar_sheets(workspace, workspace.body(1), response); });
            benchmark::DoNotOptimize(t.data());
            benchmark::DoNotOptimize(response.data());
        }
    }
    state.counters["ns_a_station"] = sheet.seconds() * 1e9 / stations;
    state.counters["of_log_and_2_atan"] = sheet.seconds() / functions.seconds();
    state.counters["scalar_over_this"] = scalar.seconds() / sheet.seconds();
    state.counters["allocations"] = static_cast<double>(allocations);
}
BENCHMARK(sheet_against_elementary)->Arg(thin_sheet)->Arg(thick_sheet)->UseManualTime()->Iterations(10);

void one_of_many_sheets(benchmark::State& state) {
    Faults faults;
    Workspace one = line_of_sheets(1);
    Workspace many = line_of_sheets(static_cast<int>(state.range(0)));
    calculate_one(one, faults);
    calculate_one(many, faults);
    BestTime alone, among;
    for (auto _ : state) {
        for (int turn = 0; turn < turns; ++turn) {
            alone.take([&] { calculate_one(one, faults); });
            state.SetIterationTime(among.take([&] { calculate_one(many, faults); }));
        }
    }
    state.counters["of_the_one_body"] = among.seconds() / alone.seconds();
}
BENCHMARK(one_of_many_sheets)->Arg(50)->UseManualTime()->Iterations(10);

void all_sheets(benchmark::State& state) {
    Faults faults;
    const auto bodies = static_cast<int>(state.range(0));
    Workspace workspace = line_of_sheets(bodies);
    workspace.definition.grav_column = 4;
    BestTime all;
    for (auto _ : state) {
        for (int b = 1; b <= bodies; ++b)
            workspace.body(b).mag_response_valid = workspace.body(b).grav_response_valid = false;
        state.SetIterationTime(all.take(
            [&] { forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults); }));
    }
    state.counters["us_a_body"] = all.seconds() * 1e6 / bodies;
}
BENCHMARK(all_sheets)
    ->Arg(1)
    ->Arg(10)
    ->Arg(100)
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace anomalis
