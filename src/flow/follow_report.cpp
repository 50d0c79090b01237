#include "flow/follow_report.h"

#include <algorithm>
#include <cmath>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/numbers.h"
#include "flow/available_channel.h"
#include "forward/shape/reference_point.h"
#include "model/refresh_model.h"

namespace anomalis::flow {

namespace {

/// Both ends of a 90 % interval lie so many standard errors off.
constexpr double errors_to_end = 1.645;

double spacing_of(const Workspace& workspace) {
    return workspace.distances.last() / std::max(1, workspace.station_count - 1);
}

/// Standard error of the place of a body; no value where the fit does not tell it.
std::optional<double> place_error(const FitRecord& fit, int number) {
    for (const FittedParameter& p : fit.parameters) {
        if (p.body != number || p.param_code != param_distance || p.undetermined) continue;
        if (std::isfinite(p.error) && p.error > 0) return p.error;
        const double half = (p.upper - p.lower) / 2;
        if (std::isfinite(half) && half > 0) return half / errors_to_end;
    }
    return std::nullopt;
}

StrikePoint place_of(const Workspace& workspace, const ModelBody& body, std::optional<double> error) {
    StrikePoint place;
    const auto distance = static_cast<double>(body.distance.value);
    forward::update_body_reference_point(workspace, distance, place.east, place.north);
    const forward::PlanSlope along = forward::reference_point_slope(workspace, distance);
    if (const double length = std::hypot(along.east, along.north); length > 0) {
        place.line_east = along.east / length;
        place.line_north = along.north / length;
    }
    place.error = error.value_or(spacing_of(workspace));
    return place;
}

std::string field_text(const EarthField& field) {
    return format_number(field.intensity, "0") + " nT, inclination " +
           format_number(field.inclination, "0.0") + "°, declination " +
           format_number(field.declination, "0.0") + "°";
}

/// Neighbouring lines lie in one field.
void note_field(const Workspace& first, const Workspace& next, Faults& faults) {
    constexpr float part = 0.02F, degrees = 3;
    const EarthField &a = first.field, &b = next.field;
    const bool same = std::abs(a.intensity - b.intensity) <= part * std::abs(a.intensity) &&
                      std::abs(a.inclination - b.inclination) <= degrees &&
                      std::abs(a.declination - b.declination) <= degrees;
    if (!same)
        faults.add("The field of " + next.model_file + " (" + field_text(b) + ") is not that of " +
                       first.model_file + " (" + field_text(a) + ")",
                   1, Severity::doubt);
}

void note_bodies_that_go(const Workspace& next, Faults& faults) {
    if (next.body_count > 0)
        faults.add("The bodies of " + next.model_file + " (" + std::to_string(next.body_count) +
                       ") give way to those that are carried",
                   1, Severity::remark);
}

void add_all(const std::vector<std::string>& texts, Severity severity, Faults& faults) {
    for (const std::string& text : texts) faults.add(text, 1, severity);
}

InvertOptions fit_options(const FollowOptions& options) {
    return {.channel = options.channel,
            .iterations = options.iterations,
            .starts = options.starts,
            .regional_degree = options.regional_degree,
            .mag_noise = options.mag_noise,
            .grav_noise = options.grav_noise};
}

/// The model was found with a regional; a line without one of its own takes it over.
void take_regionals(const Workspace& first, const FollowOptions& options, Workspace& next) {
    for (const int channel : {channel_mag, channel_grav})
        if (is_fitted(options.channel, channel) && next.channel(channel).regional_degree == no_regional)
            next.channel(channel).regional_degree = first.channel(channel).regional_degree;
}

void fit_line(Session& next, FollowedLine& line, const FollowOptions& options,
              const ProgressCallback& progress) {
    line.inversion = run_inversion(next, fit_options(options), progress);
    line.places.clear();
    const Workspace& workspace = next.workspace;
    const std::optional<FitRecord>& record = line.inversion.result.record;
    for (int number = 1; number <= workspace.body_count; ++number)
        line.places.push_back(place_of(workspace, workspace.body(number),
                                       record ? place_error(*record, number) : std::nullopt));
}

std::string strike_words(int number, const StrikeFit& fit) {
    return "The strike of body " + std::to_string(number) + " is " + format_number(fit.strike, "0.0") +
           " degrees, standard error " + format_number(fit.error, "0.0") + ", from its places on " +
           std::to_string(fit.lines) + " lines";
}

}  // namespace

FirstLine first_line(const Workspace& workspace, std::vector<std::string>& remarks) {
    FirstLine first{workspace, {}};
    const bool in_force = as_fitted(workspace);
    bool all_known = true;
    for (int number = 1; number <= workspace.body_count; ++number) {
        const std::optional<double> error = in_force ? place_error(*workspace.fit, number) : std::nullopt;
        all_known = all_known && (error || workspace.body(number).turned_off);
        first.places.push_back(place_of(workspace, workspace.body(number), error));
    }
    if (!all_known)
        remarks.push_back("No fit says how well " + workspace.model_file +
                          " knows the places of its bodies: a station spacing of " +
                          format_number(spacing_of(workspace), "0.0") + " m stands for their errors");
    return first;
}

FollowedLine follow_to(const FirstLine& first, Session& next, const FollowOptions& options,
                       const ProgressCallback& progress) {
    const MessageScope scope(next.prompts);
    FollowedLine line;
    CarriedModel model = carry_bodies(first.workspace, next.workspace);
    Faults faults;
    add_all(model.doubts, Severity::doubt, faults);
    add_all(model.remarks, Severity::remark, faults);
    if (!model.bodies.empty()) {
        note_field(first.workspace, next.workspace, faults);
        note_bodies_that_go(next.workspace, faults);
    }
    show_faults(faults, next.prompts);
    if (model.bodies.empty()) {
        line.refusal =
            "No body of " + first.workspace.model_file + " was carried to " + next.workspace.model_file;
        return line;
    }
    line.carried = std::move(model.bodies);
    line.strike.resize(line.carried.size());
    put_bodies(line.carried, next.workspace);
    take_regionals(first.workspace, options, next.workspace);
    fit_line(next, line, options, progress);
    return line;
}

std::vector<FollowedStrike> strikes_of(const FirstLine& first, std::span<const FollowedLine> lines) {
    std::vector<FollowedStrike> strikes;
    for (int number = 1; number <= first.workspace.body_count; ++number) {
        const ModelBody& body = first.workspace.body(number);
        if (body.turned_off) continue;
        std::vector<StrikePoint> points{first.places[static_cast<std::size_t>(number - 1)]};
        for (const FollowedLine& line : lines)
            for (std::size_t i = 0; i < std::min(line.carried.size(), line.places.size()); ++i)
                if (line.carried[i].first_number == number) points.push_back(line.places[i]);
        strikes.push_back({.first_number = number,
                           .before = body.strike.value,
                           .fit = fit_strike(points, static_cast<double>(body.strike.value))});
    }
    return strikes;
}

void take_strikes(std::span<const FollowedStrike> strikes, Session& next, FollowedLine& line,
                  const FollowOptions& options, const ProgressCallback& progress) {
    std::vector<std::string> words;
    for (std::size_t i = 0; i < line.carried.size(); ++i)
        for (const FollowedStrike& strike : strikes) {
            if (strike.first_number != line.carried[i].first_number || !strike.taken()) continue;
            const int number = static_cast<int>(i) + 1;
            BodyParam& param = next.workspace.body(number).strike;
            param.value = to_single(strike.fit->strike);
            param.vary = 0;
            line.strike[i] = param.value;
            words.push_back(strike_words(number, *strike.fit));
        }
    if (words.empty()) return;
    fit_line(next, line, options, progress);
    for (std::optional<FitRecord>* record : {&next.workspace.fit, &line.inversion.result.record})
        if (*record) (*record)->remarks.insert((*record)->remarks.end(), words.begin(), words.end());
}

}  // namespace anomalis::flow
