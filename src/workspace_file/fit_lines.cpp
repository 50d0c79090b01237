#include "workspace_file/fit_lines.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/body_parameters.h"
#include "core/digest.h"
#include "core/inversion_state.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/workspace.h"

namespace anomalis::workspace_file {

namespace {

constexpr std::string_view record_entry = "fit", outcome_entry = "fit_outcome",
                           parameter_entry = "fit_parameter", correlation_entry = "fit_correlation",
                           mag_entry = "fit_mag", grav_entry = "fit_grav", remark_entry = "fit_remark",
                           mark_entry = "fit_mark", end_entry = "fit_end";
constexpr std::int32_t written_version = 1;
constexpr std::string_view open_number = "open", no_date = "undated";
constexpr std::array<std::string_view, 3> channels{"mag", "grav", "joint"};
constexpr std::array<std::string_view, 2> targets{"data", "gradient"};

template <std::size_t Count>
std::string_view name_of(std::int32_t number, const std::array<std::string_view, Count>& names) {
    return names[static_cast<std::size_t>(std::clamp(number, 0, static_cast<std::int32_t>(Count) - 1))];
}

/// A line in the making.
class FitLine {
  public:
    explicit FitLine(std::string_view name) : text_(name) {}
    FitLine& operator<<(const std::string& word) { return *this << std::string_view(word); }
    FitLine& operator<<(std::string_view word) {
        text_ += ' ';
        text_ += word;
        return *this;
    }
    FitLine& operator<<(double value) {
        return *this << (std::isfinite(value) ? round_trip_text(value) : std::string(open_number));
    }
    FitLine& operator<<(float value) { return *this << round_trip_text(value); }
    FitLine& operator<<(std::int32_t value) { return *this << std::to_string(value); }
    FitLine& operator<<(bool value) { return *this << std::int32_t{value}; }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

/// A text to the end of its line, as a reader that trims it gives it back.
std::string text_line(std::string_view name, std::string_view text) {
    const std::string line = std::string(name) + " " + single_line(text);
    return std::string(trim_blanks(line));
}

std::string parameter_line(const FittedParameter& p) {
    FitLine line(parameter_entry);
    line << p.body << p.param_code << p.value << p.error << p.lower << p.upper << p.undetermined
         << p.at_limit;
    return line.text();
}

std::string channel_line(std::string_view name, const FittedChannel& c) {
    FitLine line(name);
    line << c.stations << c.rms << c.noise << c.noise_given << c.chi_square << c.correlation << c.independent
         << c.regional.degree << c.regional.centre << c.regional.half_width;
    for (const double coefficient : c.regional.coefficients) line << coefficient;
    return line.text();
}

/// The lower half with the diagonal, a line each row.
void add_correlation(const FitRecord& record, std::vector<std::string>& lines) {
    const std::size_t count = record.parameters.size();
    if (count > most_correlated || record.correlation.size() != count * count) return;
    for (std::size_t row = 0; row < count; ++row) {
        FitLine line(correlation_entry);
        for (std::size_t column = 0; column <= row; ++column)
            line << record.correlation[row * count + column];
        lines.push_back(line.text());
    }
}

template <class Line>
std::string digest_text(const std::vector<Line>& lines, std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text.append(lines[i]).append("\n");
    return std::to_string(digest_of(text));
}

/// What is left of a line, token by token; `whole` tells whether all of it was what was asked for.
class FitItems {
  public:
    explicit FitItems(std::string_view rest) : rest_(rest) {}
    std::string_view word() { return next_token(rest_); }
    double number() {
        double value = 0;
        if (!parse_number(word(), value)) whole_ = false;
        return value;
    }
    double number_or_open() {
        std::string_view after = rest_;
        if (next_token(after) != open_number) return number();
        rest_ = after;
        return FittedParameter::open;
    }
    std::int32_t integer(std::int32_t low, std::int32_t high) {
        const double value = number();
        if (!(value >= low && value <= high) || value != std::floor(value)) return fail(low);
        return static_cast<std::int32_t>(value);
    }
    bool flag() { return integer(0, 1) == 1; }
    float single() {
        const std::optional<float> value = parse_single(word());
        if (!value) whole_ = false;
        return value.value_or(0.0F);
    }
    template <std::size_t Count>
    std::int32_t one_of(const std::array<std::string_view, Count>& names) {
        const auto found = std::ranges::find(names, word());
        if (found == names.end()) return fail(0);
        return static_cast<std::int32_t>(found - names.begin());
    }
    void require(bool condition) { whole_ = whole_ && condition; }
    bool whole() const { return whole_ && trim_blanks(rest_).empty(); }

