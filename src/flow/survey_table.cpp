#include "flow/survey_table.h"

#include <algorithm>
#include <cmath>

#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::flow {

namespace {

constexpr const char* no_reading = "-1e32";

/// Digits behind the point that all values have, within what a double of their size can hold.
int decimals_of(const TableColumn& column) {
    for (int decimals = column.decimals; decimals < column.most_decimals; ++decimals) {
        const double scale = std::pow(10.0, decimals);
        const bool enough = std::ranges::all_of(column.values, [scale](double value) {
            if (std::isnan(value)) return true;
            const double scaled = value * scale;
            return std::abs(scaled - std::round(scaled)) <= std::max(1e-6, std::abs(scaled) * 1e-14);
        });
        if (enough) return decimals;
    }
    return column.most_decimals;
}

}  // namespace

std::string survey_table_text(std::span<const TableColumn> columns,
                              const std::vector<std::string>& comments) {
    std::string text;
    std::vector<std::string> patterns;
    for (const TableColumn& column : columns) {
        text += (text.empty() ? "" : ",") + column.name;
        patterns.push_back("0." + std::string(static_cast<std::size_t>(decimals_of(column)), '#'));
    }
    text += "\n";
    for (const std::string& comment : comments) text += "! " + single_line(comment) + "\n";
    const std::size_t rows = columns.empty() ? 0 : columns.front().values.size();
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t c = 0; c < columns.size(); ++c) {
            if (c > 0) text += ',';
            const double value = columns[c].values[row];
            text += std::isnan(value) ? no_reading : format_number(value, patterns[c]);
        }
        text += '\n';
    }
    return text;
}

}  // namespace anomalis::flow
