#include "intake/survey/survey_index.h"

#include <cmath>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "intake/coordinates/coordinate_system.h"
#include "intake/indexed_survey.h"
#include "intake/survey/survey_corrections.h"
#include "support/step_pacer.h"
#include "support/survey_lines.h"
#include "support/temp_folder.h"

namespace anomalis::intake {
namespace {

TEST(SurveyIndex, lists_lines_with_stations_length_ranges_and_pieces) {
    const SurveyIndex index = SurveyFile(survey_table()).index();
    ASSERT_EQ(index.lines.size(), 3U);
    const SurveyLineInfo& line = index.lines[1];
    EXPECT_EQ(line.name, "110");
    EXPECT_EQ(line.stations, 40);
    EXPECT_NEAR(line.length_m, 390, 1e-3);
    EXPECT_EQ(line.first_file_line, 42);
    EXPECT_EQ(line.last_file_line, 81);
    EXPECT_NEAR(line.first_east, 482390, 1e-6);
    ASSERT_TRUE(line.mag_nT && line.grav_mGal);
    EXPECT_NEAR(line.mag_nT->greatest, 101, 1e-9);
    EXPECT_NEAR(line.grav_mGal->greatest, 1, 1e-9);
    ASSERT_EQ(line.pieces.size(), 1U);
    EXPECT_EQ(line.pieces[0].last, 39);
    EXPECT_EQ(line.track.size(), 40U);
    EXPECT_NEAR(index.origin_east + static_cast<double>(line.track[0].east), 482390, 0.01);
    EXPECT_EQ(index.rows, 120);
    EXPECT_EQ(index.coordinate_system, "");
}

TEST(SurveyIndex, takes_a_name_that_comes_again_as_the_same_line) {
    std::string text = survey_table({.lines = 2, .stations = 10});
    for (int i = 10; i < 15; ++i) text += "100," + std::to_string(482000 + 10 * i) + ",7553000,300,240,5,0\n";
    const SurveyFile file(text);
    const SurveyIndex index = file.index();
    ASSERT_EQ(index.lines.size(), 2U);
    EXPECT_EQ(index.lines[0].stations, 15);
    EXPECT_EQ(index.lines[0].last_file_line, 26);
    const SurveyLine line = read_survey_line(index, 0);
    ASSERT_EQ(line.east.size(), 15U);
    EXPECT_EQ(line.east[14], 482140);
    EXPECT_EQ(line.file_line[10], 22);
}

TEST(SurveyIndex, projects_degrees_to_the_zone_at_the_middle_of_the_survey) {
    const SurveyIndex index = SurveyFile(survey_in_degrees(140.8, -22.1)).index();
    EXPECT_EQ(index.coordinate_system, "EPSG:32754");
    EXPECT_EQ(index.from_system, wgs84);
    EXPECT_TRUE(index.in_degrees);
    // 0.0001 degrees of longitude are 10.32 m at 22.1 degrees south.
    EXPECT_NEAR(index.lines[0].length_m, 29 * 10.32, 1);
}

TEST(SurveyIndex, takes_another_zone_than_that_of_the_first_station_where_the_middle_lies_there) {
    std::string text = survey_in_degrees(143.99, -22.1, 1, 10);
    text +=
        survey_in_degrees(144.5, -22.1, 1, 10).substr(std::string("line,longitude,latitude,tmi\n").size());
    EXPECT_EQ(SurveyFile(text).index().coordinate_system, "EPSG:32755");
    EXPECT_EQ(SurveyFile(text).index({.from = "", .to = "EPSG:32754"}).coordinate_system, "EPSG:32754");
}

TEST(SurveyIndex, finds_the_middle_of_a_survey_across_the_date_line) {
    std::string text = survey_in_degrees(179.95, -17, 1, 10);
    text +=
        survey_in_degrees(-179.85, -17, 1, 10).substr(std::string("line,longitude,latitude,tmi\n").size());
    EXPECT_EQ(SurveyFile(text).index().coordinate_system, "EPSG:32701");
}

TEST(SurveyIndex, takes_metres_of_no_known_system_to_be_in_the_one_that_is_asked_for) {
    const SurveyFile file(survey_table());
    const SurveyIndex index = file.index({.from = "", .to = "32754"});
    EXPECT_EQ(index.coordinate_system, "EPSG:32754");
    EXPECT_NEAR(index.lines[0].first_east, 482000, 1e-6);
    const SurveyLine line = read_survey_line(index, 0);
    ASSERT_EQ(line.longitude.size(), 40U);
    EXPECT_NEAR(line.longitude[0], 140.83, 0.01);
    EXPECT_NEAR(line.latitude[0], -22.13, 0.01);
}

TEST(SurveyIndex, changes_metres_from_one_system_to_another) {
    const SurveyFile file(survey_table());
    const SurveyIndex index = file.index({.from = "EPSG:32754", .to = "EPSG:28355"});
    double east = 482000, north = 7553000;
    CoordinateChange("EPSG:32754", "EPSG:28355").forward({&east, 1}, {&north, 1});
    EXPECT_NEAR(index.lines[0].first_east, east, 1e-6);
    EXPECT_NEAR(read_survey_line(index, 0).north[0], north, 1e-6);
    EXPECT_EQ(index.coordinate_system, "EPSG:28355");
}

TEST(SurveyIndex, knows_the_zone_in_which_eastings_agree_with_longitudes) {
    std::vector<double> east, north;
    for (int i = 0; i < 20; ++i) {
        east.push_back(140.8 + 0.0001 * i);
        north.push_back(-22.1);
    }
    CoordinateChange(wgs84, "EPSG:32754").forward(east, north);
    for (const double off : {0.0, 150.0}) {
        std::string text = "line,easting,northing,longitude,latitude,tmi\n";
        for (std::size_t i = 0; i < east.size(); ++i)
            text += "100," + format_number(east[i] + off, "0.0") + "," + format_number(north[i], "0.0") +
                    "," + format_number(140.8 + 0.0001 * static_cast<double>(i), "0.00000") + ",-22.10000," +
                    std::to_string(50 + i % 7) + "\n";
        const SurveyFile file(text);
        const SurveyIndex index = file.index();
        EXPECT_EQ(index.coordinate_system, off == 0 ? "EPSG:32754" : "");
        EXPECT_FALSE(index.in_degrees);
        const SurveyLine line = read_survey_line(index, 0);
        EXPECT_NEAR(line.east[0], east[0] + off, 0.06);
        ASSERT_EQ(line.longitude.size(), 20U) << "the longitudes of the file tell the place all the same";
        EXPECT_NEAR(line.longitude[3], 140.8003, 1e-5);
    }
}

TEST(SurveyIndex, reads_a_line_below_its_own_header) {
    const SurveyFile file(
        "/ exported\nX Y MAG\nLine 5690\n482000 7553000 100\n482010 7553000 *\n482020 7553000 102\nTie 9010\n"
        "482005 7552990 200\n482005 7553000 201\n482005 7553010 202\nLine 5700\n482000 7553200 300\n"
        "482010 7553200 301\n482020 7553200 302\n",
        "survey.xyz");
    const SurveyIndex index = file.index();
    ASSERT_EQ(index.lines.size(), 3U);
    EXPECT_TRUE(index.lines[1].tie);
    for (const std::size_t line : {0U, 1U, 2U}) {
        const SurveyLine read = read_survey_line(index, line);
        ASSERT_EQ(read.mag.size(), 3U) << line;
        EXPECT_EQ(read.mag[2], 102 + 100 * static_cast<double>(line));
    }
}

TEST(SurveyIndex, refuses_systems_that_no_line_can_be_modelled_in) {
    const SurveyFile file(survey_in_degrees(140.8, -22.1));
    EXPECT_NE(file.fault({.from = "", .to = "EPSG:99999"}).find("EPSG:99999"), std::string::npos);
    EXPECT_NE(file.fault({.from = "", .to = "EPSG:4326"}).find("degrees"), std::string::npos);
    EXPECT_NE(file.fault({.from = "", .to = "EPSG:2263"}).find("not in metres"), std::string::npos);
}

/// The columns 1 and 2 as degrees, whatever they were taken for.
SurveyLayout in_degrees(SurveyLayout layout) {
    give_role(layout, 1, Role::longitude);
    give_role(layout, 2, Role::latitude);
    layout.columns[1].unit = layout.columns[2].unit = Unit::degree;
    return layout;
}

TEST(SurveyIndex, drops_rows_beyond_the_globe_and_names_the_first) {
    const SurveyFile file(survey_in_degrees(140.8, -22.1, 1, 10) +
                          "100,940.8,-22.1,50\n100,140.81,-122.1,50\n");
    const SurveyIndex index = index_survey(in_degrees(recognise_survey(file.path)), {});
    EXPECT_EQ(index.rows, 10);
    ASSERT_EQ(index.losses.size(), 1U);
    EXPECT_EQ(index.losses[0].count, 2);
    EXPECT_EQ(index.losses[0].first_line, 12);
}

TEST(SurveyIndex, says_why_no_row_has_a_place) {
    const SurveyFile file(survey_in_degrees(-22.1, 140.8, 1, 10));
    try {
        index_survey(in_degrees(recognise_survey(file.path)), {});
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_NE(std::string(fault.what()).find("no latitude beyond 90"), std::string::npos) << fault.what();
    }
}

TEST(SurveyIndex, needs_to_be_told_where_the_place_stands) {
    SurveyFile file(survey_table());
    SurveyLayout layout = recognise_survey(file.path);
    give_role(layout, 1, Role::none);
    EXPECT_THROW(index_survey(layout, {}), Fault);
}

TEST(SurveyIndex, leaves_a_null_out_of_the_channel_and_the_place_out_of_the_line) {
    std::string text = survey_table({.lines = 1, .stations = 20});
    text += "100,482200,7553000,300,240,-99999,1\n100,-99999,7553000,300,240,700,1\n";
    const SurveyFile file(text);
    const SurveyIndex index = file.index();
    EXPECT_EQ(index.lines[0].stations, 21);
    EXPECT_EQ(index.rows, 21);
    EXPECT_GT(index.lines[0].mag_nT->least, 0);
    EXPECT_LT(index.lines[0].mag_nT->greatest, 101);
    const SurveyLine line = read_survey_line(index, 0);
    ASSERT_EQ(line.mag.size(), 21U);
    EXPECT_TRUE(std::isnan(line.mag[20]));
    EXPECT_EQ(line.grav[20], 1);
    ASSERT_EQ(index.losses.size(), 1U);
    EXPECT_EQ(index.losses[0].first_line, 23);
    EXPECT_EQ(index.nulls[5], 1);
}

TEST(SurveyIndex, keeps_a_line_of_one_station_in_the_list) {
    const SurveyIndex index = SurveyFile(survey_table() + "9,482000,7553000,300,240,7,0\n").index();
    ASSERT_EQ(index.lines.size(), 4U);
    EXPECT_EQ(index.lines[3].stations, 1);
    EXPECT_EQ(index.lines[3].length_m, 0);
    EXPECT_EQ(index.lines[3].track.size(), 1U);
}

TEST(SurveyIndex, parts_lines_that_nobody_named_where_they_turn_back) {
    SurveyShape shape{.lines = 5};
    shape.line_column = false;
    const SurveyFile file(survey_table(shape));
    const SurveyIndex index = file.index();
    ASSERT_EQ(index.lines.size(), 5U);
    EXPECT_TRUE(index.split_by_place);
    for (const SurveyLineInfo& line : index.lines) EXPECT_EQ(line.stations, 40) << line.name;
    EXPECT_EQ(index.lines[4].name, "5");
    const SurveyLine line = read_survey_line(index, 3);
    ASSERT_EQ(line.north.size(), 40U);
    for (const double north : line.north) EXPECT_EQ(north, 7553600);
}

TEST(SurveyIndex, takes_a_file_without_a_line_column_as_one_line_where_it_runs_on) {
    SurveyShape shape{.lines = 1};
    shape.line_column = false;
    std::string text = survey_table(shape);
    for (int i = 0; i < 20; ++i) text += std::to_string(484000 + 10 * i) + ",7553000,300,240,5,0\n";  // a gap
    const SurveyIndex index = SurveyFile(text).index();
    ASSERT_EQ(index.lines.size(), 1U);
    EXPECT_FALSE(index.split_by_place);
    EXPECT_EQ(index.lines[0].pieces.size(), 1U);
}

TEST(SurveyIndex, takes_a_hundred_thousand_lines) {
    std::string text = "line,east,north,tmi\n";
    for (int l = 0; l < 100000; ++l)
        text += std::to_string(l) + ",480000," + std::to_string(7000000 + 10 * l) + ",5\n";
    text += "99998,480000,8000000,7\n";
    const SurveyFile file(text);
    SurveyLayout layout = recognise_survey(file.path);
    give_role(layout, 0, Role::line);
    give_role(layout, 3, Role::mag);
    const SurveyIndex index = index_survey(layout, {});
    ASSERT_EQ(index.lines.size(), 100000U);
    EXPECT_EQ(index.rows, 100001);
    EXPECT_EQ(index.lines[99998].stations, 2);
    EXPECT_EQ(read_survey_line(index, 99998).mag, (std::vector<double>{5, 7}));
}

TEST(SurveyIndex, refuses_a_file_that_changed_since_its_lines_were_listed) {
    const SurveyFile file(survey_table());
    const SurveyIndex index = file.index();
    file.folder.write("survey.csv", survey_table() + "100,1,2,3,4,5,6\n");
    EXPECT_THROW(read_survey_line(index, 0), Fault);
}

/// Writes a row more at its first turn.
class GrowingFile : public Pacer {
  public:
    explicit GrowingFile(const SurveyFile& file) : file_(file) {}
    void done(double) override {
        if (!grown_) file_.folder.write("survey.csv", survey_table() + "100,1,2,3,4,5,6\n");
        grown_ = true;
    }

