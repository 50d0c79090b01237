// How well bodies that lines share are joined: surveys over dykes that are known, each line's answers off by
// their errors. Prints a table in Markdown, the same for the same seeds; docs/joined.md is made of it by
// docs/joined.sh.
//
//   joined_score [SURVEYS [FIRST]]    number of surveys a row (50), the seed of the first (1001)
//
// What was chosen by looking at such tables was chosen on seeds 1 to 50.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <numbers>
#include <set>
#include <utility>
#include <vector>

#include "../tests/support/dyke_survey.h"
#include "flow/strike_fit.h"
#include "survey/joined/joined_bodies.h"

namespace anomalis {
namespace {

using Top = std::pair<std::size_t, std::size_t>;  // line and body
using Links = std::set<std::pair<Top, Top>>;

struct Score {
    int bodies = 0, true_links = 0, found_links = 0, right_links = 0;
    int strikes = 0, strikes_within = 0;
    double strike_squares = 0;
    int lengths = 0, lengths_within = 0, depths = 0, depths_within = 0;
};

/// Tops of one dyke on lines that follow each other, or with one between that does not show it.
Links true_links(const DykeSurvey& survey) {
    Links links;
    for (std::size_t dyke = 0; dyke < survey.dykes.size(); ++dyke) {
        Top last{};
        bool has_last = false;
        int without = 0;
        for (std::size_t line = 0; line < survey.dyke_of.size(); ++line) {
            const std::vector<int>& of = survey.dyke_of[line];
            const auto at = std::ranges::find(of, static_cast<int>(dyke));
            if (at == of.end()) {
                if (survey.results.lines[line].status == survey::LineStatus::done) ++without;
                continue;
            }
            const Top top{line, static_cast<std::size_t>(at - of.begin())};
            if (has_last && without <= 1) links.insert({last, top});
            last = top, has_last = true, without = 0;
        }
    }
    return links;
}

/// The dyke that all members show; -1 where they differ.
int one_dyke(const DykeSurvey& survey, const survey::JoinedBody& body) {
    std::set<int> dykes;
    for (const survey::JoinedMember& member : body.members)
        dykes.insert(survey.dyke_of[member.line][member.body]);
    return dykes.size() == 1 ? *dykes.begin() : -1;
}

/// Of the straight line through where the dyke truly passes below the lines that show it.
double true_strike(const DykeSurvey& survey, const survey::JoinedBody& body, const KnownDyke& dyke,
                   double azimuth) {
    std::vector<flow::StrikePoint> points;
    for (const survey::JoinedMember& member : body.members) {
        const survey::TrackPoint& place = survey.places[member.line][member.body];
        constexpr double degree = std::numbers::pi / 180;
        points.push_back(
            {place.east, place.north, std::sin(azimuth * degree), std::cos(azimuth * degree), 1});
    }
    const auto fit = flow::fit_strike(points, dyke.strike);
    return fit ? fit->strike : dyke.strike;
}

void count_values(const DykeSurvey& survey, const std::vector<survey::JoinedBody>& joined, double azimuth,
                  Score& score) {
    constexpr double normal_90 = 1.645, half_turn = 180;
    std::map<int, int> parts;
    for (const survey::JoinedBody& body : joined) ++parts[one_dyke(survey, body)];
    for (const survey::JoinedBody& body : joined) {
        const int dyke = one_dyke(survey, body);
        if (dyke < 0 || body.members.size() < 3) continue;
        const KnownDyke& truth = survey.dykes[static_cast<std::size_t>(dyke)];
        const double off =
            std::remainder(body.strike - true_strike(survey, body, truth, azimuth), half_turn) /
            body.strike_error;
        ++score.strikes;
        score.strikes_within += std::abs(off) <= normal_90;
        score.strike_squares += off * off;
        ++score.depths;
        score.depths_within +=
            truth.depth >= body.depth_below_ground.lower && truth.depth <= body.depth_below_ground.upper;
        if (parts[dyke] != 1 || body.open_start || body.open_end) continue;
        ++score.lengths;
        score.lengths_within += truth.length >= body.length.lower && truth.length <= body.length.upper;
    }
}

void count(const DykeSurvey& survey, double azimuth, Score& score) {
    const std::vector<survey::JoinedBody> joined = join_bodies(survey.results);
    const Links wanted = true_links(survey);
    score.bodies += static_cast<int>(joined.size());
    score.true_links += static_cast<int>(wanted.size());
    for (const survey::JoinedBody& body : joined)
        for (std::size_t i = 1; i < body.members.size(); ++i) {
            Top a{body.members[i - 1].line, body.members[i - 1].body},
                b{body.members[i].line, body.members[i].body};
            if (b < a) std::swap(a, b);
            const int dyke = survey.dyke_of[a.first][a.second];
            ++score.found_links;
            score.right_links += dyke >= 0 && dyke == survey.dyke_of[b.first][b.second];
        }
    count_values(survey, joined, azimuth, score);
}

void print(const char* kind, const Score& s, int surveys) {
    const auto percent = [](int part, int all) { return 100.0 * part / std::max(all, 1); };
    std::printf("| %s | %.1f | %d |", kind, static_cast<double>(s.bodies) / std::max(surveys, 1),
                s.true_links);
    if (s.true_links == 0) {
        std::printf(" | | | | | |\n");
        return;
    }
    std::printf(" %.1f | %.1f | %.2f | %.0f | %.0f | %.0f |\n", percent(s.right_links, s.true_links),
                percent(s.right_links, s.found_links), std::sqrt(s.strike_squares / std::max(s.strikes, 1)),
                percent(s.strikes_within, s.strikes), percent(s.lengths_within, s.lengths),
                percent(s.depths_within, s.depths));
}

void measure(const char* kind, const DykeSurveyRange& range, unsigned first, int surveys) {
    Score score;
    for (int i = 0; i < surveys; ++i)
        count(dyke_survey(first + static_cast<unsigned>(i), range), range.azimuth, score);
    print(kind, score, surveys);
}

void measure_all(unsigned first, int surveys) {
    std::printf(
        "| Surveys | Bodies each | Links | Found %% | Right %% | Strike off, in errors | Strike in 90 %% | "
        "Length in 90 %% | Depth in 90 %% |\n");
    std::printf("|---|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    measure("Lines 100 m apart", {.spacing = 100}, first, surveys);
    measure("200 m", {}, first, surveys);
    measure("400 m", {.spacing = 400}, first, surveys);
    measure("Spacing off by up to 40 %", {.uneven = 0.4}, first, surveys);
    measure("Strikes 40 to 60 degrees to the lines", {.crossing_low = 40, .crossing_high = 60}, first,
            surveys);
    measure("Strikes 20 to 40 degrees", {.crossing_low = 20, .crossing_high = 40}, first, surveys);
    measure("Like dykes side by side, 600 m apart", {.apart = 600}, first, surveys);
    measure("300 m", {.apart = 300}, first, surveys);
    measure("150 m", {.apart = 150}, first, surveys);
    measure("150 m, strikes 40 to 60 degrees", {.crossing_low = 40, .crossing_high = 60, .apart = 150}, first,
            surveys);
    measure("Twenty dykes", {.dykes = 20}, first, surveys);
    measure("Dykes that bend by 6 degrees", {.bend = 6}, first, surveys);
    measure("Errors twice those of the intervals", {.errors = 2}, first, surveys);
    measure("A line finds four of five, two made up a line", {.shown = 0.8, .made_up = 2}, first, surveys);
    measure("A line in five missing, one in ten failed", {.missing = 0.2, .failed = 0.1}, first, surveys);
    measure("Nothing there, three made up a line", {.dykes = 0, .made_up = 3}, first, surveys);
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    int surveys = 50;
    unsigned first = 1001;
    const auto read = [&](int at, auto& value) {
        if (argc > at) std::from_chars(argv[at], argv[at] + std::strlen(argv[at]), value);
    };
    read(1, surveys);
    read(2, first);
    anomalis::measure_all(first, surveys);
}
