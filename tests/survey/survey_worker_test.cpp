#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "survey/results/survey_results.h"
#include "survey/survey_runs.h"

// Runs in processes of their own that are killed, or that find no room or no permission.
namespace anomalis::survey {

namespace {

namespace fs = std::filesystem;

constexpr int not_possible_here = 77;

/// The status of a worker (survey_worker.cpp); 128 and the signal's number when it was killed.
int work_in(const TempFolder& folder, const char* what) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::execl(SURVEY_WORKER, SURVEY_WORKER, folder.folder().c_str(), what, nullptr);
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

TEST(SurveyWorker, killed_again_and_again_leaves_the_tables_as_they_would_be) {
    const TempFolder folder;
    for (const char* picture : {"1", "2", "3"}) EXPECT_EQ(work_in(folder, picture), 128 + SIGKILL);
    WorkerRuns runs(folder.folder()), whole(folder.folder());
    whole.results = folder.path("whole");
    for (WorkerRuns* one : {&runs, &whole}) one->draw_pictures([] {});
    EXPECT_EQ(runs.run(2).outcome, RunOutcome::all_done);
    EXPECT_GE(runs.witness.last.kept, 1U);
    EXPECT_EQ(runs.witness.last.kept + runs.witness.last.done, WorkerRuns::lines);
    for (const auto& entry : fs::directory_iterator(runs.results + "/lines"))
        EXPECT_FALSE(entry.path().filename().string().starts_with('.')) << entry.path();
    whole.run();
    EXPECT_EQ(runs.tables(), whole.tables());
}

TEST(SurveyWorker, a_disk_that_becomes_full_ends_the_run_which_goes_on_when_there_is_room) {
    const TempFolder folder;
    const int status = work_in(folder, "without room");
    if (status == not_possible_here) return;  // no disks of one's own on this machine
    EXPECT_EQ(status, 0);
}

TEST(SurveyWorker, what_may_not_be_read_or_written_ends_the_run_and_is_no_row) {
    const TempFolder folder;
    const int status = work_in(folder, "without permission");
    if (status == not_possible_here) return;
    EXPECT_EQ(status, 0);
}

}  // namespace

}  // namespace anomalis::survey
