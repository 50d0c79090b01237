#include "survey/results/tables.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "core/failure.h"
#include "support/command.h"
#include "support/example_results.h"
#include "support/temp_folder.h"

namespace anomalis::survey {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> lines_of(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> read_back(const char* script, const std::vector<std::string>& paths) {
    std::vector<std::string> command{PYTHON, std::string(SCRIPTS) + "/" + script};
    command.insert(command.end(), paths.begin(), paths.end());
    return lines_of(output_of(command));
}

std::string fault_of(const std::string& folder) {
    try {
        write_survey_tables(folder);
    } catch (const Fault& fault) {
        return fault.what();
    }
    return "";
}

TEST(SurveyTables, HaveARowALineAndARowABodyInTheOrderOfThePlan) {
    const TempFolder folder;
    write_example_results(folder, example_results(4));
    const TableCounts counts = write_survey_tables(folder.folder());
    EXPECT_EQ(counts.lines, 4U);
    EXPECT_EQ(counts.failed, 1U);
    EXPECT_EQ(counts.bodies, 5U);
    const std::vector<std::string> bodies = lines_of(folder.read("bodies.csv"));
    ASSERT_EQ(bodies.size(), 6U);
    EXPECT_THAT(bodies[0], StartsWith("line,body,name,type,east_m,north_m,coordinate_system,longitude_deg,"
                                      "latitude_deg,profile_azimuth_deg,top_elevation_m,depth_below_ground_m,"
                                      "depth_below_ground_m_lower_90,depth_below_ground_m_upper_90,"));
    EXPECT_THAT(bodies[1], StartsWith("L1000,1,Body 1,Thin sheet,451000.0,7550000.0,EPSG:32754,"));
    EXPECT_THAT(bodies[2], StartsWith("L1000,2,Body 2,Thin sheet,453000.0,"));
    EXPECT_THAT(bodies[5], StartsWith("L1020,1,"));
    const std::vector<std::string> lines = lines_of(folder.read("lines.csv"));
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_THAT(lines[1], StartsWith("L1000,done,,line 1000 of example.csv,401,4000.0,EPSG:32754,450000.0,"
                                     "7550000.0,454000.0,7550000.0,mag,2,1.5,,1.0,,900.0,1,"));
    EXPECT_THAT(lines[4], StartsWith("L1030,failed,The line has no magnetic readings,"));
    EXPECT_EQ(lines_of(folder.read("seconds.csv"))[2], "L1010,0.51");
}

TEST(SurveyTables, AreTheSameBitsWhateverOrderTheLinesCameInAndHoweverLongTheyTook) {
    const TempFolder one, other;
    SurveyResults results = example_results(12);
    write_example_results(one, results);
    std::ranges::reverse(results.lines);
    for (LineResult& line : results.lines) line.seconds *= 3;
    write_example_results(other, results);
    write_survey_tables(one.folder());
    write_survey_tables(other.folder());
    for (const char* name : {"bodies.csv", "lines.csv", "survey.gpkg"})
        EXPECT_TRUE(one.read(name) == other.read(name)) << name;
    EXPECT_NE(one.read("seconds.csv"), other.read("seconds.csv"));
    // Made again over old ones, nothing else is there.
    write_survey_tables(other.folder());
    EXPECT_TRUE(one.read("survey.gpkg") == other.read("survey.gpkg"));
    EXPECT_EQ(other.entries(), 6);
}

TEST(SurveyTables, AreReadByAnyDataFrameAsTheyStand) {
    const TempFolder folder;
    SurveyResults results = example_results(3);
    results.lines[2].message = "No \"mag\", no grav,\nnothing";
    write_example_results(folder, results);
    write_survey_tables(folder.folder());
#ifdef HAVE_PANDAS
    const std::vector<std::string> columns =
        read_back("read_table.py", {folder.path("bodies.csv"), folder.path("lines.csv")});
    EXPECT_THAT(columns, Contains("line|O|'L1000'|'L1000'|'L1010'"));
    EXPECT_THAT(columns, Contains("depth_below_ground_m_upper_90|f|48.0|128.0|49.0"));
    EXPECT_THAT(columns, Contains("susceptibility_micro_SI|f|20000.0|40000.0|20000.0"));
    EXPECT_THAT(columns, Contains("density_contrast_g_per_cc|f|nan|nan|nan"));
    EXPECT_THAT(columns, Contains("criterion|f|900.0|900.0|899.0"));
    EXPECT_THAT(columns, Contains("message|O|nan|nan|'No \"mag\", no grav, nothing'"));
    EXPECT_THAT(columns, Contains("bodies|i|2|1|0"));
#endif
}

TEST(SurveyTables, HaveTracksAndTopsForAMap) {
    const TempFolder folder;
    write_example_results(folder, example_results(3));
    write_survey_tables(folder.folder());
    const std::vector<std::string> map = read_back("read_map.py", {folder.path("survey.gpkg")});
    ASSERT_EQ(map.size(), 8U);
    EXPECT_EQ(map[0], "lines LINESTRING EPSG:32754 3");
    EXPECT_THAT(map[1], StartsWith("450000.000000,7550000.000000 454000.000000,7550000.000000 L1000|done|"));
    EXPECT_THAT(map[3], HasSubstr("L1020|failed|The line has no magnetic readings|"));
    EXPECT_EQ(map[4], "tops POINT EPSG:32754 3");
    EXPECT_THAT(map[5], StartsWith("451000.000000,7550000.000000 L1000|1|Body 1|Thin sheet|451000.0|"));
}

TEST(SurveyTables, TakeTheSystemOfTheFirstLineThatHasOneForTheMapOfAll) {
    const TempFolder folder;
    SurveyResults results = example_results(4);
    results.lines[0].coordinate_system.clear();
    results.lines[2].coordinate_system = "EPSG:4326";
    results.lines[2].track = {{140.5, -22.2}, {140.6, -22.2}};
    results.lines[2].bodies.front().east = 140.55;
    results.lines[2].bodies.front().north = -22.2;
    write_example_results(folder, results);
    write_survey_tables(folder.folder());
    const std::vector<std::string> map = read_back("read_map.py", {folder.path("survey.gpkg")});
    EXPECT_EQ(map.at(0), "lines LINESTRING EPSG:32754 4");
    EXPECT_THAT(map.at(1), StartsWith("nowhere L1000|"));
    EXPECT_THAT(map.at(2), StartsWith("450000.000000,"));
    // 0.5 degrees west of the middle of the zone: 51.5 km from it.
    EXPECT_THAT(map.at(3), StartsWith("4484"));
}

TEST(SurveyTables, OfASurveyWithoutASystemLieInAPlane) {
    const TempFolder folder;
    SurveyResults results = example_results(2);
    for (LineResult& line : results.lines) line.coordinate_system.clear();
    write_example_results(folder, results);
    write_survey_tables(folder.folder());
    EXPECT_EQ(read_back("read_map.py", {folder.path("survey.gpkg")}).at(0), "lines LINESTRING NONE:-1 2");
}

TEST(SurveyTables, AreNotWrittenWithoutAllLinesAndTheOldOnesStay) {
    const TempFolder folder;
    write_example_results(folder, example_results(3));
    folder.write("lines.csv", "old");
    std::filesystem::remove_all(folder.path("lines/L1010"));
    EXPECT_THAT(fault_of(folder.folder()), HasSubstr("The line L1010 is not in " + folder.folder()));
    folder.write("lines/L1010/result.json", "{\"line\": ");
    EXPECT_THAT(fault_of(folder.folder()), HasSubstr("lines/L1010/result.json is damaged"));
    EXPECT_EQ(folder.read("lines.csv"), "old");
    EXPECT_EQ(folder.entries(), 3);
}

TEST(SurveyTables, LeaveALineOutThatThePlanHasNoMore) {
    const TempFolder folder;
    SurveyResults results = example_results(3);
    results.identity.lines.erase(results.identity.lines.begin());
    write_example_results(folder, results);
    EXPECT_EQ(write_survey_tables(folder.folder()).lines, 2U);
    EXPECT_THAT(folder.read("lines.csv"), testing::Not(HasSubstr("L1000")));
}

}  // namespace

}  // namespace anomalis::survey
