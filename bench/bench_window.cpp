// A step of a bar up to the painted charts against its parts, and the way from a start to the shown window.

#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <sys/resource.h>

#include <QTimer>

#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "core/model_mark.h"
#include "filter/filters.h"
#include "forward/classic/gravity_response.h"
#include "forward/classic/mag_response.h"
#include "forward/station_columns.h"
#include "timing.h"
#include "window/shell/look.h"
#include "window_sample.h"

namespace anomalis {
namespace {

constexpr int stations = 8193;
constexpr int sheets = 50;
constexpr int moved = 25;

/// The responses of all bodies, added once a channel.
void add_responses(Workspace& w, std::vector<float>& sum) {
    for (const int column : {1, 2}) {
        std::fill(sum.begin(), sum.end(), 0.0F);
        for (int number = 1; number <= w.body_count; ++number) {
            const float* response = forward::response_column(w, w.body(number), column);
            for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += response[i];
        }
        benchmark::DoNotOptimize(sum.data());
    }
}

void filter_both(Workspace& w, Faults& faults) {
    invalidate_filtered_data(1, w);
    filter::filter_data(w, channel_mag, stage_calculated, w.mag.data, faults);
    filter::filter_data(w, channel_grav, stage_calculated, w.grav.data, faults);
}

/// The curves are drawn anew, in a colour that is hardly another one: charts that are as they were are left.
void redraw_curves(ShownWindow& window) {
    window.session.preferences.calculated.colour ^= 1;
    window.view().redraw();
    ShownWindow::settle();
}

void a_step_of_a_bar(benchmark::State& state) {
    const WorkFolder folder;
    ShownWindow window(write_line(folder, stations, sheets));
    Workspace& w = window.session.workspace;
    window.form->workbench().view.current_body = moved;
    std::vector<float> sum(stations);
    Faults faults;
    BestTime step, response, addition, filters, redraw, undo;
    int turn = 0;
    for (auto _ : state) {
        const double seconds = step.take([&] { window.scroll(param_dip, ++turn % 2 == 0 ? 1 : -1); });
        response.take([&] {
            forward::calculate_mag_response(w, moved, faults);
            forward::calculate_gravity_response(w, moved, faults);
        });
        addition.take([&] { add_responses(w, sum); });
        filters.take([&] { filter_both(w, faults); });
        redraw.take([&] { redraw_curves(window); });
        undo.take([&] { window.undo(); });
        state.SetIterationTime(seconds);
    }
    const double parts = response.seconds() + addition.seconds() + filters.seconds() + redraw.seconds();
    state.counters["step_ms"] = step.seconds() * 1e3;
    state.counters["response_ms"] = response.seconds() * 1e3;
    state.counters["addition_ms"] = addition.seconds() * 1e3;
    state.counters["filters_ms"] = filters.seconds() * 1e3;
    state.counters["redraw_ms"] = redraw.seconds() * 1e3;
    state.counters["step_to_parts"] = step.seconds() / parts;
    state.counters["undo_to_step"] = undo.seconds() / step.seconds();
    state.counters["messages"] =
        static_cast<double>(window.prompts.count()) + static_cast<double>(faults.entries().size());
}
BENCHMARK(a_step_of_a_bar)->Iterations(60)->UseManualTime()->Unit(benchmark::kMillisecond);

enum Kind { classic_prisms, exact_prisms, classic_pipes, exact_pipes };
constexpr std::array kind_names{"classic prisms", "exact prisms", "classic pipes", "exact pipes"};

std::string write_bodies(const WorkFolder& folder, int count, int bodies, Kind kind, float width) {
    return write_line(folder, count, bodies, [&](Workspace& w, ModelBody& body) {
        const bool pipes = kind == classic_pipes || kind == exact_pipes;
        w.formulas = kind == exact_prisms || kind == exact_pipes ? Formulas::exact : Formulas::classic;
        if (pipes) body.type = pipe;
        body.width.value = width;
        body.length.value = 500;
        body.depth_extent.value = 300;
        body.dip.value = pipes ? 60.0F : 70.0F;
    });
}

/// The table of a bar step: what it takes up to the painted charts, what of that is painting the curves, what
/// a redraw takes that finds nothing changed, and what the picture of another window of the line takes.
void a_step_over_sizes(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0)), bodies = static_cast<int>(state.range(1));
    const auto kind = static_cast<Kind>(state.range(2));
    const WorkFolder folder;
    ShownWindow window(write_bodies(folder, count, bodies, kind, static_cast<float>(state.range(3))));
    window.form->workbench().view.current_body = (bodies + 1) / 2;
    // A pipe that stands upright looks the same from all sides: its depth is what changes the curves.
    const ParamCode moving = kind == classic_pipes || kind == exact_pipes ? param_top : param_dip;
    BestTime step, redraw, same, zoom;
    int turn = 0;
    for (auto _ : state) {
        state.SetIterationTime(step.take([&] { window.scroll(moving, ++turn % 2 == 0 ? 1 : -1); }));
        redraw.take([&] { redraw_curves(window); });
        same.take([&] {
            window.view().redraw();
            ShownWindow::settle();
        });
        zoom.take([&] {
            window.view().choose_zoom_factor(turn % 2);
            ShownWindow::settle();
        });
    }
    state.SetLabel(kind_names.at(static_cast<std::size_t>(kind)));
    state.counters["step_ms"] = step.seconds() * 1e3;
    state.counters["painting"] = redraw.seconds() / step.seconds();
    state.counters["redraw_ms"] = redraw.seconds() * 1e3;
    state.counters["same_ms"] = same.seconds() * 1e3;
    state.counters["zoom_ms"] = zoom.seconds() * 1e3;
    state.counters["pictures_a_second"] = 1 / std::max(redraw.seconds(), zoom.seconds());
    state.counters["messages"] = static_cast<double>(window.prompts.count());
}
BENCHMARK(a_step_over_sizes)
    ->ArgNames({"stations", "bodies", "kind", "width"})
    ->ArgsProduct(
        {{stations}, {sheets}, {classic_prisms, exact_prisms, classic_pipes, exact_pipes}, {100, 5, 1}})
    ->ArgsProduct({{1001, 100001}, {sheets}, {exact_prisms}, {100}})
    ->ArgsProduct({{stations}, {1, 500}, {exact_prisms}, {100}})
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(a_step_over_sizes)
    ->ArgNames({"stations", "bodies", "kind", "width"})
    ->ArgsProduct({{1000001}, {1, 10}, {exact_prisms}, {100}})
    ->ArgsProduct({{3000001}, {1}, {exact_prisms}, {100}})
    ->Iterations(10)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// Depth, dip, width and susceptibility of all bodies in 300 models, and a fan over the whole line.
