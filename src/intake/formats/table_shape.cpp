#include "intake/formats/table_shape.h"

#include <algorithm>
#include <array>
#include <map>

#include "intake/formats/field_value.h"
#include "intake/formats/row_fields.h"

namespace anomalis::intake {

namespace {

constexpr double nearly_all = 0.98;

struct Candidate {
    char separator;
    bool decimal_comma;
};

/// In this order where two fit equally well.
constexpr std::array<Candidate, 8> candidates{{{'\t', false},
                                               {';', false},
                                               {',', false},
                                               {' ', false},
                                               {'\t', true},
                                               {';', true},
                                               {' ', true},
                                               {',', true}}};

std::size_t count_values(std::span<const std::string_view> fields, bool decimal_comma) {
    return static_cast<std::size_t>(std::count_if(fields.begin(), fields.end(), [&](std::string_view field) {
        return is_table_value(field, decimal_comma);
    }));
}

struct Fit {
    TableShape shape;
    double worth = 0;
};

Fit try_candidate(std::span<const NumberedLine> lines, const Candidate& candidate) {
    struct Group {
        std::size_t rows = 0, fields = 0, values = 0;
    };
    std::map<std::size_t, Group> groups;  // by the number of fields
    std::vector<std::string_view> fields;
    for (const NumberedLine& line : lines) {
        split_separated(line.text, candidate.separator, fields);
        if (!is_table_row(fields, candidate.decimal_comma)) continue;
        Group& group = groups[fields.size()];
        ++group.rows;
        group.fields += fields.size();
        group.values += count_values(fields, candidate.decimal_comma);
    }
    Fit best;
    for (const auto& [count, group] : groups) {
        const double share = static_cast<double>(group.rows) / static_cast<double>(lines.size());
        const double worth = share * static_cast<double>(group.values) / static_cast<double>(group.fields);
        if (worth <= best.worth) continue;
        best.worth = worth;
        best.shape = {candidate.separator, candidate.decimal_comma, false, count, {}, share};
    }
    return best;
}

}  // namespace

bool is_table_value(std::string_view field, bool decimal_comma) {
    double value = 0;
    return is_null_text(field) || read_number(field, decimal_comma, value) || is_degree_minutes(field) ||
           (!field.empty() && field.front() >= '0' && field.front() <= '9' && read_date(field));
}

bool is_table_row(std::span<const std::string_view> fields, bool decimal_comma) {
    double value = 0;
    const auto numbers = std::count_if(fields.begin(), fields.end(), [&](std::string_view field) {
        return read_number(field, decimal_comma, value) || is_degree_minutes(field);
    });
    return numbers >= 2 && 2 * count_values(fields, decimal_comma) >= fields.size();
}

std::optional<TableShape> find_table_shape(std::span<const NumberedLine> lines, const ReadAs& read_as) {
    if (lines.empty()) return {};
    Fit best;
    for (const Candidate& candidate : candidates) {
        if (read_as.separator.value_or(candidate.separator) != candidate.separator ||
            read_as.decimal_comma.value_or(candidate.decimal_comma) != candidate.decimal_comma)
            continue;
        Fit fit = try_candidate(lines, candidate);
        if (fit.worth > best.worth + 1e-9) best = std::move(fit);
    }
    const bool ragged = best.worth == 0 || (best.shape.separator == ' ' && best.shape.share < nearly_all);
    const bool said = read_as.separator || read_as.decimal_comma;
    if (ragged && !said && lines.size() >= 3) {
        const auto fixed = find_fixed_columns(lines);
        if (fixed && fixed->share > best.shape.share) return fixed;
    }
    if (best.worth == 0) return {};
    return best.shape;
}

void split_by_shape(std::string_view line, const TableShape& shape, std::vector<std::string_view>& fields) {
    if (!shape.fixed_width) return split_separated(line, shape.separator, fields);
    fields.clear();
    for (const SurveyColumn& place : shape.places) fields.push_back(fixed_field(line, place));
}

}  // namespace anomalis::intake
