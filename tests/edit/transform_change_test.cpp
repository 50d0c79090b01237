#include "edit/transform_change.h"

#include <gtest/gtest.h>

#include "edit/line_sample.h"

namespace anomalis::edit {
namespace {

TEST(TransformChange, drops_the_stations_and_marks_the_model) {
    LineSample sample;
    sample.load();
    sample.session.model_changed = sample.workbench.unsaved = false;
    PointTransform transform;
    transform.x_offset = 1000;
    EXPECT_TRUE(change_transform(sample.workbench, transform));
    EXPECT_TRUE(sample.workspace().transform.active);
    EXPECT_EQ(sample.workspace().station_count, 0);
    EXPECT_TRUE(sample.session.model_changed);
    EXPECT_TRUE(sample.workbench.unsaved);
    sample.load();
    EXPECT_EQ(sample.workspace().stations(1, column_east), 501000);
}

TEST(TransformChange, the_same_transform_is_no_change) {
    LineSample sample;
    sample.load();
    PointTransform transform = sample.workspace().transform;
    transform.elevation_scale = 0;  // counts as 1
    EXPECT_FALSE(change_transform(sample.workbench, transform));
    EXPECT_EQ(sample.workspace().station_count, LineSample::stations);
}

}  // namespace
}  // namespace anomalis::edit
