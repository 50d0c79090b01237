// The import of a survey file: recognising it, reading all its roles, indexing its lines and reading one of
// them, and the memory that takes. bench/import_ratio.py sets it against a data-frame library on the same
// file.

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "intake/formats/survey_format.h"
#include "intake/survey/survey_index.h"
#include "timing.h"

namespace anomalis {
namespace {

constexpr long stations_a_line = 5000;

/// An airborne survey in columns: line, fiducial, east, north, height, clearance, field.
class SurveyFile {
  public:
    explicit SurveyFile(long rows) {
        if (const char* given = std::getenv("ANOMALIS_IMPORT_FILE")) {
            path_ = given;
            keep_ = true;
            if (std::filesystem::exists(path_)) return;
        } else {
            path_ = (std::filesystem::temp_directory_path() /
                     ("anomalis-import-" + std::to_string(::getpid()) + "-" + std::to_string(rows) + ".csv"))
                        .string();
        }
        write(rows);
    }
    ~SurveyFile() {
        std::error_code ignored;
        if (!keep_) std::filesystem::remove(path_, ignored);
    }
    SurveyFile(const SurveyFile&) = delete;
    SurveyFile& operator=(const SurveyFile&) = delete;

    const std::string& path() const { return path_; }
    double megabytes() const { return static_cast<double>(std::filesystem::file_size(path_)) / 1e6; }

  private:
    void write(long rows) const {
        std::FILE* file = std::fopen(path_.c_str(), "wb");
        if (file == nullptr) throw std::runtime_error("cannot write " + path_);
        std::mt19937 random(1);
        std::uniform_real_distribution<double> noise(-1, 1);
        std::fputs("line,east,north,height,radalt,tmi\n", file);
        for (long i = 0; i < rows; ++i) {
            const long line = i / stations_a_line, station = i % stations_a_line;
            const double along = 7.0 * static_cast<double>(station);
            std::fprintf(file, "%ld,%.1f,%.1f,%.1f,%.1f,%.2f\n", 10010 + 10 * line,
                         450000 + along + 0.3 * noise(random), 7550000 + 100.0 * static_cast<double>(line),
                         350 + 5 * noise(random), 60 + 5 * noise(random),
                         52000 + 300 * std::sin(along / 2000) + noise(random));
        }
        if (std::fclose(file) != 0) throw std::runtime_error("cannot write " + path_);
    }

    std::string path_;
    bool keep_ = false;
};

const SurveyFile& survey_file(long rows) {
    static std::map<long, SurveyFile> files;
    return files.try_emplace(rows, rows).first->second;
}

/// The peak size of the process since the last reset, bytes.
double peak_memory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word)
        if (word == "VmHWM:") status >> kilobytes;
    return kilobytes * 1024;
}

void reset_peak_memory() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

void tell(benchmark::State& state, const SurveyFile& file, double seconds, double peak) {
    state.counters["file_MB"] = file.megabytes();
    state.counters["MB/s"] = file.megabytes() / seconds;
    state.counters["peak_MB"] = peak / 1e6;
}

/// Every role of every row as numbers.
void rows_with_all_roles(benchmark::State& state) {
    const long rows = state.range(0);
    const SurveyFile& file = survey_file(rows);
    BestTime time;
    double peak = 0;
    for (auto _ : state) {
        reset_peak_memory();
        long read = 0;
        state.SetIterationTime(time.take([&] {
            const intake::SurveyLayout layout = intake::recognise_survey(file.path());
            std::vector<std::size_t> all(layout.columns.size());
            std::iota(all.begin(), all.end(), std::size_t{0});
            const auto reader = intake::open_rows(layout, all);
            intake::RowBlock block;
            while (reader->next(block)) read += static_cast<long>(block.rows);
        }));
        if (read != rows) state.SkipWithError("rows are missing");
        peak = std::max(peak, peak_memory());
    }
    tell(state, file, time.seconds(), peak);
}
BENCHMARK(rows_with_all_roles)
    ->ArgName("rows")
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// What a person waits for: the file recognised, its lines indexed, one of them read.
void import_of_a_line(benchmark::State& state) {
    const long rows = state.range(0);
    const SurveyFile& file = survey_file(rows);
    BestTime time;
    double peak = 0;
    for (auto _ : state) {
        reset_peak_memory();
        std::size_t stations = 0;
        state.SetIterationTime(time.take([&] {
            const intake::SurveyIndex index = intake::index_survey(intake::recognise_survey(file.path()), {});
            stations = intake::read_survey_line(index, index.lines.size() / 2).mag.size();
        }));
        if (stations != stations_a_line) state.SkipWithError("stations are missing");
        peak = std::max(peak, peak_memory());
    }
    tell(state, file, time.seconds(), peak);
}
BENCHMARK(import_of_a_line)
    ->ArgName("rows")
    ->Arg(1'000'000)
    ->Arg(10'000'000)
    ->Iterations(3)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
