// How often the intervals of a fit hold the truth. Prints tables in Markdown; docs/coverage.md is made of
// them by docs/coverage.sh. The lines are drawn from seeds, so every run prints the same tables.
//
//   coverage [LINES [KIND]]      lines of each kind (200), and a part of the titles that are wanted

#include <Eigen/Core>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "core/body_parameters.h"
#include "coverage_line.h"

namespace anomalis {
namespace {

/// Of one kind of parameter.
struct Count {
    int parameters = 0, inside = 0, two_errors = 0, one_sided = 0, open = 0;
};

/// What the intervals of all lines of a kind do.
struct Coverage {
    std::map<int, Count> kinds;
    int lines = 0, failed = 0;

    void add(const TruthAndFit& line) {
        ++lines;
        if (!line.fitted) ++failed;
        for (const FittedAgainstTruth& one : line.parameters) {
            Count& count = kinds[one.fitted.param_code];
            const bool no_lower = std::isnan(one.fitted.lower), no_upper = std::isnan(one.fitted.upper);
            ++count.parameters;
            count.open += no_lower && no_upper;
            count.one_sided += no_lower != no_upper;
            const bool inside =
                (no_lower || one.fitted.lower <= one.truth) && (no_upper || one.truth <= one.fitted.upper);
            count.inside += inside && !(no_lower && no_upper);
            count.two_errors += !(no_lower && no_upper) && std::abs(static_cast<double>(one.fitted.value) -
                                                                    one.truth) <= 2 * one.fitted.error;
        }
    }
};

double percent(int part, int whole) {
    return whole > 0 ? 100.0 * part / whole : 0;
}

void print_row(const char* name, const Count& count) {
    const int intervals = count.parameters - count.open;
    std::printf("| %s | %d | %.1f | %.1f | %.1f | %.1f |\n", name, intervals,
                percent(count.inside, intervals), percent(count.two_errors, intervals),
                percent(count.one_sided, intervals), percent(count.open, count.parameters));
}

void print(const std::string& title, const Coverage& coverage) {
    std::printf("### %s\n\n", title.c_str());
    std::printf("%d lines, %d without an answer.\n\n", coverage.lines, coverage.failed);
    std::printf("| Parameter | Intervals | Inside 90 %% | Inside 2 errors | One-sided %% | Open %% |\n");
    std::printf("|---|---:|---:|---:|---:|---:|\n");
    Count all;
    for (const auto& [code, count] : coverage.kinds) {
        print_row(std::string(param_name(code)).c_str(), count);
        all.parameters += count.parameters;
        all.inside += count.inside;
        all.two_errors += count.two_errors;
        all.one_sided += count.one_sided;
        all.open += count.open;
    }
    print_row("**all**", all);
    std::printf("\n");
    std::fflush(stdout);
}

void measure(const LineKind& kind, int lines) {
    Coverage coverage;
    CoverageLine line(kind);
    for (int seed = 1; seed <= lines; ++seed) coverage.add(line.fit(static_cast<unsigned>(seed)));
    print(kind.title, coverage);
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    int lines = 200;
    const char* only = "";
    if (argc > 1) std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), lines);
    if (argc > 2) only = argv[2];
    for (const anomalis::LineKind& kind : anomalis::line_kinds())
        if (kind.title.find(only) != std::string::npos) anomalis::measure(kind, lines);
}
