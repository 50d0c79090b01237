#include "output/gis_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "core/failure.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/dxf.h"
#include "output/dxf_samples.h"
#include "output/geopackage_file.h"
#include "output/gis_tables.h"
#include "support/command.h"

namespace anomalis::output {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// Three stations and a pipe, of which one station has no reading.
Workspace map_workspace() {
    Workspace workspace = three_stations();
    workspace.source.coordinate_system = "EPSG:32754";
    workspace.body_count = 0;
    ModelBody& body = add_dxf_body(workspace, pipe, "Pipe \"one\"");
    body.east = 412445.5;
    body.north = 7123456.25;
    workspace.mag.data(2, row_raw, stage_observed) = -1e32F;
    return workspace;
}

std::vector<std::string> read_back(const std::string& path) {
    std::istringstream stream(output_of({PYTHON, std::string(SCRIPTS) + "/read_map.py", path}));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

TEST(GeoPackage, another_program_finds_every_layer_in_the_system_of_the_line) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    ASSERT_EQ(write_geopackage(folder.path("a.gpkg"), map_workspace(), GisSystem::of_line, prompts), 0);
    EXPECT_THAT(prompts.messages, testing::IsEmpty());
    const std::vector<std::string> lines = read_back(folder.path("a.gpkg"));
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "stations POINT EPSG:32754 3");
    EXPECT_EQ(lines[1], "412345.678500,7123456.250000 1|0.0|81.125|111.0|112.0");
    EXPECT_EQ(lines[2], "412445.678500,7123456.250000 2|100.0|82.125|None|212.0");
    EXPECT_EQ(lines[4], "bodies POLYGON EPSG:32754 1");
    EXPECT_THAT(lines[5], HasSubstr(" 1|Pipe \"one\"|"));
    EXPECT_EQ(lines[6], "tops POINT EPSG:32754 1");
    EXPECT_THAT(lines[7], StartsWith("412445.500000,7123456.250000 1|"));
}

TEST(GeoPackage, is_had_in_longitude_and_latitude_too) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    ASSERT_EQ(write_geopackage(folder.path("a.gpkg"), map_workspace(), GisSystem::geographic, prompts), 0);
    const std::vector<std::string> lines = read_back(folder.path("a.gpkg"));
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "stations POINT EPSG:4326 3");
    std::vector<double> longitude{412345.6785}, latitude{7123456.25};
    intake::CoordinateChange("EPSG:32754", intake::wgs84).forward(longitude, latitude);
    EXPECT_THAT(lines[1], StartsWith(format_number(longitude[0], "0.000000") + "," +
                                     format_number(latitude[0], "0.000000") + " 1|"));
}

TEST(GeoPackage, a_system_of_ones_own_has_a_number_of_its_own) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = map_workspace();
    workspace.source.coordinate_system =
        "+proj=tmerc +lon_0=140.5 +k=0.9999 +x_0=400000 +y_0=9000000 +ellps=GRS80 +units=m +type=crs";
    ASSERT_EQ(write_geopackage(folder.path("a.gpkg"), workspace, GisSystem::of_line, prompts), 0);
    EXPECT_EQ(read_back(folder.path("a.gpkg"))[0], "stations POINT NONE:100000 3");
}

TEST(GeoJson, another_program_finds_every_layer_in_wgs_84) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    ASSERT_EQ(write_geojson(folder.path("a.geojson"), map_workspace(), prompts), 0);
    ASSERT_EQ(write_geopackage(folder.path("a.gpkg"), map_workspace(), GisSystem::geographic, prompts), 0);
    std::vector<std::string> wanted = read_back(folder.path("a.gpkg"));
    for (std::string& line : wanted)
        if (const auto at = line.find("EPSG:"); at != std::string::npos) line.erase(at, 5);
    EXPECT_EQ(read_back(folder.path("a.geojson")), wanted);
}

TEST(GeoJson, rings_run_anticlockwise) {
    const nlohmann::json collection = nlohmann::json::parse(geojson_text(map_workspace()));
    int rings = 0;
    for (const nlohmann::json& feature : collection["features"]) {
        if (feature["geometry"]["type"] != "Polygon") continue;
        const nlohmann::json& ring = feature["geometry"]["coordinates"][0];
        double area = 0;
        for (std::size_t i = 1; i < ring.size(); ++i)
            area += ring[i - 1][0].get<double>() * ring[i][1].get<double>() -
                    ring[i][0].get<double>() * ring[i - 1][1].get<double>();
        EXPECT_GT(area, 0);
        EXPECT_EQ(ring.front(), ring.back());
        ++rings;
    }
    EXPECT_EQ(rings, 1);
}

TEST(GeoJson, says_that_its_numbers_are_not_sound) {
    EXPECT_EQ(nlohmann::json::parse(geojson_text(map_workspace(), {"Overflow"}))["failures"][0], "Overflow");
    EXPECT_EQ(geojson_text(map_workspace()).find("failures"), std::string::npos);
}

TEST(GisFiles, a_line_without_a_system_is_refused_and_an_old_file_stays) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = map_workspace();
    workspace.source.coordinate_system.clear();
    folder.write("a.geojson", "old");
    EXPECT_EQ(write_geojson(folder.path("a.geojson"), workspace, prompts), -1);
    EXPECT_EQ(write_geopackage(folder.path("a.gpkg"), workspace, GisSystem::of_line, prompts), -1);
    EXPECT_EQ(folder.read("a.geojson"), "old");
    EXPECT_THAT(prompts.messages.at(0), HasSubstr("The coordinate system of the line is not known. Give it"));
    workspace.source.coordinate_system = "EPSG:99999";
    EXPECT_THROW(geojson_text(workspace), Fault);
    EXPECT_THROW(geopackage_bytes(workspace, GisSystem::of_line), Fault);
}

