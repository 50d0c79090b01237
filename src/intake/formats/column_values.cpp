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

std::vector<double> repeated_extremes(const ColumnValues& column) {
    std::vector<double> sorted;
    for (const double value : column.values)
        if (!std::isnan(value)) sorted.push_back(value);
    std::sort(sorted.begin(), sorted.end());
    std::vector<double> found;
    for (int side = 0; side < 2; ++side) {
        if (sorted.size() < 3) break;
        const bool low = side == 0;
        const double extreme = low ? sorted.front() : sorted.back();
        const auto first_other = std::upper_bound(sorted.begin(), sorted.end(), extreme);
        const auto last_other = std::lower_bound(sorted.begin(), sorted.end(), extreme);
        const auto times = static_cast<std::size_t>(first_other - last_other);
        const bool dummy = looks_like_dummy(extreme);
        if (times == sorted.size()) {
            // Nothing but this: a column that was never filled.
            if (dummy && extreme < 0) found.push_back(extreme);
            break;
        }
        const double least = low ? *first_other : sorted.front();
        const double greatest = low ? sorted.back() : *(last_other - 1);
        const double distance = low ? least - extreme : extreme - greatest;
        const double spread = greatest - least;
        // Zero is the sea, or no anomaly; only far from a total field is it no reading.
        const double spreads = dummy ? 2 : extreme == 0 ? 50 : 5;
        const bool far = distance > spreads * spread && distance > 0 && (spread > 0 || dummy);
        if (!far || times < (dummy ? 1 : 3)) continue;
        found.push_back(extreme);
        if (low) {
            sorted.erase(sorted.begin(), first_other);
        } else {
            sorted.erase(last_other, sorted.end());
        }
        --side;  // there may be another beyond the same side
    }
    return found;
}

}  // namespace anomalis::intake
