// Steps that can be taken back over a large model: what one costs beside capturing the whole model, and how
// the memory of the program grows.

#include <benchmark/benchmark.h>
#include <cstdio>
#include <unistd.h>

#include "edit/change.h"
#include "edit/workbench.h"
#include "level_line.h"
#include "quiet_prompts.h"
#include "timing.h"

namespace anomalis {
namespace {

double resident_megabytes() {
    long total = 0, resident = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &total, &resident) != 2) resident = 0;
        std::fclose(file);
    }
    return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

void steps(benchmark::State& state) {
    const auto bodies = static_cast<int>(state.range(0));
    QuietPrompts prompts;
    Session session(prompts, Settings());
    session.workspace.bodies.resize(1);
    session.workspace.body_capacity = 0;
    for (int i = 0; i < bodies; ++i) add_body(session.workspace, thin_sheet, i);
    edit::Workbench workbench(session);
    edit::start_history(workbench);
    BestTime note, whole, back;
    int number = 0;
    const auto edit = [&] {
        number = number % bodies + 1;
        session.workspace.body(number).dip.value += 1;
        edit::note_change(workbench, {"dip", "", false});
    };
    for (auto _ : state) {
        const double before = resident_megabytes();
        for (int i = 0; i < 100; ++i) note.take(edit);
        const double hundred = resident_megabytes();
        whole.take([&] { benchmark::DoNotOptimize(edit::capture_state(session.workspace)); });
        for (int i = 0; i < 10; ++i) back.take([&] { edit::undo_change(workbench); });
        for (int i = 0; i < 1000; ++i) edit();
        const double filled = resident_megabytes();
        for (int i = 0; i < 1000; ++i) edit();
        for (int i = 0; i < 100; ++i) {
            edit::undo_change(workbench);
            edit::redo_change(workbench);
        }
        state.counters["MB_of_100_steps"] = hundred - before;
        state.counters["MB_of_1000_more_when_full"] = resident_megabytes() - filled;
    }
    state.counters["note_us"] = note.seconds() * 1e6;
    state.counters["note_to_whole_capture"] = note.seconds() / whole.seconds();
    state.counters["undo_us"] = back.seconds() * 1e6;
}
BENCHMARK(steps)->Arg(50)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
