#include <chrono>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>

#include "batch/batch_runs.h"
#include "batch/survey_progress.h"
#include "support/survey_lines.h"
#include "survey/results/survey_results.h"

namespace anomalis::batch {

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// Six short lines that are imported and no more: what is done with a line is tested with the lines.
class SurveyFolder : public TempFolder {
  public:
    SurveyFolder() {
        write("survey.csv", survey_table({.lines = 6, .stations = 40}));
        write_plan("");
    }
    void write_plan(const std::string& more) const {
        write("plan.toml",
              "[source]\nfile = \"survey.csv\"\ncrs = \"EPSG:32754\"\nfield = [50000, -55, 6]\n" + more);
    }
    BatchRun run(std::vector<std::string> more = {}, PictureWriter* pictures = nullptr,
                 const std::string& out = "out") const {
        std::vector<std::string> all{"survey", path("plan.toml"), "-o", path(out), "-j", "1"};
        all.insert(all.end(), more.begin(), more.end());
        return batch(all, pictures);
    }
    std::string tables(const std::string& out) const {
        return read(out + "/bodies.csv") + read(out + "/lines.csv") + read(out + "/survey.gpkg");
    }
};

std::vector<json> json_lines(const std::string& text) {
    std::vector<json> events;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) events.push_back(json::parse(line));
    return events;
}

TEST(SurveyCommand, DoesAllLinesAndKeepsThemTheNextTime) {
    const SurveyFolder folder;
    const BatchRun first = folder.run();
    EXPECT_EQ(first.status, 0) << first.err;
    EXPECT_THAT(first.out,
                AllOf(HasSubstr("6 lines done in "), HasSubstr("bodies.csv, lines.csv, survey.gpkg")));
    const std::string tables = folder.tables("out");
    const BatchRun again = folder.run();
    EXPECT_EQ(again.status, 0);
    EXPECT_THAT(again.out, AllOf(HasSubstr("0 lines done in "), HasSubstr(" s, 6 done before")));
    EXPECT_EQ(folder.tables("out"), tables);
}

TEST(SurveyCommand, ADryRunTellsWhatThereIsToDoAndWritesNothing) {
    const SurveyFolder folder;
    const BatchRun before = folder.run({"--dry-run"});
    EXPECT_EQ(before.status, 0) << before.err;
    EXPECT_THAT(before.out,
                AllOf(HasSubstr("100: to do: line 100, import\n"), HasSubstr("6 of 6 lines to do -> ")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("out")));
    ASSERT_EQ(folder.run().status, 0);
    EXPECT_THAT(folder.run({"--dry-run"}).out,
                AllOf(HasSubstr("100: done before"), HasSubstr("0 of 6 lines to do")));
    folder.write_plan("[[line]]\nline = 120\nexport = \"model-table\"\n");
    EXPECT_THAT(folder.run({"--dry-run"}).out,
                AllOf(HasSubstr("120: to do again, it changed: line 120, export (1 file)"),
                      HasSubstr("1 of 6 lines to do")));
    EXPECT_THAT(folder.run({"--dry-run", "--shard", "2/6"}).out,
                AllOf(HasSubstr("110: done before"), HasSubstr("0 of 1 line to do")));
}

TEST(SurveyCommand, ALineThatFailsIsARowAndStatusOne) {
    const SurveyFolder folder;
    folder.write_plan("[[line]]\nline = 110\nchannel = \"mag\"\nfind.window = [5000, 6000]\n");
    const BatchRun run = folder.run();
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("110 failed: "));
    EXPECT_THAT(run.out, AllOf(HasSubstr("6 lines done in "), HasSubstr(", 1 failed (lines.csv says why)")));
    EXPECT_THAT(folder.read("out/lines.csv"), HasSubstr("110,"));
    EXPECT_EQ(folder.run({"--keep-going"}).status, 0);
    EXPECT_THAT(folder.run({"--dry-run"}).out, HasSubstr("110: failed before"));
    EXPECT_THAT(folder.run({"--dry-run", "--again-failed"}).out, HasSubstr("110: to do again, it failed"));
}

