#include "model/unnamed_types.h"

#include <gtest/gtest.h>

#include "core/faults.h"
#include "core/workspace.h"

namespace anomalis::model {
namespace {

TEST(UnnamedTypes, each_body_without_a_shape_is_doubted_unless_it_is_turned_off) {
    Workspace workspace;
    workspace.bodies.resize(25);
    workspace.body_count = 20;
    for (int number = 1; number <= 20; ++number) {
        workspace.body(number).type = number;
        workspace.body(number).name = "Dyke";
    }
    workspace.body(8).turned_off = 1;
    Faults faults;
    note_unnamed_types(workspace, faults);
    // 7 to 15 and 18 to 20, less the one that is turned off.
    ASSERT_EQ(faults.entries().size(), 11U);
    EXPECT_EQ(
        faults.entries()[0].text,
        "Body 7 (Dyke) has type 7, which no formula knows: it counts as zero in every curve. Give it one "
        "of the types 1 to 6, 16 and 17 in the workspace file; the window opens it as a thin sheet");
    for (const Faults::Entry& entry : faults.entries()) EXPECT_EQ(entry.severity, Severity::doubt);
}

}  // namespace
}  // namespace anomalis::model
