#include "survey/desk/survey_desk.h"

#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "support/example_results.h"
#include "support/temp_folder.h"
#include "survey/failure_of.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class DeskTest : public testing::Test {
  protected:
    DeskTest() : results(example_results(4)) { write_example_results(folder, results); }

    std::string path() const { return folder.folder(); }
    void write(const LineResult& line) {
        folder.write("lines/" + line.line + "/result.json", line_result_json(line));
    }
    void open() {
        desk.open(path());
        desk.refresh();
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> names;
        for (const DeskRow& row : desk.rows()) names.push_back(row.line);
        return names;
    }
    const DeskRow& row(const std::string& line) const {
        return *std::ranges::find(desk.rows(), line, &DeskRow::line);
    }
    void rename_line(std::size_t i, const std::string& name) {
        results.identity.lines[i] = results.lines[i].line = name;
    }

    TempFolder folder;
    SurveyResults results;
    SurveyDesk desk;
};

}  // namespace

// -- The folder.

TEST_F(DeskTest, ShowsALineOfThePlanARow) {
    std::filesystem::remove_all(line_folder(path(), "L1010"));
    open();
    EXPECT_THAT(lines(), ElementsAre("L1000", "L1010", "L1020", "L1030"));
    EXPECT_EQ(row("L1000").bodies, 2);
    EXPECT_EQ(row("L1000").rms_nT, 1.5);
    EXPECT_EQ(row("L1000").least_depth, 40);
    EXPECT_EQ(row("L1000").depth_interval, 14);
    EXPECT_EQ(row("L1000").criterion, 900);
    EXPECT_EQ(row("L1010").status, RowStatus::waiting);
    EXPECT_TRUE(std::isnan(row("L1010").rms_nT));
    EXPECT_EQ(row("L1030").status, RowStatus::failed);
    EXPECT_EQ(row("L1030").message, "The line has no magnetic readings");
    EXPECT_THAT(desk.results().missing, ElementsAre("L1010"));
    EXPECT_EQ(desk.watch().result("L1020")->bodies.size(), results.lines[2].bodies.size());
    EXPECT_EQ(desk.watch().result("L1010"), nullptr);
    EXPECT_EQ(desk.trouble(), "");
}

TEST_F(DeskTest, AnIntervalWithAnOpenSideIsInfinitelyWide) {
    results.lines[0].bodies.resize(1);
    results.lines[0].bodies[0].depth_below_ground = {40, 30, unknown};
    results.lines[1].bodies.resize(1);
    results.lines[1].bodies[0].depth_below_ground = {40, unknown, unknown};
    write_example_results(folder, results);
    open();
    EXPECT_EQ(row("L1000").depth_interval, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(row("L1010").depth_interval));
}

TEST_F(DeskTest, DepthsAreBelowTheSensorWhereTheGroundIsNotKnown) {
    results.lines[0].bodies[0].depth_below_ground = {};
    results.lines[0].bodies.resize(1);
    write_example_results(folder, results);
    open();
    EXPECT_EQ(row("L1000").least_depth, 100);
    EXPECT_TRUE(row("L1000").below_sensor);
    EXPECT_FALSE(row("L1010").below_sensor);
}

TEST_F(DeskTest, TheFileOfTheSurveyStandsForItsFolder) {
    desk.open(folder.path("survey.json"));
    EXPECT_EQ(desk.folder(), path());
    desk.open(path() + "/");
    EXPECT_EQ(desk.folder(), path());
}

TEST_F(DeskTest, AFolderWithoutResultsIsToldAndTheOneBeforeStays) {
    open();
    const TempFolder empty, foreign, damaged;
    foreign.write("table.csv", "1,2\n");
    damaged.write("survey.json", "{\"format\": 1, \"surv");
    EXPECT_THAT(failure_of([&] { desk.open(empty.folder()); }), HasSubstr("is empty"));
    EXPECT_THAT(failure_of([&] { desk.open(foreign.folder()); }), HasSubstr("there is no survey.json"));
    EXPECT_THAT(failure_of([&] { desk.open(damaged.folder()); }), HasSubstr("survey.json is damaged"));
    EXPECT_THAT(failure_of([&] { desk.open(path() + "/gone"); }), HasSubstr("There is no folder"));
    EXPECT_EQ(desk.folder(), path());
    EXPECT_EQ(desk.rows().size(), 4U);
}

