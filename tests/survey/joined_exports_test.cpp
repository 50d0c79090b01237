#include "survey/joined/joined_exports.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "core/failure.h"
#include "output/geopackage_file.h"
#include "support/command.h"
#include "support/example_results.h"
#include "support/temp_folder.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// What an independent program reads in a file, a line each.
std::vector<std::string> told_by(const std::string& script, const std::string& path) {
    std::istringstream stream(output_of({PYTHON, std::string(SCRIPTS) + "/" + script, path}));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// The example with one dyke on three lines.
struct ThreeLines {
    SurveyResults results = example_results(4);
    std::vector<JoinedBody> joined;

    ThreeLines() {
        for (LineResult& line : results.lines)
            if (!line.bodies.empty()) {
                line.bodies.resize(1);
                line.bodies[0].east = 451000;
            }
        joined = join_bodies(results);
    }
};

TEST(JoinedTable, NamesUnitsAndBodies) {
    const ThreeLines survey;
    std::istringstream table(joined_table(survey.results, survey.joined));
    std::string header, row, more;
    std::getline(table, header);
    std::getline(table, row);
    EXPECT_FALSE(std::getline(table, more));
    EXPECT_THAT(header, StartsWith("joined_body,lines,start_east_m,start_north_m,end_east_m,end_north_m,"));
    EXPECT_THAT(header, HasSubstr("strike_deg,strike_deg_error,birge_ratio,length_m,length_m_error,"));
    EXPECT_THAT(row, StartsWith("1,3,451000.0,7550000.0,451000.0,7550400.0,"));
    EXPECT_THAT(row, HasSubstr(",EPSG:32754,0.0,"));
    EXPECT_THAT(row, HasSubstr(",1,1,")) << "open at both ends";
    EXPECT_THAT(row, HasSubstr("L1000:1 | L1010:1 | L1020:1"));
}

TEST(JoinedLayers, AnotherProgramReadsThemInBothFormats) {
    const TempFolder folder;
    const ThreeLines survey;
    output::write_geopackage_layers(
        folder.path("a.gpkg"), joined_layers(survey.results, survey.joined, "EPSG:32754"), "EPSG:32754", "");
    const std::vector<std::string> package = told_by("read_map.py", folder.path("a.gpkg"));
    ASSERT_EQ(package.size(), 6U);
    EXPECT_EQ(package[0], "joined_bodies LINESTRING EPSG:32754 1");
    EXPECT_THAT(package[1], StartsWith("451000.000000,7550000.000000 451000.000000,7550400.000000 1|3|"));
    EXPECT_EQ(package[2], "joined_tops POINT EPSG:32754 3");
    EXPECT_THAT(package[4], StartsWith("451000.000000,7550200.000000 1|L1010|1|"));
    folder.write("a.geojson",
                 output::geojson_of_layers(joined_layers(survey.results, survey.joined, "EPSG:4326")));
    const std::vector<std::string> json = told_by("read_map.py", folder.path("a.geojson"));
    ASSERT_EQ(json.size(), 6U);
    EXPECT_EQ(json[0], "joined_bodies LINESTRING 4326 1");
    EXPECT_THAT(json[1], StartsWith("140.5"));
}

TEST(JoinedLayers, WithoutASystemThereIsNoGeoJsonAndAWordWhatToDo) {
    ThreeLines survey;
    for (LineResult& line : survey.results.lines) line.coordinate_system.clear();
    const std::vector<JoinedBody> joined = join_bodies(survey.results);
    ASSERT_EQ(joined.size(), 1U);
    EXPECT_EQ(joined_layers(survey.results, joined, "")[0].features.size(), 1U);
    try {
        joined_layers(survey.results, joined, "EPSG:4326");
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("coordinate system of joined body 1 is not known. Give it"));
    }
}

