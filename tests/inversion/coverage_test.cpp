// How often intervals hold the truth, on a few lines; docs/coverage.md has the tables of many.

#include <cmath>
#include <gtest/gtest.h>

#include "coverage_line.h"

namespace anomalis {

namespace {

constexpr unsigned lines = 5;

/// Of the intervals of a few lines, the part that holds the truth, and the part that is one-sided or open.
struct Held {
    double inside = 0, one_sided = 0, open = 0;
};
Held held_by(const LineKind& kind) {
    CoverageLine line(kind);
    double count = 0;
    Held held;
    for (unsigned seed = 1; seed <= lines; ++seed)
        for (const FittedAgainstTruth& one : line.fit(seed).parameters) {
            const bool below = one.truth<one.fitted.lower, above = one.truth> one.fitted.upper;
            const int open = std::isnan(one.fitted.lower) + std::isnan(one.fitted.upper);
            held.inside += !below && !above;
            held.one_sided += open == 1;
            held.open += open == 2;
            ++count;
        }
    return {held.inside / count, held.one_sided / count, held.open / count};
}

}  // namespace

TEST(Coverage, intervals_hold_the_truth_under_a_regional) {
    const Held held = held_by({"", Bodies::two_dykes, Disturbance::white, 2, 2});
    EXPECT_GE(held.inside, 0.8);
    EXPECT_EQ(held.open, 0);
}

TEST(Coverage, intervals_hold_the_truth_in_geology) {
    const Held held = held_by({"", Bodies::thin_dyke, Disturbance::exponential, 0, 0});
    EXPECT_GE(held.inside, 0.8);
    EXPECT_LE(held.open, 0.2);
}

TEST(Coverage, the_width_of_a_thin_dyke_has_an_upper_end_alone) {
    const Held held = held_by({"", Bodies::thin_dyke, Disturbance::white});
    EXPECT_GE(held.inside, 0.8);
    EXPECT_GE(held.one_sided, 0.15);
}

}  // namespace anomalis
