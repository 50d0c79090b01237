// How often the bands of ensembles hold the truth. Prints tables in Markdown; docs/ensemble_coverage.md is
// made of them by docs/ensemble_coverage.sh. The lines are drawn from seeds, so every run prints the same.
//
//   ensemble_coverage [LINES [SAMPLES [FIRST [KIND]]]]
//                     lines of each kind (200), models of an ensemble (100), the seed of the first line
//                     (1001), and a part of the titles that are wanted
//
// What is chosen by looking at such tables was chosen on seeds 1 to 200.

#include <charconv>
#include <cstring>
#include <string>

#include "coverage_table.h"

namespace anomalis {
namespace {

void measure(const LineKind& kind, unsigned first_seed, int lines, int samples) {
    Coverage coverage(first_seed, false);
    CoverageLine line(kind);
    for (int i = 0; i < lines; ++i)
        coverage.add(line.ensemble(first_seed + static_cast<unsigned>(i), samples));
    coverage.print(kind.title);
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    int lines = 200, samples = 100;
    unsigned first_seed = 1001;
    const char* only = "";
    const auto read = [&](int at, auto& value) {
        if (argc > at) std::from_chars(argv[at], argv[at] + std::strlen(argv[at]), value);
    };
    read(1, lines);
    read(2, samples);
    read(3, first_seed);
    if (argc > 4) only = argv[4];
    for (const anomalis::LineKind& kind : anomalis::ensemble_kinds())
        if (kind.title.find(only) != std::string::npos) anomalis::measure(kind, first_seed, lines, samples);
}
