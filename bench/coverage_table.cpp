#include "coverage_table.h"

#include <cmath>
#include <cstdio>

#include "core/body_parameters.h"

namespace anomalis {

namespace {

double percent(int part, int whole) {
    return whole > 0 ? 100.0 * part / whole : 0;
}

}  // namespace

void Coverage::add(const TruthAndFit& line) {
    ++lines_;
    if (!line.fitted) ++failed_;
    for (const FittedAgainstTruth& one : line.parameters) {
        CoverageCount& count = kinds_[one.fitted.param_code];
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

void Coverage::print_row(const char* name, const CoverageCount& count) const {
    const int intervals = count.parameters - count.open;
    std::printf("| %s | %d | %.1f |", name, intervals, percent(count.inside, intervals));
    if (errors_) std::printf(" %.1f |", percent(count.two_errors, intervals));
    std::printf(" %.1f | %.1f |\n", percent(count.one_sided, intervals),
                percent(count.open, count.parameters));
}

void Coverage::print(const std::string& title) const {
    std::printf("## %s\n\n", title.c_str());
    std::printf("%d lines, seeds %u to %u, %d without an answer.\n\n", lines_, first_seed_,
                first_seed_ + static_cast<unsigned>(lines_) - 1, failed_);
    std::printf("| Parameter | Intervals | Inside 90 %% |%s One-sided %% | Open %% |\n",
                errors_ ? " Inside 2 errors |" : "");
    std::printf("|---|---:|---:|%s---:|---:|\n", errors_ ? "---:|" : "");
    CoverageCount all;
    for (const auto& [code, count] : kinds_) {
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

}  // namespace anomalis
