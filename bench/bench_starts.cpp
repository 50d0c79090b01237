// From how far off a fit finds the answer: random starts around the best model of each example, spread so
// many times as far as the shipped start is off. Beside it a textbook fit with difference derivatives.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/body_parameters.h"
#include "core/session.h"
#include "intake/load.h"
#include "intake/profile.h"
#include "inversion/perform.h"
#include "level_line.h"
#include "model/refresh_model.h"
#include "quiet_prompts.h"
#include "textbook_fit.h"
#include "timing.h"
#include "workspace_file/axm.h"

namespace anomalis {
namespace {

using inversion::InversionMethod;
using inversion::RunRequest;
using inversion::RunResult;

/// An example in memory.
struct Example {
    QuietPrompts prompts;
    Session session{prompts, Settings()};
    std::int32_t channel = channel_mag;
    long to_convergence = 0;  ///< models evaluated by the last run until its fit ended

    Example(const std::string& name, bool all_free, std::int32_t wanted) : channel(wanted) {
        Workspace& w = session.workspace;
        initialise_workspace(w, prompts);
        workspace_file::read_model_parameters(0, w, std::string(ANOMALIS_EXAMPLES) + "/" + name + ".axm",
                                              session.settings, prompts);
        intake::load_locations(w, prompts);
        model::finish_load(session);
        w.formulas = Formulas::exact;
        w.mag.noise = 1;
        w.grav.noise = 0.02F;
        for (int i = 1; i <= w.body_count; ++i) {
            ModelBody& body = w.body(i);
            body.susc.max = unset;
            if (!all_free) continue;
            for (BodyParam* param : {&body.distance, &body.top, &body.dip, &body.width, &body.susc})
                param->vary = 1;
            if (body.depth_extent.value > 0) body.depth_extent.vary = 1;
        }
        model::refresh_model(session);
    }

