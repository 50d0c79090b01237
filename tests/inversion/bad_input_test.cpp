// Least squares where there is too little or nothing to fit: it says what, and what to do.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "inversion/line_session.h"
#include "inversion/perform.h"

namespace anomalis::inversion {

namespace {

class BadInput : public ::testing::Test {
  protected:
    BadInput() {
        line.workspace().formulas = Formulas::exact;
        body.length.value = 0;
        line.take_model_as_data();
        body.susc.value = 30000;
        for (BodyParam* param : {&body.distance, &body.top, &body.dip, &body.susc}) param->vary = 1;
    }
    RunResult fit(std::int32_t channel = channel_mag) {
        line.refresh();
        RunResult result;
        RunObserver observer;
        perform_inversion(line.workspace(), line.session.inversion,
                          {.channel = channel, .method = InversionMethod::least_squares}, observer, result);
        return result;
    }
    void set_window(int first, int last) {
        Workspace& w = line.workspace();
        w.first_station = first;
        w.last_station = last;
        w.first_distance = w.distances[first];
        w.last_distance = w.distances[last];
    }
    static std::string told(const RunResult& result) {
        std::string all;
        for (const Faults::Entry& entry : result.faults.entries()) all += entry.text + "\n";
        return all;
    }
    static bool remarked(const RunResult& result, const std::string& text) {
        for (const std::string& remark : result.record->remarks)
            if (remark == text) return true;
        return false;
    }

    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
};

}  // namespace

TEST_F(BadInput, fewer_stations_than_unknowns_are_refused) {
    set_window(50, 54);
    line.workspace().mag.regional_degree = 1;
    const RunResult result = fit();
    EXPECT_EQ(result.status, run_failed);
    EXPECT_NE(told(result).find("There are 5 stations for 6 unknowns: hold parameters or widen the window"),
              std::string::npos)
        << told(result);
    EXPECT_EQ(body.susc.value, 30000.0F);
    EXPECT_FALSE(result.record);
}

TEST_F(BadInput, a_window_of_three_stations_is_fitted_where_that_can_be) {
    set_window(50, 52);
    EXPECT_EQ(fit().status, run_failed);
    body.distance.vary = body.top.vary = body.dip.vary = 0;
    const RunResult result = fit();
    EXPECT_GE(result.status, run_succeeded);
    EXPECT_NEAR(body.susc.value, 50000, 5);
}

TEST_F(BadInput, readings_that_are_all_the_same_are_told) {
    Workspace& w = line.workspace();
    for (int i = 1; i <= w.station_count; ++i) w.mag.data(i, row_raw, stage_observed) = 5;
    invalidate_filtered_data(0, w);
    const RunResult result = fit();
    EXPECT_GE(result.status, run_succeeded);
    ASSERT_TRUE(result.record);
    EXPECT_TRUE(remarked(result,
                         "The magnetic readings are the same at every station of the window: they tell of no "
                         "body"));
}

TEST_F(BadInput, limits_that_cross_hold_the_parameter_and_are_named) {
    body.top.min = -20;
    body.top.max = -90;
    const RunResult result = fit();
    ASSERT_TRUE(result.record);
    EXPECT_EQ(body.top.value, -50.0F);
    EXPECT_TRUE(remarked(result, "The limits of top of body 1 cross: held"));
    EXPECT_EQ(result.stopped_at_limits, 0);
}

TEST_F(BadInput, a_joint_fit_without_one_channel_says_so) {
    line.workspace().definition.grav_column = 0;
    const RunResult result = fit(channel_joint);
    EXPECT_EQ(result.status, run_succeeded);
    EXPECT_EQ(told(result), "The line has no gravity: magnetics alone are fitted\n");
    ASSERT_TRUE(result.record);
    EXPECT_EQ(result.record->channel, channel_mag);
    EXPECT_TRUE(result.record->mag);
    EXPECT_FALSE(result.record->grav);
}

TEST_F(BadInput, a_fit_that_stops_at_limits_says_so_and_names_them) {
    body.susc.max = 42000;
    RunResult result = fit();
    EXPECT_EQ(result.status, run_succeeded);
    EXPECT_EQ(status_label(result), "Stopped at the limit of 1 parameter");
    ASSERT_TRUE(result.record);
    EXPECT_EQ(result.record->outcome, "Stopped at the limit of 1 parameter");
    EXPECT_TRUE(remarked(result, "Stopped at a limit: susc of body 1"));
    body.susc.max = unset;
    result = fit();
    EXPECT_EQ(status_label(result), "Inversion succeeded");
    EXPECT_NEAR(body.susc.value, 50000, 50) << "a blank limit is none";
}

TEST_F(BadInput, a_body_that_does_nothing_is_named) {
    ModelBody& deep = line.add_body(thick_sheet, 200, -3000);
    deep.length.value = 0;
    deep.width.value = 1;
    deep.susc.value = 10;
    deep.susc.vary = 1;
    Workspace& w = line.workspace();
    for (int i = 1; i <= w.station_count; ++i)
        w.mag.data(i, row_raw, stage_observed) += i % 2 == 0 ? 1.0F : -1.0F;
    const RunResult result = fit();
    ASSERT_TRUE(result.record);
    EXPECT_TRUE(remarked(result, "Body 2 is not needed: without it the misfit is the same"));
    EXPECT_FALSE(remarked(result, "Body 1 is not needed: without it the misfit is the same"));
}

}  // namespace anomalis::inversion