  private:
    std::int32_t fail(std::int32_t value) {
        whole_ = false;
        return value;
    }
    std::string_view rest_;
    bool whole_ = true;
};

constexpr std::int32_t most = 2000000000;

bool read_head(FitItems items, FitRecord& record) {
    items.require(items.integer(1, most) == written_version);
    if (const std::string_view date = items.word(); date != no_date) record.date = date;
    const std::optional<Formulas> formulas = formulas_of_name(items.word());
    items.require(formulas.has_value());
    record.formulas = formulas.value_or(Formulas::classic);
    const std::optional<InversionMethod> method = method_of_name(items.word());
    items.require(method.has_value());
    record.method = method.value_or(InversionMethod::least_squares);
    record.channel = items.one_of(channels);
    record.target = items.one_of(targets);
    record.first_distance = items.number();
    record.last_distance = items.number();
    return items.whole();
}

bool read_parameter(FitItems items, FitRecord& record) {
    FittedParameter p;
    p.body = items.integer(1, most);
    p.param_code = items.integer(first_param_code, last_param_code);
    p.value = items.single();
    p.error = items.number_or_open();
    p.lower = items.number_or_open();
    p.upper = items.number_or_open();
    p.undetermined = items.flag();
    p.at_limit = items.flag();
    record.parameters.push_back(p);
    return items.whole();
}

bool read_channel(FitItems items, std::optional<FittedChannel>& channel) {
    if (channel) return false;
    FittedChannel& c = channel.emplace();
    c.stations = items.integer(0, most);
    c.rms = items.number_or_open();
    c.noise = items.number_or_open();
    c.noise_given = items.flag();
    c.chi_square = items.number_or_open();
    c.correlation = items.number_or_open();
    c.independent = items.number_or_open();
    c.regional.degree = items.integer(no_regional, most_regional_degree);
    c.regional.centre = items.number();
    c.regional.half_width = items.number();
    items.require(c.regional.half_width > 0);
    for (double& coefficient : c.regional.coefficients) coefficient = items.number();
    return items.whole();
}

/// Rows of the lower half, one after the other.
struct Triangle {
    std::vector<double> values;
    std::size_t rows = 0;

    bool read_row(FitItems items) {
        ++rows;
        for (std::size_t column = 0; column < rows; ++column) values.push_back(items.number_or_open());
        return items.whole();
    }
    std::vector<double> whole() const {
        std::vector<double> matrix(rows * rows);
        std::size_t at = 0;
        for (std::size_t row = 0; row < rows; ++row)
            for (std::size_t column = 0; column <= row; ++column)
                matrix[row * rows + column] = matrix[column * rows + row] = values[at++];
        return matrix;
    }
};

bool read_line(std::string_view line, FitRecord& record, Triangle& correlation) {
    const std::string_view whole = line;
    const std::string_view name = next_token(line);
    const FitItems items(line);
    // Not the rest that a token leaves: it may begin with a comma.
    const std::string_view text = trim_blanks(whole.substr(name.size()));
    if (name == parameter_entry) return read_parameter(items, record);
    if (name == correlation_entry) return correlation.read_row(items);
    if (name == mag_entry) return read_channel(items, record.mag);
    if (name == grav_entry) return read_channel(items, record.grav);
    if (name == outcome_entry) record.outcome = text;
    if (name == remark_entry) record.remarks.emplace_back(text);
    if (name == mark_entry) record.model_mark = text;
    return name == outcome_entry || name == remark_entry || name == mark_entry;
}

}  // namespace

std::vector<std::string> fit_lines(const FitRecord& record) {
    FitLine head(record_entry);
    head << written_version << (record.date.empty() ? no_date : std::string_view(record.date))
         << formulas_name(record.formulas) << method_name(record.method) << name_of(record.channel, channels)
         << name_of(record.target, targets) << record.first_distance << record.last_distance;
    std::vector<std::string> lines{head.text(), text_line(outcome_entry, record.outcome)};
    for (const FittedParameter& parameter : record.parameters) lines.push_back(parameter_line(parameter));
    add_correlation(record, lines);
    if (record.mag) lines.push_back(channel_line(mag_entry, *record.mag));
    if (record.grav) lines.push_back(channel_line(grav_entry, *record.grav));
    for (const std::string& remark : record.remarks) lines.push_back(text_line(remark_entry, remark));
    lines.push_back(text_line(mark_entry, record.model_mark));
    lines.push_back(text_line(end_entry, digest_text(lines, lines.size())));
    return lines;
}

bool is_fit_entry(std::string_view name) {
    return name == record_entry || name.starts_with("fit_");
}

std::optional<FitRecord> fit_of_lines(const std::vector<std::string_view>& lines) {
    constexpr std::size_t least_lines = 2;
    if (lines.size() < least_lines) return std::nullopt;
    const std::size_t inner = lines.size() - 1;
    if (lines.back() != text_line(end_entry, digest_text(lines, inner))) return std::nullopt;
    FitRecord record;
    std::string_view head = lines.front();
    if (next_token(head) != record_entry || !read_head(FitItems(head), record)) return std::nullopt;
    Triangle correlation;
    for (std::size_t i = 1; i < inner; ++i)
        if (!read_line(lines[i], record, correlation)) return std::nullopt;
    if (correlation.rows != 0 && correlation.rows != record.parameters.size()) return std::nullopt;
    record.correlation = correlation.whole();
    return record;
}

}  // namespace anomalis::workspace_file