  private:
    const SurveyFile& file_;
    bool grown_ = false;
};

TEST(SurveyIndex, tells_that_a_file_grows_while_it_is_read) {
    const SurveyFile file(survey_table());
    GrowingFile growing(file);
    try {
        index_survey(recognise_survey(file.path), {}, growing);
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_NE(std::string(fault.what()).find("survey.csv was changed while it was read"),
                  std::string::npos);
    }
}

TEST(SurveyIndex, tells_of_its_work_and_is_left) {
    const std::string text = survey_table();
    const SurveyFile file(text);
    StepPacer count(0, 1);
    index_survey(recognise_survey(file.path), {}, count);
    EXPECT_NEAR(count.units, static_cast<double>(text.size()), 1);
    StepPacer leave(1, 1);
    EXPECT_THROW(index_survey(recognise_survey(file.path), {}, leave), Stopped);
}

TEST(SurveyIndex, reads_all_lines_in_one_pass_as_one_by_one) {
    for (const bool named : {true, false}) {
        SurveyShape shape;
        shape.line_column = named;
        const SurveyFile file(survey_table(shape));
        const SurveyIndex index = file.index();
        Taken taken;
        read_survey_lines(index, taken);
        ASSERT_EQ(taken.numbers, (std::vector<std::size_t>{0, 1, 2}));
        for (const std::size_t line : taken.numbers) {
            const SurveyLine one = read_survey_line(index, line);
            EXPECT_EQ(taken.lines[line].east, one.east);
            EXPECT_EQ(taken.lines[line].mag, one.mag);
            EXPECT_EQ(taken.lines[line].file_line, one.file_line);
        }
    }
}

std::string heights_file(const std::string& names, const std::string& values) {
    std::string text = "line,east,north,tmi," + names + "\n";
    for (int i = 0; i < 10; ++i)
        text += "100," + std::to_string(482000 + 10 * i) + ",7553000,5" + std::to_string(i % 4) + "," +
                values + "\n";
    return text;
}

TEST(SurveyIndex, finds_the_third_of_height_clearance_and_terrain) {
    const SurveyFile flown(heights_file("gps_height,radalt", "310,60"));
    const SurveyLine below = read_survey_line(flown.index(), 0);
    ASSERT_EQ(below.ground.size(), 10U);
    EXPECT_EQ(below.ground[0], 250);
    const SurveyFile draped(heights_file("dtm,radalt", "240,60"));
    const SurveyLine above = read_survey_line(draped.index(), 0);
    ASSERT_EQ(above.height.size(), 10U);
    EXPECT_EQ(above.height[0], 300);
    const SurveyFile only(heights_file("radalt", "60"));
    const SurveyLine clearance = read_survey_line(only.index(), 0);
    EXPECT_TRUE(clearance.height_is_clearance);
    EXPECT_EQ(clearance.height[0], 60);
    EXPECT_TRUE(clearance.ground.empty());
}

TEST(SurveyIndex, gives_a_piece_of_a_line_that_folds_back) {
    std::string text = "line,east,north,tmi\n";
    for (int i = 0; i < 50; ++i) text += "100," + std::to_string(482000 + 10 * i) + ",7553000,5\n";
    for (int i = 50; i-- > 0;) text += "100," + std::to_string(482000 + 10 * i) + ",7553050,7\n";
    const SurveyFile file(text);
    const SurveyIndex index = file.index();
    ASSERT_EQ(index.lines[0].pieces.size(), 2U);
    EXPECT_NEAR(index.lines[0].length_m, 980, 1e-3);
    const SurveyLine piece = read_survey_line(index, 0, 1);
    ASSERT_EQ(piece.north.size(), 50U);
    for (const double north : piece.north) EXPECT_EQ(north, 7553050);
    EXPECT_THROW(read_survey_line(index, 0, 2), Fault);
}

// -- Corrections.

TEST(SurveyCorrections, a_role_is_that_of_one_column) {
    SurveyLayout layout;
    layout.path = "a/survey.csv";
    layout.columns.resize(3);
    layout.columns[0].name = "TMI";
    layout.columns[1].name = "raw";
    layout.columns[2].name = "raw";
    give_role(layout, 0, Role::mag);
    EXPECT_EQ(layout.columns[0].unit, Unit::nanotesla);
    give_role(layout, 1, Role::mag);
    EXPECT_EQ(layout.columns[0].role, Role::none);
    EXPECT_EQ(layout.column_of(Role::mag), 1U);
    EXPECT_EQ(find_column(layout, "tmi"), 0U);
    EXPECT_EQ(find_column(layout, "3"), 2U);
    try {
        find_column(layout, "tfi");
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_STREQ(fault.what(), "survey.csv has no column \"tfi\"; its columns are TMI, raw, raw");
    }
}

}  // namespace
}  // namespace anomalis::intake
