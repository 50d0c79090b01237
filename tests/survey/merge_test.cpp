#include "survey/cluster/merge.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/example_results.h"
#include "survey/cluster/shards.h"
#include "survey/failure_of.h"
#include "survey/results/survey_results.h"
#include "survey/survey_runs.h"

namespace anomalis::survey {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// A survey that was done in three parts, in one folder or in one each.
struct ShardRuns : SurveyRuns {
    std::vector<std::string> run_parts(bool apart) {
        std::vector<std::string> folders;
        for (int number = 1; number <= 3; ++number) {
            results = folder.path(apart ? "part" + std::to_string(number) : "parts");
            EXPECT_EQ(run(1, {number, 3}).outcome, RunOutcome::all_done);
            if (apart || number == 1) folders.push_back(results);
        }
        return folders;
    }
    std::map<std::string, std::string> tables_of_one_run() {
        results = folder.path("one");
        EXPECT_EQ(run().outcome, RunOutcome::all_done);
        return tables();
    }
};

TEST(Merge, OfShardsInOneFolderGivesTheTablesOfOneRun) {
    ShardRuns runs;
    const std::string folder = runs.run_parts(false).front();
    EXPECT_FALSE(std::filesystem::exists(folder + "/lines.csv"));
    EXPECT_EQ(read_shard_records(folder).size(), 3U);
    const MergeResult result = merge_survey(runs.plan, folder, {});
    EXPECT_EQ(result.outcome, MergeOutcome::all_done);
    EXPECT_EQ(result.counts.lines, 4U);
    EXPECT_EQ(result.taken, 0U);
    EXPECT_EQ(runs.tables(folder), runs.tables_of_one_run());
}

TEST(Merge, OfFoldersThatKnowNothingOfEachOtherGivesThemTooAndTwiceIsOnce) {
    ShardRuns runs;
    const std::vector<std::string> parts = runs.run_parts(true);
    const std::string folder = runs.folder.path("all");
    EXPECT_EQ(merge_survey(runs.plan, folder, parts).taken, 4U);
    const auto one = runs.tables_of_one_run();
    EXPECT_EQ(runs.tables(folder), one);
    // Half of it was lost, and one line is no more what was written.
    std::filesystem::remove_all(line_folder(folder, "110"));
    std::filesystem::remove(folder + "/lines.csv");
    std::filesystem::resize_file(line_folder(folder, "100") + "/100.axm", 10);
    EXPECT_EQ(merge_survey(runs.plan, folder, parts).taken, 2U);
    EXPECT_EQ(runs.tables(folder), one);
    EXPECT_EQ(merge_survey(runs.plan, folder, {}).taken, 0U);
    EXPECT_EQ(read_shard_records(folder).size(), 3U);
}

TEST(Merge, NamesTheLinesThatAreMissingAndTheShardsThatHaveNotEnded) {
    ShardRuns runs;
    const std::vector<std::string> parts = runs.run_parts(true);
    const std::string folder = runs.folder.path("all");
    const MergeResult result = merge_survey(runs.plan, folder, {parts[0], parts[2]});
    EXPECT_EQ(result.outcome, MergeOutcome::lines_missing);
    EXPECT_THAT(result.missing, ElementsAre("110"));
    EXPECT_THAT(result.why, AllOf(HasSubstr("1 of 4 lines are not done in " + folder + ": 110."),
                                  HasSubstr("Shards that have not ended: 2/3. Run them again")));
    EXPECT_FALSE(std::filesystem::exists(folder + "/lines.csv"));
    EXPECT_EQ(merge_survey(runs.plan, folder, {parts[1]}).outcome, MergeOutcome::all_done);
}

TEST(Merge, LinesOfAnOlderPlanAreMissing) {
    ShardRuns runs;
    const std::string folder = runs.run_parts(false).front();
    runs.options().exports = {"clean-model"};
    const MergeResult result = merge_survey(runs.plan, folder, {});
    EXPECT_EQ(result.outcome, MergeOutcome::lines_missing);
    EXPECT_EQ(result.missing.size(), 4U);
    EXPECT_THAT(result.why, HasSubstr("4 of 4 lines are not done"));
}

TEST(Merge, RefusesPartsOfAnotherPlanWithBothNamed) {
    ShardRuns runs;
    const std::vector<std::string> parts = runs.run_parts(true);
    const std::string before = read_survey_identity(parts[0])->plan_digest;
    runs.options().exports = {"clean-model"};
    runs.results = runs.folder.path("new");
    runs.run(1, {1, 3});
    const std::string now = read_survey_identity(runs.results)->plan_digest;
    const auto merge = [&] { merge_survey(runs.plan, runs.results, {parts[1]}); };
    EXPECT_THAT(failure_of(merge), AllOf(HasSubstr("Only parts of one plan"), HasSubstr(before),
                                         HasSubstr(now), HasSubstr(parts[1])));
    const auto nowhere = [&] { merge_survey(runs.plan, runs.results, {runs.folder.path("none")}); };
    EXPECT_THAT(failure_of(nowhere), HasSubstr("holds no results of a survey"));
    runs.plan.name = "another";
    const auto other = [&] { merge_survey(runs.plan, parts[0], {}); };
    EXPECT_THAT(failure_of(other), HasSubstr("holds the results of another survey"));
}

TEST(Merge, RefusesALineThatTwoFoldersHaveFromDifferentInput) {
    const TempFolder one, other;
    SurveyResults results = example_results(3);
    write_example_results(one, results);
    results.lines[1].digest = "ffffffffffffffff";
    write_example_results(other, results);
    const auto merge = [&] { merge_lines(results.identity, one.folder(), {other.folder()}); };
    EXPECT_THAT(failure_of(merge), AllOf(HasSubstr("The line L1010 is in " + one.folder()),
                                         HasSubstr(other.folder() + " (ffffffffffffffff)")));
    EXPECT_FALSE(std::filesystem::exists(one.path("lines.csv")));
}

TEST(Merge, ALineThatFailedInOneFolderIsTakenFromWhereItWasDone) {
    const TempFolder one, other;
    SurveyResults results = example_results(3);
    write_example_results(one, results);
    results.lines[2].status = LineStatus::done;
    results.lines[2].message.clear();
    write_example_results(other, results);
    EXPECT_EQ(merge_lines(results.identity, one.folder(), {}).outcome, MergeOutcome::some_failed);
    const MergeResult result = merge_lines(results.identity, one.folder(), {other.folder()});
    EXPECT_EQ(result.taken, 1U);
    EXPECT_EQ(result.outcome, MergeOutcome::all_done);
    EXPECT_EQ(read_survey_results(one.folder()).lines[2].status, LineStatus::done);
    // And not the other way round.
    EXPECT_EQ(merge_lines(results.identity, other.folder(), {one.folder()}).taken, 0U);
}

}  // namespace

}  // namespace anomalis::survey
