#include "survey/results/survey_results.h"

#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "support/example_results.h"
#include "support/temp_folder.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(LineResult, IsReadBackToTheLastBit) {
    LineResult line = example_results(4).lines.front();
    line.notes = {"Two words", "ümlaut"};
    line.bodies[0].dip.value = std::nextafter(80.0, 81.0);
    const std::string json = line_result_json(line);
    const LineResult again = read_line_result(json, "result.json");
    EXPECT_EQ(line_result_json(again), json);
    EXPECT_EQ(again.bodies[0].dip.value, line.bodies[0].dip.value);
    EXPECT_TRUE(std::isnan(again.bodies[0].strike.lower));
    EXPECT_EQ(again.notes, line.notes);
    EXPECT_EQ(again.track.size(), 2U);
}

TEST(LineResult, SaysWhichFileIsDamaged) {
    const std::string half = line_result_json(example_results(2).lines.front()).substr(0, 300);
    try {
        read_line_result(half, "there/result.json");
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("there/result.json is damaged"));
    }
}

TEST(SurveyResults, ComeInTheOrderOfThePlanWithTheMissingNamed) {
    const TempFolder folder;
    const SurveyResults written = example_results(4);
    write_example_results(folder, written);
    std::filesystem::remove_all(line_folder(folder.folder(), "L1010"));
    const SurveyResults read = read_survey_results(folder.folder());
    EXPECT_EQ(read.identity.name, "example");
    ASSERT_EQ(read.lines.size(), 3U);
    EXPECT_EQ(read.lines[1].line, "L1020");
    EXPECT_THAT(read.missing, ElementsAre("L1010"));
}

TEST(SurveyResults, AFolderWithoutASurveyIsTold) {
    const TempFolder folder;
    try {
        read_survey_results(folder.folder());
        FAIL();
    } catch (const Fault& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("holds no results of a survey"));
    }
}

}  // namespace

}  // namespace anomalis::survey
