#include "survey/joined/joined_bodies.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>

#include "support/dyke_survey.h"
#include "support/example_results.h"
#include "survey/joined/joined_values.h"

namespace anomalis::survey {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double degree = std::numbers::pi / 180;

/// The members by names, the figures with nine digits: what must not hang on the order of the lines.
std::vector<std::string> told(const SurveyResults& results, const std::vector<JoinedBody>& joined) {
    std::vector<std::string> lines;
    for (const JoinedBody& body : joined) {
        std::vector<std::string> members;
        for (const JoinedMember& m : body.members)
            members.push_back(results.lines[m.line].line + ":" + std::to_string(m.body));
        std::ranges::sort(members);
        std::string line;
        for (const std::string& member : members) line += member + " ";
        lines.push_back(line);
    }
    std::ranges::sort(lines);
    return lines;
}

std::vector<double> figures(const std::vector<JoinedBody>& joined) {
    std::vector<double> values;
    for (const JoinedBody& body : joined)
        for (const double v : {body.strike, body.strike_error, body.birge_ratio, body.length.value,
                               body.length_error, body.start.east, body.end.north, body.dip.value,
                               body.depth_below_ground.value, body.width.error, body.susceptibility.value})
            values.push_back(v);
    return values;
}

/// A place turned clockwise about the middle of the survey, and moved.
TrackPoint turned(const TrackPoint& p, double degrees, double east, double north) {
    const double e = p.east - 450000, n = p.north - 7550000;
    const double c = std::cos(degrees * degree), s = std::sin(degrees * degree);
    return {450000 + c * e + s * n + east, 7550000 - s * e + c * n + north};
}

TEST(JoinedBodies, TheExampleHasItsTwoDykes) {
    const SurveyResults results = example_results();
    const std::vector<JoinedBody> joined = join_bodies(results);
    ASSERT_EQ(joined.size(), 2U);
    const JoinedBody &slanted = joined[0], &north = joined[1];
    EXPECT_EQ(slanted.number, 1);
    EXPECT_EQ(slanted.members.size(), 11U);
    EXPECT_NEAR(slanted.strike, 10, 1e-6);
    EXPECT_LT(slanted.strike_error, 0.1);
    EXPECT_NEAR(slanted.dip.value, 80, 1e-9);
    EXPECT_TRUE(slanted.open_start && slanted.open_end) << "the last line failed";
    EXPECT_TRUE(std::isnan(slanted.length.upper));
    EXPECT_NEAR(slanted.length.value, 2000 / std::cos(10 * degree), 1e-6);
    EXPECT_EQ(north.members.size(), 6U);
    EXPECT_TRUE(north.open_start);
    EXPECT_FALSE(north.open_end);
    const EndGap gap{200, 400, 0.5 / (5 + 0.5 + 17)};
    EXPECT_NEAR(gap.mean(), 104.35, 0.01) << "about half way to the line that does not show it";
    EXPECT_NEAR(north.length.value, 1000 + gap.mean(), 1e-6);
    EXPECT_NEAR(north.length.lower, 1010, 1);
    EXPECT_NEAR(north.length_error, std::sqrt(gap.variance()), 1e-6);
    EXPECT_NEAR(north.end.north, 7551000 + gap.mean(), 1e-6);
    EXPECT_NEAR(north.dip.value, 100, 1e-9);
    EXPECT_NEAR(north.width.value, 10, 1e-9);
}

TEST(JoinedBodies, TheOrderOfTheLinesPlaysNoPart) {
    const SurveyResults results = dyke_survey(5).results;
    const std::vector<JoinedBody> joined = join_bodies(results);
    SurveyResults shuffled = results;
    std::mt19937 engine(7);
    std::shuffle(shuffled.lines.begin(), shuffled.lines.end(), engine);
    const std::vector<JoinedBody> again = join_bodies(shuffled);
    ASSERT_FALSE(joined.empty());
    EXPECT_EQ(told(shuffled, again), told(results, joined));
    EXPECT_EQ(figures(again), figures(joined));
}

TEST(JoinedBodies, TheSenseInWhichALineWasFlownPlaysNoPart) {
    const SurveyResults results = dyke_survey(6).results;
    const std::vector<JoinedBody> joined = join_bodies(results);
    SurveyResults reversed = results;
    for (std::size_t i = 0; i < reversed.lines.size(); i += 2) {
        LineResult& line = reversed.lines[i];
        std::ranges::reverse(line.track);
        for (BodyResult& body : line.bodies) {
            body.profile_azimuth += 180;
            body.strike.value += 180;
            body.dip = {180 - body.dip.value, 180 - body.dip.upper, 180 - body.dip.lower};
        }
    }
    const std::vector<JoinedBody> again = join_bodies(reversed);
    EXPECT_EQ(told(reversed, again), told(results, joined));
    const std::vector<double> before = figures(joined), after = figures(again);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) EXPECT_NEAR(after[i], before[i], 1e-6) << i;
}

