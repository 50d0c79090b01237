// One evaluation of the objective against its parts, whole runs, and the two methods on the examples.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "core/body_parameters.h"
#include "core/session.h"
#include "filter/filters.h"
#include "flow/inversion_report.h"
#include "forward/classic/mag_response.h"
#include "intake/load.h"
#include "intake/profile.h"
#include "inversion/perform.h"
#include "level_line.h"
#include "model/misfit.h"
#include "model/refresh_model.h"
#include "quiet_prompts.h"
#include "timing.h"
#include "workspace_file/axm.h"

namespace anomalis {
namespace {

/// A line with magnetics alone and sheets spread along it, whose data are those of a slightly other model.
struct Line {
    QuietPrompts prompts;
    Session session{prompts, Settings()};

    Line(int stations, int bodies) {
        session.workspace = level_line(stations);
        Workspace& w = session.workspace;
        w.definition.z_column = 4;
        w.first_station = 1;
        w.last_station = stations;
        w.last_distance = stations - 1;
        w.mag.base = 0;
        intake::setup_graphics_arrays(w, prompts);
        for (int i = 0; i < bodies; ++i) {
            ModelBody& body = add_body(w, thin_sheet, (i + 0.5) * stations / bodies);
            body.vary = 1;
            body.length.value = 0;
            body.width.value = 5;
            for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
            body.distance.vary = body.top.vary = body.dip.vary = body.susc.vary = 1;
            body.susc.max = 400000;
        }
        model::finish_load(session);
        model::refresh_model(session);
        const auto calculated = w.mag.data.row(row_raw, stage_calculated);
        std::copy(calculated.begin(), calculated.end(), w.mag.data.row(row_raw, stage_observed).begin());
        for (int i = 1; i <= bodies; ++i) {
            w.body(i).distance.value += 3;
            w.body(i).top.value -= 4;
            w.body(i).dip.value += 5;
            w.body(i).susc.value *= 0.9F;
            w.body(i).mag_response_valid = w.body(i).grav_response_valid = false;
        }
        invalidate_filtered_data(0, w);
        model::refresh_model(session);
    }
};

void one_evaluation(benchmark::State& state) {
    Line line(8193, 50);
    Workspace& w = line.session.workspace;
    ModelBody& body = w.body(25);
    std::vector<float> sum(8193);
    Faults faults;
    BestTime evaluation, response, adding, filtering;
    for (auto _ : state) {
        body.dip.value += 0.01F;
        const double seconds = evaluation.take([&] {
            body.mag_response_valid = body.grav_response_valid = false;
            model::evaluate_model_misfit(w, line.session.inversion, w.mag.data, w.grav.data, faults);
        });
        response.take([&] {
            body.last_calculated = -1.0F;
            forward::calculate_mag_response(w, 25, faults);
        });
        adding.take([&] {
            std::fill(sum.begin(), sum.end(), 0.0F);
            for (int i = 1; i <= w.body_count; ++i) {
                const auto row = w.body(i).response.column(1);
                for (std::size_t k = 0; k < sum.size(); ++k) sum[k] += row[k];
            }
            benchmark::DoNotOptimize(sum.data());
            benchmark::ClobberMemory();
        });
        filtering.take([&] {
            w.mag.calculated_filtered = false;
            filter::filter_data(w, channel_mag, stage_calculated, w.mag.data, faults);
        });
        state.SetIterationTime(seconds);
    }
    const double parts = response.seconds() + adding.seconds() + filtering.seconds();
    state.counters["ratio_to_parts"] = evaluation.seconds() / parts;
    state.counters["response_us"] = response.seconds() * 1e6;
    state.counters["adding_us"] = adding.seconds() * 1e6;
    state.counters["filtering_us"] = filtering.seconds() * 1e6;
}
BENCHMARK(one_evaluation)->Iterations(300)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// 25 sweeps at most over four free parameters a body.
void a_run(benchmark::State& state) {
    const auto bodies = static_cast<int>(state.range(0));
    const auto stations = static_cast<int>(state.range(1));
    for (auto _ : state) {
        state.PauseTiming();
        auto line = std::make_unique<Line>(stations, bodies);
        state.ResumeTiming();
        const flow::InversionReport report = flow::run_inversion(line->session, flow::InvertOptions{});
        state.counters["evaluations"] = static_cast<double>(report.result.evaluations);
        state.counters["us_an_evaluation"] =
            report.seconds * 1e6 / static_cast<double>(report.result.evaluations);
    }
}
BENCHMARK(a_run)
    ->ArgNames({"bodies", "stations"})
    ->Args({10, 2000})
    ->Args({1, 2000})
    ->Args({5, 2000})
    ->Args({20, 2000})
    ->Args({10, 1000})
    ->Args({10, 4000})
    ->Args({10, 8000})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// When a run tells what, by the time that a person waits.
struct TimingObserver : inversion::RunObserver {
    using Clock = std::chrono::steady_clock;

    bool working(double) override {
        heard();
        return false;
    }
    void evaluated() override { heard(); }
    void progress(const inversion::InversionProgress&) override { last_iteration = Clock::now(); }
    void stage(inversion::RunStage stage) override { in_statistics |= stage == inversion::RunStage::errors; }
    void heard() {
        const Clock::time_point now = Clock::now();
        double& longest = in_statistics ? longest_in_statistics : longest_in_fit;
        longest = std::max(longest, std::chrono::duration<double>(now - last).count());
        last = now;
    }

