#include "core/search.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace anomalis {
namespace {

int position(const std::vector<double>& sorted, double value) {
    return search_sorted(std::span<const double>(sorted), value);
}

TEST(SearchSorted, gives_the_first_entry_not_below_the_value) {
    const std::vector<double> sorted{0, 10, 20, 30};
    EXPECT_EQ(position(sorted, -5), 1);
    EXPECT_EQ(position(sorted, 0), 1);
    EXPECT_EQ(position(sorted, 0.1), 2);
    EXPECT_EQ(position(sorted, 10), 2);
    EXPECT_EQ(position(sorted, 29.9), 4);
    EXPECT_EQ(position(sorted, 30), 4);
}

TEST(SearchSorted, is_the_count_beyond_the_last) {
    EXPECT_EQ(position({0, 10, 20, 30}, 31), 4);
    EXPECT_EQ(position({5}, 6), 1);
}

TEST(SearchSorted, the_entry_before_brackets_every_value_between) {
    std::vector<double> sorted;
    for (int i = 0; i < 1000; ++i) sorted.push_back(std::sqrt(i));
    for (double value = 0.01; value < sorted.back(); value += 0.37) {
        const auto p = static_cast<std::size_t>(position(sorted, value));
        ASSERT_GE(p, 2U);
        EXPECT_LT(sorted[p - 2], value);
        EXPECT_GE(sorted[p - 1], value);
    }
}

TEST(SearchSorted, equal_entries_give_the_first_of_them) {
    EXPECT_EQ(position({1, 2, 2, 2, 3}, 2), 2);
}

TEST(SearchSorted, nothing_to_search_gives_zero) {
    EXPECT_EQ(position({}, 1), 0);
}

}  // namespace
}  // namespace anomalis
