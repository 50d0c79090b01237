// What the map of a large survey and that of its results cost: first, and when another line is chosen or the
// view moves.

#include <benchmark/benchmark.h>
#include <cmath>

#include <QApplication>

#include "chart/ax_grapher.h"
#include "chart/qt/screen_device.h"
#include "intake/survey/survey_index.h"
#include "show/survey_map.h"
#include "survey/map/results_map.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr int line_count = 300;
constexpr int points_a_line = 667;  // a million stations, thinned to what an index keeps

intake::SurveyIndex large_survey() {
    intake::SurveyIndex index;
    index.origin_east = 450000;
    index.origin_north = 7550000;
    for (int i = 0; i < line_count; ++i) {
        intake::SurveyLineInfo line;
        line.name = std::to_string(10010 + 10 * i);
        line.tie = i % 12 == 11;
        line.stations = 3334;
        line.mag_nT = intake::ValueRange{-500, 500};
        for (int p = 0; p < points_a_line; ++p) {
            const double along = 30000.0 * p / points_a_line;
            const double across = 100.0 * i + 8 * std::sin(along / 300 + i);
            const double field =
                400 * std::sin(along / 900) * std::cos(across / 2500) + 25 * std::sin(p * 1.7);
            line.track.push_back({static_cast<float>(line.tie ? across : along),
                                  static_cast<float>(line.tie ? along : across), static_cast<float>(field)});
        }
        index.lines.push_back(std::move(line));
    }
    return index;
}

void a_map_of_300_lines(benchmark::State& state) {
    const intake::SurveyIndex index = large_survey();
    chart::ScreenDevice surface, bar_surface;
    surface.resize(QSize(900, 700), 1.0);
    bar_surface.resize(QSize(92, 700), 1.0);
    chart::AX_Grapher map, bar;
    map.SetSurface(&surface);
    bar.SetSurface(&bar_surface);
    show::set_up_survey_map(map, bar);
    show::SurveyMap survey(map, bar);

    BestTime first, chosen, moved, hit;
    std::size_t line = 0;
    for (auto _ : state) {
        first.take([&] { survey.show(&index); });
        const double seconds = chosen.take([&] { survey.choose(line = (line + 7) % line_count); });
        moved.take([&] {
            map.HandleWheel(0, line % 2 == 0 ? 120 : -120, 6000, 5000);
            survey.view_changed();
        });
        hit.take([&] { benchmark::DoNotOptimize(survey.line_at({6000, 5000})); });
        state.SetIterationTime(seconds);
    }
    state.counters["first_ms"] = first.seconds() * 1e3;
    state.counters["chosen_ms"] = chosen.seconds() * 1e3;
    state.counters["moved_ms"] = moved.seconds() * 1e3;
    state.counters["hit_ms"] = hit.seconds() * 1e3;
    state.counters["first_to_chosen"] = first.seconds() / chosen.seconds();
}
BENCHMARK(a_map_of_300_lines)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Lines 100 m apart over four dykes.
survey::SurveyResults many_results(int lines) {
    survey::SurveyResults results;
    results.identity.name = "many";
    for (int i = 0; i < lines; ++i) {
        const double north = 7550000 + 100.0 * i;
        survey::LineResult& line = results.lines.emplace_back();
        line.line = std::to_string(100010 + 10 * i);
        line.track = {{450000, north}, {480000, north}};
        for (int k = 0; k < 4; ++k) {
            survey::BodyResult& body = line.bodies.emplace_back();
            body.east = 453000 + 7000.0 * k + 15 * std::sin(1.7 * i + k);
            body.north = north;
            body.profile_azimuth = 90;
            const double depth = 30 + 60.0 * k + 10 * std::sin(0.3 * i);
            body.depth_below_ground = {depth, 0.8 * depth, 1.3 * depth};
            body.distance = {body.east - 450000, body.east - 450020, body.east - 449970};
            body.susceptibility = {1000 * std::exp(k + std::sin(2.1 * i)), 0, 0};
        }
    }
    return results;
}

void a_map_of_the_results_of_lines(benchmark::State& state) {
    const auto lines = static_cast<int>(state.range(0));
    const survey::SurveyResults results = many_results(lines);
    chart::ScreenDevice surface, key_surface;
    surface.resize(QSize(900, 700), 1.0);
    key_surface.resize(QSize(190, 700), 1.0);
    chart::AX_Grapher map, key;
    map.SetSurface(&surface);
    key.SetSurface(&key_surface);
    survey::set_up_results_map(map, key);
    survey::ResultsMap results_map(map, key);

    BestTime first, chosen, moved, hit;
    std::size_t line = 0;
    for (auto _ : state) {
        first.take([&] { results_map.show(&results); });
        const double seconds =
            chosen.take([&] { results_map.choose(line = (line + 7) % static_cast<std::size_t>(lines), 1); });
        moved.take([&] {
            map.HandleWheel(0, line % 2 == 0 ? 120 : -120, 6000, 5000);
            results_map.view_changed();
        });
        hit.take([&] { benchmark::DoNotOptimize(results_map.hit({6000, 5000})); });
        state.SetIterationTime(seconds);
    }
    state.counters["first_ms"] = first.seconds() * 1e3;
    state.counters["chosen_ms"] = chosen.seconds() * 1e3;
    state.counters["moved_ms"] = moved.seconds() * 1e3;
    state.counters["hit_ms"] = hit.seconds() * 1e3;
}
BENCHMARK(a_map_of_the_results_of_lines)
    ->Arg(300)
    ->Arg(10000)
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
