// How often the intervals of a fit hold the truth. Prints tables in Markdown; docs/coverage.md is made of
// them by docs/coverage.sh. The lines are drawn from seeds, so every run prints the same tables.
//
//   coverage [LINES [FIRST [KIND]]]      lines of each kind (200), the seed of the first (1001), and a part
//                                        of the titles that are wanted
//
// What is chosen by looking at such tables was chosen on seeds 1 to 200.

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
    explicit Coverage(unsigned first) : first_seed(first) {}

    unsigned first_seed;
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
    std::printf("%d lines, seeds %u to %u, %d without an answer.\n\n", coverage.lines, coverage.first_seed,
                coverage.first_seed + static_cast<unsigned>(coverage.lines) - 1, coverage.failed);
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

void measure(const LineKind& kind, unsigned first_seed, int lines) {
    Coverage coverage(first_seed);
    CoverageLine line(kind);
    for (int i = 0; i < lines; ++i) coverage.add(line.fit(first_seed + static_cast<unsigned>(i)));
    print(kind.title, coverage);
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    int lines = 200;
    unsigned first_seed = 1001;
    const char* only = "";
    if (argc > 1) std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), lines);
    if (argc > 2) std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), first_seed);
    if (argc > 3) only = argv[3];
    for (const anomalis::LineKind& kind : anomalis::line_kinds())
        if (kind.title.find(only) != std::string::npos) anomalis::measure(kind, first_seed, lines);
}
