// How often the intervals of a fit hold the truth. Prints tables in Markdown; docs/coverage.md is made of
// them by docs/coverage.sh. The lines are drawn from seeds, so every run prints the same tables.
//
//   coverage [LINES [FIRST [KIND]]]      lines of each kind (200), the seed of the first (1001), and a part
//                                        of the titles that are wanted
//
// What is chosen by looking at such tables was chosen on seeds 1 to 200.

#include <charconv>
#include <cstring>
#include <string>

#include "coverage_table.h"

namespace anomalis {
namespace {

void measure(const LineKind& kind, unsigned first_seed, int lines) {
    Coverage coverage(first_seed, true);
    CoverageLine line(kind);
    for (int i = 0; i < lines; ++i) coverage.add(line.fit(first_seed + static_cast<unsigned>(i)));
    coverage.print(kind.title);
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
