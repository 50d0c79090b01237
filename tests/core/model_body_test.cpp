#include "core/model_body.h"

#include <gtest/gtest.h>
#include <set>

#include "core/failure.h"

namespace anomalis {
namespace {

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

TEST(BodyParam, each_code_reaches_its_own_slot) {
    ModelBody body;
    std::set<const BodyParam*> seen;
    for (int code = 4; code <= 18; ++code) seen.insert(&body_param(body, code));
    EXPECT_EQ(seen.size(), 15U);
    EXPECT_EQ(&body_param(body, 4), &body.distance);
    EXPECT_EQ(&body_param(body, 5), &body.strike);
    EXPECT_EQ(&body_param(body, 6), &body.dip);
    EXPECT_EQ(&body_param(body, 7), &body.top);
    EXPECT_EQ(&body_param(body, 8), &body.depth_extent);
    EXPECT_EQ(&body_param(body, 9), &body.width);
    EXPECT_EQ(&body_param(body, 10), &body.length);
    EXPECT_EQ(&body_param(body, 11), &body.susc);
    EXPECT_EQ(&body_param(body, 12), &body.density);
    EXPECT_EQ(&body_param(body, 13), &body.plunge);
    EXPECT_EQ(&body_param(body, 14), &body.slope);
    EXPECT_EQ(&body_param(body, 15), &body.offset);
    EXPECT_EQ(&body_param(body, 16), &body.rem_q);
    EXPECT_EQ(&body_param(body, 17), &body.rem_i);
    EXPECT_EQ(&body_param(body, 18), &body.rem_d);
}

TEST(BodyParam, a_code_without_a_parameter_raises_a_fault) {
    const ModelBody body;
    for (const int code : {-1, 0, 3, 19}) EXPECT_THROW(body_param(body, code), Fault);
}

TEST(ParamSlots, stand_in_the_order_of_the_record) {
    std::string names;
    for (const ParamSlot& slot : param_slots()) names += std::string(slot.name) + " ";
    EXPECT_EQ(names,
              "distance top strike dip plunge slope width depth_extent length offset susc rem_q rem_d rem_i "
              "density ");
}

}  // namespace
}  // namespace anomalis