TEST(SurveyCommand, LogsJsonALine) {
    const SurveyFolder folder;
    const BatchRun run = folder.run({"--log", "json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::vector<json> events = json_lines(run.out);
    ASSERT_GE(events.size(), 8U);
    EXPECT_EQ(events.front()["event"], "start");
    EXPECT_EQ(events.front()["survey"], "plan");
    EXPECT_EQ(events.back()["event"], "end");
    EXPECT_EQ(events.back()["outcome"], "all done");
    EXPECT_EQ(events.back()["exit_status"], 0);
    EXPECT_EQ(events.back()["done"], 6);
    const auto lines =
        std::ranges::count_if(events, [](const json& event) { return event["event"] == "line"; });
    EXPECT_EQ(lines, 6);
}

TEST(SurveyCommand, PartsAndTheirMergeGiveTheTablesOfOneRun) {
    const SurveyFolder folder;
    ASSERT_EQ(folder.run({}, nullptr, "whole").status, 0);
    EXPECT_EQ(folder.run({"--shard", "1/2"}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(folder.path("out/bodies.csv")));
    const BatchRun early = folder.run({"--merge"});
    EXPECT_EQ(early.status, 75);
    EXPECT_NE(early.err, "");
    EXPECT_EQ(folder.run({"--shard", "2/2"}, nullptr, "other").status, 0);
    const BatchRun merged = folder.run({"--merge", "--from", folder.path("other")});
    EXPECT_EQ(merged.status, 0) << merged.err;
    EXPECT_THAT(merged.out, AllOf(HasSubstr("6 lines, 0 bodies"), HasSubstr("3 taken from other folders")));
    EXPECT_EQ(folder.tables("out"), folder.tables("whole"));
}

/// As a person who presses Ctrl+C at the third picture.
struct InterruptingPictures : PictureWriter {
    int write(Session& /*session*/, const PictureRequest& request) override {
        if (++drawn == at) {
            std::raise(SIGINT);
            // The lines left would else be done before the run looks whether it is to stop.
            std::this_thread::sleep_for(std::chrono::seconds(1));
        }
        write_file(request.path);
        return 0;
    }
    int write_map(Prompts& /*prompts*/, const intake::SurveyIndex& /*index*/,
                  const MapRequest& /*request*/) override {
        return -1;
    }
    int write_results_map(Prompts& /*prompts*/, const survey::SurveyResults& /*results*/,
                          const survey::ResultsMapMarks& /*marks*/, const MapRequest& /*request*/) override {
        return -1;
    }
    void prepare() override { ++prepared; }
    static void write_file(const std::string& path) { std::ofstream(path) << "a picture"; }

    int at = 0, drawn = 0, prepared = 0;
};

TEST(SurveyCommand, CtrlCEndsWithTheWordsHowToGoOn) {
    const SurveyFolder folder;
    folder.write_plan("[render]\nformat = \"svg\"\n");
    InterruptingPictures pictures;
    ASSERT_EQ(folder.run({}, &pictures, "whole").status, 0);
    EXPECT_EQ(pictures.prepared, 1);
    pictures.drawn = 0;
    pictures.at = 3;
    const BatchRun stopped = folder.run({}, &pictures);
    EXPECT_EQ(stopped.status, 75);
    EXPECT_THAT(stopped.err, AllOf(HasSubstr("Stopped: "), HasSubstr(" of 6 lines are done"),
                                   HasSubstr("Run the same command again to go on")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("out/lines.csv")));
    pictures.at = 0;
    const BatchRun rest = folder.run({}, &pictures);
    EXPECT_EQ(rest.status, 0) << rest.err;
    EXPECT_THAT(rest.out, HasSubstr("done before"));
    EXPECT_EQ(folder.tables("out"), folder.tables("whole"));
}

/// Counts the lines of the maps that it is asked for.
class CountingMaps : public PictureWriter {
  public:
    int write(Session& /*session*/, const PictureRequest& /*request*/) override { return -1; }
    int write_map(Prompts& /*prompts*/, const intake::SurveyIndex& /*index*/,
                  const MapRequest& /*request*/) override {
        return -1;
    }
    int write_results_map(Prompts& /*prompts*/, const survey::SurveyResults& results,
                          const survey::ResultsMapMarks& /*marks*/, const MapRequest& request) override {
        lines.push_back(results.lines.size());
        path = request.path;
        return 0;
    }

    std::vector<std::size_t> lines;
    std::string path;
};

TEST(SurveyCommand, DrawsTheMapOfAllLinesAtItsEnd) {
    const SurveyFolder folder;
    CountingMaps maps;
    EXPECT_EQ(folder.run({"--map", folder.path("map.pdf")}, &maps).status, 0);
    EXPECT_EQ(maps.path, folder.path("map.pdf"));
    EXPECT_EQ(folder.run({"--merge", "--map", folder.path("map.png")}, &maps).status, 0);
    EXPECT_THAT(maps.lines, testing::ElementsAre(6U, 6U));
    EXPECT_THAT(folder.run({"--map", folder.path("map.txt")}, &maps).err,
                HasSubstr("the ending must be .png"));
    const BatchRun part = folder.run({"--shard", "1/2", "--map", folder.path("map.png")}, &maps);
    EXPECT_EQ(part.status, 2);
    EXPECT_THAT(part.err, HasSubstr("is for a run of the whole survey"));
    EXPECT_EQ(maps.lines.size(), 2U);
}

TEST(SurveyCommand, WrongUsageIsStatusTwoWithTheReason) {
    const SurveyFolder folder;
    struct Wrong {
        std::vector<std::string> options;
        const char* why;
    };
    for (const Wrong& wrong : std::initializer_list<Wrong>{
             {{"--shard", "5/4"}, "shard"},
             {{"--shard", "x"}, "shard"},
             {{"--shard", "0/4"}, "shard"},
             {{"--shard", "1/2", "--merge"}, "choose one of them"},
             {{"--merge", "--dry-run"}, "--dry-run is for a run"},
             {{"--from", folder.folder()}, "--from is for --merge"},
             {{"--merge", "--from", folder.path("none")}, "must be a folder with results"},
             {{"--log", "xml"}, "--log"},
             {{"--formulas", "exact"}, "its plan says formulas"}}) {
        const BatchRun run = folder.run(wrong.options);
        EXPECT_EQ(run.status, 2) << wrong.why;
        EXPECT_THAT(run.err, HasSubstr(wrong.why));
    }
    EXPECT_EQ(batch({"survey", folder.path("plan.toml"), "-o", folder.path("out"), "-j", "0"}).status, 2);
    EXPECT_EQ(batch({"survey", folder.path("plan.toml")}).status, 2) << "-o is needed";
    EXPECT_EQ(batch({"survey", folder.path("plan.toml"), "-o", folder.path("plan.toml")}).status, 2);
    EXPECT_EQ(batch({"survey", "-", "-o", folder.path("out")}).status, 2);
    const BatchRun missing = batch({"survey", folder.path("none.toml"), "-o", folder.path("out")});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("There is no plan"));
    EXPECT_FALSE(std::filesystem::exists(folder.path("out")));
}

TEST(SurveyCommand, ABadPlanIsStatusTwoAndMakesNoFolder) {
    const SurveyFolder folder;
    folder.write_plan("[find]\nmots = 3\n");
    const BatchRun run = folder.run();
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("plan.toml, line 6, find.mots: no such key; nearest is most"));
    folder.write_plan("[render]\nformat = \"svg\"\n");
    EXPECT_THAT(folder.run().err, HasSubstr("draws no pictures"));
    folder.write_plan("[lines]\nonly = [\"101\"]\n");
    EXPECT_EQ(folder.run().status, 2);
    EXPECT_FALSE(std::filesystem::exists(folder.path("out")));
}

TEST(SurveyCommand, AFolderOfAnotherSurveyIsRefused) {
    const SurveyFolder folder;
    ASSERT_EQ(folder.run().status, 0);
    const std::string tables = folder.tables("out");
    const std::string plan = folder.read("plan.toml");
    folder.write("plan.toml", "name = \"other\"\n" + plan);
    for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--dry-run"}, {"--merge"}}) {
        const BatchRun run = folder.run(options);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.err, HasSubstr("another survey"));
    }
    EXPECT_EQ(folder.tables("out"), tables);
}

