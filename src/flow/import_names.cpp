#include <algorithm>
#include <cmath>
#include <set>

#include "core/near_names.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/safe_name.h"
#include "core/text.h"
#include "flow/import_lines.h"

namespace anomalis::flow {

namespace {

std::string survey_name(const intake::SurveyIndex& index, const ImportChoices& choices) {
    if (!choices.name.empty()) return safe_name(choices.name);
    std::string name = file_name(index.layout.path);
    if (lower_case(name).ends_with(".gz")) name.resize(name.size() - 3);
    return safe_name(base_name(name));
}

/// "5690" and "5690.0" are one line.
bool means_same(const std::string& a, const std::string& b) {
    double first = 0, second = 0;
    if (parse_number(a, first) && parse_number(b, second)) return first == second;
    return equal_ignoring_case(trim_blanks(a), trim_blanks(b));
}

}  // namespace

std::vector<std::string> line_file_names(const intake::SurveyIndex& index, const ImportChoices& choices) {
    const std::string survey = survey_name(index, choices);
    std::vector<std::string> names;
    std::set<std::string> taken;
    for (const intake::SurveyLineInfo& line : index.lines) {
        const std::string plain = survey + "_" + safe_name(line.name);
        std::string name = plain;
        // File systems may take "a" and "A" for one.
        for (int n = 2; !taken.insert(lower_case(name)).second; ++n) name = plain + "-" + std::to_string(n);
        names.push_back(name);
    }
    return names;
}

ImportNames import_names(const intake::SurveyIndex& index, const ImportChoices& choices, std::size_t line,
                         std::optional<std::size_t> piece) {
    std::string name = line_file_names(index, choices).at(line);
    if (piece) name += "_part" + std::to_string(*piece + 1);
    return {name + ".csv", name + ".axm"};
}

std::optional<std::size_t> find_line(const intake::SurveyIndex& index, const std::string& name) {
    const auto place = [&](auto&& same) -> std::optional<std::size_t> {
        const auto line =
            std::ranges::find_if(index.lines, [&](const auto& one) { return same(one.name, name); });
        if (line == index.lines.end()) return std::nullopt;
        return static_cast<std::size_t>(line - index.lines.begin());
    };
    const auto exact = place([](const std::string& a, const std::string& b) { return a == b; });
    return exact ? exact : place(means_same);
}

std::vector<std::string> near_line_names(const intake::SurveyIndex& index, const std::string& name,
                                         std::size_t most) {
    constexpr std::size_t longest = 64;  // of a name that is compared letter by letter
    const std::string wanted = lower_case(name.substr(0, longest));
    double wanted_number = 0;
    const bool numeric = parse_number(name, wanted_number);
    struct Near {
        std::size_t letters = 0;
        double number = 0;
        std::size_t line = 0;
        auto operator<=>(const Near&) const = default;
    };
    std::vector<Near> all;
    for (std::size_t i = 0; i < index.lines.size(); ++i) {
        const std::string& one = index.lines[i].name;
        double number = 0;
        const bool both = parse_number(one, number) && numeric;
        all.push_back({letters_apart(wanted, lower_case(one.substr(0, longest))),
                       both ? std::abs(number - wanted_number) : 0, i});
    }
    std::ranges::sort(all, [](const Near& a, const Near& b) {
        return a.letters != b.letters ? a.letters < b.letters
               : a.number != b.number ? a.number < b.number
                                      : a.line < b.line;
    });
    std::vector<std::string> names;
    for (const Near& near : all)
        if (names.size() < most) names.push_back(index.lines[near.line].name);
    return names;
}

std::optional<std::size_t> neighbour_line(const intake::SurveyIndex& index, std::size_t line, int step) {
    const auto count = static_cast<long>(index.lines.size());
    for (long next = static_cast<long>(line) + step; next >= 0 && next < count; next += step)
        if (import_refusal(index, static_cast<std::size_t>(next)).empty())
            return static_cast<std::size_t>(next);
    return std::nullopt;
}

std::string line_title(const intake::SurveyIndex& index, std::size_t line, std::optional<std::size_t> piece) {
    const std::string file = file_name(index.layout.path);
    const std::string part = piece ? ", part " + std::to_string(*piece + 1) : "";
    if (index.lines.size() == 1 && !index.layout.column_of(intake::Role::line) && !index.layout.line_headers)
        return file + part;
    return "line " + index.lines[line].name + " of " + file + part;
}

std::string import_refusal(const intake::SurveyIndex& index, std::size_t line) {
    const intake::SurveyLineInfo& info = index.lines[line];
    const std::string what = "Line " + info.name + " of " + file_name(index.layout.path);
    if (info.stations == 0) return what + " has no station with a place";
    if (info.stations == 1) return what + " has one station: nothing can be modelled along it";
    if (!(info.length_m > 0)) return what + " has all its stations at one place";
    if (!info.mag_nT && !info.grav_mGal) {
        const bool chosen =
            index.layout.column_of(intake::Role::mag) || index.layout.column_of(intake::Role::grav);
        return chosen ? what + " has no reading"
                      : file_name(index.layout.path) +
                            " has no column that is magnetics or gravity: choose which one is";
    }
    return "";
}

}  // namespace anomalis::flow
