#include <gtest/gtest.h>

#include "batch/batch_runs.h"

namespace anomalis::batch {
namespace {

// Magnetic field calculator of NOAA NCEI, 2010.0, 5 km.
TEST(FieldCommand, gives_the_field_as_json) {
    const BatchRun run = batch({"field", "--at", "-22,163,5000", "--date", "2010-01-01", "--json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const nlohmann::json field = run.json();
    EXPECT_NEAR(field["north_nT"], 30850.7, 0.1);
    EXPECT_NEAR(field["east_nT"], 6394.0, 0.1);
    EXPECT_NEAR(field["down_nT"], -36189.7, 0.1);
    EXPECT_NEAR(field["total_nT"], std::sqrt(30850.7 * 30850.7 + 6394.0 * 6394.0 + 36189.7 * 36189.7), 0.2);
    EXPECT_NEAR(field["inclination_deg"], -48.958, 0.001);
    EXPECT_NEAR(field["declination_deg"], 11.709, 0.001);
    EXPECT_EQ(field.size(), 6U);
}

TEST(FieldCommand, gives_the_field_as_text_and_into_a_file) {
    const TempFolder folder;
    const BatchRun run = batch({"field", "--at", "-22,163,5000", "--date", "2010"});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.starts_with("intensity    47982.")) << run.out;
    EXPECT_NE(run.out.find("inclination  -48.9"), std::string::npos) << run.out;
    EXPECT_EQ(batch({"field", "--at=-22,163,5000", "--date", "2010", "-o", folder.path("f.txt")}).status, 0);
    EXPECT_EQ(folder.read("f.txt"), run.out);
}

TEST(FieldCommand, wrong_usage_is_told_with_what_to_give) {
    for (const auto& [at, date, part] :
         std::vector<std::array<std::string, 3>>{{"-22", "2010", "LAT,LON,HEIGHT_M"},
                                                 {"-22,163,x", "2010", "LAT,LON,HEIGHT_M"},
                                                 {"-22,163,5,7", "2010", "LAT,LON,HEIGHT_M"},
                                                 {"-22,163", "July", "1990-07-01"},
                                                 {"-22,163", "2010-02-30", "no such day"}}) {
        const BatchRun run = batch({"field", "--at", at, "--date", date});
        EXPECT_EQ(run.status, 2) << at << " " << date;
        EXPECT_NE(run.err.find(part), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
    EXPECT_EQ(batch({"field", "--date", "2010"}).status, 2) << "no place";
}

TEST(FieldCommand, what_the_model_does_not_know_is_a_failure) {
    for (const auto& [at, date, part] :
         std::vector<std::array<std::string, 3>>{{"-22,163", "1899.9", "1900 to 2030"},
                                                 {"-22,163", "2031-01-01", "1900 to 2030"},
                                                 {"-92,163", "2010", "latitude"},
                                                 {"-22,163,1e7", "2010", "height"}}) {
        const BatchRun run = batch({"field", "--at", at, "--date", date, "--json"});
        EXPECT_EQ(run.status, 1) << at << " " << date;
        EXPECT_NE(run.err.find(part), std::string::npos) << run.err;
        EXPECT_EQ(run.out, "");
    }
}

/// A workspace with such lines behind it.
std::string with_extensions(const std::string& lines) {
    return model_text() + "[AXM Extensions]\r\n" + lines;
}

TEST(FieldCommand, info_and_dump_tell_where_a_line_came_from) {
    const BatchFolder files;
    EXPECT_EQ(batch({"info", files.model}).out.find("Coordinates"), std::string::npos);
    files.folder.write(
        "model.axm",
        with_extensions("gap_distance 75\r\nsource_file a.csv\r\nsource_line 7\r\ncoordinate_system "
                        "EPSG:32754\r\nsurvey_date 1990\r\n"
                        "field_origin IGRF-14 at the middle of the line, 1990\r\n"));
    const BatchRun info = batch({"info", files.model});
    EXPECT_EQ(info.status, 0) << info.err;
    EXPECT_NE(info.out.find("  origin        IGRF-14 at the middle of the line, 1990\n"), std::string::npos)
        << info.out;
    EXPECT_NE(info.out.find("Coordinates     EPSG:32754\n"), std::string::npos);
    EXPECT_NE(info.out.find("Survey          a.csv, line 7\n"), std::string::npos);
    const nlohmann::json dump = batch({"dump", files.model}).json()["workspace"];
    EXPECT_EQ(dump["source"]["coordinate_system"], "EPSG:32754");
    EXPECT_EQ(dump["source"]["line"], "7");
    EXPECT_EQ(dump["source"]["field_missing"], false);
    EXPECT_EQ(dump["gap_distance"], 75);
}

TEST(FieldCommand, a_line_without_a_field_is_told_and_no_search_begins) {
    const BatchFolder files;
    std::string text = with_extensions("field not_set\r\n");
    const std::string field = " 56000 -65 -4 ";
    text.replace(text.find(field), field.size(), " 0  0  0 ");
    files.folder.write("model.axm", text);
    const BatchRun info = batch({"info", files.model});
    EXPECT_EQ(info.status, 1);
    EXPECT_NE(info.out.find("Field           not set\n"), std::string::npos) << info.out;
    EXPECT_NE(info.err.find("The earth's field of this line is not set"), std::string::npos) << info.err;
    EXPECT_NE(batch({"find", files.model, "--channel", "mag"})
                  .err.find("The earth's field of this line is not set"),
              std::string::npos);
}

TEST(MapExport, writes_both_formats_of_a_line_whose_system_is_known) {
    const BatchFolder files;
    const auto path = [&](const char* name) { return files.folder.path(name); };
    const BatchRun refused = batch({"export", files.model, "--geojson", path("a.geojson")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find("The coordinate system of the line is not known"), std::string::npos)
        << refused.err;
    files.folder.write("model.axm", with_extensions("coordinate_system EPSG:32754\r\n"));
    ASSERT_EQ(
        batch({"export", files.model, "--geojson", path("a.geojson"), "--geopackage", path("a.gpkg")}).status,
        0);
    const nlohmann::json map = nlohmann::json::parse(files.folder.read("a.geojson"));
    EXPECT_EQ(map["features"].size(), 41U + 1 + 1);
    EXPECT_TRUE(files.folder.read("a.gpkg").starts_with("SQLite format 3"));
    EXPECT_EQ(batch({"export", files.model, "--geopackage", path("b.gpkg"), "--wgs84"}).status, 0);
    EXPECT_NE(files.folder.read("b.gpkg"), files.folder.read("a.gpkg"));
    EXPECT_EQ(batch({"export", files.model, "--wgs84"}).status, 2) << "no file is named";
}

}  // namespace
}  // namespace anomalis::batch
