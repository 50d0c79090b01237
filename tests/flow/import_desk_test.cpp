#include "flow/import_desk.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "edit/change.h"
#include "edit/line_sample.h"
#include "flow/import_words.h"
#include "forward/shape/reference_point.h"
#include "support/survey_file.h"

namespace anomalis::flow {
namespace {

using intake::Role;

struct Desk : edit::LineSample, ImportDeskObserver {
    Desk() : path(folder.write("survey.csv", survey_file_text())) {}

    void layout_changed() override { ++layouts; }
    void lines_changed() override { ++lines; }
    void choice_changed() override {}
    void progress_changed() override { ++turns; }
    void load_imported() override { load(); }

    void open() {
        desk.open(path);
        desk.finish_reading();
    }
    void open_and_import() {
        open();
        desk.choose_system("EPSG:32754");
        desk.finish_reading();
        desk.choose_date("1990-07-01");
    }
    std::size_t column(const std::string& name) const {
        for (std::size_t i = 0; i < desk.layout()->columns.size(); ++i)
            if (desk.layout()->columns[i].name == name) return i;
        throw std::runtime_error("no column " + name);
    }

    std::string path;
    ImportDesk desk{workbench, *this};
    int layouts = 0, lines = 0, turns = 0;
};

TEST(ImportDesk, a_file_is_recognised_and_its_lines_are_there) {
    Desk sample;
    sample.open();
    ASSERT_TRUE(sample.desk.layout());
    EXPECT_EQ(sample.desk.trouble(), "");
    ASSERT_TRUE(sample.desk.index());
    EXPECT_EQ(sample.desk.index()->lines.size(), 5U);
    EXPECT_EQ(sample.desk.layout()->columns[sample.column("tmi")].role, Role::mag);
    EXPECT_FALSE(sample.desk.preview().rows.empty());
    EXPECT_EQ(sample.desk.line(), 0U) << "the first line that can be imported";
    EXPECT_GE(sample.layouts, 1);
}

TEST(ImportDesk, a_file_that_is_no_survey_is_shown_with_its_first_lines_and_what_to_do) {
    Desk sample;
    sample.path = sample.folder.write("letter.txt", "Dear reader,\nthis is no survey.\n\nYours\n");
    sample.open();
    EXPECT_FALSE(sample.desk.index());
    EXPECT_NE(sample.desk.trouble(), "");
    EXPECT_EQ(sample.desk.refusal(), sample.desk.trouble());
    if (!sample.desk.layout()) {
        ASSERT_GE(sample.desk.head().size(), 2U);
        EXPECT_EQ(sample.desk.head()[0], "Dear reader,");
    }
    EXPECT_FALSE(sample.desk.import());
}

TEST(ImportDesk, a_file_that_is_not_there_is_told) {
    Desk sample;
    sample.path = sample.folder.path("none.csv");
    sample.open();
    EXPECT_FALSE(sample.desk.layout());
    EXPECT_NE(sample.desk.trouble(), "");
}

TEST(ImportDesk, a_role_goes_from_one_column_to_another_and_the_lines_are_read_anew) {
    Desk sample;
    sample.open();
    const int before = sample.lines;
    sample.desk.choose_role(sample.column("ground"), Role::mag);
    sample.desk.finish_reading();
    EXPECT_GT(sample.lines, before);
    EXPECT_EQ(sample.desk.layout()->columns[sample.column("tmi")].role, Role::none);
    EXPECT_EQ(sample.desk.layout()->columns[sample.column("ground")].unit, intake::Unit::nanotesla);
    ASSERT_TRUE(sample.desk.index());
    EXPECT_DOUBLE_EQ(sample.desk.index()->lines[0].mag_nT->greatest, 260);
}

TEST(ImportDesk, without_coordinates_it_says_which_columns_are_wanted) {
    Desk sample;
    sample.open();
    sample.desk.choose_role(sample.column("easting"), Role::none);
    EXPECT_FALSE(sample.desk.reading());
    EXPECT_FALSE(sample.desk.index());
    EXPECT_NE(sample.desk.refusal().find("Easting"), std::string::npos);
    sample.desk.choose_role(sample.column("easting"), Role::easting);
    sample.desk.finish_reading();
    EXPECT_TRUE(sample.desk.index());
}

TEST(ImportDesk, nulls_are_keyed_as_numbers) {
    Desk sample;
    sample.open();
    const std::size_t tmi = sample.column("tmi");
    EXPECT_NE(sample.desk.choose_nulls(tmi, "-99999 x").find("\"x\""), std::string::npos);
    EXPECT_EQ(sample.desk.choose_nulls(tmi, "51050 -99999.99"), "");
    sample.desk.finish_reading();
    EXPECT_EQ(nulls_text(sample.desk.layout()->columns[tmi].nulls), "51050 -99999.99");
    ASSERT_TRUE(sample.desk.index());
    EXPECT_GE(sample.desk.index()->nulls[tmi], 2);
}

TEST(ImportDesk, what_a_person_says_of_the_file_is_recognised_anew) {
    Desk sample;
    sample.path = sample.folder.write(
        "commas.csv",
        "line;easting;northing;tmi\n5690;453000,5;7553000;51000\n5690;453025,5;7553000;51010\n"
        "5690;453050,5;7553000;51020\n");
    sample.open();
    EXPECT_EQ(sample.desk.layout()->separator, ';');
    intake::ReadAs as;
    as.separator = ' ';
    sample.desk.choose_reading(as);
    EXPECT_FALSE(sample.desk.layout());
    EXPECT_NE(sample.desk.refusal().find("cannot be read in this way"), std::string::npos);
    as.separator = ';';
    as.decimal_comma = true;
    as.encoding = intake::Encoding::latin1;
    sample.desk.choose_reading(as);
    sample.desk.finish_reading();
    ASSERT_TRUE(sample.desk.layout());
    EXPECT_EQ(sample.desk.layout()->encoding, intake::Encoding::latin1);
    EXPECT_TRUE(sample.desk.layout()->decimal_comma);
    EXPECT_TRUE(sample.desk.index());
}

TEST(ImportDesk, units_change_what_is_read) {
    Desk sample;
    sample.open();
    sample.desk.choose_role(sample.column("tmi"), Role::grav);
    sample.desk.choose_unit(sample.column("tmi"), intake::Unit::gravity_unit);
    sample.desk.finish_reading();
    ASSERT_TRUE(sample.desk.index());
    EXPECT_NEAR(sample.desk.index()->lines[0].grav_mGal->least, 5100, 1);
}

TEST(ImportDesk, a_system_that_is_none_is_refused_and_the_lines_stay) {
    Desk sample;
    sample.open();
    EXPECT_NE(sample.desk.choose_system("EPSG:999999"), "");
    EXPECT_TRUE(sample.desk.index());
    EXPECT_EQ(sample.desk.choose_system("EPSG:32754 - WGS 84 / UTM zone 54S"), "");
    sample.desk.finish_reading();
    ASSERT_TRUE(sample.desk.index());
    EXPECT_EQ(sample.desk.index()->coordinate_system, "EPSG:32754");
    EXPECT_EQ(sample.desk.system_text(), "EPSG:32754");
}

TEST(ImportDesk, a_date_is_looked_at_when_it_is_keyed) {
    Desk sample;
    sample.open();
    EXPECT_NE(sample.desk.choose_date("last year"), "");
    EXPECT_NE(sample.desk.choose_date("1890-01-01").find("1900"), std::string::npos);
    EXPECT_EQ(sample.desk.date_text(), "");
    EXPECT_EQ(sample.desk.choose_date("1990-07-01"), "");
    EXPECT_EQ(sample.desk.date_text(), "1990-07-01");
}

TEST(ImportDesk, the_field_is_told_before_the_import) {
    Desk sample;
    sample.open();
    EXPECT_NE(field_words(*sample.desk.index(), 0, sample.desk.choices()).find("system"), std::string::npos);
    sample.desk.choose_system("EPSG:32754");
    sample.desk.finish_reading();
    EXPECT_NE(field_words(*sample.desk.index(), 0, sample.desk.choices()).find("date"), std::string::npos);
    sample.desk.choose_date("1990-07-01");
    const std::string words = field_words(*sample.desk.index(), 0, sample.desk.choices());
    EXPECT_NE(words.find("nT, inclination -5"), std::string::npos) << words;
    EXPECT_NE(words.find("1990-07-01"), std::string::npos);
    sample.desk.choose_field(false);
    EXPECT_NE(field_words(*sample.desk.index(), 0, sample.desk.choices()).find("Not set"), std::string::npos);
}

TEST(ImportDesk, the_chosen_line_stays_chosen_when_the_file_is_read_anew) {
    Desk sample;
    sample.open();
    sample.desk.choose_line(2);
    sample.desk.choose_system("EPSG:32754");
    EXPECT_TRUE(sample.desk.reading());
    EXPECT_NE(sample.desk.refusal(), "");
    sample.desk.finish_reading();
    EXPECT_EQ(sample.desk.line(), 2U);
}

TEST(ImportDesk, a_reading_can_be_stopped_and_begun_again) {
    Desk sample;
    sample.desk.open(sample.path);
    sample.desk.stop_reading();
    EXPECT_FALSE(sample.desk.reading());
    if (!sample.desk.index()) {
        EXPECT_NE(sample.desk.refusal(), "");
    }
    sample.open();
    EXPECT_TRUE(sample.desk.index());
}

TEST(ImportDesk, an_import_opens_the_line_untitled_and_one_step_brings_the_former_model_back) {
    Desk sample;
    sample.load();
    sample.add_body(1260, 60);
    edit::start_history(sample.workbench);
    sample.open_and_import();
    sample.desk.choose_line(2);
    ASSERT_TRUE(sample.desk.import());
    const Workspace& workspace = sample.workspace();
    EXPECT_EQ(workspace.model_file, "");
    EXPECT_EQ(workspace.source.line, "5710");
    EXPECT_EQ(workspace.source.coordinate_system, "EPSG:32754");
    EXPECT_FALSE(workspace.source.field_missing);
    EXPECT_NEAR(static_cast<double>(workspace.field.intensity), 51000, 2500);
    EXPECT_EQ(workspace.station_count, 41);
    EXPECT_EQ(workspace.body_count, 0);
    EXPECT_TRUE(sample.workbench.unsaved);
    EXPECT_TRUE(std::filesystem::exists(sample.folder.path("survey_5710.csv")));
    EXPECT_EQ(sample.desk.place_words(), "Line 5710, 3 of 5");
    EXPECT_TRUE(sample.desk.line_is_open());

    EXPECT_TRUE(edit::undo_change(sample.workbench).moved);
    EXPECT_EQ(sample.workspace().body_count, 1);
    EXPECT_EQ(sample.workspace().definition.data_file, sample.data_path);
    EXPECT_FALSE(sample.desk.line_is_open());
}

TEST(ImportDesk, a_line_may_replace_the_data_of_the_open_model) {
    Desk sample;
    sample.load();
    sample.add_body(1260, 60);
    sample.workspace().model_file = "mine.axm";
    edit::start_history(sample.workbench);
    sample.open_and_import();
    sample.desk.choose_line(2);
    sample.desk.choose_into_open_model(true);
    ASSERT_TRUE(sample.desk.import());
    EXPECT_EQ(sample.workspace().model_file, "mine.axm");
    EXPECT_EQ(sample.workspace().source.line, "5710");
    EXPECT_EQ(sample.workspace().station_count, 41);
    EXPECT_EQ(sample.workspace().body_count, 1);
    EXPECT_TRUE(sample.desk.line_is_open());

    EXPECT_TRUE(edit::undo_change(sample.workbench).moved);
    EXPECT_EQ(sample.workspace().definition.data_file, sample.data_path);
    EXPECT_EQ(sample.workspace().body_count, 1);
    EXPECT_EQ(sample.workspace().source.line, "");
}

TEST(ImportDesk, the_next_line_keeps_the_processing_and_by_choice_the_bodies) {
    for (const bool keep : {true, false}) {
        Desk sample;
        sample.open_and_import();
        sample.desk.choose_keep_bodies(keep);
        ASSERT_TRUE(sample.desk.import());
        sample.workspace().processing.residual_filter_width = 7;
        ModelBody& body = sample.add_body(500, 200);
        body.strike.value = 0;
        forward::update_body_reference_point(sample.workspace(), 500, body.east, body.north);
        ASSERT_TRUE(sample.desk.import_neighbour(1));
        EXPECT_EQ(sample.workspace().source.line, "5700");
        EXPECT_EQ(sample.workspace().processing.residual_filter_width, 7);
        EXPECT_EQ(sample.workspace().body_count, keep ? 1 : 0);
        EXPECT_EQ(sample.desk.line(), 1U);
        ASSERT_TRUE(sample.desk.import_neighbour(-1));
        EXPECT_EQ(sample.workspace().source.line, "5690");
        EXPECT_FALSE(sample.desk.import_neighbour(-1)) << "it is the first";
        EXPECT_TRUE(sample.prompts.told("there is no line before"));
    }
}

TEST(ImportDesk, a_line_of_elsewhere_has_no_neighbours) {
    Desk sample;
    sample.load();
    EXPECT_FALSE(sample.desk.import_neighbour(1));
    EXPECT_TRUE(sample.prompts.told("Import survey"));
}

TEST(ImportDesk, a_folder_that_is_not_there_is_told_before_anything_is_done) {
    Desk sample;
    sample.open();
    sample.desk.choose_folder(sample.folder.path("nowhere/"));
    EXPECT_NE(sample.desk.refusal().find("nowhere"), std::string::npos);
    EXPECT_FALSE(sample.desk.import());
    EXPECT_EQ(sample.workspace().source.line, "");
}

TEST(ImportDesk, all_lines_are_left_in_the_folder_and_the_chosen_one_is_opened) {
    Desk sample;
    sample.open_and_import();
    sample.desk.choose_all_lines(true);
    sample.desk.choose_line(3);
    ASSERT_TRUE(sample.desk.import());
    for (const char* name : {"survey_5690", "survey_5700", "survey_5710", "survey_5720", "survey_9010"})
        for (const char* ending : {".csv", ".axm"})
            EXPECT_TRUE(std::filesystem::exists(sample.folder.path(name + std::string(ending)))) << name;
    EXPECT_EQ(sample.workspace().source.line, "5720");
}

TEST(ImportWords, a_head_names_column_role_unit_and_nulls) {
    intake::SurveyColumn column;
    column.name = "tmi";
    column.unit_text = "gammas";
    EXPECT_EQ(column_heading(column), (std::vector<std::string>{"tmi", "", "gammas", ""}));
    column.role = Role::mag;
    column.unit = intake::Unit::nanotesla;
    column.nulls = {-99999, -1e32};
    EXPECT_EQ(column_heading(column),
              (std::vector<std::string>{"tmi", "Magnetics", "nT", "null -99999, 1 more"}));
}

TEST(ImportWords, what_was_read_is_told_with_the_first_line_of_each_loss) {
    intake::SurveyIndex index;
    index.rows = 203;
    index.layout.columns.resize(2);
    index.layout.columns[1].name = "tmi";
    index.nulls = {0, 12};
    index.lines.resize(3);
    index.lines[2].tie = true;
    index.losses = {{.why = "a field is missing", .column = "tmi", .count = 2, .first_line = 45}};
    const auto items = reading_items(index);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].text, "203 rows in 3 lines, 1 of them a tie");
    EXPECT_EQ(items[1].text, "2 rows: a field is missing (tmi), first in line 45 of the file");
    EXPECT_EQ(items[1].severity, Severity::doubt);
    EXPECT_EQ(items[2].text, "tmi 12");
}

TEST(ImportWords, systems_are_offered_while_one_is_keyed) {
    EXPECT_TRUE(suggested_systems("ut").empty());
    const auto offers = suggested_systems("UTM zone 54S");
    ASSERT_FALSE(offers.empty());
    EXPECT_LE(offers.size(), 12U);
    bool found = false;
    for (const std::string& offer : offers) found |= offer == "EPSG:32754 - WGS 84 / UTM zone 54S";
    EXPECT_TRUE(found) << offers.front();
}

TEST(ImportWords, a_line_that_bends_says_in_how_many_pieces) {
    intake::SurveyLineInfo line;
    EXPECT_EQ(kind_words(line), "no stations");
    line.stations = 40;
    line.pieces = {{0, 39}};
    EXPECT_EQ(kind_words(line), "line");
    line.pieces = {{0, 19}, {20, 39}};
    EXPECT_EQ(kind_words(line), "line, bends: 2 pieces");
}

}  // namespace
}  // namespace anomalis::flow
