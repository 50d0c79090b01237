#include "model/usable_field.h"

#include <gtest/gtest.h>

#include "core/faults.h"
#include "core/workspace.h"

namespace anomalis::model {
namespace {

std::size_t doubts(float intensity, std::int32_t type, std::int32_t mag_column = 3) {
    Workspace workspace;
    workspace.definition.mag_column = mag_column;
    workspace.field.intensity = intensity;
    workspace.bodies.resize(2);
    workspace.bodies[1].type = type;
    workspace.body_count = 1;
    Faults faults;
    note_unusable_field(workspace, faults);
    for (const Faults::Entry& entry : faults.entries()) EXPECT_EQ(entry.severity, Severity::doubt);
    return faults.entries().size();
}

TEST(UsableField, a_field_that_magnetises_nothing_is_doubted_where_bodies_need_one) {
    EXPECT_EQ(doubts(0, thick_sheet), 1U);
    EXPECT_EQ(doubts(-56000, pipe), 1U);
    EXPECT_EQ(doubts(56000, thick_sheet), 0U);
    EXPECT_EQ(doubts(0, wire), 0U) << "it carries a current";
    EXPECT_EQ(doubts(0, thick_sheet, 0), 0U) << "gravity asks no field";
}

TEST(UsableField, a_field_that_nobody_gave_is_told_with_what_to_do) {
    Workspace workspace;
    workspace.definition.mag_column = 3;
    workspace.bodies.resize(2);
    workspace.bodies[1].type = thick_sheet;
    workspace.body_count = 1;
    forget_field(workspace);
    Faults faults;
    note_unusable_field(workspace, faults);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_TRUE(faults.entries()[0].text.starts_with("The earth's field of this line is not set"));
}

}  // namespace
}  // namespace anomalis::model
