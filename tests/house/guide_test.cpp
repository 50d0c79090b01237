#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "core/numbers.h"
#include "house/source_files.h"

namespace anomalis::house {

namespace {

std::string caption_cell(const BodyParameter& row, std::int32_t type) {
    return has_parameter(type, row.code) ? "`" + std::string(row.grid.caption.of(type)) + "`" : "–";
}

std::string unit_cell(const BodyParameter& row) {
    const std::string unit(row.grid.unit.sheet);
    const std::string of_wire(row.grid.unit.wire);
    return unit == of_wire ? unit : unit + ", of a wire " + of_wire;
}

std::string range_text(const ValueRange& range) {
    if (range.bounded()) return format_number(range.low, "0") + " to " + format_number(range.high, "0");
    return range.low == 0 ? "0 or more" : "any number";
}

std::string range_cell(const BodyParameter& row) {
    const std::string text = range_text(row.range.sheet);
    const std::string of_pipe = range_text(row.range.pipe);
    return text == of_pipe ? text : text + ", of a pipe " + of_pipe;
}

}  // namespace

TEST(Guide, its_table_of_parameters_agrees_with_the_program) {
    const std::vector<std::string> guide = lines_of(project() / "docs/reference/bodies.md");
    auto place = std::find(guide.begin(), guide.end(),
                           "| Parameter | Of a pipe | Of a wire | Unit | Keyed values | New body |");
    ASSERT_NE(place, guide.end());
    ++place;
    for (int code = first_param_code; code <= last_param_code; ++code) {
        const BodyParameter& row = body_parameter(code);
        ASSERT_NE(++place, guide.end());
        EXPECT_THAT(*place, testing::StartsWith("| " + caption_cell(row, thick_sheet) + " | " +
                                                caption_cell(row, pipe) + " | " + caption_cell(row, wire) +
                                                " | " + unit_cell(row) + " | " + range_cell(row) + " | "));
    }
    EXPECT_EQ(place + 1 == guide.end() ? "" : *(place + 1), "");
}

}  // namespace anomalis::house
