// Reading an observed data file: both passes against a bare loop over the same file that converts every field
// once, and the cost of a whole load as the file grows.

#include <algorithm>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <time.h>
#include <unistd.h>
#include <vector>

#include "core/prompts.h"
#include "core/workspace.h"
#include "intake/load.h"
#include "intake/location_file.h"

namespace anomalis {
namespace {

/// Ends the benchmark on any message: a refused file would be fast.
class StrictPrompts : public Prompts {
    void show_message(const std::string& text) override { throw std::runtime_error(text); }
    bool show_question(const std::string& text) override { throw std::runtime_error(text); }
    std::optional<std::string> show_input_box(const std::string&, const std::string&,
                                              const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> show_open_dialog(const FileRequest&) override { return std::nullopt; }
    std::optional<std::string> show_save_dialog(const FileRequest&) override { return std::nullopt; }
};

/// A survey line in columns: fiducial, east, north, sensor, ground, mag, gravity, time of day.
class SurveyFile {
  public:
    explicit SurveyFile(int lines) {
        std::string pattern = (std::filesystem::temp_directory_path() / "anomalis-bench-XXXXXX").string();
        const int descriptor = ::mkstemp(pattern.data());
        if (descriptor < 0) throw std::runtime_error("no temporary file: " + pattern);
        ::close(descriptor);
        path_ = pattern;
        std::ofstream file(path_, std::ios::binary);
        std::mt19937 random(1);
        std::uniform_real_distribution<double> noise(-1, 1);
        char line[128];
        for (int i = 0; i < lines; ++i) {
            const int length =
                std::snprintf(line, sizeof line, "%7d %10.2f %10.2f %7.2f %7.2f %9.3f %8.4f %8.1f\n",
                              1000 + i, 500000 + 0.5 * i + 0.1 * noise(random), 6800000 + 0.1 * noise(random),
                              350 + 5 * noise(random), 300 + 5 * noise(random), 56000 + 200 * noise(random),
                              1.5 * noise(random), 30000 + 0.1 * i);
            file.write(line, length);
        }
        if (!file.flush()) throw std::runtime_error("cannot write " + path_);
        size_ = std::filesystem::file_size(path_);
    }
    ~SurveyFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    SurveyFile(const SurveyFile&) = delete;
    SurveyFile& operator=(const SurveyFile&) = delete;

    const std::string& path() const { return path_; }
    double megabytes() const { return static_cast<double>(size_) / 1e6; }

  private:
    std::string path_;
    std::uintmax_t size_ = 0;
};

const SurveyFile& survey_file(int lines) {
    static std::map<int, SurveyFile> files;
    return files.try_emplace(lines, lines).first->second;
}

/// Reads in blocks and converts every field; gives their sum.
double bare_loop(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY);
    std::vector<char> block(65536);
    std::size_t kept = 0;
    double sum = 0;
    for (;;) {
        const ssize_t count = ::read(descriptor, block.data() + kept, block.size() - kept);
        if (count <= 0) break;
        const char* at = block.data();
        const char* filled = at + kept + count;
        const char* end = filled;
        while (end[-1] != '\n') --end;
        while (at != end) {
            while (*at == ' ' || *at == '\n') {
                if (++at == end) break;
            }
            if (at == end) break;
            double value = 0;
            at = std::from_chars(at, end, value).ptr;
            sum += value;
        }
        kept = static_cast<std::size_t>(filled - end);
        std::memmove(block.data(), end, kept);
    }
    ::close(descriptor);
    return sum;
}

Workspace workspace_over(const SurveyFile& file, bool all_quantities) {
    Workspace w;
    w.bodies.resize(static_cast<std::size_t>(w.body_capacity) + 1);
    w.definition.data_file = file.path();
    w.definition.first_data_line = 1;
    w.definition.mag_column = 6;
    if (all_quantities) {
        w.definition.z_column = 4;
        w.definition.dtm_column = 5;
        w.definition.grav_column = 7;
    }
    return w;
}

double cpu_seconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

template <class Work>
double seconds_of(Work&& work) {
    const double start = cpu_seconds();
    work();
    return cpu_seconds() - start;
}

/// A line of the process's status in bytes: "VmHWM:" the peak, "VmRSS:" the present size.
double memory_bytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word) {
        if (word == key) status >> kilobytes;
    }
    return kilobytes * 1024;
}

void reset_peak_memory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

void read_both_passes(Workspace& w) {
    StrictPrompts prompts;
    intake::read_location_file(0, w, prompts);
    intake::read_location_file(1, w, prompts);
}

/// Bare loop and passes take turns, so that a busy machine slows both; the best of each counts.
void both_passes(benchmark::State& state) {
    constexpr int lines = 1'000'000;
    const SurveyFile& file = survey_file(lines);
    double bare = std::numeric_limits<double>::max();
    double passes = bare;
    double peak = 0;
    for (auto _ : state) {
        bare = std::min(bare, seconds_of([&] { benchmark::DoNotOptimize(bare_loop(file.path())); }));
        reset_peak_memory();
        const double before = memory_bytes("VmRSS:");
        Workspace w = workspace_over(file, state.range(0) != 0);
        const double seconds = seconds_of([&] { read_both_passes(w); });
        peak = std::max(peak, memory_bytes("VmHWM:") - before);
        if (w.station_count != lines) state.SkipWithError("stations are missing");
        passes = std::min(passes, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["rate_to_bare_loop"] = bare / passes;
    state.counters["MB/s"] = file.megabytes() / passes;
    state.counters["bare_MB/s"] = file.megabytes() / bare;
    state.counters["file_MB"] = file.megabytes();
    state.counters["peak_MB"] = peak / 1e6;
    state.counters["peak_limit_MB"] = file.megabytes() + 100e-6 * lines;
}
BENCHMARK(both_passes)
    ->ArgName("all_quantities")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// The whole load, without resampling: what grows must be the count only.
void whole_load(benchmark::State& state) {
    const auto lines = static_cast<int>(state.range(0));
    const SurveyFile& file = survey_file(lines);
    StrictPrompts prompts;
    double best = std::numeric_limits<double>::max();
    for (auto _ : state) {
        Workspace w = workspace_over(file, true);
        const double seconds = seconds_of([&] { intake::load_locations(w, prompts); });
        if (w.station_count == 0) state.SkipWithError("stations are missing");
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["ns/line"] = best * 1e9 / lines;
}
BENCHMARK(whole_load)
    ->ArgName("lines")
    ->RangeMultiplier(10)
    ->Range(1000, 1'000'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