TEST(JoinedSheets, GoDownTheDipFromTheTopOfEachLine) {
    ThreeLines survey;
    for (LineResult& line : survey.results.lines)
        for (BodyResult& body : line.bodies) {
            body.dip = {45, 40, 50};
            body.depth_extent = {100, 90, 110};
        }
    survey.joined = join_bodies(survey.results);
    const JoinedSheets space = joined_sheets(survey.results, survey.joined);
    ASSERT_EQ(space.sheets.size(), 1U);
    const output::SheetSurface& sheet = space.sheets[0];
    ASSERT_EQ(sheet.top.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(sheet.top[i].z, 260 - static_cast<double>(i), 1e-9);
        EXPECT_NEAR(sheet.bottom[i].x - sheet.top[i].x, 100, 1e-6) << "to the right of the strike";
        EXPECT_NEAR(sheet.bottom[i].y, sheet.top[i].y, 1e-6);
        EXPECT_NEAR(sheet.bottom[i].z - sheet.top[i].z, -100, 1e-6);
    }
}

TEST(JoinedSheets, OneWithoutEndGoesDownFiveDepthsAndToTheEstimatedEnds) {
    SurveyResults results = example_results(12);
    const std::vector<JoinedBody> joined = join_bodies(results);
    const JoinedSheets space = joined_sheets(results, joined);
    ASSERT_EQ(space.sheets.size(), 2U);
    EXPECT_EQ(space.sheets[0].top.size(), joined[0].members.size()) << "open at both ends";
    ASSERT_EQ(space.sheets[1].top.size(), 7U) << "one end is known";
    EXPECT_NEAR(space.sheets[1].top.back().y, joined[1].end.north, 1e-9);
    EXPECT_NEAR(space.sheets[1].top[0].z - space.sheets[1].bottom[0].z, 5 * 180, 1e-6);
    EXPECT_LT(space.sheets[1].bottom[0].x, space.sheets[1].top[0].x) << "a dip of 100 degrees, to the left";
}

TEST(JoinedSheets, OtherProgramsReadTheSurfaces) {
    const TempFolder folder;
    const ThreeLines survey;
    const JoinedSheets space = joined_sheets(survey.results, survey.joined);
    folder.write("a.vtk", output::vtk_of_sheets(space.sheets, space.names, "title\nof two lines"));
    folder.write("a.obj", output::obj_of_sheets(space.sheets, "title"));
    const std::vector<std::string> vtk = told_by("read_sheets.py", folder.path("a.vtk"));
    ASSERT_EQ(vtk.size(), 2U + 1 + space.names.size());
    const std::string tops = "451000.000 7550000.000 260.000|451000.000 7550200.000 259.000|";
    EXPECT_THAT(vtk[0], StartsWith("face " + tops));
    EXPECT_EQ(vtk[2], "sheet 1.0 1.0");
    EXPECT_EQ(vtk[5], "strike_deg 0.0 0.0");
    EXPECT_EQ(vtk.back(), "density_contrast_g_per_cc -99999.0 -99999.0");
    const std::vector<std::string> obj = told_by("read_sheets.py", folder.path("a.obj"));
    ASSERT_EQ(obj.size(), 2U);
    EXPECT_EQ(obj[0], "Joined_1" + vtk[0].substr(4));
#ifdef HAVE_EZDXF
    output::write_sheet_dxf(folder.path("a.dxf"), space.sheets, "EPSG:32754");
    EXPECT_THAT(folder.read("a.dxf"), StartsWith("999\r\nCoordinates in EPSG:32754"));
    const std::vector<std::string> dxf = told_by("read_drawing.py", folder.path("a.dxf"));
    ASSERT_EQ(dxf.size(), 1U + 1 + 2);
    EXPECT_EQ(dxf[0], "0 0") << "errors and repairs";
    EXPECT_THAT(dxf[1], StartsWith("POLYLINE|" + tops));
    EXPECT_THAT(dxf[2], StartsWith("3DFACE|Joined 1|256|" + tops));
#endif
}

TEST(JoinedSheets, NothingJoinedGivesFilesThatCanBeRead) {
    const TempFolder folder;
    const SurveyResults results;
    EXPECT_EQ(joined_sheets(results, {}).sheets.size(), 0U);
    folder.write("a.vtk", output::vtk_of_sheets({}, {"strike_deg"}, "none"));
    EXPECT_THAT(told_by("read_sheets.py", folder.path("a.vtk")), ElementsAre("sheet", "strike_deg"));
    EXPECT_EQ(joined_layers(results, {}, "EPSG:4326").size(), 2U);
    EXPECT_THAT(joined_table(results, {}), StartsWith("joined_body,lines,"));
}

}  // namespace

}  // namespace anomalis::survey
