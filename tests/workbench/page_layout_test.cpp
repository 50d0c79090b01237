#include "workbench/page_layout.h"

#include <gtest/gtest.h>
#include <numeric>

namespace anomalis {

namespace {

int sum(const ChartHeights& heights) {
    return std::accumulate(heights.begin(), heights.end(), 0);
}

}  // namespace

TEST(PageLayout, section_magnetics_and_gravity_share_as_2000_to_2500_to_2500) {
    const ChartHeights heights = share_height(700, {true, true, true, true, true});
    EXPECT_EQ(heights[chart_section], 200);
    EXPECT_EQ(heights[chart_mag] + heights[chart_mag_gradient], 250);
    EXPECT_EQ(heights[chart_grav] + heights[chart_grav_gradient], 250);
    EXPECT_EQ(heights[chart_mag], 150);
}

TEST(PageLayout, what_is_missing_gives_its_room_away) {
    EXPECT_EQ(share_height(900, {true, true, false, false, true})[chart_section], 400);
    EXPECT_EQ(share_height(900, {false, false, true, true, true})[chart_section], 400);
    EXPECT_EQ(share_height(900, {true, false, false, false, true})[chart_mag], 500);
}

TEST(PageLayout, the_heights_add_up_to_the_height) {
    for (const int height : {0, 1, 7, 333, 1001})
        EXPECT_EQ(sum(share_height(height, {true, true, true, true, true})), height);
    EXPECT_EQ(sum(share_height(500, {false, false, false, false, false})), 0);
}

}  // namespace anomalis
