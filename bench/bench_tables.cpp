// Tables and dumps against the same bytes put together number by number: through patterns, a text a number,
// and by the formatted writes of the C library.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <limits>
#include <string>

#include "batch/batch_prompts.h"
#include "batch/dump_json.h"
#include "core/numbers.h"
#include "core/threads.h"
#include "core/workspace.h"
#include "output/clean_tables.h"
#include "output/tables.h"
#include "quiet_prompts.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int channel_columns = 8;

Workspace line_of(int stations) {
    QuietPrompts prompts;
    Workspace workspace;
    initialise_workspace(workspace, prompts);
    workspace.definition.data_file = "line.dat";
    workspace.definition.mag_column = 3;
    workspace.definition.grav_column = 4;
    workspace.station_count = stations;
    workspace.stations.assign(stations);
    workspace.distances.assign(stations);
    workspace.mag.data.assign(stations);
    workspace.grav.data.assign(stations);
    for (int i = 1; i <= stations; ++i) {
        workspace.stations(i, column_east) = 412345.6785 + 0.73 * i;
        workspace.stations(i, column_north) = 7123456.25 - 0.31 * i;
        workspace.stations(i, column_sensor) = 80.1 + std::sin(i * 0.01);
        workspace.distances[i] = 0.79 * i;
        for (int row = row_raw; row <= row_total_gradient; ++row)
            for (const int stage : {stage_observed, stage_calculated}) {
                const double wave = std::sin(0.37 * i * row) / stage;
                workspace.mag.data(i, row, stage) =
                    static_cast<float>((row == row_raw ? 56000 : 0) + 400 * wave);
                workspace.grav.data(i, row, stage) = static_cast<float>(3 * wave);
            }
    }
    return workspace;
}

/// The rows of the profile table; place(value, decimals) and reading(value) append a field.
template <class Place, class Reading>
void each_field(const Workspace& w, std::string& text, Place&& place, Reading&& reading) {
    for (int i = 1; i <= w.station_count; ++i) {
        place(w.stations(i, column_east), 3);
        text += ", ";
        place(w.stations(i, column_north), 3);
        text += ", ";
        place(w.stations(i, column_sensor), 2);
        text += ", ";
        place(w.distances[i], 3);
        for (const ChannelTable* data : {&w.mag.data, &w.grav.data})
            for (const int stage : {stage_observed, stage_calculated})
                for (const int row : {row_raw, row_smoothed, row_residual, row_gradient})
                    reading((*data)(i, row, stage));
        text += "\r\n";
    }
}

std::string rows_by_patterns(const Workspace& workspace) {
    std::string text;
    each_field(
        workspace, text,
        [&](double value, int decimals) { text += format_number(value, decimals == 3 ? "0.000" : "0.00"); },
        [&](float value) { text += ", " + format_number(value, "0.00"); });
    return text;
}

std::string rows_by_formatted_writes(const Workspace& workspace) {
    std::string text;
    char field[64];
    const auto add = [&](int length) { text.append(field, static_cast<std::size_t>(length)); };
    each_field(
        workspace, text,
        [&](double value, int decimals) { add(std::snprintf(field, sizeof field, "%.*f", decimals, value)); },
        [&](float value) { add(std::snprintf(field, sizeof field, ", %.2f", static_cast<double>(value))); });
    return text;
}

double wall_seconds(const std::function<void()>& work) {
    double best = std::numeric_limits<double>::max();
    for (int turn = 0; turn < 5; ++turn) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best =
            std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

/// How much sooner all cores are done than one.
double core_ratio(const std::function<void()>& work) {
    limit_threads(1);
    const double alone = wall_seconds(work);
    limit_threads(0);
    return alone / wall_seconds(work);
}

const TextSink nowhere = [](std::string_view piece) { benchmark::DoNotOptimize(piece.data()); };

void profile_table(benchmark::State& state) {
    const Workspace workspace = line_of(static_cast<int>(state.range(0)));
    const double numbers = static_cast<double>(workspace.station_count) * (4 + 2 * channel_columns);
    const auto put = [&] { output::put_profile_table(workspace, nowhere); };
    BestTime table, patterns, writes;
    std::string expected;
    for (auto _ : state) {
        state.SetIterationTime(table.take(put));
        patterns.take([&] { expected = rows_by_patterns(workspace); });
        writes.take([&] { benchmark::DoNotOptimize(rows_by_formatted_writes(workspace)); });
    }
    if (!output::profile_table_text(workspace).ends_with("\r\n" + expected))
        state.SkipWithError("not the same bytes");
    state.counters["ns_a_number"] = table.seconds() * 1e9 / numbers;
    state.counters["rate_to_patterns"] = patterns.seconds() / table.seconds();
    state.counters["rate_to_formatted_writes"] = writes.seconds() / table.seconds();
    state.counters["all_cores_to_one"] = core_ratio(put);
}

void clean_profile_table(benchmark::State& state) {
    const Workspace workspace = line_of(static_cast<int>(state.range(0)));
    const double numbers = static_cast<double>(workspace.station_count) * (4 + 2 * channel_columns);
    const auto put = [&] { output::put_clean_profile_table(workspace, nowhere); };
    BestTime table;
    for (auto _ : state) state.SetIterationTime(table.take(put));
    state.counters["ns_a_number"] = table.seconds() * 1e9 / numbers;
    state.counters["all_cores_to_one"] = core_ratio(put);
}

/// 1000 stations below so many bodies; what is in memory at a time is the greatest piece, a few of them.
void dump_of_bodies(benchmark::State& state) {
    Workspace workspace = line_of(1000);
    const auto bodies = static_cast<int>(state.range(0));
    workspace.bodies.resize(static_cast<std::size_t>(bodies) + 1);
    workspace.body_count = workspace.body_capacity = bodies;
    for (int number = 1; number <= bodies; ++number) workspace.body(number).response.assign(1000);
    const batch::BatchPrompts told(std::cerr);
    std::size_t greatest = 0, bytes = 0;
    const TextSink measure = [&](std::string_view piece) {
        greatest = std::max(greatest, piece.size());
        bytes += piece.size();
    };
    const auto put = [&] { batch::put_dump(workspace, {}, told, measure); };
    BestTime dump;
    for (auto _ : state) {
        bytes = 0;
        state.SetIterationTime(dump.take(put));
    }
    state.counters["MB"] = static_cast<double>(bytes) * 1e-6;
    state.counters["greatest_piece_MB"] = static_cast<double>(greatest) * 1e-6;
    state.counters["ns_a_byte"] = dump.seconds() * 1e9 / static_cast<double>(bytes);
    state.counters["all_cores_to_one"] = core_ratio(put);
}

void over_sizes(benchmark::internal::Benchmark* bench) {
    bench->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
}
BENCHMARK(profile_table)->ArgName("stations")->Arg(100)->Arg(10'000)->Arg(300'000)->Apply(over_sizes);
BENCHMARK(clean_profile_table)->ArgName("stations")->Arg(100)->Arg(10'000)->Arg(300'000)->Apply(over_sizes);
BENCHMARK(dump_of_bodies)->ArgName("bodies")->Arg(10)->Arg(100)->Arg(1000)->Apply(over_sizes);

}  // namespace
}  // namespace anomalis
