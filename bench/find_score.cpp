// How many buried sheets a search finds, how many it makes up and how far off its depths are. Prints a table
// in Markdown, the same for the same seeds; docs/find.md is made of it by docs/find.sh.
//
//   find_score [LINES [FIRST]]    number of lines (100), the seed of the first (1001)
//
// What was chosen by looking at such tables was chosen on seeds 1 to 160. A sheet is found when a found one
// stands within half its depth and half its width (two stations at least) of it, with its depth below the
// sensor right within 35 %.

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "find_lines.h"
#include "inversion/find/find_bodies.h"
#include "inversion/line_place.h"
#include "quiet_prompts.h"

namespace anomalis {
namespace {

struct Score {
    int lines = 0, sheets = 0, found = 0, extra = 0;
    std::vector<double> depth_errors;
};

class Matches {
  public:
    Matches(const FindLine& line, const inversion::FoundModel* model) : line_(line) {
        if (model) found_.assign(model->bodies.end() - model->found, model->bodies.end());
        used_.assign(found_.size(), false);
    }

    void count(Score& score) {
        for (const BuriedSheet& sheet : line_.truth)
            if (const double error = match(sheet); error >= 0) {
                ++score.found;
                score.depth_errors.push_back(error);
            }
        ++score.lines;
        score.sheets += static_cast<int>(line_.truth.size());
        score.extra += static_cast<int>(std::ranges::count(used_, false));
    }

  private:
    /// Relative error of the depth of the best match; -1 for none.
    double match(const BuriedSheet& sheet) {
        constexpr double right_depth = 0.35;
        double best = -1;
        std::size_t at = 0;
        for (std::size_t k = 0; k < found_.size(); ++k) {
            const double place = found_[k].distance.value;
            const double sensor = inversion::elevation_at(line_.session->workspace, place, column_sensor);
            const double off =
                std::abs(sensor - static_cast<double>(found_[k].top.value) - sheet.depth) / sheet.depth;
            const double reach = std::max(0.5 * sheet.depth + 0.5 * sheet.width, 2 * line_.spacing);
            if (used_[k] || std::abs(place - sheet.distance) > reach || off > right_depth) continue;
            if (best >= 0 && best <= off) continue;
            best = off;
            at = k;
        }
        if (best >= 0) used_[at] = true;
        return best;
    }

    const FindLine& line_;
    std::vector<ModelBody> found_;
    std::vector<bool> used_;
};

void print(const char* kind, Score& score) {
    std::ranges::sort(score.depth_errors);
    const double median = score.depth_errors.empty() ? 0 : score.depth_errors[score.depth_errors.size() / 2];
    const auto part = [&](int count) { return 100.0 * count / std::max(score.sheets, 1); };
    std::printf("| %s | %d | %d | %.0f | %.0f | %.1f |\n", kind, score.lines, score.sheets, part(score.found),
                part(score.extra), 100 * median);
}

void measure(unsigned first, int lines) {
    Score quiet, geology;
    for (int i = 0; i < lines; ++i) {
        QuietPrompts prompts;
        const FindLine line = find_line(first + static_cast<unsigned>(i), prompts);
        inversion::FindRequest request;
        request.alternatives = 1;
        inversion::FindObserver nobody;
        const inversion::FindResult result = inversion::find_bodies(line.session->workspace, request, nobody);
        Matches(line, result.models.empty() ? nullptr : &result.models.front())
            .count(line.geology ? geology : quiet);
    }
    std::printf("| Lines | Number | Sheets | Found %% | Made up %% | Median error of the depth %% |\n");
    std::printf("|---|---:|---:|---:|---:|---:|\n");
    print("Quiet", quiet);
    print("Over noise from other geology", geology);
}

}  // namespace
}  // namespace anomalis

int main(int argc, char** argv) {
    int lines = 100;
    unsigned first = 1001;
    const auto read = [&](int at, auto& value) {
        if (argc > at) std::from_chars(argv[at], argv[at] + std::strlen(argv[at]), value);
    };
    read(1, lines);
    read(2, first);
    anomalis::measure(first, lines);
}
