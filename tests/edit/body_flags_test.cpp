#include "edit/body_flags.h"

#include <gtest/gtest.h>

#include "edit/body_sample.h"

namespace anomalis::edit {

namespace {

std::vector<int> values(BodySample& sample, std::int32_t ModelBody::*field) {
    std::vector<int> result;
    for (int i = 1; i <= sample.workspace().body_count; ++i) result.push_back(sample.body(i).*field);
    return result;
}

using Values = std::vector<int>;

}  // namespace

TEST(BodyFlags, on_of_the_fix_flags_frees_the_bodies) {
    BodySample sample;
    EXPECT_TRUE(set_body_flags(sample.workbench, BodyFlag::fix, FlagSetting::off));
    EXPECT_EQ(values(sample, &ModelBody::vary), (Values{0, 0, 0}));
    EXPECT_TRUE(set_body_flags(sample.workbench, BodyFlag::fix, FlagSetting::on));
    EXPECT_EQ(values(sample, &ModelBody::vary), (Values{1, 1, 1}));
}

TEST(BodyFlags, use_off_turns_the_bodies_off) {
    BodySample sample;
    EXPECT_TRUE(set_body_flags(sample.workbench, BodyFlag::use, FlagSetting::off));
    EXPECT_EQ(values(sample, &ModelBody::turned_off), (Values{1, 1, 1}));
    EXPECT_EQ(sample.cleared(3), Cleared(true, true));
    EXPECT_TRUE(sample.changed());
    EXPECT_TRUE(set_body_flags(sample.workbench, BodyFlag::use, FlagSetting::on));
    EXPECT_EQ(values(sample, &ModelBody::turned_off), (Values{0, 0, 0}));
}

TEST(BodyFlags, demagnetisation_goes_on_and_off) {
    BodySample sample;
    EXPECT_TRUE(set_body_flags(sample.workbench, BodyFlag::demagnetisation, FlagSetting::on));
    EXPECT_EQ(values(sample, &ModelBody::include_demagnetisation), (Values{1, 1, 1}));
    EXPECT_TRUE(set_body_flags(sample.workbench, BodyFlag::demagnetisation, FlagSetting::off));
    EXPECT_EQ(values(sample, &ModelBody::include_demagnetisation), (Values{0, 0, 0}));
}

TEST(BodyFlags, flip_takes_each_flag_from_1) {
    BodySample sample;
    for (const auto& [flag, field] : std::vector<std::pair<BodyFlag, std::int32_t ModelBody::*>>{
             {BodyFlag::fix, &ModelBody::vary},
             {BodyFlag::use, &ModelBody::turned_off},
             {BodyFlag::demagnetisation, &ModelBody::include_demagnetisation}}) {
        sample.body(1).*field = 0;
        sample.body(2).*field = 1;
        sample.body(3).*field = -1;
        EXPECT_TRUE(set_body_flags(sample.workbench, flag, FlagSetting::flip));
        EXPECT_EQ(values(sample, field), (Values{1, 0, 2}));
    }
}

TEST(BodyFlags, bodies_outside_the_limits_are_fixed_and_the_others_kept) {
    BodySample sample;
    Workspace& w = sample.workspace();
    w.first_station = 41;
    w.first_distance = 1000;
    w.last_station = 61;
    w.last_distance = 1500;
    sample.body(2).vary = 1;
    EXPECT_TRUE(fix_outside_limits(sample.workbench));
    EXPECT_EQ(values(sample, &ModelBody::vary), (Values{0, 1, 0}));
    sample.body(2).vary = 0;
    sample.body(2).distance.value = 1500;
    EXPECT_TRUE(fix_outside_limits(sample.workbench));
    EXPECT_EQ(sample.body(2).vary, 0);
}

TEST(BodyFlags, the_whole_line_is_the_limit_when_none_is_set) {
    BodySample sample;
    sample.body(1).distance.value = -1;
    sample.body(3).distance.value = 2500;
    EXPECT_TRUE(fix_outside_limits(sample.workbench));
    EXPECT_EQ(values(sample, &ModelBody::vary), (Values{0, 1, 1}));
}

TEST(BodyFlags, without_bodies_nothing_is_changed) {
    BodySample sample(false);
    EXPECT_FALSE(set_body_flags(sample.workbench, BodyFlag::use, FlagSetting::flip));
    EXPECT_FALSE(fix_outside_limits(sample.workbench));
    EXPECT_FALSE(sample.changed());
}

}  // namespace anomalis::edit