TEST_F(DeskTest, ADamagedResultIsARowThatSaysSo) {
    folder.write("lines/L1010/result.json", "{\"line\": \"L1010\", ");
    open();
    EXPECT_EQ(row("L1010").status, RowStatus::damaged);
    EXPECT_THAT(row("L1010").message, HasSubstr("lines/L1010/result.json is damaged"));
    EXPECT_EQ(desk.watch().count(RowStatus::done), 2U);
    write(results.lines[1]);
    desk.refresh();
    EXPECT_EQ(row("L1010").status, RowStatus::done);
    EXPECT_EQ(row("L1010").message, "");
}

TEST_F(DeskTest, ReadsOnInPieces) {
    desk.open(path());
    EXPECT_EQ(desk.watch().lines_to_read(), 4U);
    EXPECT_EQ(row("L1000").status, RowStatus::waiting);
    EXPECT_TRUE(desk.read_on(3));
    EXPECT_EQ(desk.watch().lines_to_read(), 1U);
    EXPECT_FALSE(desk.read_on(3));
    EXPECT_EQ(desk.watch().count(RowStatus::done), 3U);
}

TEST_F(DeskTest, ASurveyThatRunsIsReadOnAndTheChosenLineStays) {
    std::filesystem::remove_all(line_folder(path(), "L1000"));
    open();
    desk.sort(DeskColumn::rms, false);
    ASSERT_TRUE(desk.choose("L1020"));
    const std::size_t before = desk.change();
    desk.refresh();
    EXPECT_EQ(desk.change(), before);
    write(results.lines[0]);
    results.lines[2].rms_nT = 9;
    write(results.lines[2]);
    desk.refresh();
    EXPECT_GT(desk.change(), before);
    EXPECT_EQ(row("L1000").status, RowStatus::done);
    EXPECT_EQ(row("L1020").rms_nT, 9);
    EXPECT_EQ(desk.chosen(), "L1020");
    EXPECT_EQ(desk.chosen_row(), 0U);
    EXPECT_THAT(desk.results().missing, IsEmpty());
    EXPECT_EQ(desk.results().lines[0].line, "L1000");
}

TEST_F(DeskTest, AChangedPlanKeepsTheLinesOfBoth) {
    open();
    desk.choose("L1020");
    results.identity.lines = {"L1020", "L2000", "L1000"};
    folder.write("survey.json", survey_identity_json(results.identity));
    desk.refresh();
    EXPECT_THAT(lines(), ElementsAre("L1020", "L2000", "L1000"));
    EXPECT_EQ(row("L1000").status, RowStatus::done);
    EXPECT_EQ(row("L1020").rms_nT, results.lines[2].rms_nT);
    EXPECT_EQ(row("L2000").status, RowStatus::waiting);
    EXPECT_EQ(desk.chosen(), "L1020");
}

TEST_F(DeskTest, AFolderThatVanishesIsToldAndWhatWasReadStays) {
    open();
    std::filesystem::rename(path(), path() + "-away");
    desk.refresh();
    EXPECT_THAT(desk.trouble(), HasSubstr("The folder " + path() + " is gone"));
    EXPECT_EQ(desk.rows().size(), 4U);
    EXPECT_EQ(row("L1000").rms_nT, 1.5);
    EXPECT_NE(failure_of([&] { desk.set_flag("L1000", LineFlag::accept); }), "");
    EXPECT_EQ(row("L1000").mark, LineMark{});
    EXPECT_FALSE(desk.can_undo());
    std::filesystem::rename(path() + "-away", path());
    desk.refresh();
    EXPECT_EQ(desk.trouble(), "");
}

TEST_F(DeskTest, NamesTheWorkspaceOfALine) {
    open();
    EXPECT_EQ(desk.watch().workspace_of("L1000"), "");
    folder.write("lines/L1000/other.axm", "");
    EXPECT_EQ(desk.watch().workspace_of("L1000"), path() + "/lines/L1000/other.axm");
    folder.write("lines/L1000/L1000.axm", "");
    EXPECT_EQ(desk.watch().workspace_of("L1000"), path() + "/lines/L1000/L1000.axm");
}

// -- Sorting and filters.

