#include "core/body_types.h"

#include <gtest/gtest.h>
#include <string>

namespace anomalis {
namespace {

std::string types_with(bool (*question)(std::int32_t)) {
    std::string answer;
    for (std::int32_t type = -1; type <= 18; ++type)
        if (question(type)) answer += std::to_string(type) + " ";
    return answer;
}

TEST(BodyType, has_a_name_for_eight_codes) {
    EXPECT_EQ(body_type_name(1), "Thin Sheet");
    EXPECT_EQ(body_type_name(2), "Thick Sheet");
    EXPECT_EQ(body_type_name(3), "Edge");
    EXPECT_EQ(body_type_name(4), "Sloping step");
    EXPECT_EQ(body_type_name(5), "Polygon");
    EXPECT_EQ(body_type_name(6), "Sphere");
    EXPECT_EQ(body_type_name(16), "Cylinder/pipe");
    EXPECT_EQ(body_type_name(17), "Wire");
    for (const int code : {-1, 0, 7, 10, 15, 18, 2147483647}) EXPECT_EQ(body_type_name(code), "");
}

TEST(BodyType, four_are_offered) {
    std::string names;
    for (const BodyType type : offered_body_types) names += std::string(body_type_name(type)) + ";";
    EXPECT_EQ(names, "Thin Sheet;Thick Sheet;Cylinder/pipe;Wire;");
}

TEST(BodyType, answers_questions_for_every_code) {
    EXPECT_EQ(types_with(is_named), "1 2 3 4 5 6 16 17 ");
    EXPECT_EQ(types_with(is_sheet), "1 2 ");
    EXPECT_EQ(types_with(is_step), "3 4 ");
    EXPECT_EQ(types_with(is_tabular), "-1 0 1 2 3 4 ");
    EXPECT_EQ(types_with(is_round), "16 17 18 ");
    EXPECT_EQ(types_with(carries_current), "17 ");
    EXPECT_EQ(types_with(has_classic_gravity), "1 2 16 ");
    EXPECT_EQ(types_with(has_plan_outline), "1 2 3 4 16 17 ");
}

}  // namespace
}  // namespace anomalis
