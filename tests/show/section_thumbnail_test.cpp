#include "show/section_thumbnail.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "edit/line_sample.h"
#include "model/refresh_model.h"

namespace anomalis::show {

namespace {

struct ThumbnailSample : edit::LineSample {
    ThumbnailSample() {
        load();
        add_body(500, 40).colour = 0x112233;
        add_body(2000, -300);
        model::refresh_model(session);
    }
};

}  // namespace

TEST(SectionThumbnail, the_ground_runs_from_side_to_side_below_the_top) {
    ThumbnailSample sample;
    const SectionThumbnail thumbnail = section_thumbnail(sample.workspace(), 0.2);
    ASSERT_GE(thumbnail.ground.size(), 2U);
    EXPECT_EQ(thumbnail.ground.front().x, 0);
    EXPECT_EQ(thumbnail.ground.back().x, 1);
    for (const ThumbnailPoint& point : thumbnail.ground) {
        EXPECT_GT(point.y, 0);
        EXPECT_LT(point.y, 0.2);
    }
}

TEST(SectionThumbnail, bodies_stand_in_their_order_colours_and_places) {
    ThumbnailSample sample;
    const SectionThumbnail thumbnail = section_thumbnail(sample.workspace(), 0.2);
    ASSERT_EQ(thumbnail.shapes.size(), 2U);
    EXPECT_EQ(thumbnail.shapes[0].fill, 0x112233);
    EXPECT_NEAR(thumbnail.shapes[0].outline.front().x, 500.0 / 2500, 1e-6);
    EXPECT_NEAR(thumbnail.shapes[1].outline.front().x, 2000.0 / 2500, 1e-6);
    EXPECT_EQ(thumbnail.shapes[0].outline.front().y, thumbnail.shapes[0].outline.back().y);
    EXPECT_GT(thumbnail.shapes[1].outline.front().y, thumbnail.shapes[0].outline.front().y) << "deeper";
    EXPECT_LT(thumbnail.shapes[1].outline.front().y, 0.6) << "the deepest top is in view, with room below it";
}

TEST(SectionThumbnail, the_stations_of_the_fit_are_shown_alone) {
    ThumbnailSample sample;
    sample.workspace().first_station = 11;  // 250 m
    sample.workspace().last_station = 31;   // 750 m
    const SectionThumbnail thumbnail = section_thumbnail(sample.workspace(), 0.2);
    EXPECT_NEAR(thumbnail.shapes[0].outline.front().x, 0.5, 1e-6);
    EXPECT_GT(thumbnail.shapes[1].outline.front().x, 1) << "outside the picture";
}

TEST(SectionThumbnail, without_stations_there_is_nothing) {
    ThumbnailSample sample;
    drop_stations(sample.workspace());
    EXPECT_TRUE(section_thumbnail(sample.workspace(), 0.2).ground.empty());
}

}  // namespace anomalis::show