TEST(JoinedBodies, TurningAndMovingTheMapTurnsAndMovesThem) {
    const SurveyResults results = dyke_survey(8).results;
    const std::vector<JoinedBody> joined = join_bodies(results);
    for (const double turn : {37.0, 90.0, 203.0}) {
        SurveyResults moved = results;
        for (LineResult& line : moved.lines) {
            for (TrackPoint& p : line.track) p = turned(p, turn, 12000, -70000);
            for (BodyResult& body : line.bodies) {
                const TrackPoint p = turned({body.east, body.north}, turn, 12000, -70000);
                body.east = p.east, body.north = p.north;
                body.profile_azimuth += turn;
                body.strike.value += turn;
            }
        }
        const std::vector<JoinedBody> again = join_bodies(moved);
        EXPECT_EQ(told(moved, again), told(results, joined)) << turn;
        ASSERT_EQ(again.size(), joined.size());
        for (const JoinedBody& body : joined) {
            const auto same = std::ranges::find_if(again, [&](const JoinedBody& other) {
                const TrackPoint centre = turned(body.centre, turn, 12000, -70000);
                return std::hypot(other.centre.east - centre.east, other.centre.north - centre.north) < 1e-3;
            });
            ASSERT_NE(same, again.end()) << body.number << " turned by " << turn;
            EXPECT_NEAR(std::remainder(same->strike - body.strike - turn, 180), 0, 1e-6);
            const bool other_way = std::cos((same->strike - body.strike - turn) * degree) < 0;
            EXPECT_NEAR(other_way ? 180 - same->dip.value : same->dip.value, body.dip.value, 1e-6);
            EXPECT_NEAR(same->length.value, body.length.value, 1e-4);
        }
    }
}

TEST(JoinedBodies, OneLineThatDoesNotShowItIsPassedAndNamed) {
    SurveyResults results = example_results();
    results.lines[3].bodies.erase(results.lines[3].bodies.begin());
    const std::vector<JoinedBody> joined = join_bodies(results);
    ASSERT_EQ(joined.size(), 2U);
    EXPECT_EQ(joined[0].members.size(), 10U);
    EXPECT_THAT(joined[0].lines_without, ElementsAre(3U));
    EXPECT_THAT(joined[1].lines_without, IsEmpty());
}

TEST(JoinedBodies, MissingAndFailedLinesSayNothing) {
    SurveyResults results = example_results();
    results.lines[4].status = LineStatus::failed;
    results.lines[4].bodies.clear();
    results.lines.erase(results.lines.begin() + 2);
    const std::vector<JoinedBody> joined = join_bodies(results);
    ASSERT_EQ(joined.size(), 2U);
    EXPECT_EQ(joined[0].members.size(), 9U);
    EXPECT_THAT(joined[0].lines_without, IsEmpty());
}

