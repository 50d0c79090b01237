#include "intake/formats/column_values.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "intake/formats/field_value.h"
#include "intake/formats/survey_format.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t sampled_rows = 10000, sampled_texts = 2000;

double middle_of(std::vector<double>& values) {
    if (values.empty()) return 0;
    const auto half = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), half, values.end());
    return *half;
}

void count_texts(const SurveyLayout& layout, ValueSample& sample) {
    const SurveyPreview preview = preview_rows(layout, sampled_texts);
    for (std::size_t c = 0; c < layout.columns.size(); ++c) {
        if (!layout.columns[c].text) continue;
        ColumnValues& column = sample.columns[c];
        column.values.clear();
        std::vector<std::string> texts;
        for (const auto& row : preview.rows) {
            if (!texts.empty() && texts.back() != row[c]) ++column.changes;
            texts.push_back(row[c]);
        }
        column.numbers = texts.size();
        std::sort(texts.begin(), texts.end());
        column.distinct = static_cast<std::size_t>(std::unique(texts.begin(), texts.end()) - texts.begin());
    }
}

}  // namespace

void measure(ColumnValues& column, const std::vector<double>& nulls) {
    const NullValues none(nulls);
    for (double& value : column.values)
        if (none.hold(value)) value = std::numeric_limits<double>::quiet_NaN();
    std::vector<double> numbers, steps;
    column.changes = 0;
    column.whole = true;
    for (const double value : column.values) {
        if (std::isnan(value)) continue;
        if (!numbers.empty() && value != numbers.back()) steps.push_back(std::abs(value - numbers.back()));
        column.whole = column.whole && value == std::trunc(value);
        numbers.push_back(value);
    }
    column.numbers = numbers.size();
    column.changes = steps.size();
    column.typical_step = middle_of(steps);
    column.middle = middle_of(numbers);
    std::sort(numbers.begin(), numbers.end());
    column.least = numbers.empty() ? 0 : numbers.front();
    column.greatest = numbers.empty() ? 0 : numbers.back();
    column.distinct = static_cast<std::size_t>(std::unique(numbers.begin(), numbers.end()) - numbers.begin());
}

ValueSample sample_values(const SurveyLayout& layout) {
    // As the file has them: without roles no row is dropped for a word, without units nothing is converted.
    SurveyLayout plain = layout;
    for (SurveyColumn& column : plain.columns) {
        column.role = Role::none;
        if (column.unit != Unit::degree_minute) column.unit = Unit::as_is;
    }
    std::vector<std::size_t> all(layout.columns.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    ValueSample sample;
    sample.columns.resize(all.size());
    const auto reader = open_rows(plain, all);
    RowBlock block;
    while (sample.rows < sampled_rows && reader->next(block)) {
        for (std::size_t c = 0; c < all.size(); ++c) {
            std::vector<double>& values = sample.columns[c].values;
            values.insert(values.end(), block.values[c].begin(), block.values[c].end());
        }
        sample.rows += block.rows;
    }
    for (std::size_t c = 0; c < all.size(); ++c) measure(sample.columns[c], layout.columns[c].nulls);
    if (std::any_of(layout.columns.begin(), layout.columns.end(),
                    [](const SurveyColumn& c) { return c.text; }))
        count_texts(plain, sample);
    return sample;
}

bool looks_like_dummy(double value) {
    const double size = std::abs(value);
    if (size >= 1e9) return true;
    // Nines alone, whatever stands behind the point.
    const double whole = std::trunc(size);
    const double least = value < 0 ? 99 : 9999;  // a line may well be number 99
    return whole >= least && std::fmod(std::log10(whole + 1), 1.0) == 0;
}

namespace {

/// An end of some values, and what lies behind it.
struct ExtremeValue {
    double extreme = 0, other = 0;  ///< `other`: the nearest one that is not it, or the end of infinity
    std::size_t times = 0;
};

/// `sign` 1 for the low end, -1 for the high one.
ExtremeValue extreme_of(const std::vector<double>& values, double sign) {
    constexpr double beyond = std::numeric_limits<double>::infinity();
    ExtremeValue found{beyond, beyond, 0};
    for (const double value : values) found.extreme = std::min(found.extreme, sign * value);
    for (const double value : values) {
        if (sign * value == found.extreme) {
            ++found.times;
        } else {
            found.other = std::min(found.other, sign * value);
        }
    }
    return {sign * found.extreme, sign * found.other, found.times};
}

}  // namespace

std::vector<double> repeated_extremes(const ColumnValues& column) {
    std::vector<double> values;
    values.reserve(column.values.size());
    for (const double value : column.values)
        if (!std::isnan(value)) values.push_back(value);
    std::vector<double> found;
    for (int side = 0; side < 2; ++side) {
        if (values.size() < 3) break;
        const bool low = side == 0;
        const auto [extreme, other, times] = extreme_of(values, low ? 1 : -1);
        const bool dummy = looks_like_dummy(extreme);
        if (times == values.size()) {
            // Nothing but this: a column that was never filled.
            if (dummy && extreme < 0) found.push_back(extreme);
            break;
        }
        const double far_end = extreme_of(values, low ? -1 : 1).extreme;
        const double distance = low ? other - extreme : extreme - other;
        const double spread = low ? far_end - other : other - far_end;
        // Zero is the sea, or no anomaly; only far from a total field is it no reading.
        const double spreads = dummy ? 2 : extreme == 0 ? 50 : 5;
        const bool far = distance > spreads * spread && distance > 0 && (spread > 0 || dummy);
        if (!far || times < (dummy ? 1 : 3)) continue;
        found.push_back(extreme);
        std::erase(values, extreme);
        --side;  // there may be another beyond the same side
    }
    return found;
}

}  // namespace anomalis::intake