TEST(GisFiles, a_place_beyond_the_globe_is_told) {
    Workspace workspace = map_workspace();
    workspace.source.coordinate_system = intake::wgs84;
    EXPECT_THROW(geopackage_bytes(workspace, GisSystem::of_line).size(), Fault);
}

/// Two flight lines, of one of which nobody knows the place, and the edge of a sheet in space.
std::vector<GisLayer> line_layers() {
    const std::vector<GisField> fields{{"line", GisKind::words}, {"rms_nT", GisKind::real}};
    GisLayer tracks{{.name = "lines", .shape = GisShape::line, .fields = fields}, {}};
    tracks.features.push_back({{{140.5, -22.25}, {140.75, -22.5}, {141, -22.5}}, {"L\"1", gis_number(1.5)}});
    tracks.features.push_back({{}, {"L2", gis_number(std::nan(""))}});
    GisLayer edges{{.name = "edges", .shape = GisShape::line, .fields = fields, .heights = true}, {}};
    edges.features.push_back({{{140.5, -22.25, 310}, {140.75, -22.5, -12.5}}, {"L1", GisValue()}});
    return {std::move(tracks), std::move(edges)};
}

TEST(GeoPackageFile, keeps_lines_heights_and_rows_whose_place_nobody_knows) {
    const TempFolder folder;
    write_geopackage_layers(folder.path("a.gpkg"), line_layers(), intake::wgs84, "Lines");
    EXPECT_THAT(
        read_back(folder.path("a.gpkg")),
        testing::ElementsAre("lines LINESTRING EPSG:4326 2",
                             "140.500000,-22.250000 140.750000,-22.500000 141.000000,-22.500000 L\"1|1.5",
                             "nowhere L2|None", "edges LINESTRING EPSG:4326 1",
                             "140.500000,-22.250000,310.000000 140.750000,-22.500000,-12.500000 L1|None"));
}

TEST(GeoPackageFile, is_the_same_when_it_is_made_again_and_leaves_nothing_beside_it) {
    const TempFolder folder;
    for (const char* name : {"a.gpkg", "b.gpkg"}) {
        GeoPackageFile file(folder.path(name));
        const std::size_t tops = file.add_table(
            {.name = "tops", .fields = {{"line", GisKind::words}, {"body", GisKind::whole}}}, "", "Tops");
        for (int i = 0; i < 5000; ++i)
            file.add(tops, {{{1000.0 + i, 2000.0 - i}}, {"L" + std::to_string(i / 7), std::int64_t{i % 7}}});
        file.commit();
    }
    EXPECT_TRUE(folder.read("a.gpkg") == folder.read("b.gpkg"));
    EXPECT_THAT(folder.read("a.gpkg"), HasSubstr("2000-01-01T00:00:00.000Z"));
    const std::vector<std::string> lines = read_back(folder.path("a.gpkg"));
    EXPECT_EQ(lines.at(0), "tops POINT NONE:-1 5000");
    EXPECT_EQ(lines.at(5000), "5999.000000,-2999.000000 L714|1");
    EXPECT_EQ(folder.entries(), 2);
}

TEST(GeoPackageFile, without_a_commit_the_old_file_stays) {
    const TempFolder folder;
    folder.write("a.gpkg", "old");
    {
        GeoPackageFile file(folder.path("a.gpkg"));
        const std::size_t table = file.add_table({.name = "tops"}, intake::wgs84, "");
        file.add(table, {{{1, 2}}, {}});
    }
    EXPECT_EQ(folder.read("a.gpkg"), "old");
    EXPECT_EQ(folder.entries(), 1);
    EXPECT_THROW(GeoPackageFile(folder.path("no folder/a.gpkg")), FileFault);
}

TEST(GeoJsonOfLayers, holds_lines_without_their_heights) {
    const nlohmann::json features = nlohmann::json::parse(geojson_of_layers(line_layers()))["features"];
    ASSERT_EQ(features.size(), 3U);
    EXPECT_EQ(features[0]["geometry"]["type"], "LineString");
    EXPECT_EQ(features[0]["geometry"]["coordinates"].size(), 3U);
    EXPECT_TRUE(features[1]["geometry"].is_null());
    EXPECT_TRUE(features[1]["properties"]["rms_nT"].is_null());
    EXPECT_EQ(features[2]["geometry"]["coordinates"][1], nlohmann::json({140.75, -22.5}));
    EXPECT_EQ(features[2]["properties"]["layer"], "edges");
}

TEST(DxfComment, names_the_system_where_it_is_known) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = map_workspace();
    ASSERT_EQ(write_plan_dxf(folder.path("a.dxf"), workspace, prompts), 0);
    const std::string with = folder.read("a.dxf");
    EXPECT_THAT(with,
                StartsWith("999\r\nCoordinates in EPSG:32754 (WGS 84 / UTM zone 54S)\r\n  0\r\nSECTION"));
    workspace.source.coordinate_system.clear();
    ASSERT_EQ(write_plan_dxf(folder.path("a.dxf"), workspace, prompts), 0);
    EXPECT_EQ(folder.read("a.dxf"), with.substr(with.find("  0\r\nSECTION")));
    workspace.source.coordinate_system = "grid of the\nmine";
    ASSERT_EQ(write_body_dxf(folder.path("a.dxf"), workspace, prompts), 0);
    EXPECT_THAT(folder.read("a.dxf"), StartsWith("999\r\nCoordinates in grid of the mine\r\n"));
}

}  // namespace
}  // namespace anomalis::output