TEST(SurveyCommand, AFolderThatCannotBeMadeIsAMatterOfTheMachine) {
    const SurveyFolder folder;
    const BatchRun run = batch({"survey", folder.path("plan.toml"), "-o", "/proc/anomalis/out"});
    EXPECT_EQ(run.status, 75);
    EXPECT_THAT(run.err, HasSubstr("/proc/anomalis"));
}

survey::SurveyProgress progress_of(std::size_t lines, std::size_t done, std::size_t kept, std::size_t failed,
                                   double seconds) {
    survey::SurveyProgress progress;
    progress.lines = lines;
    progress.done = done;
    progress.kept = kept;
    progress.failed = failed;
    progress.seconds = seconds;
    return progress;
}

TEST(SurveyProgressWords, TellRateFailuresAndTimeLeft) {
    survey::SurveyProgress progress = progress_of(1000, 0, 0, 0, 0);
    EXPECT_EQ(progress_text(progress), "0 of 1000 lines");
    progress = progress_of(1000, 100, 20, 3, 4);
    EXPECT_EQ(progress_text(progress),
              "120 of 1000 lines (20 done before), 3 failed, 25.0 lines/s, 36 s left");
    progress = progress_of(10, 1, 0, 0, 100);
    EXPECT_EQ(progress_text(progress), "1 of 10 lines, 0.6 lines/min, 15 min left");
    EXPECT_EQ(duration_text(0.2), "1 s");
    EXPECT_EQ(duration_text(9000), "2.5 h");
    EXPECT_FALSE(rate_of(progress_of(5, 0, 5, 0, 1)));
}

