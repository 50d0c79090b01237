#include "flow/field_question.h"

#include <gmock/gmock.h>

#include "core/failure.h"
#include "flow/desk_line.h"
#include "model/stale.h"

namespace anomalis::flow {
namespace {

using testing::HasSubstr;

struct FieldQuestionOfLine : DeskLine {
    FieldQuestionOfLine() {
        // A line to the north on the central meridian of the zone.
        for (int i = 1; i <= w.station_count; ++i) {
            w.stations(i, column_east) = 500000;
            w.stations(i, column_north) = 7553000 + w.distances[i];
            w.stations(i, column_sensor) = 339;
        }
    }
    FieldQuestion question_here() { return {true, "EPSG:32754", "", "", "", "1990-07-01"}; }
};

TEST_F(FieldQuestionOfLine, is_that_of_the_middle_of_the_line) {
    take_field(workbench, question_here());
    const field::Place place = middle_of_line(w, "EPSG:32754");
    EXPECT_NEAR(place.longitude, 141, 1e-6);
    EXPECT_NEAR(place.latitude, -22.1, 0.05);
    EXPECT_EQ(place.height_m, 339);
    const field::MainField wanted = field::main_field(place, field::year_of_date("1990-07-01"));
    EXPECT_FLOAT_EQ(w.field.intensity, static_cast<float>(wanted.total_nT));
    EXPECT_FLOAT_EQ(w.field.inclination, static_cast<float>(wanted.inclination_deg));
    EXPECT_FLOAT_EQ(w.field.declination, static_cast<float>(wanted.declination_deg));
    EXPECT_EQ(w.source.field_origin, "IGRF-14 at the middle of the line, 1990-07-01");
    EXPECT_EQ(w.source.coordinate_system, "EPSG:32754");
    EXPECT_EQ(w.source.date, "1990-07-01");
}

TEST_F(FieldQuestionOfLine, is_one_step) {
    forget_field(w);
    edit::start_history(workbench);
    take_field(workbench, question_here());
    EXPECT_FALSE(w.source.field_missing);
    EXPECT_GT(w.field.intensity, 50000);
    EXPECT_EQ(edit::undo_change(workbench).what, "field from place and date");
    EXPECT_TRUE(w.source.field_missing);
    EXPECT_EQ(w.field.intensity, 0);
    EXPECT_EQ(w.source.date, "");
}

TEST_F(FieldQuestionOfLine, of_a_keyed_place_says_where_it_is) {
    take_field(workbench, {false, "", "-22.10487", "140.5", "350", "1990.5"});
    EXPECT_EQ(w.source.field_origin, "IGRF-14 at 22.1049 S, 140.5 E, 1990.5");
    EXPECT_EQ(w.source.coordinate_system, "");
    const field::MainField wanted = field::main_field({-22.10487, 140.5, 350}, 1990.5);
    EXPECT_FLOAT_EQ(w.field.intensity, static_cast<float>(wanted.total_nT));
    EXPECT_FLOAT_EQ(w.field.declination, static_cast<float>(wanted.declination_deg));
}

TEST_F(FieldQuestionOfLine, what_is_wrong_or_lacking_is_told_and_changes_nothing) {
    const EarthField before = w.field;
    for (const auto& [question, part] : std::vector<std::pair<FieldQuestion, std::string>>{
             {{true, "", "", "", "", "1990"}, "No coordinate system was given"},
             {{true, "EPSG:99999", "", "", "", "1990"}, "EPSG:99999"},
             {{true, "EPSG:4326", "", "", "", "1990"}, "no place on the globe"},
             {{true, "EPSG:32754", "", "", "", ""}, "Give the date"},
             {{true, "EPSG:32754", "", "", "", "July"}, "1990-07-01"},
             {{true, "EPSG:32754", "", "", "", "2040"}, "1900 to 2030"},
             {{false, "", "", "140", "0", "1990"}, "Give the latitude"},
             {{false, "", "-22", "x", "0", "1990"}, "longitude is no number"},
             {{false, "", "-95", "140", "0", "1990"}, "latitude"},
             {{false, "mine", "-22", "140", "0", "1990"}, "mine"}}) {
        try {
            take_field(workbench, question);
            ADD_FAILURE() << part;
        } catch (const Fault& fault) {
            EXPECT_THAT(fault.what(), HasSubstr(part));
        }
        EXPECT_EQ(w.field, before);
        EXPECT_EQ(w.source, LineSource{});
    }
}

TEST_F(FieldQuestionOfLine, the_question_starts_with_what_the_line_knows) {
    w.source.coordinate_system = "EPSG:32754";
    w.source.date = "1990";
    EXPECT_TRUE(field_question(w).at_middle);
    EXPECT_EQ(field_question(w).coordinate_system, "EPSG:32754");
    EXPECT_EQ(field_question(w).date, "1990");
    drop_stations(w);
    EXPECT_FALSE(field_question(w).at_middle);
}

TEST_F(FieldQuestionOfLine, igrf_goes_out_of_the_readings_and_back_with_a_load) {
    w.source.coordinate_system = "EPSG:32754";
    w.source.date = "1990";
    w.mag.base = 52000;
    w.read_as = line_inputs(w);
    edit::start_history(workbench);
    ASSERT_TRUE(change_igrf(workbench, -1));
    EXPECT_EQ(w.source.igrf_change, igrf_removed);
    EXPECT_EQ(w.station_count, 0);
    EXPECT_EQ(w.mag.base, unset) << "that of the readings to come";
    EXPECT_FALSE(change_igrf(workbench, -1)) << "it is out";
    ASSERT_TRUE(change_igrf(workbench, 1));
    EXPECT_EQ(w.source.igrf_change, igrf_kept);
    edit::undo_change(workbench);
    EXPECT_EQ(w.source.igrf_change, igrf_removed);
    edit::undo_change(workbench);
    EXPECT_EQ(w.source.igrf_change, igrf_kept);
    EXPECT_EQ(w.mag.base, 52000);
}

TEST_F(FieldQuestionOfLine, igrf_stays_where_place_or_day_are_not_known) {
    EXPECT_FALSE(change_igrf(workbench, -1));
    EXPECT_EQ(w.source.igrf_change, igrf_kept);
    EXPECT_GT(w.station_count, 0);
    EXPECT_THAT(line.prompts.messages.back(), HasSubstr("give coordinate system and date"));
}

}  // namespace
}  // namespace anomalis::flow
