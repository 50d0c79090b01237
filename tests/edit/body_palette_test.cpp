#include "edit/body_palette.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>
#include <vector>

#include "edit/body_sample.h"
#include "support/colour_sight.h"

namespace anomalis::edit {

TEST(BodyPalette, its_colours_are_told_apart_by_everybody_and_from_paper_curves_and_selection) {
    constexpr std::int32_t white = 0xFFFFFF, black = 0, magenta = 0xFF00FF;
    constexpr double clearly = 15;  // CIE 1976 colour difference; 2.3 is just seen
    std::vector<std::int32_t> all(body_palette().begin(), body_palette().end());
    all.insert(all.end(), {white, black, magenta});
    for (std::size_t i = 0; i < body_palette().size(); ++i)
        for (std::size_t k = i + 1; k < all.size(); ++k)
            EXPECT_GT(least_difference(all[i], all[k]), clearly) << i << " " << k;
}

TEST(BodyPalette, bodies_that_are_added_one_after_the_other_differ_as_long_as_there_are_colours) {
    std::vector<std::int32_t> used;
    for (std::size_t i = 0; i < body_palette().size(); ++i) used.push_back(next_body_colour(used));
    EXPECT_EQ(std::set(used.begin(), used.end()).size(), body_palette().size());
    EXPECT_EQ(next_body_colour(used), body_palette().front()) << "then it begins anew";
}

TEST(BodyPalette, a_colour_that_a_deleted_body_left_is_used_again) {
    const auto palette = body_palette();
    EXPECT_EQ(next_body_colour(std::vector{palette[0], palette[2], palette[3]}), palette[1]);
}

TEST(BodyPalette, a_colour_of_ones_own_keeps_its_likeness_away) {
    EXPECT_EQ(next_body_colour(std::vector<std::int32_t>{0xFF0000}), body_palette()[1])
        << "pure blue counts as the blue of the palette";
}

TEST(BodyPalette, only_bodies_that_stand_there_count) {
    BodySample sample;
    for (int i = 1; i <= 3; ++i) sample.body(i).colour = body_palette()[static_cast<std::size_t>(i - 1)];
    EXPECT_EQ(next_body_colour(sample.workspace()), body_palette()[3]);
    sample.workspace().body_count = 1;
    EXPECT_EQ(next_body_colour(sample.workspace()), body_palette()[1]);
}

}  // namespace anomalis::edit