std::shared_ptr<const Ensemble> ensemble_of(const Workspace& w) {
    constexpr int models = 300;
    Ensemble ensemble;
    for (int number = 1; number <= w.body_count; ++number)
        for (const ParamCode code : {param_top, param_dip, param_width, param_susc})
            ensemble.parameters.push_back(
                {.body = number, .param_code = code, .value = body_param(w.body(number), code).value});
    ensemble.samples.resize(models);
    for (int i = 0; i < models; ++i)
        for (const EnsembleParameter& p : ensemble.parameters)
            ensemble.samples[static_cast<std::size_t>(i)].values.push_back(
                p.value * (1 + 0.2F * static_cast<float>(i) / models));
    for (const std::int32_t channel : {channel_mag, channel_grav}) {
        const auto curve = w.channel(channel).data.row(w.residual_row, stage_calculated);
        EnsembleFan& fan = ensemble.fans.emplace_back();
        fan.channel = channel;
        fan.first_station = 1;
        for (const float value : curve.first(static_cast<std::size_t>(w.station_count))) {
            fan.lower.push_back(value - 1);
            fan.upper.push_back(value + 1);
        }
    }
    ensemble.model_mark = model_mark(w);
    return std::make_shared<const Ensemble>(std::move(ensemble));
}

/// Ghosts and fan while they are in force, and a step of a bar that has taken them away.
void a_redraw_with_ghosts(benchmark::State& state) {
    const WorkFolder folder;
    ShownWindow window(write_line(folder, stations, sheets));
    window.form->workbench().view.current_body = moved;
    BestTime plain, ghosts, step;
    const auto redraw = [&] {
        window.view().redraw();
        ShownWindow::settle();
    };
    for (int i = 0; i < 5; ++i) plain.take(redraw);
    Workspace& w = window.session.workspace;
    int turn = 0;
    for (auto _ : state) {
        w.ensemble = ensemble_of(w);
        window.form->workbench().forget_marks();
        state.SetIterationTime(ghosts.take(redraw));
        const int direction = ++turn % 2 == 0 ? 1 : -1;  // a step back would bring the ghosts back
        window.scroll(param_dip, direction);
        step.take([&] { window.scroll(param_dip, direction); });
    }
    state.counters["plain_ms"] = plain.seconds() * 1e3;
    state.counters["ghosts_ms"] = ghosts.seconds() * 1e3;
    state.counters["step_ms"] = step.seconds() * 1e3;
    state.counters["messages"] = static_cast<double>(window.prompts.count());
}
BENCHMARK(a_redraw_with_ghosts)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Processor seconds of the children that have ended.
double children_seconds() {
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Runs this program anew so that it shows the window and ends; returns the wall-clock seconds until it was
/// shown and the memory it then has.
bool start_once(const std::string& program, const std::string& argument, double& seconds, double& megabytes) {
    const auto start = std::chrono::steady_clock::now();
    FILE* child = ::popen(("'" + program + "' --shown '" + argument + "'").c_str(), "r");
    if (!child) return false;
    std::array<char, 128> line{};
    const bool shown = std::fgets(line.data(), static_cast<int>(line.size()), child) != nullptr;
    seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    megabytes = shown ? std::strtod(line.data(), nullptr) : 0;
    return ::pclose(child) == 0 && shown;
}

void a_cold_start(benchmark::State& state, const char* example) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    double best = 1e9, best_processor = 1e9, most = 0;
    for (auto _ : state) {
        double seconds = 0, megabytes = 0;
        const double before = children_seconds();
        if (!start_once(program, example, seconds, megabytes)) {
            state.SkipWithError("the window was not shown");
            return;
        }
        state.SetIterationTime(seconds);
        best = std::min(best, seconds);
        best_processor = std::min(best_processor, children_seconds() - before);
        most = std::max(most, megabytes);
    }
    state.counters["start_ms"] = best * 1e3;
    state.counters["processor_ms"] = best_processor * 1e3;  // without what other programs take
    state.counters["resident_mb"] = most;
}
BENCHMARK_CAPTURE(a_cold_start, empty, "")->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(a_cold_start, with_an_example, ANOMALIS_EXAMPLES "/dyke_swarm.axm")
    ->Iterations(5)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// Tells its memory once the window, and the example in it, is painted.
int show_window(QApplication& application, const char* example) {
    window::apply_look(application);
    QuietPrompts prompts;
    Session session(prompts, Settings());
    window::Form_anomalis form(session, {});
    form.show();
    if (example[0] != '\0') form.open_example(example);
    ShownWindow::settle();
    std::cout << resident_megabytes() << std::endl;
    return 0;
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--shown") == 0) return anomalis::show_window(application, argv[2]);
    anomalis::window::apply_look(application);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