TEST_F(DeskTest, SortsByEveryColumnBothWaysWithTheUnknownLast) {
    results.lines[0].rms_nT = results.lines[1].rms_nT = 2;
    results.lines[2].rms_nT = unknown;
    write_example_results(folder, results);
    std::filesystem::remove_all(line_folder(path(), "L1030"));
    open();
    desk.sort(DeskColumn::rms, true);
    EXPECT_THAT(lines(), ElementsAre("L1000", "L1010", "L1020", "L1030"));
    desk.sort(DeskColumn::rms, false);
    EXPECT_THAT(lines(), ElementsAre("L1000", "L1010", "L1020", "L1030"));
    desk.sort(DeskColumn::depth, false);
    EXPECT_THAT(lines(), ElementsAre("L1020", "L1010", "L1000", "L1030"));
    desk.sort(DeskColumn::depth_interval, true);
    EXPECT_THAT(lines(), ElementsAre("L1000", "L1010", "L1020", "L1030"));
    desk.sort(DeskColumn::bodies, true);
    EXPECT_THAT(lines(), ElementsAre("L1020", "L1000", "L1010", "L1030"));
    desk.sort(DeskColumn::criterion, true);
    EXPECT_THAT(lines(), ElementsAre("L1020", "L1010", "L1000", "L1030"));
    desk.sort(DeskColumn::status, false);
    EXPECT_THAT(lines(), ElementsAre("L1030", "L1000", "L1010", "L1020"));
    desk.set_flag("L1030", LineFlag::reject);
    desk.set_flag("L1010", LineFlag::accept);
    desk.sort(DeskColumn::flag, true);
    EXPECT_THAT(lines(), ElementsAre("L1010", "L1030", "L1000", "L1020"));
    desk.sort(DeskColumn::flag, false);
    EXPECT_THAT(lines(), ElementsAre("L1030", "L1010", "L1000", "L1020"));
    desk.sort(DeskColumn::line, false);
    EXPECT_THAT(lines(), ElementsAre("L1030", "L1020", "L1010", "L1000"));
    desk.sort_as_planned();
    EXPECT_THAT(lines(), ElementsAre("L1000", "L1010", "L1020", "L1030"));
}

TEST_F(DeskTest, NamesSortByTheirNumbers) {
    rename_line(0, "L1000");
    rename_line(1, "L900b");
    rename_line(2, "Tie 2");
    rename_line(3, "L900a");
    write_example_results(folder, results);
    open();
    desk.sort(DeskColumn::line, true);
    EXPECT_THAT(lines(), ElementsAre("L900a", "L900b", "L1000", "Tie 2"));
}

TEST_F(DeskTest, FiltersHoldTogether) {
    results.lines[1].bodies[0].depth_below_ground = {41, 30, unknown};
    write_example_results(folder, results);
    open();
    desk.set_note("L1020", "Two sheets");
    const auto shown = [&](const RowFilter& filter) {
        desk.filter(filter);
        return lines();
    };
    EXPECT_THAT(shown({.text = "10"}), ElementsAre("L1000", "L1010", "L1020", "L1030"));
    EXPECT_THAT(shown({.text = "l102"}), ElementsAre("L1020"));
    EXPECT_THAT(shown({.text = "NO MAGNETIC"}), ElementsAre("L1030"));
    EXPECT_THAT(shown({.text = "two sheets"}), ElementsAre("L1020"));
    EXPECT_THAT(shown({.status = RowStatus::done}), ElementsAre("L1000", "L1010", "L1020"));
    EXPECT_THAT(shown({.rms_above = 1.55}), ElementsAre("L1010", "L1020", "L1030"));
    EXPECT_THAT(shown({.depth_from = 41}), ElementsAre("L1010", "L1020"));
    EXPECT_THAT(shown({.depth_from = 41, .depth_to = 41}), ElementsAre("L1010"));
    EXPECT_THAT(shown({.interval_above = 14}), ElementsAre("L1010"));
    EXPECT_THAT(shown({.status = RowStatus::failed, .depth_from = 0}), IsEmpty());
    desk.set_flag("L1010", LineFlag::reject);
    EXPECT_THAT(shown({.flag = LineFlag::reject}), ElementsAre("L1010"));
    EXPECT_THAT(shown({.flag = LineFlag::none}), ElementsAre("L1000", "L1020", "L1030"));
}

TEST_F(DeskTest, GravityIsFilteredByItsOwnUnit) {
    results.lines[0].rms_nT = unknown;
    results.lines[0].rms_mGal = 0.2;
    write_example_results(folder, results);
    open();
    desk.filter({.rms_above = 0.1});
    EXPECT_EQ(lines().size(), 4U);
    desk.filter({.rms_above = 0.3});
    EXPECT_THAT(lines(), ElementsAre("L1010", "L1020", "L1030"));
    desk.sort(DeskColumn::rms, true);
    desk.filter({});
    EXPECT_EQ(lines().back(), "L1000");
}

