#include <csignal>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "support/child_process.h"
#include "support/small_disk.h"
#include "survey/survey_runs.h"

// A run of a survey in a process of its own, for survey_worker_test.cpp: one that is killed, or that finds no
// room or no permission. Threads do not come with a fork, so it is a program.
namespace anomalis::survey {

namespace {

namespace fs = std::filesystem;

enum WorkerStatus : int { worker_done = 0, worker_wrong = 1, worker_cannot = 77 };

/// What is not as it should be is told.
class Checks {
  public:
    void that(bool good, const std::string& what) {
        if (good) return;
        std::cerr << what << '\n';
        status_ = worker_wrong;
    }
    /// The run ended because of the machine, and says so in these words.
    void left(const RunResult& result, const std::string& words) {
        that(result.outcome == RunOutcome::try_again && result.why.find(words) != std::string::npos,
             "not left with " + words + ": " + result.why);
    }
    int status() const { return status_; }

  private:
    int status_ = worker_done;
};

int without_room(const std::string& folder) {
    const std::string disk = folder + "/results";
    fs::create_directories(disk);
    if (!mount_small_disk(disk, 200)) return worker_cannot;
    WorkerRuns runs(folder);
    const std::string filler = disk + "/filler";
    write_file_safely(filler, std::string(170'000, 'x'));
    Checks checks;
    const RunResult full = runs.run(2);
    checks.left(full, "No space left on device");
    checks.that(full.progress.done < WorkerRuns::lines, "there was room for all lines");
    for (const auto& entry : fs::directory_iterator(disk + "/lines"))
        checks.that(fs::exists(entry.path() / "result.json"), entry.path().string() + " is no whole line");
    fs::remove(filler);
    // Room for the lines, and none for the package of the tables.
    const RunResult after = runs.run(2);
    checks.that(after.progress.done + after.progress.kept == WorkerRuns::lines && after.progress.failed == 0,
                "not all lines were done: " + after.why);
    return checks.status();
}

int without_permission(const std::string& folder) {
    WorkerRuns runs(folder);
    if (!obey_permissions()) return worker_cannot;
    Checks checks;
    const auto refused = [&](const std::string& path) {
        const fs::perms before = fs::status(path).permissions();
        fs::permissions(
            path, fs::is_directory(path) ? fs::perms::owner_read | fs::perms::owner_exec : fs::perms::none);
        const RunResult result = runs.run();
        checks.left(result, "Permission denied");
        checks.left(result, path);
        fs::permissions(path, before);
    };
    const auto whole = [&] { checks.that(runs.run().outcome == RunOutcome::all_done, "not all is done"); };
    refused(runs.plan.source->file);
    checks.that(!fs::exists(runs.results), "a folder was made for nothing");
    whole();
    refused(line_result_file(runs.results, "110"));
    runs.options().formulas = Formulas::classic;
    refused(runs.results + "/lines");
    whole();
    return checks.status();
}

int killed(const std::string& folder, int picture) {
    WorkerRuns runs(folder);
    runs.draw_pictures([left = std::make_shared<int>(picture)] {
        if (--*left == 0) std::raise(SIGKILL);
    });
    runs.run(2);
    return worker_wrong;
}

}  // namespace

}  // namespace anomalis::survey

int main(int, char** argv) {
    using namespace anomalis::survey;
    const std::string folder = argv[1], what = argv[2];
    if (what == "without room") return without_room(folder);
    if (what == "without permission") return without_permission(folder);
    return killed(folder, std::stoi(what));
}
