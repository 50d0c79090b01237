#pragma once

#include <map>
#include <string>

#include "coverage_line.h"

// How often intervals hold the truth, as a table in Markdown.
namespace anomalis {

/// Of one kind of parameter.
struct CoverageCount {
    int parameters = 0, inside = 0, two_errors = 0, one_sided = 0, open = 0;
};

/// What the intervals of all lines of a kind do.
class Coverage {
  public:
    /// `errors`: the intervals have standard errors beside them, which are counted too.
    Coverage(unsigned first_seed, bool errors) : first_seed_(first_seed), errors_(errors) {}

    void add(const TruthAndFit& line);
    /// On the standard output.
    void print(const std::string& title) const;

  private:
    void print_row(const char* name, const CoverageCount& count) const;

    unsigned first_seed_;
    bool errors_;
    std::map<int, CoverageCount> kinds_;
    int lines_ = 0, failed_ = 0;
};

}  // namespace anomalis
