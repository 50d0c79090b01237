// Loading an observed data file against a bare loop over the same file that converts every field once: the
// reading alone and the whole load, over the lines of a survey and on one and two threads, with the exponents
// of growth and the memory of a station. Prints one table.

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

#include "core/prompts.h"
#include "core/threads.h"
#include "core/workspace.h"
#include "intake/load.h"
#include "intake/read_rows.h"
#include "intake/row_notes.h"

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
    explicit SurveyFile(long lines) {
        std::string pattern = (std::filesystem::temp_directory_path() / "anomalis-bench-XXXXXX").string();
        const int descriptor = ::mkstemp(pattern.data());
        if (descriptor < 0) throw std::runtime_error("no temporary file: " + pattern);
        ::close(descriptor);
        path_ = pattern;
        std::ofstream file(path_, std::ios::binary);
        std::mt19937 random(1);
        std::uniform_real_distribution<double> noise(-1, 1);
        char line[128];
        for (long i = 0; i < lines; ++i) {
            const double along = static_cast<double>(i);
            const int length =
                std::snprintf(line, sizeof line, "%7ld %10.2f %10.2f %7.2f %7.2f %9.3f %8.4f %8.1f\n",
                              1000 + i, 500000 + 0.5 * along + 0.1 * noise(random),
                              6800000 + 0.1 * noise(random), 350 + 5 * noise(random), 300 + 5 * noise(random),
                              56000 + 200 * noise(random), 1.5 * noise(random), 30000 + 0.1 * along);
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

Workspace workspace_over(const SurveyFile& file) {
    Workspace w;
    w.bodies.resize(static_cast<std::size_t>(w.body_capacity) + 1);
    DataDefinition& d = w.definition;
    d.data_file = file.path();
    d.first_data_line = 1;
    d.mag_column = 6;
    d.z_column = 4;
    d.dtm_column = 5;
    d.grav_column = 7;
    return w;
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

/// Seconds on the clock, the best of some turns: what two threads are for is the person who waits.
class BestWait {
  public:
    void take(const std::function<void()>& work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        best_ = std::min(best_, taken.count());
    }
    double seconds() const { return best_; }

  private:
    double best_ = std::numeric_limits<double>::max();
};

struct Row {
    long lines = 0;
    BestWait bare, reading[2], load[2];
    double bytes_per_station = 0;
};

void read_alone(const SurveyFile& file, long lines) {
    const Workspace w = workspace_over(file);
    const intake::DataRows rows = intake::read_rows(w.definition, w.transform);
    if (rows.count != static_cast<std::size_t>(lines)) throw std::runtime_error("rows are missing");
}

void load_whole(const SurveyFile& file) {
    StrictPrompts prompts;
    Workspace w = workspace_over(file);
    intake::RowNotes notes;
    intake::load_locations(w, prompts, &notes);
    if (w.station_count == 0) throw std::runtime_error("stations are missing");
}

/// All take turns, so that a busy machine slows them alike.
Row measure(long lines) {
    const SurveyFile file(lines);
    Row row;
    row.lines = lines;
    std::ofstream("/proc/self/clear_refs") << "5";
    const double before = memory_bytes("VmRSS:");
    load_whole(file);
    row.bytes_per_station = (memory_bytes("VmHWM:") - before) / static_cast<double>(lines);
    const int turns = lines > 2'000'000 ? 3 : 9;
    volatile double sum = 0;
    for (int turn = 0; turn < turns; ++turn) {
        row.bare.take([&] { sum = bare_loop(file.path()); });
        for (const int threads : {1, 2}) {
            limit_threads(threads);
            row.reading[threads - 1].take([&] { read_alone(file, lines); });
            row.load[threads - 1].take([&] { load_whole(file); });
        }
        limit_threads(0);
    }
    return row;
}

void print(const Row& row) {
    const double bare = row.bare.seconds();
    std::printf("%9ld %9.2f %9.2f %9.2f %9.2f %9.2f %9.2f %9.2f %9.2f %9.2f %9.0f\n", row.lines, 1e3 * bare,
                1e3 * row.reading[0].seconds(), 1e3 * row.reading[1].seconds(), 1e3 * row.load[0].seconds(),
                1e3 * row.load[1].seconds(), bare / row.reading[0].seconds(),
                row.reading[0].seconds() / row.reading[1].seconds(), bare / row.load[0].seconds(),
                row.load[0].seconds() / row.load[1].seconds(), row.bytes_per_station);
}

double exponent(const Row& few, const Row& many, const std::function<double(const Row&)>& seconds) {
    return std::log(seconds(many) / seconds(few)) /
           std::log(static_cast<double>(many.lines) / static_cast<double>(few.lines));
}

}  // namespace
}  // namespace anomalis

/// The greatest count of lines may be given; ten million otherwise.
int main(int argc, char** argv) {
    using namespace anomalis;
    const long most = argc > 1 ? std::atol(argv[1]) : 10'000'000;
    std::printf(
        "milliseconds; ratios to the bare loop on one thread, gain by the second, bytes a station at most\n");
    std::printf("%9s %9s %9s %9s %9s %9s %9s %9s %9s %9s %9s\n", "lines", "bare", "read 1", "read 2",
                "load 1", "load 2", "bare/read", "gain", "bare/load", "gain", "bytes");
    std::vector<Row> rows;
    for (long lines = 10'000; lines <= most; lines *= 10) {
        rows.push_back(measure(lines));
        print(rows.back());
    }
    if (rows.size() < 2) return 0;
    const Row &few = rows.front(), &many = rows.back();
    std::printf("growth exponent: bare %.3f, reading %.3f and %.3f, load %.3f and %.3f\n",
                exponent(few, many, [](const Row& r) { return r.bare.seconds(); }),
                exponent(few, many, [](const Row& r) { return r.reading[0].seconds(); }),
                exponent(few, many, [](const Row& r) { return r.reading[1].seconds(); }),
                exponent(few, many, [](const Row& r) { return r.load[0].seconds(); }),
                exponent(few, many, [](const Row& r) { return r.load[1].seconds(); }));
}
