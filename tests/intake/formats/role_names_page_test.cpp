#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "core/text.h"
#include "intake/formats/role_names.h"

namespace anomalis::intake {

namespace {

std::vector<std::string> parted(const std::string& text, char at) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, at);) parts.emplace_back(trim_blanks(part));
    return parts;
}

/// The role that a column of this name, and nothing else known of it, fits best.
Role best_role(const std::string& name) {
    SurveyColumn column;
    column.name = name;
    Role best = Role::none;
    int most = 0;
    for (const Role role : all_roles)
        if (const int worth = role_worth(role, column); worth > most) {
            most = worth;
            best = role;
        }
    return best;
}

}  // namespace

TEST(RoleNamesPage, names_of_columns_in_the_guide_are_taken_for_the_role_that_it_says) {
    std::ifstream page(std::string(PROJECT_SOURCE_DIR) + "/docs/reference/survey_files.md");
    std::string line;
    while (std::getline(page, line) && !line.starts_with("| Role |")) {
    }
    std::getline(page, line);
    std::size_t roles = 0, names = 0;
    while (std::getline(page, line) && line.starts_with('|')) {
        const std::vector<std::string> cells = parted(line, '|');
        ASSERT_GE(cells.size(), 4U) << line;
        const std::vector<std::string> of_row = parted(cells[1], ',');
        const std::vector<std::string> groups = parted(cells[3], ';');
        for (std::size_t i = 0; i < of_row.size(); ++i, ++roles) {
            const auto role = role_of_name(of_row[i].substr(1, of_row[i].size() - 2));
            ASSERT_TRUE(role) << of_row[i];
            if (*role == Role::none) continue;
            ASSERT_LT(i, groups.size()) << line;
            for (const std::string& name : parted(groups[i], ',')) {
                EXPECT_EQ(best_role(name), *role) << name;
                ++names;
            }
        }
    }
    EXPECT_EQ(roles, all_roles.size());
    EXPECT_GE(names, 30U);
}

}  // namespace anomalis::intake
