#include "show/fit_view.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "core/body_parameters.h"
#include "core/fit_record.h"
#include "core/inversion_state.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "core/worth_text.h"
#include "edit/body_rows.h"
#include "edit/interval_text.h"
#include "filter/gradient_unit.h"
#include "show/broken_line.h"
#include "show/fit_quality.h"

namespace anomalis::show {

namespace {

constexpr std::size_t most_pairs = 5;
constexpr double notable = 0.8;  // pairs that are coupled less are not named

std::string short_number(double value) {
    return text_of_worth(value, std::abs(value) / 10);
}

std::string body_text(std::int32_t body) {
    return "body " + format_number(body, "0");
}

std::string capitalised(std::string text) {
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

std::int32_t type_of(const FittedParameter& p, const Workspace& workspace) {
    return p.body >= 1 && p.body <= workspace.body_count ? workspace.body(p.body).type
                                                         : static_cast<std::int32_t>(thick_sheet);
}

/// As the grid calls it for a body of this type ("current" of a wire), in the middle of a sentence.
std::string name_of(const FittedParameter& p, const Workspace& workspace) {
    std::string name(edit::body_row(type_of(p, workspace), p.param_code).caption);
    if (name.empty() || name == "N/A") return std::string(param_name(p.param_code));
    if (name[0] >= 'A' && name[0] <= 'Z') name[0] = static_cast<char>(name[0] - 'A' + 'a');
    return name;
}

std::string channel_words(std::int32_t channel) {
    static constexpr std::array<const char*, 3> words{"magnetics", "gravity", "magnetics and gravity"};
    return words.at(static_cast<std::size_t>(std::clamp<std::int32_t>(channel, channel_mag, channel_joint)));
}

std::string regional_words(const Regional& regional) {
    static constexpr std::array<const char*, 5> words{"none", "level", "slope", "bend", "cubic"};
    return words.at(static_cast<std::size_t>(std::clamp(regional.degree, no_regional, most_regional_degree) -
                                             no_regional));
}

std::vector<FitFact> facts_of(const FitRecord& fit) {
    const bool gradient = fit.target == target_gradient;
    std::string date = fit.date;
    std::ranges::replace(date, 'T', ' ');
    return {{"Outcome", fit.outcome},
            {"Date", date},
            {"Formulas", fit.formulas == Formulas::exact ? "exact" : "classic"},
            {"Method", fit.method == InversionMethod::least_squares ? "least squares" : "sweep"},
            {"Fitted", channel_words(fit.channel) + (gradient ? ", the gradient" : "")},
            {"Window", format_number(fit.first_distance, "0.0") + " to " +
                           format_number(fit.last_distance, "0.0") + " m"}};
}

FitChannelRow row_of(const FittedChannel& fitted, const std::string& name, const std::string& unit) {
    return {name,
            format_number(fitted.stations, "0"),
            short_number(fitted.rms) + " " + unit,
            short_number(fitted.noise) + " " + unit + (fitted.noise_given ? " (keyed)" : " (est.)"),
            short_number(fitted.chi_square),
            fitted.correlation > 0 ? format_number(fitted.correlation, "0") + " m" : "none",
            regional_words(fitted.regional)};
}

FitParameterRow row_of(const FittedParameter& stored, const Workspace& workspace, SusceptibilityUnit unit) {
    const std::int32_t type = type_of(stored, workspace);
    const edit::BodyRow row = edit::body_row(type, stored.param_code, unit);
    const FittedParameter p = edit::in_unit(stored, row.factor);
    const bool closed = std::isfinite(p.lower) && std::isfinite(p.upper);
    return {capitalised(name_of(p, workspace)) + " of " + body_text(p.body),
            closed ? text_of_worth(static_cast<double>(p.value), (p.upper - p.lower) / 2)
                   : edit::parameter_text(type, p.param_code, stored.value, unit),
            edit::interval_words(p), std::string(row.unit)};
}

std::string pair_words(const FittedParameter& a, const FittedParameter& b, const Workspace& workspace) {
    if (a.body == b.body)
        return name_of(a, workspace) + " and " + name_of(b, workspace) + " of " + body_text(a.body);
    return name_of(a, workspace) + " of " + body_text(a.body) + " and " + name_of(b, workspace) + " of " +
           body_text(b.body);
}

std::vector<std::string> strongest_of(const FitRecord& fit, const CorrelationTable& table,
                                      const Workspace& workspace) {
    struct Pair {
        std::size_t a, b;
        double coefficient;
    };
    std::vector<Pair> pairs;
    for (std::size_t a = 0; a < table.size(); ++a)
        for (std::size_t b = a + 1; b < table.size(); ++b)
            if (std::abs(table.at(a, b)) >= notable) pairs.push_back({a, b, table.at(a, b)});
    const auto kept = pairs.begin() + static_cast<std::ptrdiff_t>(std::min(most_pairs, pairs.size()));
    std::ranges::partial_sort(pairs, kept, [](const Pair& one, const Pair& other) {
        return std::abs(one.coefficient) > std::abs(other.coefficient);
    });
    std::vector<std::string> words;
    for (auto pair = pairs.begin(); pair != kept; ++pair)
        words.push_back(pair_words(fit.parameters[pair->a], fit.parameters[pair->b], workspace) + ": " +
                        format_number(pair->coefficient, "0.00"));
    return words;
}

CorrelationTable correlation_of(const FitRecord& fit, const Workspace& workspace) {
    CorrelationTable table;
    if (fit.correlation.size() != fit.parameters.size() * fit.parameters.size()) return table;
    for (const FittedParameter& p : fit.parameters)
        table.names.push_back(name_of(p, workspace) + " " + format_number(p.body, "0"));
    table.coefficient = fit.correlation;
    return table;
}

}  // namespace

std::string residual_unit(const FitRecord& fit, const Workspace& workspace, std::int32_t channel) {
    return fit.target == target_gradient
               ? filter::gradient_unit(channel_unit(channel), workspace.processing.vg_filter_step)
               : std::string(channel_unit(channel));
}

FitView fit_view(const FitRecord& fit, const Workspace& workspace, SusceptibilityUnit unit) {
    FitView view;
    view.facts = facts_of(fit);
    if (fit.mag)
        view.channels.push_back(row_of(*fit.mag, "Magnetics", residual_unit(fit, workspace, channel_mag)));
    if (fit.grav)
        view.channels.push_back(row_of(*fit.grav, "Gravity", residual_unit(fit, workspace, channel_grav)));
    for (const FittedParameter& p : fit.parameters) view.parameters.push_back(row_of(p, workspace, unit));
    view.correlation = correlation_of(fit, workspace);
    view.strongest = strongest_of(fit, view.correlation, workspace);
    view.remarks = fit.remarks;
    return view;
}

ResidualCurve residual_curve(const FitRecord& fit, const Workspace& workspace, std::int32_t channel) {
    const std::optional<FittedChannel>& fitted = channel == channel_mag ? fit.mag : fit.grav;
    const int first = workspace.first_station, last = workspace.last_station;
    if (!fitted || first < 1 || last > workspace.station_count || first > last) return {};
    const ChannelTable& rows = workspace.channel(channel).data;
    if (rows.stations() < last) return {};
    const std::int32_t row =
        fit.target == target_gradient ? workspace.gradient_row_in_use() : workspace.residual_row;
    const auto observed = rows.row(row, stage_observed), calculated = rows.row(row, stage_calculated);
    ResidualCurve curve;
    curve.noise = fitted->noise;
    std::vector<double> residual;
    for (int station = first; station <= last; ++station) {
        const auto i = static_cast<std::size_t>(station - 1);
        residual.push_back(static_cast<double>(observed[i]) - static_cast<double>(calculated[i]));
    }
    const auto distances =
        workspace.distances.span().subspan(static_cast<std::size_t>(first - 1), residual.size());
    const BrokenLine line = BrokenLine::of_channel(workspace, channel, first, last);
    const auto places = line.whole() ? distances : line.distances();
    curve.distance.assign(places.begin(), places.end());
    curve.residual = line.whole() ? residual : line.curve(std::span<const double>(residual), first);
    return curve;
}

}  // namespace anomalis::show
