#include "core/model_mark.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "support/survey.h"

namespace anomalis {

namespace {

/// A line of three stations and a body that were fitted as they stand.
struct FittedSurvey : Survey {
    FittedSurvey() {
        set_stations(workspace, {{0, 0, 10.5}, {10, 0, 30.25}, {20, 0, 11.125}});
        workspace.distances.assign(3);
        for (int i = 1; i <= 3; ++i) workspace.distances[i] = 10 * (i - 1);
        workspace.first_station = 1;
        workspace.last_station = 3;
        workspace.last_distance = 20;
        reserve_next_body(workspace);
        workspace.body_count = 1;
        workspace.body(1).type = thick_sheet;
        workspace.body(1).top.value = 144.3F;
        workspace.fit.emplace().model_mark = model_mark(workspace);
    }
    bool after(const std::function<void(Workspace&)>& change) {
        Workspace changed = workspace;
        change(changed);
        return as_fitted(changed);
    }
};

}  // namespace

TEST(ModelMark, a_model_is_as_fitted_until_something_the_fit_hangs_on_changes) {
    FittedSurvey s;
    EXPECT_TRUE(as_fitted(s.workspace));
    for (const BodyParameter& row : body_parameters())
        EXPECT_FALSE(s.after([&](Workspace& w) { (w.body(1).*row.slot).value += 1; })) << row.name;
    EXPECT_FALSE(s.after([](Workspace& w) { w.body(1).turned_off = 1; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.body_count = 0; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.formulas = Formulas::exact; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.field.inclination = 10; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.sensor_offset = 80; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.processing.smooth_filter_width = 3; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.mag.base = 20; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.mag.regional_degree = 1; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.definition.z_column = 4; }));
}

TEST(ModelMark, readings_distances_and_window_of_a_loaded_line_count) {
    FittedSurvey s;
    EXPECT_FALSE(s.after([](Workspace& w) { w.last_distance = 10; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.distances[2] = 11; }));
    EXPECT_FALSE(s.after([](Workspace& w) { w.mag.data(2, row_raw, stage_observed) += 0.01F; }));
    EXPECT_TRUE(s.after([](Workspace& w) {
        drop_stations(w);
        w.first_station = w.last_station = 0;
    }));
}

TEST(ModelMark, what_no_curve_hangs_on_leaves_it) {
    FittedSurvey s;
    EXPECT_TRUE(s.after([](Workspace& w) {
        w.body(1).name = "Dyke";
        w.body(1).colour = 255;
        w.body(1).top.max = 500;
        w.mag.noise = 5;
        w.drawing.infinite_body_length = 900;
    }));
}

TEST(ModelMark, digits_that_a_file_drops_make_no_difference) {
    FittedSurvey s;
    s.workspace.body(1).top.value = 144.29875F;
    s.workspace.body(1).susc.value = 12345.678F;
    s.workspace.fit->model_mark = model_mark(s.workspace);
    EXPECT_TRUE(s.after([](Workspace& w) {
        w.body(1).top.value = 144.2988F;
        w.body(1).susc.value = 12345.68F;
    }));
}

TEST(ModelMark, a_base_level_that_floats_follows_the_data) {
    FittedSurvey s;
    s.workspace.mag.float_base = 1;
    s.workspace.fit->model_mark = model_mark(s.workspace);
    EXPECT_TRUE(s.after([](Workspace& w) { w.mag.base = 20; }));
}

TEST(ModelMark, without_a_record_nothing_is_as_fitted) {
    FittedSurvey s;
    s.workspace.fit.reset();
    EXPECT_FALSE(as_fitted(s.workspace));
}

}  // namespace anomalis
