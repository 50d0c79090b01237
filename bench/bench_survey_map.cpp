// What the map of a large survey costs: first, and when another line is chosen or the view moves.

#include <benchmark/benchmark.h>
#include <cmath>

#include <QApplication>

#include "chart/ax_grapher.h"
#include "chart/qt/screen_device.h"
#include "intake/survey/survey_index.h"
#include "show/survey_map.h"
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

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
