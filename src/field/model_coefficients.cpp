#include "field/model_coefficients.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <string>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"
#include "field/main_field.h"

namespace anomalis::field {

namespace {

std::string_view take_line(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::vector<double> numbers_of(std::string_view line) {
    std::vector<double> numbers;
    double value = 0;
    while (!trim_blanks(line).empty()) {
        if (!next_number(line, value)) throw Fault("The coefficients of the main field are damaged");
        numbers.push_back(value);
    }
    return numbers;
}

void take_coefficient(const std::vector<double>& row, std::vector<Epoch>& epochs) {
    const bool whole =
        row.size() == epochs.size() + 2 && row[0] >= 1 && row[0] <= most_degree && std::abs(row[1]) <= row[0];
    if (!whole) throw Fault("The coefficients of the main field are damaged");
    const int n = static_cast<int>(row[0]), m = static_cast<int>(row[1]);
    for (std::size_t i = 0; i < epochs.size(); ++i) {
        Coefficients& at = epochs[i].coefficients;
        (m < 0 ? at.h(n, -m) : at.g(n, m)) = row[i + 2];
    }
}

}  // namespace

void Coefficients::approach(const Coefficients& other, double share) {
    for (std::size_t i = 0; i < values_.size(); ++i) values_[i] += share * (other.values_[i] - values_[i]);
}

std::vector<Epoch> parse_epochs(std::string_view text) {
    std::vector<Epoch> epochs;
    bool counts_read = false;
    while (!text.empty()) {
        const std::string_view line = take_line(text);
        if (line.starts_with('#') || trim_blanks(line).empty()) continue;
        const std::vector<double> numbers = numbers_of(line);
        if (!counts_read) {
            counts_read = true;
        } else if (epochs.empty()) {
            for (const double year : numbers) epochs.push_back({year, {}});
        } else {
            take_coefficient(numbers, epochs);
        }
    }
    return epochs;
}

Coefficients coefficients_at(double year) {
    static const std::vector<Epoch> epochs = parse_epochs(igrf14_text);
    if (!(year >= epochs.front().year && year <= epochs.back().year))
        throw Fault(std::string(model_name) + " knows the earth's field from " +
                    shortest_text(epochs.front().year) + " to " + shortest_text(epochs.back().year) + "; " +
                    shortest_text(year) + " lies outside. Give the field by hand");
    const auto later =
        std::upper_bound(epochs.begin() + 1, epochs.end() - 1, year,
                         [](double wanted, const Epoch& epoch) { return wanted < epoch.year; });
    const Epoch& earlier = *(later - 1);
    Coefficients coefficients = earlier.coefficients;
    coefficients.approach(later->coefficients, (year - earlier.year) / (later->year - earlier.year));
    return coefficients;
}

}  // namespace anomalis::field
