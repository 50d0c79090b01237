#include <gtest/gtest.h>

#include "allocations.h"
#include "forward/line.h"
#include "support/stale_body.h"

namespace anomalis::forward {

namespace {

/// Allocations of one calculation of body 1 after something was changed.
template <class Change>
long allocations_after(Line& line, Change change) {
    change(line.body());
    invalidate_body(line.body());
    const long before = allocation_count();
    line.calculate();
    return allocation_count() - before;
}

void shift(ModelBody& body) {
    body.distance.value += 5;
    body.top.value -= 1;
    body.dip.value += 1;
    body.strike.value += 1;
    body.susc.value *= 1.1F;
}

}  // namespace

TEST(Memory, is_counted_here) {
    const long before = allocation_count();
    const std::vector<int> some(10);
    EXPECT_EQ(allocation_count() - before, 1);
    EXPECT_EQ(some.size(), 10U);
}

TEST(Memory, a_calculation_with_nothing_to_do_takes_none) {
    Line line(301);
    line.add(thick_sheet, 1000);
    line.calculate();
    const long before = allocation_count();
    line.calculate();
    EXPECT_EQ(allocation_count(), before);
}

TEST(Memory, no_type_of_body_takes_any_once_it_has_been_calculated) {
    for (const BodyType type : {thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, pipe, wire}) {
        for (const float length : {0.0F, 250.0F}) {
            Line line(301);
            line.add(thin_sheet, 500);
            line.body().length.value = length;
            line.body().type = type;
            line.add(thin_sheet, 900);
            line.calculate();
            EXPECT_EQ(allocations_after(line, shift), 0) << "type " << type << " length " << length;
        }
    }
}

TEST(Memory, a_demagnetised_pipe_and_a_prism_by_faces_take_none_either) {
    for (const int mark : {1, -1}) {
        for (const BodyType type : {pipe, thick_sheet}) {
            Line line(301);
            line.add(type, 1000).include_demagnetisation = mark;
            line.calculate();
            allocations_after(line, shift);
            EXPECT_EQ(allocations_after(line, shift), 0) << "type " << type;
        }
    }
}

}  // namespace anomalis::forward
