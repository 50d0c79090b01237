#include "show/page_layout.h"

#include <gtest/gtest.h>
#include <limits>
#include <numeric>

namespace anomalis::show {

namespace {

int sum(const ChartHeights& heights) {
    return std::accumulate(heights.begin(), heights.end(), 0);
}

}  // namespace

TEST(PageLayout, section_magnetics_and_gravity_share_as_2000_to_2500_to_2500) {
    const ChartHeights heights = share_height(700, {true, true, true, true, true});
    EXPECT_EQ(heights[edit::chart_section], 200);
    EXPECT_EQ(heights[edit::chart_mag] + heights[edit::chart_mag_gradient], 250);
    EXPECT_EQ(heights[edit::chart_grav] + heights[edit::chart_grav_gradient], 250);
    EXPECT_EQ(heights[edit::chart_mag], 150);
}

TEST(PageLayout, what_is_missing_gives_its_room_away) {
    EXPECT_EQ(share_height(900, {true, true, false, false, true})[edit::chart_section], 400);
    EXPECT_EQ(share_height(900, {false, false, true, true, true})[edit::chart_section], 400);
    EXPECT_EQ(share_height(900, {true, false, false, false, true})[edit::chart_mag], 500);
}

TEST(PageLayout, the_heights_add_up_to_the_height) {
    for (const int height : {0, 1, 7, 333, 1001})
        EXPECT_EQ(sum(share_height(height, {true, true, true, true, true})), height);
    EXPECT_EQ(sum(share_height(500, {false, false, false, false, false})), 0);
}

TEST(PageLayout, a_splitter_that_was_moved_keeps_its_place) {
    const std::array all{true, true, true, true, true};
    edit::PaneFractions moved{};
    moved[edit::splitter_section] = 0.5F;
    moved[edit::splitter_mag] = 0.25F;
    const ChartHeights heights = share_height(800, all, moved);
    EXPECT_EQ(heights[edit::chart_section], 400);
    EXPECT_EQ(heights[edit::chart_mag], 50);
    EXPECT_EQ(heights[edit::chart_mag_gradient], 150);
    EXPECT_EQ(heights[edit::chart_grav], 120) << "this one was not moved";
    EXPECT_EQ(share_height(800, {false, false, false, false, true}, moved)[edit::chart_section], 800);
    EXPECT_EQ(share_height(800, {true, false, false, false, true}, moved)[edit::chart_mag], 400);
}

TEST(PageLayout, the_places_of_the_splitters_come_from_the_heights_and_lead_back_to_them) {
    const std::array all{true, true, true, true, true};
    const ChartHeights heights{90, 210, 240, 60, 400};
    const edit::PaneFractions places = splitter_places(heights, {});
    EXPECT_FLOAT_EQ(places[edit::splitter_section], 0.6F);
    EXPECT_FLOAT_EQ(places[edit::splitter_mag], 0.3F);
    EXPECT_FLOAT_EQ(places[edit::splitter_grav], 0.8F);
    EXPECT_EQ(share_height(1000, all, places)[edit::chart_mag], 90);
    const edit::PaneFractions kept = splitter_places({300, 0, 0, 0, 300}, places);
    EXPECT_FLOAT_EQ(kept[edit::splitter_section], 0.5F);
    EXPECT_FLOAT_EQ(kept[edit::splitter_mag], 0.3F) << "no splitter between them now";
}

TEST(PageLayout, what_is_no_place_for_a_splitter_counts_as_not_moved) {
    const std::array all{true, true, true, true, true};
    const float infinite = std::numeric_limits<float>::infinity();
    const float no_number = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(usable_places({no_number, infinite, -0.5F, 0.5F}), edit::PaneFractions{});
    EXPECT_EQ(usable_places({0.5F, 1.0F, 0.001F, 0}), (edit::PaneFractions{0.5F, 0, 0}));
    EXPECT_EQ(share_height(700, all, {2.0F, -1.0F, no_number}), share_height(700, all));
}

}  // namespace anomalis::show
