#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/numbers.h"
#include "core/text.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "transform/transform.h"

namespace anomalis::transform {

namespace {

std::string guide_page() {
    std::ifstream file(std::string(PROJECT_SOURCE_DIR) + "/docs/reference/transform_file.md");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What stands between two texts.
std::string between(const std::string& text, const std::string& first, const std::string& last) {
    const std::size_t begin = text.find(first) + first.size();
    return text.substr(begin, text.find(last, begin) - begin);
}

std::vector<double> numbers_of(std::string line) {
    std::vector<double> numbers;
    for (char& sign : line)
        if (sign == '|' || sign == ',') sign = ' ';
    std::string_view rest = line;
    double number = 0;
    while (!trim_blanks(rest).empty() && next_number(rest, number)) numbers.push_back(number);
    return numbers;
}

}  // namespace

TEST(TransformPage, the_points_of_the_guide_go_where_it_says) {
    const std::string page = guide_page();
    const TempFolder folder;
    ScriptedPrompts prompts;
    PointTransform transform;
    const std::string file = folder.write("points.crd", between(page, "```text\n", "```"));
    ASSERT_EQ(load_transform_file(transform, file, prompts), 0);
    update_transform(transform);
    EXPECT_NEAR(transform.rotation, 90, 1e-6);

    int points = 0;
    std::istringstream rows(between(page, "| Of the data file | On the map |\n|---|---|\n", "\n\n"));
    for (std::string row; std::getline(rows, row); ++points) {
        std::vector<double> at = numbers_of(row);
        ASSERT_EQ(at.size(), 6U) << row;
        apply_transform(transform, 1, at[0], at[1], at[2]);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(at[i], at[i + 3], 1e-3) << row;
    }
    EXPECT_EQ(points, 3);
}

}  // namespace anomalis::transform