    Clock::time_point last = Clock::now(), last_iteration = last;
    double longest_in_fit = 0, longest_in_statistics = 0;
    bool in_statistics = false;
};

/// 160 bodies with six free parameters each: how long the end is after the last iteration, as a part of the
/// whole, and how soon a stop would be answered.
void many_parameters(benchmark::State& state, Formulas formulas, float noise) {
    for (auto _ : state) {
        state.PauseTiming();
        Line line(2000, 160);
        Workspace& w = line.session.workspace;
        w.formulas = formulas;
        for (int i = 1; i <= 160; ++i) {
            ModelBody& body = w.body(i);
            body.strike.vary = body.width.vary = 1;
            body.mag_response_valid = false;
        }
        auto observed = w.mag.data.row(row_raw, stage_observed);
        for (std::size_t i = 0; i < observed.size(); ++i)
            observed[i] += noise * std::sin(static_cast<float>(i * i % 1013));
        invalidate_filtered_data(0, w);
        model::refresh_model(line.session);
        state.ResumeTiming();
        TimingObserver observer;
        inversion::RunResult result;
        const auto start = TimingObserver::Clock::now();
        inversion::perform_inversion(w, line.session.inversion,
                                     {.max_iterations = 25, .method = InversionMethod::least_squares},
                                     observer, result);
        observer.heard();
        const auto end = TimingObserver::Clock::now();
        const auto part = std::chrono::duration<double>(end - observer.last_iteration).count();
        state.counters["iterations"] = result.iterations;
        state.counters["parameters"] = line.session.inversion.inversion_params.count();
        state.counters["end_ms"] = part * 1e3;
        state.counters["end_to_whole"] = part / std::chrono::duration<double>(end - start).count();
        state.counters["answer_in_fit_ms"] = observer.longest_in_fit * 1e3;
        state.counters["answer_in_statistics_ms"] = observer.longest_in_statistics * 1e3;
    }
}
BENCHMARK_CAPTURE(many_parameters, classic, Formulas::classic, 5.0F)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(many_parameters, exact, Formulas::exact, 5.0F)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// A run at full size whose person presses Stop: how soon the program answers (the longest stretch between
/// two yields), and how long the run goes on (the iteration that it is in). Ratios are to one evaluation.
void a_stop(benchmark::State& state, inversion::InversionMethod method) {
    struct StoppingPrompts : QuietPrompts {
        Session* session = nullptr;
        double last = cpu_seconds(), asked = 0, longest = 0;
        long yields = 0;
        void yield() override {
            const double now = cpu_seconds();
            longest = std::max(longest, now - last);
            last = now;
            if (++yields == 20) {
                session->inversion.stop_inversion = true;
                asked = now;
            }
        }
    };
    for (auto _ : state) {
        Line line(8193, 50);
        StoppingPrompts prompts;
        Session session(prompts, Settings());
        session.workspace = line.session.workspace;
        prompts.session = &session;
        model::finish_load(session);
        model::refresh_model(session);
        flow::InvertOptions options;
        options.method = method;
        const double start = prompts.last = cpu_seconds();
        const flow::InversionReport report = flow::run_inversion(session, options);
        const double end = cpu_seconds();
        const double one = (end - start) / static_cast<double>(report.result.evaluations);
        state.counters["answer_ms"] = prompts.longest * 1e3;
        state.counters["answer_to_evaluation"] = prompts.longest / one;
        state.counters["end_of_run_ms"] = (end - prompts.asked) * 1e3;
        state.counters["iterations"] = report.result.iterations;
        state.counters["evaluations"] = static_cast<double>(report.result.evaluations);
    }
}
BENCHMARK_CAPTURE(a_stop, sweep, inversion::InversionMethod::sweep)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(a_stop, least_squares, inversion::InversionMethod::least_squares)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// The two methods from the same start. The last misfits and the evaluations make the table.
void example(benchmark::State& state, const char* name, inversion::InversionMethod method) {
    const std::string path = std::string(ANOMALIS_EXAMPLES) + "/" + name + ".axm";
    for (auto _ : state) {
        QuietPrompts prompts;
        Session session(prompts, Settings());
        initialise_workspace(session.workspace, prompts);
        if (workspace_file::read_model_parameters(0, session.workspace, path, session.settings, prompts) !=
                0 ||
            intake::load_locations(session.workspace, prompts) != 0) {
            state.SkipWithError("the example does not load");
            return;
        }
        model::finish_load(session);
        model::refresh_model(session);
        flow::InvertOptions options;
        options.method = method;
        const double begin = cpu_seconds();
        const flow::InversionReport report = flow::run_inversion(session, options);
        state.counters["run_ms"] = (cpu_seconds() - begin) * 1e3;
        state.counters["parameters"] = static_cast<double>(report.parameters.size());
        state.counters["first_misfit"] = report.result.initial_misfit.value_or(MisfitPair{})[0];
        state.counters["last_misfit"] = report.result.misfit_pair[0];
        state.counters["evaluations"] = static_cast<double>(report.result.evaluations);
    }
}
BENCHMARK_CAPTURE(example, dyke_swarm_sweep, "dyke_swarm", inversion::InversionMethod::sweep)->Iterations(1);
BENCHMARK_CAPTURE(example, dyke_swarm_least_squares, "dyke_swarm", inversion::InversionMethod::least_squares)
    ->Iterations(1);
BENCHMARK_CAPTURE(example, fault_block_sweep, "fault_block", inversion::InversionMethod::sweep)
    ->Iterations(1);
BENCHMARK_CAPTURE(example, fault_block_least_squares, "fault_block",
                  inversion::InversionMethod::least_squares)
    ->Iterations(1);
BENCHMARK_CAPTURE(example, buried_cable_sweep, "buried_cable", inversion::InversionMethod::sweep)
    ->Iterations(1);
BENCHMARK_CAPTURE(example, buried_cable_least_squares, "buried_cable",
                  inversion::InversionMethod::least_squares)
    ->Iterations(1);

}  // namespace
}  // namespace anomalis
