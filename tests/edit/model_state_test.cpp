#include "edit/model_state.h"

#include <gtest/gtest.h>

#include "edit/line_sample.h"
#include "support/fit_records.h"
#include "workspace_file/axm.h"

namespace anomalis::edit {

TEST(ModelState, shares_what_did_not_change) {
    LineSample sample;
    for (int i = 0; i < 50; ++i) sample.add_body(20.0 * i, 60);
    const ModelState first = capture_state(sample.workspace());
    EXPECT_TRUE(capture_state(sample.workspace(), first) == first);

    sample.workspace().body(7).dip.value += 1;
    const ModelState second = capture_state(sample.workspace(), first);
    EXPECT_EQ(second.settings, first.settings);
    for (std::size_t i = 0; i < 50; ++i)
        EXPECT_EQ((*second.bodies)[i] == (*first.bodies)[i], i != 6) << "body " << i + 1;

    sample.workspace().sensor_offset += 1;
    const ModelState third = capture_state(sample.workspace(), second);
    EXPECT_EQ(third.bodies, second.bodies);
    EXPECT_NE(third.settings, second.settings);
}

TEST(ModelState, shares_bodies_that_moved_up_or_down_the_list) {
    LineSample sample;
    for (int i = 0; i < 10; ++i) sample.add_body(20.0 * i, 60);
    const ModelState before = capture_state(sample.workspace());
    Workspace& w = sample.workspace();
    for (int i = 4; i < 10; ++i) w.body(i) = w.body(i + 1);
    --w.body_count;
    const ModelState after = capture_state(w, before);
    for (std::size_t i = 0; i < 9; ++i) EXPECT_EQ((*after.bodies)[i], (*before.bodies)[i < 3 ? i : i + 1]);
}

TEST(ModelState, tells_what_differs) {
    LineSample sample;
    for (int i = 0; i < 4; ++i) sample.add_body(20.0 * i, 60);
    const ModelState first = capture_state(sample.workspace());
    sample.workspace().body(2).type = pipe;
    const ModelState second = capture_state(sample.workspace(), first);
    const StateDifference type_change = compare_states(second, first, 3);
    EXPECT_TRUE(type_change.list);
    EXPECT_EQ(type_change.first_changed, 2);
    EXPECT_FALSE(type_change.current_changed);
    EXPECT_FALSE(type_change.settings);
    EXPECT_TRUE(compare_states(second, first, 2).current_changed);
    EXPECT_EQ(compare_states(first, first, 1).first_changed, 0);
}

TEST(ModelState, copies_a_model_without_its_line) {
    LineSample sample;
    sample.workspace().model_file = "somewhere.axm";
    sample.workspace().display.tie_factor = 3;
    sample.add_body(1200, 60, pipe).name = "Pipe";
    sample.add_body(1300, 60).susc.max = 9000;
    sample.load();
    sample.workspace().fit = sample_fit(sample.workspace());
    Workspace copy = copy_of_model(sample.workspace());
    EXPECT_EQ(copy.station_count, 0);
    EXPECT_EQ(copy.model_file, "somewhere.axm");
    EXPECT_EQ(workspace_file::model_parameters_text(0, copy),
              workspace_file::model_parameters_text(0, sample.workspace()));
    ASSERT_TRUE(copy.fit);
    expect_same(*copy.fit, *sample.workspace().fit);
}

TEST(ModelState, a_step_brings_source_and_gaps_back) {
    LineSample sample;
    Workspace& w = sample.workspace();
    const ModelState before = capture_state(w);
    w.source.date = "1990";
    w.gap_distance = 200;
    const ModelState after = capture_state(w, before);
    EXPECT_NE(after.settings, before.settings);
    restore_state(w, after, before);
    EXPECT_EQ(w.source, LineSource{});
    EXPECT_EQ(w.gap_distance, 0);
    restore_state(w, before, after);
    EXPECT_EQ(w.source.date, "1990");
    EXPECT_EQ(w.gap_distance, 200);
}

}  // namespace anomalis::edit
