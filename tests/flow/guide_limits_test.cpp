#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "inversion/physical_limits.h"

namespace anomalis::flow {

TEST(Guide, its_table_of_limits_is_what_holds_a_fit) {
    std::set<std::string> guide;
    std::ifstream file(std::string(EXAMPLES) + "/../docs/reference/fitting.md");
    for (std::string line; std::getline(file, line);) guide.insert(line);
    const auto cell = [](std::string_view text) { return text.empty() ? "none" : std::string(text); };
    for (const inversion::PhysicalLimit& limit : inversion::physical_limits()) {
        const std::string row = "| " + std::string(param_name(limit.code)) + " | " + cell(limit.lower) +
                                " | " + cell(limit.upper) + " |";
        EXPECT_TRUE(guide.contains(row)) << row;
    }
}

}  // namespace anomalis::flow