TEST(SurveyProgressWords, ComeSeldomWhereTheyCannotBeWrittenOver) {
    ProgressPace pace;
    int lines = 0;
    for (int second = 0; second <= 3600; ++second) lines += pace.due(second) ? 1 : 0;
    EXPECT_GT(lines, 10);
    EXPECT_LT(lines, 60);
}

TEST(SurveyProgressWords, AreOneLineThatIsWrittenOverOnATerminal) {
    std::ostringstream out, err;
    BatchSession session(out, err);
    session.show_progress = true;
    {
        SurveyTeller teller(session, SurveyLog::text);
        teller.progress(progress_of(100, 10, 0, 1, 1));
        teller.progress(progress_of(100, 11, 0, 1, 1.01));
        teller.progress(progress_of(100, 99, 0, 0, 2));
        survey::LineResult failed;
        failed.line = "5690";
        failed.status = survey::LineStatus::failed;
        failed.message = "no \x1b[2J";
        teller.line_done(failed);
    }
    EXPECT_THAT(err.str(), AllOf(HasSubstr("\r10 of 100 lines, 1 failed, 10.0 lines/s, 9 s left"),
                                 Not(HasSubstr("11 of 100")), HasSubstr("\r99 of 100"),
                                 HasSubstr("\r5690 failed: no \\u{1B}[2J\n")));
    EXPECT_EQ(out.str(), "");
}

}  // namespace

}  // namespace anomalis::batch