TEST(JoinedBodies, DepthDipOrStrengthOfAnotherKindKeepThemApart) {
    const auto with = [](auto change) {
        SurveyResults results = example_results(6);
        for (std::size_t i = 3; i < 6; ++i)
            for (BodyResult& body : results.lines[i].bodies)
                if (body.number == 1) change(body);
        std::size_t longest = 0;
        for (const JoinedBody& body : join_bodies(results))
            if (results.lines[body.members[0].line].bodies[body.members[0].body].number == 1)
                longest = std::max(longest, body.members.size());
        return longest;
    };
    EXPECT_EQ(with([](BodyResult&) {}), 5U);
    EXPECT_EQ(with([](BodyResult& b) { b.depth_below_ground = {200, 190, 210}; }), 3U);
    EXPECT_EQ(with([](BodyResult& b) { b.dip = {140, 135, 145}; }), 3U);
    EXPECT_EQ(with([](BodyResult& b) { b.susceptibility = {3e5, 2.5e5, 3.5e5}; }), 3U);
    EXPECT_EQ(with([](BodyResult& b) { b.type = "Edge"; }), 3U);
    EXPECT_EQ(with([](BodyResult& b) { b.type = "Sphere"; }), 3U);
    EXPECT_EQ(with([](BodyResult& b) { b.east += 900; }), 3U);
}

TEST(JoinedBodies, ASharpBendMakesTwo) {
    SurveyResults results = example_results(12);
    for (std::size_t i = 0; i < 11; ++i) {
        LineResult& line = results.lines[i];
        line.bodies.resize(1);
        const double beyond = i > 5 ? 200.0 * (static_cast<double>(i) - 5) : 0;
        line.bodies[0].east = 451000 + beyond * std::tan(50 * degree);
    }
    const std::vector<JoinedBody> joined = join_bodies(results);
    ASSERT_EQ(joined.size(), 2U);
    EXPECT_EQ(joined[0].members.size() + joined[1].members.size(), 11U);
    std::vector<double> strikes{joined[0].strike, joined[1].strike};
    std::ranges::sort(strikes);
    EXPECT_NEAR(strikes[0], 0, 1);
    EXPECT_NEAR(strikes[1], 50, 1);
}

TEST(JoinedBodies, WideIntervalsOfAnEdgeStillTellWhereTheMiddleOfTheTopIs) {
    SurveyResults results = example_results();
    for (LineResult& line : results.lines)
        for (BodyResult& body : line.bodies) {
            body.distance.lower -= 5000;
            body.distance.upper += 5000;
        }
    const std::vector<JoinedBody> joined = join_bodies(results);
    ASSERT_EQ(joined.size(), 2U);
    EXPECT_NEAR(joined[0].strike, 10, 0.1);
    EXPECT_LT(joined[0].strike_error, 1.5);
}

TEST(JoinedBodies, AStrikeIsFromNorthToBelowSouthAndKnownToThirtyDegrees) {
    for (unsigned seed = 301; seed < 304; ++seed)
        for (const JoinedBody& body : join_bodies(dyke_survey(seed, {.azimuth = 92, .errors = 3}).results)) {
            EXPECT_GE(body.strike, 0);
            EXPECT_LT(body.strike, 180);
            EXPECT_LE(body.strike_error, 30);
        }
}

TEST(JoinedBodies, TieLinesJoinNothingOfTheOthers) {
    SurveyResults results = example_results();
    const std::size_t before = join_bodies(results).size();
    LineResult tie = results.lines[0];
    tie.line = "T1";
    tie.track = {{451010, 7549000}, {451010, 7553000}};
    for (BodyResult& body : tie.bodies) body.profile_azimuth = 0, body.strike.value = 270;
    results.lines.push_back(tie);
    EXPECT_EQ(join_bodies(results).size(), before);
}

TEST(JoinedBodies, LinesOfAnotherSystemOrWithoutPlacesAreLeftOut) {
    SurveyResults results = example_results(6);
    results.lines[2].coordinate_system = "EPSG:32755";
    results.lines[3].bodies[0].east = unknown;
    results.lines[4].track.clear();
    for (const JoinedBody& body : join_bodies(results))
        for (const JoinedMember& member : body.members) {
            EXPECT_NE(member.line, 2U);
            EXPECT_NE(member.line, 4U);
            EXPECT_FALSE(member.line == 3 && member.body == 0);
        }
    EXPECT_THAT(join_bodies(SurveyResults{}), IsEmpty());
}

