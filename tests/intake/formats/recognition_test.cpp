#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intake/formats/column_units.h"
#include "intake/formats/role_names.h"
#include "intake/formats/survey_file.h"

namespace anomalis::intake {
namespace {

using ::testing::DoubleEq;
using ::testing::DoubleNear;
using ::testing::Each;
using ::testing::ElementsAre;

/// The role whose names a column's name fits best.
std::string_view role_by_name(std::string_view name, std::string_view unit = "") {
    SurveyColumn column;
    column.name = name;
    column.unit_text = unit;
    Role best = Role::none;
    for (const Role role : all_roles)
        if (role_worth(role, column) > (best == Role::none ? 0 : role_worth(best, column))) best = role;
    return role_name(best);
}

TEST(RoleNames, spellings_of_many_surveys) {
    const std::vector<std::pair<std::string_view, std::vector<std::string_view>>> spellings{
        {"line",
         {"line", "LINE", "fltline", "flight_line", "FlightLine", "Line No", "line_number", "Profile"}},
        {"fiducial", {"fid", "FIDUCIAL", "Fids", "station", "STN"}},
        {"date", {"date", "Flight_Date", "YYYYMMDD", "SURVEYDATE"}},
        {"easting",
         {"east", "Easting", "EAST_MGA", "MGAEAST", "utm_e", "x", "X", "E", "easting_m", "AMG84EAST", "x_utm",
          "utmx"}},
        {"northing", {"north", "Northing", "NORTH_MGA", "mga_n", "y", "Y", "N", "GDA94_MGA54_NORTHING"}},
        {"longitude", {"lon", "LONG", "longitude", "GDA94LON", "LONG_GDA94", "wgs84_long", "Lon_deg"}},
        {"latitude", {"lat", "LATITUDE", "GDA94LAT", "LAT_GDA94", "wgs84_lat"}},
        {"height",
         {"height", "GPS_HT", "gps_height", "alt", "altitude", "z", "ORTHOHTM", "GRS80HTM",
          "height_orthometric_m", "Ell_HGT"}},
        {"clearance",
         {"RAD_ALT", "radalt", "Radar Altimeter", "raltimeter", "clearance", "terrain_clearance", "AGL",
          "laser_alt"}},
        {"terrain", {"DEM", "dtm", "terrain", "topo", "elevation", "ELEV", "ground"}},
        {"mag",
         {"tmi", "TMI_final", "mag", "MAG_LEV", "magcomp", "CompMag", "total_field_anomaly_nt", "IGRFMag",
          "mag_raw"}},
        {"grav",
         {"bouguer", "Bouguer Anomaly", "BA", "cba267", "GBA267MGAL", "free_air", "FAA", "F_A_Anom",
          "GRAV_AAGD07", "gravity"}},
        {"none",
         {"IGRF", "DIURNAL", "Fluxx", "Mag_lock", "num_sats", "DIFFEASTM", "Bouguer_Corr", "FAir_Cor",
          "Normal_Grav", "time", "flight", "ZONE", "temperature", "TCTOTALMGAL", "basemag", "GFACMGAL"}},
    };
    for (const auto& [role, names] : spellings)
        for (const std::string_view name : names) EXPECT_EQ(role_by_name(name), role) << name;
    EXPECT_EQ(role_by_name("F2", "nT"), "mag") << "its unit tells";
}

TEST(RoleNames, units_in_all_spellings) {
    for (const char* text : {"m", "metres", "Meter", "METRES"})
        EXPECT_EQ(unit_of_text(text), Unit::metre) << text;
    for (const char* text : {"um/s2", "um/s^2", "\xC2\xB5m/s\xC2\xB2", "um/s**2", "um/sec/sec"})
        EXPECT_EQ(unit_of_text(text), Unit::micrometre_per_s2) << text;
    for (const char* text : {"gu", "GU", "g.u."}) EXPECT_EQ(unit_of_text(text), Unit::gravity_unit) << text;
    for (const char* text : {"nT", "nanoTesla", "gammas"})
        EXPECT_EQ(unit_of_text(text), Unit::nanotesla) << text;
    EXPECT_EQ(unit_of_text("furlong"), std::nullopt);
    EXPECT_EQ(unit_of_name_end("height_ft"), Unit::foot);
    EXPECT_EQ(unit_of_name_end("GFAAGU"), Unit::gravity_unit);
    EXPECT_EQ(unit_of_name_end("GBA267MGAL"), Unit::milligal);
    EXPECT_EQ(unit_of_name_end("Bouguer"), std::nullopt);
}

TEST(SurveyLayout, names_of_roles_and_units_read_back) {
    for (const Role role : all_roles) {
        EXPECT_EQ(role_of_name(role_name(role)), role);
        EXPECT_FALSE(role_title(role).empty());
        for (const Unit unit : units_of_role(role)) EXPECT_EQ(unit_of_name(unit_name(unit)), unit);
    }
    EXPECT_EQ(role_of_name("colour"), std::nullopt);
}

/// Rows along a line, each made by a function of its number.
template <class Row>
std::string table(std::string_view head, int rows, Row&& row) {
    std::string text = std::string(head) + (head.empty() ? "" : "\n");
    for (int i = 0; i < rows; ++i) text += row(i) + "\n";
    return text;
}

std::string num(double value, int digits = 2) {
    char text[40];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

TEST(Recognition, degrees_under_the_names_of_eastings_are_seen_by_their_values) {
    const SurveyOf survey(table("Easting,Northing,Ell_HGT,BA", 30, [](int i) {
        return num(-32.214795 - 0.0001 * (i % 3), 6) + "," + num(146.1001 - 0.001 * i, 6) + ",300.5," +
               num(-12 + 0.1 * i);
    }));
    EXPECT_EQ(survey.role("Easting"), "latitude");
    EXPECT_EQ(survey.role("Northing"), "longitude");
    EXPECT_TRUE(survey.has_remark("hold degrees by their values"));
}

TEST(Recognition, metres_with_small_steps_stay_metres) {
    const SurveyOf survey(
        table("x,y,mag", 30, [](int i) { return num(0.5 * i, 1) + ",10.0," + num(5 + i % 7); }));
    EXPECT_EQ(survey.role("x"), "easting");
    EXPECT_EQ(survey.role("y"), "northing");
}

TEST(Recognition, a_latitude_beyond_90_degrees_is_a_longitude) {
    const SurveyOf survey(table("lat,lon,tmi", 20, [](int i) {
        return num(140.8 + 0.001 * i, 4) + "," + num(-22.1, 4) + "," + num(5 + i % 7);
    }));
    EXPECT_EQ(survey.role("lat"), "longitude");
    EXPECT_EQ(survey.role("lon"), "latitude");
    EXPECT_TRUE(survey.has_remark("beyond 90 degrees"));
}

TEST(Recognition, longitudes_in_metres_are_eastings) {
    const SurveyOf survey(table("long,lat,tmi", 20,
                                [](int i) { return num(450000 + 7 * i) + ",7550000.0," + num(5 + i % 7); }));
    EXPECT_EQ(survey.role("long"), "easting");
    EXPECT_EQ(survey.role("lat"), "northing");
}

TEST(Recognition, degrees_and_minutes_apart_and_together) {
    const SurveyOf apart(table("lon,lat,tmi", 20, [](int i) {
        return "140:49:" + num(30 + i, 1) + ",-22:06:43.0," + num(5 + i % 7);
    }));
    EXPECT_EQ(apart.layout.columns[0].unit, Unit::degree_minute);
    EXPECT_THAT(apart.read()[Role::longitude][0], DoubleNear(140 + 49.0 / 60 + 30.0 / 3600, 1e-12));
    EXPECT_THAT(apart.read()[Role::latitude], Each(DoubleNear(-(22 + 6.0 / 60 + 43.0 / 3600), 1e-12)));
    const SurveyOf blanks(table("lon,lat,tmi", 20, [](int i) {
        return "140 49 " + num(30 + i, 1) + ",22 06 43.0 S," + num(5 + i % 7);
    }));
    EXPECT_EQ(blanks.layout.separator, ',');
    EXPECT_THAT(blanks.read()[Role::latitude], Each(DoubleNear(-(22 + 6.0 / 60 + 43.0 / 3600), 1e-12)));
    const SurveyOf together(table("lon,lat,tmi", 20, [](int i) {
        return num(14049.5 + 0.001 * i, 4) + ",-2206.7167," + num(5 + i % 7);
    }));
    EXPECT_EQ(together.layout.columns[0].unit, Unit::degree_minute);
    EXPECT_THAT(together.read()[Role::longitude][0], DoubleNear(140 + 49.5 / 60, 1e-9));
}

TEST(Recognition, degrees_beyond_any_place_are_told_and_those_counted_to_360_are_longitudes) {
    const auto file = [](double longitude, double latitude) {
        return table("lon,lat,tmi", 20, [=](int i) {
            return num(longitude + 0.001 * i, 4) + "," + num(latitude, 4) + "," + num(5 + i % 7);
        });
    };
    const SurveyOf beyond(file(400.5, -22.1)), far(file(200.5, 195.1)), east(file(220.5, -22.1));
    EXPECT_TRUE(beyond.has_remark("\"lon\" holds values beyond 360 degrees, which are no longitudes"));
    EXPECT_TRUE(far.has_remark("\"lat\" holds values beyond 90 degrees, which are no latitudes"));
    EXPECT_EQ(beyond.layout.columns[0].unit, Unit::degree);
    EXPECT_EQ(east.role("lon"), "longitude");
    EXPECT_TRUE(east.layout.remarks.empty());
}

TEST(Recognition, a_line_that_differs_in_every_row_numbers_stations) {
    const SurveyOf survey(table("line,east,north,mag", 20, [](int i) {
        return std::to_string(100 + i) + "," + num(450000 + 7 * i) + ",7550000," + num(5 + i % 7);
    }));
    EXPECT_EQ(survey.role("line"), "fiducial");
    EXPECT_TRUE(survey.has_remark("numbers stations, not lines"));
    EXPECT_EQ(survey.read().line_names.size(), 1U);
}

TEST(Recognition, of_two_lines_the_one_that_tells_more_apart) {
    const SurveyOf survey(table("fltline,line,east,north,mag", 40, [](int i) {
        return std::string("2.0,") + std::to_string(3054400 + 50 * (i / 10)) + "," +
               num(450000 + 7 * (i % 10)) + ",7550000," + num(5 + i % 7);
    }));
    EXPECT_EQ(survey.role("line"), "line");
    EXPECT_EQ(survey.read().line_names.size(), 4U);
    ASSERT_EQ(open_questions(survey.layout).size(), 1U);
    EXPECT_EQ(open_questions(survey.layout)[0].role, Role::line);
}

TEST(Recognition, several_magnetic_channels_are_a_question_and_the_final_one_is_taken) {
    const SurveyOf survey(table("east,north,mag_raw,mag_comp,mag_igrf,mag_final,igrf,diurnal", 20, [](int i) {
        return num(450000 + 7 * i) + ",7550000," + num(52100 + i) + "," + num(52101 + i) + "," +
               num(100 + i) + "," + num(52103 + i) + ",52000.5,51990.5";
    }));
    EXPECT_EQ(survey.role("mag_final"), "mag");
    const std::vector<RoleQuestion> questions = open_questions(survey.layout);
    ASSERT_EQ(questions.size(), 1U);
    EXPECT_EQ(questions[0].role, Role::mag);
    EXPECT_THAT(questions[0].columns, ElementsAre(5, 4, 3, 2));
    EXPECT_TRUE(survey.has_remark(
        "Magnetics is taken from \"mag_final\"; there are also: mag_igrf, mag_comp, mag_raw."));
}

TEST(Recognition, bouguer_before_free_air_and_milligal_before_gravity_units) {
    const SurveyOf survey(
        table("east,north,obsg_mgal,faa_mgal,ba267_gu,ba267_mgal,ba220_mgal", 20, [](int i) {
            return num(450000 + 7 * i) + ",7550000,979517.9," + num(35 + 0.1 * i) + "," + num(-147 + i) +
                   "," + num(-14.7 + 0.1 * i) + "," + num(-15 + 0.1 * i);
        }));
    EXPECT_EQ(survey.role("ba267_mgal"), "grav");
    EXPECT_EQ(open_questions(survey.layout)[0].columns.front(), 5U);
    EXPECT_THAT(survey.read()[Role::grav][0], DoubleEq(-14.7));
}

TEST(Recognition, gravity_without_a_unit_takes_that_of_the_absolute_values_beside_it) {
    const auto file = [](double factor) {
        return table("east,north,grav_obs,BA", 20, [factor](int i) {
            return num(450000 + 7 * i) + ",7550000," + num(979430.4 * factor + i) + "," +
                   num(-12.4 * factor - 0.1 * i);
        });
    };
    const SurveyOf in_gu(file(10)), in_mgal(file(1));
    EXPECT_EQ(in_gu.layout.columns[3].unit, Unit::micrometre_per_s2);
    EXPECT_THAT(in_gu.read()[Role::grav][0], DoubleEq(-12.4));
    EXPECT_TRUE(in_gu.has_remark("since \"grav_obs\" has the size of absolute gravity"));
    EXPECT_THAT(in_mgal.read()[Role::grav][0], DoubleEq(-12.4));
}

TEST(Recognition, units_of_gravity_as_the_file_says) {
    for (const char* unit : {"um/s2", "gu", "um/s^2"}) {
        const SurveyOf survey(table("east,north,bouguer (" + std::string(unit) + ")", 20,
                                    [](int i) { return num(450000 + 7 * i) + ",7550000," + num(-124 - i); }));
        EXPECT_THAT(survey.read()[Role::grav][0], DoubleEq(-12.4)) << unit;
    }
}

TEST(Recognition, the_only_height_of_a_ground_gravity_survey_is_the_ground) {
    const SurveyOf survey(table("station,east,north,height,bouguer", 20, [](int i) {
        return std::to_string(i) + "," + num(450000 + 7 * i) + ",7550000," + num(900 + i) + "," +
               num(-12 + 0.1 * i);
    }));
    EXPECT_EQ(survey.role("height"), "terrain");
    EXPECT_TRUE(survey.has_remark("taken as the ground"));
}

TEST(Recognition, a_file_without_names_by_its_values_alone) {
    const SurveyOf survey(table("", 60, [](int i) {
        return std::to_string(5690 + 10 * (i / 20)) + " " + num(450000 + 7 * i, 1) + " " +
               num(7550000 + i % 2, 1) + " " + std::to_string(340 + i % 5) + " " +
               std::to_string(52000 + 40 * (i % 7));
    }));
    EXPECT_THAT(survey.role("Column 1"), "line");
    EXPECT_EQ(survey.role("Column 2"), "easting");
    EXPECT_EQ(survey.role("Column 3"), "northing");
    EXPECT_EQ(survey.role("Column 4"), "height");
    EXPECT_EQ(survey.role("Column 5"), "mag");
    EXPECT_EQ(survey.layout.names_row, 0);
    EXPECT_TRUE(survey.has_remark("see whether that is right"));
}

TEST(Recognition, extremes_that_repeat_are_nulls) {
    SurveyOf survey(table("east,north,mag,dtm", 50, [](int i) {
        return num(450000 + 7 * i) + ",7550000," + (i % 10 == 3 ? "88888.8" : num(52000 + i % 7)) + "," +
               (i % 10 == 5 ? "-999" : num(300 + i % 9));
    }));
    EXPECT_THAT(survey.column("mag").nulls, ::testing::Contains(88888.8));
    EXPECT_THAT(survey.column("dtm").nulls, ::testing::Contains(-999));
    const ReadSurvey read = survey.read();
    EXPECT_TRUE(std::isnan(read[Role::mag][3]));
    EXPECT_TRUE(std::isnan(read[Role::terrain][5]));
}

TEST(Recognition, a_sea_below_a_plateau_is_ground_but_a_total_field_of_zero_is_none) {
    const SurveyOf survey(table("east,north,dtm,tmi", 60, [](int i) {
        return num(450000 + 7 * i) + ",7550000," + (i < 20 ? "0" : num(300 + i % 30)) + "," +
               (i % 9 == 4 ? "0" : num(52000 + i % 30));
    }));
    const ReadSurvey read = survey.read();
    EXPECT_EQ(read[Role::terrain][5], 0);
    EXPECT_TRUE(std::isnan(read[Role::mag][4]));
    EXPECT_TRUE(survey.has_remark("\"tmi\": 0 lies far outside of all other values"));
}

TEST(Recognition, strong_anomalies_and_flat_fields_are_readings) {
    SurveyOf survey(table("east,north,mag", 100, [](int i) {
        return num(450000 + 7 * i) + ",7550000," + (i == 50 ? "9000" : i % 10 == 5 ? "12" : "10");
    }));
    EXPECT_EQ(survey.read()[Role::mag][50], 9000);
    EXPECT_EQ(survey.read()[Role::mag][0], 10);
}

TEST(Recognition, dates_become_decimal_years_and_what_is_none_has_no_role) {
    const auto file = [](const std::string& date) {
        return table("date,east,north,mag", 20,
                     [&](int i) { return date + "," + num(450000 + 7 * i) + ",7550000," + num(5 + i % 7); });
    };
    EXPECT_THAT(SurveyOf(file("19900701")).read()[Role::date][0], DoubleNear(1990.497, 0.001));
    EXPECT_THAT(SurveyOf(file("1990-07-01")).read()[Role::date][0], DoubleNear(1990.497, 0.001));
    const SurveyOf none(file("77"));
    EXPECT_EQ(none.role("date"), "none");
    EXPECT_TRUE(none.has_remark("no dates"));
}

}  // namespace
}  // namespace anomalis::intake