// -- The chosen line.

TEST_F(DeskTest, StepsGoThroughTheRowsOnShow) {
    open();
    desk.sort(DeskColumn::line, false);
    EXPECT_TRUE(desk.step(1));
    EXPECT_EQ(desk.chosen(), "L1030");
    EXPECT_FALSE(desk.step(-1));
    EXPECT_TRUE(desk.step(1));
    EXPECT_EQ(desk.chosen(), "L1020");
    desk.filter({.status = RowStatus::done});
    EXPECT_FALSE(desk.step(-1));
    EXPECT_FALSE(desk.choose("L1030"));
    EXPECT_TRUE(desk.choose(""));
    EXPECT_TRUE(desk.step(-1));
    EXPECT_EQ(desk.chosen(), "L1000");
}

TEST_F(DeskTest, AFlagThatTakesTheLineOutOfTheFilterGoesOnWithTheNext) {
    open();
    desk.filter({.flag = LineFlag::none});
    desk.choose("L1010");
    desk.set_flag("L1010", LineFlag::accept);
    EXPECT_EQ(desk.chosen(), "L1020");
    desk.choose("L1030");
    desk.set_flag("L1030", LineFlag::reject);
    EXPECT_EQ(desk.chosen(), "L1020");
    desk.filter({.text = "nothing has this"});
    EXPECT_EQ(desk.chosen(), "");
    desk.filter({});
    EXPECT_EQ(desk.chosen(), "L1020");
}

TEST_F(DeskTest, AFilterHidesTheChosenLineForAWhile) {
    open();
    desk.choose("L1010");
    desk.filter({.text = "L102"});
    EXPECT_EQ(desk.chosen(), "L1020");
    desk.filter({.text = "L10"});
    EXPECT_EQ(desk.chosen(), "L1010");
}

TEST_F(DeskTest, FlagsAreTakenBackAndGivenAgain) {
    open();
    desk.set_flag("L1000", LineFlag::accept);
    desk.set_note("L1000", "good");
    desk.set_flag("L1000", LineFlag::accept);  // says nothing new
    desk.choose("L1030");
    EXPECT_EQ(desk.undo(), "");
    EXPECT_EQ(desk.mark("L1000"), (LineMark{LineFlag::accept, ""}));
    EXPECT_EQ(desk.chosen(), "L1000");
    EXPECT_EQ(desk.undo(), "");
    EXPECT_EQ(desk.mark("L1000"), LineMark{});
    EXPECT_FALSE(desk.can_undo());
    EXPECT_EQ(desk.redo(), "");
    EXPECT_EQ(desk.redo(), "");
    EXPECT_FALSE(desk.can_redo());
    EXPECT_EQ(folder.read("flags.csv"), "line,flag,note\nL1000,accept,good\n");
    EXPECT_EQ(desk.count(LineFlag::accept), 1U);
}

TEST_F(DeskTest, UndoLeavesWhatAnotherProgramHasChanged) {
    open();
    desk.set_flag("L1000", LineFlag::accept);
    LineFlags other(path());
    other.set("L1000", {LineFlag::reject, "theirs"});
    EXPECT_THAT(desk.undo(), HasSubstr("Another program has changed the flag of line L1000"));
    EXPECT_EQ(row("L1000").mark, (LineMark{LineFlag::reject, "theirs"}));
    EXPECT_FALSE(desk.can_undo());
    other.set("L1010", {LineFlag::accept, ""});
    desk.refresh();
    EXPECT_EQ(row("L1010").mark.flag, LineFlag::accept);
}

TEST_F(DeskTest, DamagedFlagsAreToldWhileTheResultsAreShown) {
    folder.write("flags.csv", "line,flag,note\nL1000,perhaps,\n");
    open();
    EXPECT_THAT(desk.trouble(), HasSubstr("\"perhaps\" is no flag"));
    EXPECT_EQ(desk.watch().count(RowStatus::done), 3U);
    folder.write("flags.csv", "line,flag,note\nL1000,accept,\n");
    desk.refresh();
    EXPECT_EQ(desk.trouble(), "");
    EXPECT_EQ(row("L1000").mark.flag, LineFlag::accept);
}

}  // namespace anomalis::survey