TEST(JoinedBodies, MostLinksOfKnownDykesAreFoundAndFewOthers) {
    int found = 0, right = 0, tops = 0;
    for (unsigned seed = 201; seed < 206; ++seed) {
        const DykeSurvey survey = dyke_survey(seed);
        for (const std::vector<int>& of : survey.dyke_of)
            tops += static_cast<int>(std::ranges::count_if(of, [](int dyke) { return dyke >= 0; }));
        for (const JoinedBody& body : join_bodies(survey.results))
            for (std::size_t i = 1; i < body.members.size(); ++i) {
                const auto dyke = [&](std::size_t k) {
                    return survey.dyke_of[body.members[k].line][body.members[k].body];
                };
                ++found;
                right += dyke(i) >= 0 && dyke(i) == dyke(i - 1);
            }
    }
    EXPECT_GT(found, tops * 8 / 10);
    EXPECT_GT(right, found * 98 / 100);
}

TEST(JoinedValue, WeighsByErrorsAndGrowsWithTheScatter) {
    const std::vector<Measured> alike{{100, 1}, {101, 1}}, apart{{100, 1}, {110, 1}},
        uneven{{100, 1}, {110, 3}};
    EXPECT_DOUBLE_EQ(joined_value(alike).value, 100.5);
    EXPECT_DOUBLE_EQ(joined_value(alike).error, std::sqrt(0.5));
    EXPECT_NEAR(joined_value(apart).error, 5, 1e-12);
    EXPECT_DOUBLE_EQ(joined_value(uneven).value, 101);
    const std::vector<Measured> none{{unknown, 1}}, bare{{10, unknown}, {14, unknown}},
        half{{10, 2}, {14, unknown}};
    EXPECT_TRUE(std::isnan(joined_value(none).value));
    EXPECT_DOUBLE_EQ(joined_value(bare).error, 2);
    EXPECT_NEAR(joined_value(bare).upper, 12 + 6.314 * 2, 0.01) << "Student's t of one degree of freedom";
    EXPECT_DOUBLE_EQ(joined_value(half).value, 12);
    const std::vector<Measured> factors{{10, 1}, {1000, 100}}, open{{10, 100}};
    EXPECT_TRUE(std::isnan(joined_value(open, MeanOf::logarithms).upper)) << "the data leave it open";
    EXPECT_NEAR(joined_value(factors, MeanOf::logarithms).value, 100, 1e-9);
}

TEST(JoinedValue, GapsAtBothEndsAreAddedAsLikelyAsTheyAre) {
    for (const auto& [first, second] : {std::pair(EndGap{200, 400, 0}, EndGap{200, 200, 0}),
                                        {EndGap(), EndGap{300, 500, 0.1}},
                                        {EndGap{20, 420, 0.5}, EndGap{400, 700, 0.2}}}) {
        // Lengths in steps, each as often as it is likely.
        const auto lengths = [](const EndGap& gap) {
            std::vector<double> all;
            constexpr int steps = 150;
            for (int i = 0; i < steps; ++i) {
                const double part = (i + 0.5) / steps, near = gap.to_next();
                all.push_back(part < near ? gap.next * part / near
                                          : gap.next + (gap.behind - gap.next) * (part - near) / (1 - near));
            }
            return all;
        };
        std::vector<double> sums;
        double mean = 0, squares = 0;
        for (const double a : lengths(first))
            for (const double b : lengths(second)) sums.push_back(a + b);
        for (const double sum : sums) mean += sum / static_cast<double>(sums.size());
        for (const double sum : sums)
            squares += (sum - mean) * (sum - mean) / static_cast<double>(sums.size());
        std::ranges::sort(sums);
        for (const double part : {0.05, 0.5, 0.95})
            EXPECT_NEAR(gaps_quantile(first, second, part),
                        sums[static_cast<std::size_t>(part * static_cast<double>(sums.size()))], 5);
        EXPECT_NEAR(first.mean() + second.mean(), mean, 1);
        EXPECT_NEAR(std::sqrt(first.variance() + second.variance()), std::sqrt(squares), 1);
    }
    EXPECT_EQ(gaps_quantile({}, {}, 0.5), 0);
}

}  // namespace

}  // namespace anomalis::survey
