// Workspace files: reading and writing as the number of bodies grows, and reading against a bare loop that
// converts every number of the same text once.

#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <unistd.h>

#include "core/body_defaults.h"
#include "core/settings.h"
#include "core/text.h"
#include "core/workspace.h"
#include "quiet_prompts.h"
#include "timing.h"
#include "workspace_file/axm.h"

namespace anomalis {
namespace {

Workspace model_of(int bodies) {
    QuietPrompts prompts;
    const Settings settings;
    Workspace workspace;
    initialise_workspace(workspace, prompts);
    // A file that exists, so that nobody is asked for it.
    workspace.definition.data_file = "/dev/null";
    workspace.bodies.resize(static_cast<std::size_t>(bodies) + 1);
    workspace.body_capacity = workspace.body_count = bodies;
    for (int number = 1; number <= bodies; ++number) {
        ModelBody& body = workspace.body(number);
        body.type = number % 3 == 0 ? pipe : thick_sheet;
        initialise_body(workspace, number, settings, prompts);
        body.east = 412345.678 + 12.25 * number;
        body.north = 7123456.75;
        body.distance.value = 12.25F * static_cast<float>(number);
        body.top.value = -31.4F;
        body.susc.value = 4321.5F;
        body.susc.min = 100;
        body.description = "one of many";
        body.rock_type = "dolerite";
    }
    return workspace;
}

const std::string& text_of(int bodies) {
    static std::map<int, std::string> texts;
    std::string& text = texts[bodies];
    if (text.empty()) {
        Workspace workspace = model_of(bodies);
        text = workspace_file::model_parameters_text(0, workspace);
    }
    return text;
}

double bare_loop(const std::string& text) {
    double sum = 0;
    const char* const end = text.data() + text.size();
    for (const char* at = text.data(); at != end;) {
        double value = 0;
        const auto [after, error] = std::from_chars(at, end, value);
        sum += value;
        at = error == std::errc() ? after : at + 1;
    }
    return sum;
}

double tokens_of(const std::string& text) {
    std::size_t length = 0;
    std::string_view rest = text;
    while (!rest.empty()) length += next_token(rest).size();
    return static_cast<double>(length);
}

/// Processor time a body, against that of the thousand: 1 when the work is linear. The benchmarks below run
/// in order of size.
class Growth {
  public:
    void tell(benchmark::State& state, double seconds) {
        const double a_body = seconds / static_cast<double>(state.range(0));
        state.counters["ns/body"] = a_body * 1e9;
        if (state.range(0) == 1000) of_a_thousand_ = a_body;
        if (state.range(0) > 1000 && of_a_thousand_ > 0)
            state.counters["cost_to_1000"] = a_body / of_a_thousand_;
    }

  private:
    double of_a_thousand_ = 0;
};

void read_workspace(benchmark::State& state) {
    const std::string& text = text_of(static_cast<int>(state.range(0)));
    QuietPrompts prompts;
    const Settings settings;
    BestTime reading;
    BestTime bare;
    BestTime tokens;
    for (auto _ : state) {
        bare.take([&] { benchmark::DoNotOptimize(bare_loop(text)); });
        tokens.take([&] { benchmark::DoNotOptimize(tokens_of(text)); });
        Workspace workspace;
        initialise_workspace(workspace, prompts);
        int status = -1;
        const double seconds = reading.take([&] {
            status = workspace_file::read_model_parameters_text(0, workspace, text, "bench.axm", settings,
                                                                prompts);
        });
        if (status != 0 || workspace.body_count != state.range(0)) state.SkipWithError("bodies are missing");
        state.SetIterationTime(seconds);
    }
    const double megabytes = static_cast<double>(text.size()) / 1e6;
    state.counters["rate_to_bare_loop"] = bare.seconds() / reading.seconds();
    state.counters["MB/s"] = megabytes / reading.seconds();
    state.counters["tokeniser_MB/s"] = megabytes / tokens.seconds();
    static Growth growth;
    growth.tell(state, reading.seconds());
}
BENCHMARK(read_workspace)->ArgName("bodies")->RangeMultiplier(10)->Range(100, 100'000)->UseManualTime();

void write_workspace(benchmark::State& state) {
    Workspace workspace = model_of(static_cast<int>(state.range(0)));
    BestTime writing;
    std::size_t size = 0;
    for (auto _ : state) {
        const double seconds =
            writing.take([&] { size = workspace_file::model_parameters_text(0, workspace).size(); });
        state.SetIterationTime(seconds);
    }
    state.counters["MB/s"] = static_cast<double>(size) / 1e6 / writing.seconds();
    static Growth growth;
    growth.tell(state, writing.seconds());
}
BENCHMARK(write_workspace)->ArgName("bodies")->RangeMultiplier(10)->Range(100, 100'000)->UseManualTime();

/// Through files: what opening and saving cost a person, flushing aside.
void open_and_save(benchmark::State& state) {
    std::string path = (std::filesystem::temp_directory_path() / "anomalis-bench-XXXXXX").string();
    ::close(::mkstemp(path.data()));
    QuietPrompts prompts;
    const Settings settings;
    Workspace workspace = model_of(static_cast<int>(state.range(0)));
    BestTime saving, opening;
    for (auto _ : state) {
        const double saved =
            saving.take([&] { workspace_file::write_model_parameters(0, path, workspace, prompts); });
        Workspace opened;
        initialise_workspace(opened, prompts);
        const double read =
            opening.take([&] { workspace_file::read_model_parameters(0, opened, path, settings, prompts); });
        if (opened.body_count != state.range(0)) state.SkipWithError("bodies are missing");
        state.SetIterationTime(saved + read);
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
    std::filesystem::remove(path);
    state.counters["open_MB/s"] = megabytes / opening.seconds();
    state.counters["save_MB/s"] = megabytes / saving.seconds();
    static Growth growth;
    growth.tell(state, opening.seconds() + saving.seconds());
}
BENCHMARK(open_and_save)->ArgName("bodies")->RangeMultiplier(10)->Range(1000, 100'000)->UseManualTime();

}  // namespace
}  // namespace anomalis
