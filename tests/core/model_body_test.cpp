#include "core/model_body.h"

#include <gtest/gtest.h>

namespace anomalis {
namespace {

TEST(InvalidateBody, clears_both_responses_and_the_coefficients) {
    ModelBody body;
    body.last_calculated = 3;
    body.mag_response_valid = body.grav_response_valid = true;
    invalidate_body(body);
    EXPECT_EQ(body.last_calculated, -1.0F);
    EXPECT_FALSE(body.mag_response_valid || body.grav_response_valid);
}

}  // namespace
}  // namespace anomalis
