// Workspace files: reading and writing as the number of bodies grows, and reading against a bare loop that
// converts every number of the same text once.

#include <benchmark/benchmark.h>
#include <charconv>
#include <map>
#include <string>

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
        text = model_parameters_text(0, workspace);
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
        const double seconds = reading.take(
            [&] { status = read_model_parameters_text(0, workspace, text, "bench.axm", settings, prompts); });
        if (status != 0 || workspace.body_count != state.range(0)) state.SkipWithError("bodies are missing");
        state.SetIterationTime(seconds);
    }
    const double megabytes = static_cast<double>(text.size()) / 1e6;
    state.counters["rate_to_bare_loop"] = bare.seconds() / reading.seconds();
    state.counters["MB/s"] = megabytes / reading.seconds();
    state.counters["tokeniser_MB/s"] = megabytes / tokens.seconds();
    state.counters["ns/body"] = reading.seconds() * 1e9 / static_cast<double>(state.range(0));
}
BENCHMARK(read_workspace)->ArgName("bodies")->RangeMultiplier(10)->Range(100, 100'000)->UseManualTime();

void write_workspace(benchmark::State& state) {
    Workspace workspace = model_of(static_cast<int>(state.range(0)));
    BestTime writing;
    std::size_t size = 0;
    for (auto _ : state) {
        const double seconds = writing.take([&] { size = model_parameters_text(0, workspace).size(); });
        state.SetIterationTime(seconds);
    }
    state.counters["MB/s"] = static_cast<double>(size) / 1e6 / writing.seconds();
    state.counters["ns/body"] = writing.seconds() * 1e9 / static_cast<double>(state.range(0));
}
BENCHMARK(write_workspace)->ArgName("bodies")->RangeMultiplier(10)->Range(100, 100'000)->UseManualTime();

}  // namespace
}  // namespace anomalis
