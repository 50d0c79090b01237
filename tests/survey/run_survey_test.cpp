#include "survey/run/run_survey.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

#include "core/failure.h"
#include "core/process_mark.h"
#include "support/full_disk.h"
#include "survey/results/survey_results.h"
#include "survey/survey_runs.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

template <class Work>
std::string fault_of(Work work) {
    try {
        work();
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return "none";
}

/// A change of the survey file: one row of line 110 has another reading.
void change_a_reading(const SurveyRuns& runs) {
    std::string text = read_whole_file(runs.path);
    const std::size_t row = text.find("110,450100,");
    const std::size_t end = text.find('\n', row);
    text.replace(text.rfind(',', end) + 1, end - text.rfind(',', end) - 1, "1234.00");
    write_file_safely(runs.path, text);
}

TEST(RunSurvey, DoesEveryLineAndWritesTheTables) {
    SurveyRuns runs;
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_THAT(runs.witness.done, UnorderedElementsAre("100", "110", "120", "130"));
    const SurveyResults results = read_survey_results(runs.results);
    ASSERT_EQ(results.lines.size(), 4U);
    for (const LineResult& line : results.lines) {
        EXPECT_EQ(line.status, LineStatus::done) << line.message;
        EXPECT_EQ(line.stations, 60);
        EXPECT_NEAR(line.length_m, 590, 0.01);
        EXPECT_EQ(line.track.size(), 2U);
        EXPECT_EQ(line.coordinate_system, "EPSG:32754");
        ASSERT_EQ(line.files.size(), 2U);
        EXPECT_EQ(line.files[0].name, line.line + ".axm");
        EXPECT_EQ(line.files[1].name, line.line + ".csv");
    }
    EXPECT_THAT(runs.tables().at(lines_table_name), HasSubstr("130"));
}

TEST(RunSurvey, GivesTheSameTablesOnOneCoreAndOnTwo) {
    SurveyRuns one, two;
    one.run(1);
    two.run(2);
    EXPECT_EQ(one.tables(), two.tables());
}

TEST(RunSurvey, WhatIsDoneIsNotDoneAgain) {
    SurveyRuns runs;
    runs.run();
    const auto before = runs.tables();
    const std::string result = runs.result_text("120");
    EXPECT_EQ(runs.run().progress.kept, 4U);
    EXPECT_THAT(runs.witness.done, IsEmpty());
    EXPECT_EQ(runs.tables(), before);
    EXPECT_EQ(runs.result_text("120"), result);
}

TEST(RunSurvey, StoppedAnywhereItGoesOnToTheSameTables) {
    SurveyRuns whole, stopped;
    std::atomic<bool> wait = false;
    for (SurveyRuns* runs : {&whole, &stopped}) {
        runs->options().render.emplace();
        runs->draw = [&](Session&, const RenderStep&, const std::string& path) {
            write_file_safely(path, "picture");
            stopped.witness.stopping = wait.load();
            while (stopped.witness.stopping && !stopped.witness.heard)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        };
    }
    whole.run();
    wait = true;
    for (std::size_t done = 1; done <= 3; ++done) {
        stopped.witness.heard = false;
        const RunResult result = stopped.run();
        EXPECT_EQ(result.outcome, RunOutcome::stopped);
        EXPECT_EQ(stopped.witness.done.size(), 1U) << "what is being written is finished";
        EXPECT_FALSE(fs::exists(stopped.results + "/" + bodies_table_name));
        std::size_t folders = 0;
        for (const auto& entry : fs::directory_iterator(stopped.results + "/lines")) {
            EXPECT_TRUE(fs::exists(entry.path() / "result.json")) << entry.path();
            ++folders;
        }
        EXPECT_EQ(folders, done);
    }
    wait = stopped.witness.stopping = false;
    EXPECT_EQ(stopped.run().outcome, RunOutcome::all_done);
    EXPECT_EQ(stopped.tables(), whole.tables());
}

TEST(RunSurvey, LongestLinesComeFirst) {
    SurveyRuns runs;
    std::string text = sheet_survey(1, 20);
    for (const auto& [name, stations] : {std::pair{"7", 30}, {"8", 50}, {"9", 40}})
        for (int i = 0; i < stations; ++i)
            text += std::string(name) + "," + std::to_string(450000 + 10 * i) + ",7560000,360,300,5.0\n";
    write_file_safely(runs.path, text);
    runs.run();
    EXPECT_THAT(runs.witness.done, ElementsAre("8", "9", "7", "100"));
}

TEST(RunSurvey, ALineThatCannotBeLoadedIsARowAndNoEnd) {
    SurveyRuns runs;
    write_file_safely(runs.path, read_whole_file(runs.path) + "999,450000,7550900,360,300,1.0\n");
    EXPECT_EQ(runs.run().outcome, RunOutcome::some_failed);
    const SurveyResults results = read_survey_results(runs.results);
    ASSERT_EQ(results.lines.size(), 5U);
    EXPECT_EQ(results.lines[4].status, LineStatus::failed);
    EXPECT_THAT(results.lines[4].message, HasSubstr("one station"));
    EXPECT_THAT(runs.tables().at(lines_table_name), HasSubstr("one station"));

    EXPECT_EQ(runs.run().outcome, RunOutcome::some_failed) << "it is still failed";
    EXPECT_THAT(runs.witness.done, IsEmpty());
    runs.run(1, {}, true);
    EXPECT_THAT(runs.witness.done, ElementsAre("999")) << "tried again when that is asked for";
}

TEST(RunSurvey, AChangedReadingConcernsItsLineAlone) {
    SurveyRuns runs;
    runs.run();
    change_a_reading(runs);
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_THAT(runs.witness.done, ElementsAre("110"));
}

TEST(RunSurvey, AChangedOptionConcernsTheLinesThatHaveIt) {
    SurveyRuns runs;
    runs.run();
    auto other = std::make_shared<LineOptions>(*runs.plan.options);
    other->exports = {"clean-profile"};
    runs.plan.lines.push_back({.name = "120", .line = "120", .workspace = "", .options = other});
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_THAT(runs.witness.done, ElementsAre("120"));
    EXPECT_TRUE(fs::exists(line_folder(runs.results, "120") + "/120-profile.csv"));
    runs.options().formulas = Formulas::classic;
    runs.run();
    EXPECT_THAT(runs.witness.done, UnorderedElementsAre("100", "110", "130"));
}

TEST(RunSurvey, LinesThatLeaveThePlanLeaveTheTablesAlone) {
    SurveyRuns runs;
    runs.run();
    runs.plan.left_out = {"110"};
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_THAT(runs.witness.done, IsEmpty());
    EXPECT_THAT(runs.tables().at(lines_table_name), Not(HasSubstr("110,")));
    EXPECT_TRUE(fs::exists(line_result_file(runs.results, "110")));
}

TEST(RunSurvey, TimesOfFilesAndClocksThatJumpChangeNothing) {
    SurveyRuns runs;
    runs.run();
    const auto before = runs.tables();
    using namespace std::chrono_literals;
    for (const auto& jump : {24h * 4000, -24h * 8000}) {
        const auto time = fs::file_time_type::clock::now() + jump;
        fs::last_write_time(runs.path, time);
        for (const auto& entry : fs::recursive_directory_iterator(runs.results))
            fs::last_write_time(entry.path(), time);
        EXPECT_EQ(runs.run().progress.kept, 4U);
    }
    EXPECT_EQ(runs.tables(), before);
}

TEST(RunSurvey, DamagedResultsAreDoneAgain) {
    SurveyRuns runs;
    runs.run();
    const auto before = runs.tables();
    const auto file = [&](const char* line, const std::string& name) {
        return line_folder(runs.results, line) + "/" + name;
    };
    fs::resize_file(file("100", "result.json"), 200);
    std::string table = read_whole_file(file("110", "110.csv"));
    table[table.size() / 2] ^= 1;
    write_file_safely(file("110", "110.csv"), table);
    fs::remove(file("120", "120.axm"));
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_THAT(runs.witness.done, UnorderedElementsAre("100", "110", "120"));
    EXPECT_EQ(runs.tables(), before);
}

TEST(RunSurvey, AnotherSurveyIsRefusedBeforeAnythingRuns) {
    SurveyRuns runs;
    runs.run();
    runs.plan.name = "another";
    EXPECT_THAT(fault_of([&] { runs.run(); }), HasSubstr("holds the results of another survey, test"));
    EXPECT_THAT(runs.witness.done, IsEmpty());
}

TEST(RunSurvey, APartThatThereIsNotIsRefused) {
    SurveyRuns runs;
    for (const Shard& shard : {Shard{5, 4}, Shard{0, 4}, Shard{1, 0}})
        EXPECT_THAT(fault_of([&] { runs.run(1, shard); }), HasSubstr("There is no shard"));
    EXPECT_FALSE(fs::exists(runs.results));
}

TEST(RunSurvey, WhatDeadProcessesLeftIsRemoved) {
    SurveyRuns runs;
    runs.run();
    const std::string mark = own_process_mark();
    const std::string dead = runs.results + "/lines/.110-" + mark.substr(0, mark.find('-')) + "-999999999-1";
    const std::string alive = runs.results + "/lines/.110-other-" + mark;
    const std::string own = runs.results + "/lines/.my notes";
    for (const std::string& folder : {dead, alive, own}) fs::create_directories(folder + "/x");
    runs.run();
    EXPECT_FALSE(fs::exists(dead));
    EXPECT_TRUE(fs::exists(alive));
    EXPECT_TRUE(fs::exists(own));
}

TEST(RunSurvey, AFullDiskEndsTheRunAndLeavesNoRow) {
    SurveyRuns whole, runs;
    whole.run();
    RunResult result;
    {
        const FullDisk disk(1000);  // bytes: the table of a line has more, the identity of the survey less
        result = runs.run(2);
    }
    EXPECT_EQ(result.outcome, RunOutcome::try_again);
    EXPECT_THAT(result.why, HasSubstr("File too large"));
    EXPECT_THAT(result.why, HasSubstr("start the same command again"));
    EXPECT_TRUE(fs::is_empty(runs.results + "/lines"));
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_EQ(runs.tables(), whole.tables());
}

TEST(RunSurvey, WorkspacesThatAreNotThereOrHaveNoDataAreRows) {
    SurveyRuns runs;
    runs.run();
    runs.plan.source.reset();
    runs.plan.all_lines = false;
    const std::string good = line_folder(runs.results, "100") + "/100.axm";
    const std::string bare = runs.folder.path("bare.axm");
    fs::copy_file(good, bare);
    for (const auto& [name, path] :
         {std::pair{"good", good}, {"bare", bare}, {"none", runs.folder.path("none.axm")}})
        runs.plan.lines.push_back(
            {.name = name, .line = "", .workspace = path, .options = runs.plan.options});
    runs.results = runs.folder.path("others");
    EXPECT_EQ(runs.run().outcome, RunOutcome::some_failed);
    const SurveyResults results = read_survey_results(runs.results);
    ASSERT_EQ(results.lines.size(), 3U);
    EXPECT_EQ(results.lines[0].status, LineStatus::done) << results.lines[0].message;
    EXPECT_EQ(results.lines[0].stations, 60);
    EXPECT_THAT(results.lines[1].message, HasSubstr("100.csv"));
    EXPECT_THAT(results.lines[2].message, HasSubstr("none.axm"));
    for (const LineResult& line : results.lines)
        EXPECT_THAT(line.message, Not(HasSubstr(own_process_mark()))) << "no folder that is gone is told";
    // The data of a workspace are looked at too.
    const std::string data = line_folder(runs.folder.path("results"), "100") + "/100.csv";
    write_file_safely(data, read_whole_file(data) + "\n# looked at\n");
    runs.run();
    EXPECT_THAT(runs.witness.done, ElementsAre("good"));
}

TEST(RunSurvey, ALineThatShowsNothingIsDoneWithoutABody) {
    SurveyRuns runs(1, 40);
    std::string text = "line,east,north,height,dtm,tmi\n";
    for (int i = 0; i < 40; ++i)
        text += "100," + std::to_string(450000 + 10 * i) + ",7550000,360,300," +
                format_number(std::fmod(1000 * std::abs(std::sin(12.9898 * i)), 1), "0.00") + "\n";
    write_file_safely(runs.path, text);
    runs.find_one_body();
    LineOptions& options = runs.options();
    options.find->bodies.reset();
    options.find->most = 1;
    options.invert.emplace();
    options.uncertainty.emplace();
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    const LineResult line = read_survey_results(runs.results).lines.front();
    EXPECT_EQ(line.status, LineStatus::done) << line.message;
    EXPECT_THAT(line.bodies, IsEmpty());
    EXPECT_TRUE(fs::exists(line_folder(runs.results, "100") + "/find.json"));
    EXPECT_FALSE(fs::exists(line_folder(runs.results, "100") + "/invert.json"));
}

TEST(RunSurvey, PicturesAreDrawnOneAtATime) {
    SurveyRuns runs;
    runs.options().render.emplace();
    int drawn = 0, at_once = 0;
    runs.draw = [&](Session&, const RenderStep&, const std::string& path) {
        ++at_once;
        EXPECT_EQ(at_once, 1);
        write_file_safely(path, "picture");
        ++drawn;
        --at_once;
    };
    EXPECT_EQ(runs.run(2).outcome, RunOutcome::all_done);
    EXPECT_EQ(drawn, 4);
    EXPECT_TRUE(fs::exists(line_folder(runs.results, "130") + "/130.png"));
}

}  // namespace

}  // namespace anomalis::survey
