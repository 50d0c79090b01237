#include "workspace_file/axm_shape.h"

#include <array>

#include "core/numbers.h"
#include "workspace_file/axm_text.h"

namespace anomalis::workspace_file {

namespace {

/// How many numbers a line begins with, in all formats.
struct Numbers {
    int least, most;
};

constexpr std::array<Numbers, 10> lines_from_2{
    {{7, 12}, {3, 3}, {1, 10}, {3, 6}, {3, 3}, {2, 2}, {2, 2}, {2, 2}, {2, 2}, {2, 2}}};
constexpr int telling_lines = 4;
constexpr double enough = 0.7;

int leading_numbers(std::string_view line) {
    LineItems items(line);
    int count = 0;
    while (items.left() && is_numeric(items.token())) ++count;
    return count;
}

}  // namespace

bool has_workspace_shape(std::string_view text) {
    AxmLines lines(text);
    if (lines.at_end()) return false;
    lines.next();
    int seen = 0, fitting = 0;
    for (const auto& [least, most] : lines_from_2) {
        if (lines.at_end()) break;
        const int count = leading_numbers(lines.next());
        ++seen;
        if (count >= least && count <= most) ++fitting;
        if (seen == telling_lines && fitting == telling_lines) return true;
    }
    return seen > 0 && fitting >= enough * seen;
}

}  // namespace anomalis::workspace_file
