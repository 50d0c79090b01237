#include "survey/run_survey.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "survey/survey_results.h"
#include "survey/survey_runs.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

TEST(RunSurvey, DoesEveryLineAndWritesTheTables) {
    SurveyRuns runs;
    EXPECT_EQ(runs.run().outcome, RunOutcome::all_done);
    EXPECT_THAT(runs.witness.done, UnorderedElementsAre("100", "110", "120", "130"));
    const SurveyResults results = read_survey_results(runs.results);
    ASSERT_EQ(results.lines.size(), 4U);
    for (const LineResult& line : results.lines) {
        EXPECT_EQ(line.status, LineStatus::done) << line.message;
        EXPECT_EQ(line.stations, 60);
        EXPECT_NEAR(line.length_m, 590, 0.01);
        EXPECT_EQ(line.track.size(), 2U);
        EXPECT_EQ(line.coordinate_system, "EPSG:32754");
    }
    EXPECT_THAT(runs.tables().at(lines_table_name), HasSubstr("130"));
}

}  // namespace

}  // namespace anomalis::survey
