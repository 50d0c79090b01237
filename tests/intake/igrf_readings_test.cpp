#include "intake/igrf_readings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "core/failure.h"
#include "field/main_field.h"
#include "intake/coordinates/coordinate_system.h"
#include "intake/load.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

using testing::HasSubstr;

constexpr double year = 1990.5;

/// Three stations on the central meridian of UTM zone 54 S, with the whole field as a magnetometer reads it.
struct FieldSurvey : Survey {
    FieldSurvey() {
        set_file("500000 7553000 52100 339\n500000 7553500 -1e32 339\n500000 7554000 52300 450\n");
        workspace.definition.z_column = 4;
        workspace.source.coordinate_system = "EPSG:32754";
        workspace.source.date = "1990.5";
    }
    float reading(int station) { return workspace.mag.data(station, row_raw, stage_observed); }
};

double intensity_at(double east, double north, double height) {
    std::vector<double> longitude{east}, latitude{north};
    CoordinateChange("EPSG:32754", wgs84).forward(longitude, latitude);
    return field::main_field({latitude[0], longitude[0], height}, year).total_nT;
}

TEST(IgrfReadings, a_load_takes_the_field_of_each_place_out) {
    FieldSurvey survey;
    survey.workspace.source.igrf_change = igrf_removed;
    ASSERT_EQ(load_locations(survey.workspace, survey.prompts), 0);
    EXPECT_THAT(survey.prompts.messages, testing::IsEmpty());
    EXPECT_NEAR(survey.reading(1), 52100 - intensity_at(500000, 7553000, 339), 0.01);
    EXPECT_NEAR(survey.reading(3), 52300 - intensity_at(500000, 7554000, 450), 0.01);
    EXPECT_LT(survey.reading(2), missing_limit) << "what was not read stays so";
    EXPECT_EQ(survey.workspace.mag.min, survey.reading(1));
    EXPECT_EQ(survey.workspace.mag.max, survey.reading(3));
    EXPECT_NEAR(survey.workspace.mag.base, (survey.reading(1) + survey.reading(3)) / 2, 0.01);
}

TEST(IgrfReadings, a_load_puts_it_back) {
    FieldSurvey survey;
    survey.workspace.source.igrf_change = igrf_added;
    ASSERT_EQ(load_locations(survey.workspace, survey.prompts), 0);
    EXPECT_NEAR(survey.reading(1), 52100 + intensity_at(500000, 7553000, 339), 0.01);
}

TEST(IgrfReadings, are_left_alone_unless_somebody_asks) {
    FieldSurvey survey;
    ASSERT_EQ(load_locations(survey.workspace, survey.prompts), 0);
    EXPECT_EQ(survey.reading(1), 52100);
}

TEST(IgrfReadings, without_place_or_date_nothing_is_loaded) {
    for (const bool place : {true, false}) {
        FieldSurvey survey;
        survey.workspace.source.igrf_change = igrf_removed;
        (place ? survey.workspace.source.coordinate_system : survey.workspace.source.date).clear();
        EXPECT_EQ(load_locations(survey.workspace, survey.prompts), -1);
        EXPECT_EQ(survey.workspace.station_count, 0);
        ASSERT_EQ(survey.prompts.messages.size(), 1U);
        EXPECT_THAT(survey.prompts.messages[0], HasSubstr("IGRF could not be removed"));
        EXPECT_THAT(survey.prompts.messages[0], HasSubstr(place ? "coordinate system" : "date"));
    }
}

TEST(IgrfReadings, a_date_outside_of_the_model_is_told) {
    FieldSurvey survey;
    survey.workspace.source.igrf_change = igrf_removed;
    survey.workspace.source.date = "1850";
    EXPECT_EQ(load_locations(survey.workspace, survey.prompts), -1);
    EXPECT_TRUE(survey.prompts.told("1900 to 2030"));
}

TEST(IgrfReadings, places_beyond_the_globe_are_told) {
    const std::vector<double> longitude{141, 500000}, latitude{-22, 7553000};
    std::vector<float> readings{52000, 52000};
    EXPECT_THROW(add_igrf(-1, {wgs84, longitude, latitude, {}, year}, readings), Fault);
}

}  // namespace
}  // namespace anomalis::intake
