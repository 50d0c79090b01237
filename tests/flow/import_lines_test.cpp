#include <array>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>

#include "flow/importing.h"

namespace anomalis::flow {
namespace {

namespace fs = std::filesystem;

// -- What is written.

TEST(ImportLines, asks_or_refuses_before_it_replaces_other_contents) {
    Importing survey(survey_table());
    const ImportedLine line = survey.line(0);
    ASSERT_TRUE(survey.write(line));
    EXPECT_TRUE(survey.write(line)) << "the same contents are no reason to ask";
    survey.folder.write("survey_100.axm", "somebody's model");
    EXPECT_FALSE(survey.write(line));
    EXPECT_NE(survey.prompts.messages.back().find("survey_100.axm"), std::string::npos);
    EXPECT_FALSE(survey.write(line, ReplaceExisting::ask)) << "nobody said Yes";
    EXPECT_EQ(survey.prompts.questions.size(), 1U);
    EXPECT_EQ(survey.folder.read("survey_100.axm"), "somebody's model");
    EXPECT_TRUE(survey.write(line, ReplaceExisting::agreed));
    EXPECT_NE(survey.folder.read("survey_100.axm"), "somebody's model");
    EXPECT_EQ(survey.files(), 3);
}

TEST(ImportLines, leaves_nothing_behind_where_it_cannot_write) {
    Importing survey(survey_table());
    const ImportedLine line = survey.line(0);
    fs::create_directory(survey.folder.path("survey_100.axm"));
    EXPECT_FALSE(survey.write(line, ReplaceExisting::agreed));
    EXPECT_EQ(survey.files(), 2) << "the table was not to come alone";
    EXPECT_FALSE(fs::exists(line.table_path));
    ImportedLine elsewhere = line;
    elsewhere.table_path = survey.folder.path("missing/survey_100.csv");
    elsewhere.workspace_path = survey.folder.path("missing/survey_100.axm");
    EXPECT_FALSE(survey.write(elsewhere));
    EXPECT_NE(survey.prompts.messages.back().find("missing"), std::string::npos);
}

TEST(ImportLines, puts_back_what_was_there_when_the_second_file_cannot_come) {
    Importing survey(survey_table());
    const ImportedLine line = survey.line(0);
    survey.folder.write("survey_100.csv", "older table");
    fs::create_directory(survey.folder.path("survey_100.axm"));
    EXPECT_FALSE(survey.write(line, ReplaceExisting::agreed));
    EXPECT_EQ(survey.folder.read("survey_100.csv"), "older table");
}

TEST(ImportLines, never_writes_over_the_survey_itself) {
    Importing survey(survey_table(), "", "survey_100.csv");
    survey.choices.name = "survey";
    EXPECT_NE(survey.fault(0).find("is the survey file itself"), std::string::npos);
}

TEST(ImportLines, makes_names_of_files_safe_and_different) {
    Importing survey(survey_table({.lines = 4, .stations = 5}));
    const std::array names{"L 1/2", "L_1:2", "l 1?2", "../x"};
    for (std::size_t i = 0; i < names.size(); ++i) survey.index.lines[i].name = names[i];
    EXPECT_EQ(import_names(survey.index, survey.choices, 0).table, "survey_L_1_2.csv");
    EXPECT_EQ(import_names(survey.index, survey.choices, 1).table, "survey_L_1_2-2.csv");
    EXPECT_EQ(import_names(survey.index, survey.choices, 2).workspace, "survey_l_1_2-3.axm");
    EXPECT_EQ(import_names(survey.index, survey.choices, 3).table, "survey__._x.csv");
}

TEST(ImportLines, all_lines_come_together) {
    Importing survey(survey_table() + "9,482000,7553000,300,240,7,0\n");
    const std::string out = survey.folder.path("out");
    fs::create_directory(out);
    const ImportedAll all =
        import_all_lines(survey.index, survey.choices, out, ReplaceExisting::refuse, survey.prompts);
    ASSERT_TRUE(all.done);
    ASSERT_EQ(all.lines.size(), 3U) << "a line of one station is left out";
    for (const ImportedAll::Written& written : all.lines) {
        const ImportedLine one = import_line(survey.index, written.line, {}, survey.choices, out);
        EXPECT_EQ(survey.folder.read("out/" + fs::path(written.table_path).filename().string()), one.table);
    }
    survey.folder.write("out/survey_120.axm", "somebody's model");
    survey.choices.sensor_offset = 33.0F;
    fs::remove(out + "/survey_100.csv");
    const ImportedAll again =
        import_all_lines(survey.index, survey.choices, out, ReplaceExisting::refuse, survey.prompts);
    EXPECT_FALSE(again.done);
    EXPECT_TRUE(again.lines.empty());
    EXPECT_FALSE(fs::exists(out + "/survey_100.csv")) << "all or none";
}

// -- From line to line.

TEST(ImportLines, finds_lines_by_name_and_tells_near_ones) {
    const Importing survey(survey_table({.lines = 12}));
    EXPECT_EQ(find_line(survey.index, "120"), 2U);
    EXPECT_EQ(find_line(survey.index, "120.0"), 2U);
    EXPECT_FALSE(find_line(survey.index, "121"));
    EXPECT_EQ(near_line_names(survey.index, "121", 2), (std::vector<std::string>{"120", "130"}));
    EXPECT_EQ(neighbour_line(survey.index, 0, 1), 1U);
    EXPECT_FALSE(neighbour_line(survey.index, 0, -1));
    EXPECT_FALSE(neighbour_line(survey.index, 11, 1));
}

TEST(ImportLines, passes_over_lines_that_cannot_be_imported) {
    Importing survey(survey_table());
    survey.index.lines[1].stations = 1;
    EXPECT_EQ(neighbour_line(survey.index, 0, 1), 2U);
    EXPECT_EQ(neighbour_line(survey.index, 2, -1), 0U);
}

TEST(ImportLines, the_next_line_goes_on_as_the_present_one) {
    Importing survey(survey_table(), "EPSG:32754");
    survey.choices.date = "1990-07-01";
    Workspace present = survey.line(0).workspace;
    present.processing.smooth_filter_width = 4;
    present.mag.regional_degree = 1;
    present.mag.noise = 2.5F;
    present.mag.base = 12;
    present.sensor_offset = 61;
    present.source.igrf_change = igrf_removed;
    const ImportedLine next = next_line(survey.index, 1, survey.choices, survey.folder.folder(), present);
    EXPECT_EQ(next.workspace.processing, present.processing);
    EXPECT_EQ(next.workspace.mag.regional_degree, 1);
    EXPECT_EQ(next.workspace.mag.noise, 2.5F);
    EXPECT_EQ(next.workspace.mag.base, unset);
    EXPECT_EQ(next.workspace.sensor_offset, 61);
    EXPECT_EQ(next.workspace.source.line, "110");
    EXPECT_EQ(next.workspace.source.igrf_change, igrf_removed);
    EXPECT_NE(next.workspace.field, present.field) << "the field is that of its own place";
    present.field = {50000, -50, 5};
    present.source.field_origin.clear();
    EXPECT_EQ(next_line(survey.index, 1, survey.choices, survey.folder.folder(), present).workspace.field,
              present.field)
        << "a field that somebody keyed holds for its neighbours";
}

TEST(ImportLines, bodies_come_along_their_strike) {
    Importing survey(survey_table({.to_and_fro = false}));
    const ImportedLine first = survey.line(0), second = survey.line(1);
    ASSERT_TRUE(survey.write(first) && survey.write(second));
    Workspace former = loaded(first, survey.prompts), next = loaded(second, survey.prompts);
    former.body_count = 1;
    ModelBody& body = former.body(1);
    body.type = 2;
    body.distance.value = 200;
    body.top.value = 30;
    body.east = 482200;
    body.north = 7553000;
    Faults notes;
    EXPECT_EQ(bring_bodies(former, next, notes), 1);
    ASSERT_EQ(next.body_count, 1);
    EXPECT_NEAR(next.body(1).distance.value, 200, 1);
    EXPECT_NEAR(next.body(1).top.value, 30, 0.1);
}

// -- A workspace for a plain table.

TEST(NewWorkspace, a_table_that_needs_no_change_is_its_own_data_file) {
    SurveyShape shape{.lines = 1};
    shape.line_column = false;
    Importing survey(survey_table(shape));
    const ImportedLine made = new_workspace(survey.index, survey.choices, survey.folder.path("survey.axm"));
    EXPECT_EQ(made.table, "");
    const DataDefinition& definition = made.workspace.definition;
    EXPECT_EQ(definition.data_file, survey.path);
    EXPECT_EQ(definition.x_column, 1);
    EXPECT_EQ(definition.z_column, 3);
    EXPECT_EQ(definition.dtm_column, 4);
    EXPECT_EQ(definition.mag_column, 5);
    EXPECT_EQ(definition.grav_column, 6);
    ASSERT_TRUE(survey.write(made));
    EXPECT_EQ(survey.files(), 2);
    EXPECT_EQ(loaded(made, survey.prompts).station_count, 40);
}

TEST(NewWorkspace, any_other_gets_a_table_beside_it) {
    for (const std::string& text : {survey_in_degrees(140.8, -22.1, 1),
                                    std::string("east;north;tmi\n482000,5;7553000;5\n482010,5;7553000;6\n"
                                                "482020,5;7553000;8\n482030,5;7553000;4\n")}) {
        Importing survey(text, "", "data.csv");
        const ImportedLine made = new_workspace(survey.index, survey.choices, survey.folder.path("data.axm"));
        EXPECT_EQ(made.table_path, survey.folder.path("data_line.csv"));
        ASSERT_TRUE(survey.write(made)) << survey.prompts.messages.front();
        EXPECT_GT(loaded(made, survey.prompts).station_count, 3);
        EXPECT_EQ(survey.folder.read("data.csv"), text);
    }
}

TEST(NewWorkspace, refuses_a_file_of_several_lines) {
    const Importing survey(survey_table());
    EXPECT_THROW(new_workspace(survey.index, survey.choices, survey.folder.path("a.axm")), Fault);
}

}  // namespace
}  // namespace anomalis::flow
