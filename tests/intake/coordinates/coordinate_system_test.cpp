#include "intake/coordinates/coordinate_system.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"

namespace anomalis::intake {
namespace {

using testing::HasSubstr;

constexpr const char* mga_55_prj =
    "PROJCS[\"GDA_1994_MGA_Zone_55\",GEOGCS[\"GCS_GDA_1994\",DATUM[\"D_GDA_1994\","
    "SPHEROID[\"GRS_1980\",6378137.0,298.257222101]],PRIMEM[\"Greenwich\",0.0],"
    "UNIT[\"Degree\",0.0174532925199433]],PROJECTION[\"Transverse_Mercator\"],"
    "PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",10000000.0],"
    "PARAMETER[\"Central_Meridian\",147.0],PARAMETER[\"Scale_Factor\",0.9996],"
    "PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT[\"Meter\",1.0]]";

std::string message_about(const std::string& text) {
    try {
        return "found " + find_coordinate_system(text).name;
    } catch (const Fault& fault) {
        return fault.what();
    }
}

TEST(CoordinateSystem, is_found_by_number) {
    for (const char* text : {"EPSG:32754", "32754", " epsg:32754 "}) {
        const CoordinateSystem system = find_coordinate_system(text);
        EXPECT_EQ(system.code, "EPSG:32754");
        EXPECT_EQ(system.name, "WGS 84 / UTM zone 54S");
        EXPECT_FALSE(system.geographic);
        EXPECT_EQ(system.metres_per_unit, 1);
    }
}

TEST(CoordinateSystem, is_found_by_the_names_that_files_give_it) {
    for (const auto& [name, code] : {std::pair{"WGS 84 / UTM zone 54S", "EPSG:32754"},
                                     {"WGS84 / UTM zone 54 S", "EPSG:32754"},
                                     {"WGS_1984_UTM_Zone_54S", "EPSG:32754"},
                                     {"GDA94 / MGA zone 55", "EPSG:28355"},
                                     {"GDA94 / Map Grid of Australia zone 55", "EPSG:28355"},
                                     {"GDA94 MGA 55", "EPSG:28355"},
                                     {"AGD66 / Australian Map Grid zone 54", "EPSG:20254"},
                                     {"WGS 84", "EPSG:4326"},
                                     {"WGS84", "EPSG:4326"},
                                     {"wgs 84", "EPSG:4326"},
                                     {"GDA94", "EPSG:4283"},
                                     {"nad83 / utm zone 17n", "EPSG:26917"}})
        EXPECT_EQ(find_coordinate_system(name).code, code) << name;
}

TEST(CoordinateSystem, is_found_by_the_text_of_a_prj_file) {
    const CoordinateSystem system = find_coordinate_system(mga_55_prj);
    EXPECT_EQ(system.code, "EPSG:28355");
    EXPECT_EQ(system.name, "GDA94 / MGA zone 55");
}

TEST(CoordinateSystem, of_a_definition_without_a_number_the_definition_is_kept) {
    const std::string text = "+proj=tmerc +lon_0=140.5 +k=0.9999 +x_0=1000 +ellps=GRS80 +units=m +type=crs";
    const CoordinateSystem system = find_coordinate_system(text);
    EXPECT_EQ(system.code, text);
    EXPECT_EQ(find_coordinate_system(system.code), system);
}

TEST(CoordinateSystem, degrees_and_feet_are_told) {
    EXPECT_TRUE(find_coordinate_system(wgs84).geographic);
    EXPECT_TRUE(find_coordinate_system("EPSG:4979").geographic) << "with heights";
    EXPECT_NEAR(find_coordinate_system("EPSG:2225").metres_per_unit, 0.3048006, 1e-7) << "US survey feet";
}

TEST(CoordinateSystem, of_one_with_heights_the_part_without_counts) {
    EXPECT_EQ(find_coordinate_system("EPSG:9518").code, "EPSG:4326") << "WGS 84 + EGM2008 height";
}

TEST(CoordinateSystem, an_unknown_number_says_what_to_give) {
    EXPECT_EQ(
        message_about("EPSG:99999"),
        "No coordinate system is known as EPSG:99999. Give its EPSG number (32754), its name (WGS 84 / UTM "
        "zone 54S) or the text of a .prj file");
    EXPECT_THAT(message_about(""), HasSubstr("No coordinate system was given"));
    EXPECT_THAT(message_about("EPSG:5711"), HasSubstr("EPSG:5711")) << "heights alone are no place";
    EXPECT_THAT(message_about("PROJCS[\"broken\""), HasSubstr("PROJCS"));
}

TEST(CoordinateSystem, an_unknown_name_gives_the_next_ones) {
    EXPECT_THAT(message_about("GDA94 / MGA zone 99"), HasSubstr("Near to it: GDA94 / MGA zone"));
    EXPECT_THAT(message_about("local grid of the mine"), HasSubstr("No coordinate system is known as local"));
}

TEST(CoordinateSystem, a_name_that_several_have_is_not_guessed) {
    EXPECT_THAT(message_about("MGA zone 55"), HasSubstr("(EPSG:28355)"));
    EXPECT_GE(coordinate_systems_like("MGA zone 55", 10).size(), 2U);
    EXPECT_EQ(coordinate_systems_like("MGA zone 55", 1).size(), 1U);
}

TEST(CoordinateSystem, axes_to_the_south_are_refused) {
    EXPECT_THAT(message_about("EPSG:2053"), HasSubstr("run to the south and west"));
}

TEST(UtmZone, follows_the_meridians_and_their_exceptions) {
    EXPECT_EQ(utm_zone_of(140.5, -22), "EPSG:32754");
    EXPECT_EQ(utm_zone_of(0, 51), "EPSG:32631");
    EXPECT_EQ(utm_zone_of(-180, 1), "EPSG:32601");
    EXPECT_EQ(utm_zone_of(180, 1), "EPSG:32601");
    EXPECT_EQ(utm_zone_of(179.99, -1), "EPSG:32760");
    EXPECT_EQ(utm_zone_of(290, -20), "EPSG:32719");
    EXPECT_EQ(utm_zone_of(5, 60), "EPSG:32632") << "Norway";
    EXPECT_EQ(utm_zone_of(15, 78), "EPSG:32633") << "Svalbard";
    EXPECT_EQ(utm_zone_of(10, 0), "EPSG:32632") << "the equator counts as north";
}

TEST(UtmZone, refuses_the_poles_and_what_is_no_degree) {
    EXPECT_THROW(utm_zone_of(0, 84.1), Fault);
    EXPECT_THROW(utm_zone_of(0, -80.1), Fault);
    EXPECT_THROW(utm_zone_of(NAN, 0), Fault);
    EXPECT_THROW(utm_zone_of(500000, 50), Fault);
}

}  // namespace
}  // namespace anomalis::intake