    std::vector<BodyParam*> free() {
        std::vector<BodyParam*> list;
        for (int i = 1; i <= session.workspace.body_count; ++i)
            for (const BodyParameter& row : body_parameters()) {
                BodyParam& param = session.workspace.body(i).*row.slot;
                if (param.vary == 1.0F && (row.code != param_density || channel != channel_mag))
                    list.push_back(&param);
            }
        return list;
    }
    std::vector<float> values() {
        std::vector<float> list;
        for (const BodyParam* param : free()) list.push_back(param->value);
        return list;
    }
    void put(const std::vector<float>& values) {
        const std::vector<BodyParam*> list = free();
        for (std::size_t i = 0; i < list.size(); ++i) list[i]->value = values[i];
        reset_calculated_data(session.workspace, prompts);
        model::refresh_model(session);
    }
    RunResult run(int starts, InversionMethod method = InversionMethod::least_squares) {
        RunResult result;
        struct Counter : inversion::RunObserver {
            long evaluated_models = 0, to_convergence = 0;
            void evaluated() override { ++evaluated_models; }
            void progress(const inversion::InversionProgress&) override { to_convergence = evaluated_models; }
        } observer;
        session.inversion.inversion_channel = channel == channel_grav ? channel_grav : channel_mag;
        RunRequest request{.channel = channel, .max_iterations = 50, .method = method};
        request.starts = starts;
        inversion::perform_inversion(session.workspace, session.inversion, request, observer, result);
        to_convergence = observer.to_convergence;
        return result;
    }
};

/// What is off by a factor is spread by factors.
std::vector<float> random_start(Example& example, const std::vector<float>& best,
                                const std::vector<float>& shipped, double spread, std::mt19937& random) {
    std::uniform_real_distribution<double> uniform(-1, 1);
    std::vector<float> start = best;
    const std::vector<BodyParam*> list = example.free();
    for (std::size_t i = 0; i < best.size(); ++i) {
        const double u = uniform(random);
        const double here = best[i], offset = static_cast<double>(shipped[i]) - here;
        bool size = false, dip = false, top = false;
        for (int b = 1; b <= example.session.workspace.body_count; ++b) {
            const ModelBody& body = example.session.workspace.body(b);
            size |= list[i] == &body.susc || list[i] == &body.width || list[i] == &body.depth_extent;
            dip |= list[i] == &body.dip;
            top |= list[i] == &body.top;
        }
        // A parameter that the shipped start has right is put off by a quarter.
        double ratio = std::abs(std::log(std::abs(static_cast<double>(shipped[i]) / here)));
        if (ratio < 0.1) ratio = 0.25;
        start[i] =
            static_cast<float>(size ? here * std::exp(spread * ratio * u) : here + spread * offset * u);
        // Below the lowest ground.
        if (top) start[i] = std::min(start[i], example.session.workspace.dtm_min - 1);
        if (dip) start[i] = std::clamp(start[i], 5.0F, 175.0F);
    }
    return start;
}

double wall_seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Dykes along a line of 2000 stations; the data are theirs with noise, and each is then put off.
void make_line(Session& session, int bodies) {
    session.workspace = level_line(2000);
    Workspace& w = session.workspace;
    w.definition.z_column = 4;
    w.first_station = 1;
    w.last_station = 2000;
    w.first_distance = w.distances[1];
    w.last_distance = w.distances[2000];
    w.mag.base = 0;
    w.formulas = Formulas::exact;
    w.mag.regional_degree = 1;
    intake::setup_graphics_arrays(w, session.prompts);
    for (int i = 0; i < bodies; ++i) {
        ModelBody& body = add_body(w, thick_sheet, (i + 0.5) * 2000 / bodies);
        body.vary = 1;
        body.length.value = 0;
        body.width.value = 4;
        body.depth_extent.value = 40;
        body.top.value = 140;
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        for (BodyParam* param :
             {&body.distance, &body.top, &body.dip, &body.width, &body.depth_extent, &body.susc})
            param->vary = 1;
    }
    model::finish_load(session);
    model::refresh_model(session);
    std::mt19937 random(3);
    for (int i = 1; i <= 2000; ++i)
        w.mag.data(i, row_raw, stage_observed) =
            w.mag.data(i, row_raw, stage_calculated) +
            static_cast<float>(static_cast<double>(random()) / 4294967296.0 - 0.5);
    for (int i = 1; i <= bodies; ++i) {
        ModelBody& body = w.body(i);
        body.distance.value += i % 2 == 0 ? 2.0F : -1.5F;
        body.top.value -= 3;
        body.dip.value += 8;
        body.width.value *= 1.3F;
        body.depth_extent.value *= 0.8F;
        body.susc.value *= 0.8F;
    }
    invalidate_filtered_data(0, w);
    reset_calculated_data(w, session.prompts);
    model::refresh_model(session);
}

struct Case {
    const char* name;
    bool all_free;
    std::int32_t channel = channel_mag;
};
constexpr Case cases[] = {{"dyke_swarm", false},
                          {"dyke_swarm", true},
                          {"fault_block", false},
                          {"fault_block", false, channel_joint},
                          {"buried_cable", false}};

/// The models that the examples were made from: free parameters of each body in their order.
std::vector<float> truth_of(const Case& tested) {
    const std::string name = tested.name;
    if (name == "buried_cable") return {31.4F, 16.9F, 35, 6500};
    if (name == "fault_block" && tested.channel == channel_joint)
        return {507, 380, 62, 9000, 0.28F, 5210, 240, 112, 12000, 0.28F, 3153, 470, 62, 45000, 0.35F};
    if (name == "fault_block") return {507, 380, 62, 9000, 5210, 240, 112, 12000, 3153, 470, 62, 45000};
    if (!tested.all_free)
        return {820, 285,   72,   42000, 1730, 270,   98,   60000, 2510, 255,
                64,  33000, 3620, 290,   120,  38000, 4350, 120,   80,   21000};
    return {820, 285,   72,   18,  42000, 1730, 270, 98,    12,   60000, 2510, 255, 64,  110,
            600, 33000, 3620, 290, 120,   25,   900, 38000, 4350, 120,   80,   240, 450, 21000};
}

/// Percent of starts that end within 2 % of the best misfit known, and what a run takes.
void starts(benchmark::State& state) {
    const Case& tested = cases[state.range(0)];
    const auto spread = static_cast<double>(state.range(1));
    const auto restarts = static_cast<int>(state.range(2));
    const int runs = static_cast<int>(state.range(3));
    for (auto _ : state) {
        Example example(tested.name, tested.all_free, tested.channel);
        const std::vector<float> shipped = example.values();
        example.run(30);
        const std::vector<float> best = example.values();
        std::mt19937 random(20240917);
        std::vector<double> misfits;
        double evaluations = 0, all_evaluations = 0, textbook_evaluations = 0, seconds = 0,
               textbook_reached = 0;
        std::vector<double> textbook;
        for (int run = 0; run < runs; ++run) {
            const std::vector<float> start = random_start(example, truth_of(tested), shipped, spread, random);
            example.put(start);
            const double begin = cpu_seconds();
            const RunResult result = example.run(restarts);
            seconds += cpu_seconds() - begin;
            misfits.push_back(sum_of_squares(example.session, tested.channel));
            evaluations += static_cast<double>(example.to_convergence);
            all_evaluations += static_cast<double>(result.evaluations);
            if (restarts > 1) continue;
            example.put(start);
            const TextbookFit plain = textbook_fit(example.session, tested.channel);
            textbook_evaluations += static_cast<double>(plain.evaluations);
            textbook.push_back(plain.sum_of_squares);
        }
        example.put(best);
        double least = sum_of_squares(example.session, tested.channel);
        for (const double misfit : misfits) least = std::min(least, misfit);
        const auto reached = [&](double misfit) { return misfit <= least * 1.02 * 1.02; };
        state.SetLabel(std::string(tested.name) + (tested.all_free ? " all free" : "") +
                       (tested.channel == channel_joint ? " joint" : "") + " spread " +
                       std::to_string(state.range(1)) + " starts " + std::to_string(restarts));
        state.counters["reached_%"] =
            100.0 * static_cast<double>(std::ranges::count_if(misfits, reached)) / runs;
        state.counters["ms"] = seconds * 1e3 / runs;
        state.counters["evals_to_convergence"] = evaluations / runs;
        state.counters["evals_of_the_run"] = all_evaluations / runs;
        if (restarts > 1) continue;
        textbook_reached = static_cast<double>(std::ranges::count_if(textbook, reached));
        state.counters["textbook_reached_%"] = 100.0 * textbook_reached / runs;
        state.counters["textbook_evals"] = textbook_evaluations / runs;
    }
}
BENCHMARK(starts)
    ->ArgsProduct({{0, 1, 2, 3, 4}, {1, 2, 4}, {1, 4}, {100}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// A whole run with its regional, errors and intervals, and the same with the starts of the default, beside
/// the bare fit of the textbook: the same rows and regional, one body calculated a column, neither errors nor
/// a record. Whole runs of before took 4.2 ms for the first line where bench_inversion's example took 2.5.
void whole_fit(benchmark::State& state) {
    const Case& tested = cases[state.range(0)];
    constexpr int runs = 20;
    for (auto _ : state) {
        Example example(tested.name, tested.all_free, tested.channel);
        const std::vector<float> shipped = example.values();
        std::mt19937 random(20240917);
        double whole = 0, with_starts = 0, textbook = 0, intervals = 0;
        for (int run = 0; run < runs; ++run) {
            const std::vector<float> start = random_start(example, truth_of(tested), shipped, 1, random);
            const auto take = [&](double& seconds, const auto& fit) {
                example.put(start);
                const double begin = cpu_seconds();
                fit();
                seconds += cpu_seconds() - begin;
            };
            take(textbook, [&] { textbook_fit(example.session, tested.channel); });
            take(with_starts, [&] { example.run(inversion::default_starts); });
            take(whole, [&] {
                const RunResult result = example.run(1);
                for (const FittedParameter& one : result.record->parameters)
                    intervals += std::isfinite(one.lower) || std::isfinite(one.upper);
            });
        }
        state.SetLabel(std::string(tested.name) + ", " + std::to_string(shipped.size()) + " parameters");
        state.counters["textbook_ms"] = textbook * 1e3 / runs;
        state.counters["whole_ms"] = whole * 1e3 / runs;
        state.counters["ratio"] = whole / textbook;
        state.counters["ratio_with_starts"] = with_starts / textbook;
        state.counters["intervals"] = intervals / runs;
    }
}
BENCHMARK(whole_fit)->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Many bodies with six free parameters each at 2000 stations: the whole run, what comes after the last
/// iteration, and the longest time between two looks at who waits.
void many_bodies(benchmark::State& state) {
    struct Watch : inversion::RunObserver {
        double last = wall_seconds(), longest = 0, fitted = 0;
        void look() {
            const double now = wall_seconds();
            longest = std::max(longest, now - last);
            last = now;
        }
        void evaluated() override { look(); }
        bool working(double) override {
            look();
            return false;
        }
        void progress(const inversion::InversionProgress&) override {
            look();
            fitted = last;
        }
    };
    for (auto _ : state) {
        QuietPrompts prompts;
        Session session(prompts, Settings());
        make_line(session, static_cast<int>(state.range(0)));
        Watch watch;
        const double begin = watch.last;
        RunResult result;
        RunRequest request{.max_iterations = 25, .method = InversionMethod::least_squares};
        inversion::perform_inversion(session.workspace, session.inversion, request, watch, result);
        watch.look();
        state.counters["fit_s"] = watch.fitted - begin;
        state.counters["end_s"] = watch.last - watch.fitted;
        state.counters["longest_s"] = watch.longest;
        state.counters["iterations"] = result.iterations;
        state.counters["misfit"] = result.misfit_pair[0];
    }
}
BENCHMARK(many_bodies)->Arg(40)->Arg(80)->Arg(160)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
