#include "show/figure_content.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/shown_text.h"
#include "core/version.h"
#include "core/workspace.h"
#include "core/worth_text.h"
#include "edit/body_rows.h"
#include "edit/interval_text.h"
#include "show/fit_quality.h"

namespace anomalis::show {

namespace {

constexpr double units_per_metre = chart::units_per_inch / 0.0254;

/// When a column stands in the table.
enum class ColumnWhen {
    always,
    magnetics,  ///< a body has it, and there are magnetics
    gravity,
    not_zero,  ///< a body has another value than 0, or the fit one of it
    remanence  ///< a body has a remanence
};

struct ColumnPlan {
    ParamCode code;
    const char* caption;
    const char* unit;
    ColumnWhen when = ColumnWhen::always;
    bool endless_at_zero = false;
    bool of_wires = false;  ///< a wire keeps its current where other bodies keep the susceptibility
};

constexpr std::array plans{
    ColumnPlan{param_distance, "Distance", "m"},
    ColumnPlan{param_top, "Elevation", "m"},
    ColumnPlan{param_strike, "Strike", "°"},
    ColumnPlan{param_dip, "Dip", "°"},
    ColumnPlan{param_width, "Width", "m"},
    ColumnPlan{param_depth_extent, "Depth ext.", "m", ColumnWhen::always, true},
    ColumnPlan{param_length, "Length", "m", ColumnWhen::always, true},
    ColumnPlan{param_susc, "Suscept.", "µSI", ColumnWhen::magnetics},
    ColumnPlan{param_susc, "Current", "mA", ColumnWhen::magnetics, false, true},
    ColumnPlan{param_density, "Density c.", "g/cc", ColumnWhen::gravity},
    ColumnPlan{param_plunge, "Plunge", "°", ColumnWhen::not_zero},
    ColumnPlan{param_slope, "Slope", "°", ColumnWhen::not_zero},
    ColumnPlan{param_offset, "Offset", "m", ColumnWhen::not_zero},
    ColumnPlan{param_rem_q, "Rem. Q", "", ColumnWhen::remanence},
    ColumnPlan{param_rem_i, "Rem. incl.", "°", ColumnWhen::remanence},
    ColumnPlan{param_rem_d, "Rem. decl.", "°", ColumnWhen::remanence},
};

/// The bodies of a model with what the fit in force says of them.
class Bodies {
  public:
    explicit Bodies(const Workspace& workspace)
        : workspace_(workspace), fit_(workspace.fit && as_fitted(workspace) ? &*workspace.fit : nullptr) {}

    const FitRecord* fit() const { return fit_; }
    FigureTable table() const;

  private:
    bool has(const ModelBody& body, const ColumnPlan& plan) const {
        return has_parameter(body.type, plan.code) &&
               (plan.code != param_susc || carries_current(body.type) == plan.of_wires);
    }
    const FittedParameter* fitted(int number, ParamCode code) const;
    bool is_wanted(const ColumnPlan& plan) const;
    FigureCell cell(int number, const ColumnPlan& plan) const;
    FigureCell burial(int number) const;
    FigureBody row(int number, const std::vector<ColumnPlan>& columns) const;
    bool any(bool (*is)(std::int32_t)) const;

    const Workspace& workspace_;
    const FitRecord* fit_;
};

const FittedParameter* Bodies::fitted(int number, ParamCode code) const {
    if (!fit_) return nullptr;
    const auto found = std::ranges::find_if(
        fit_->parameters, [&](const FittedParameter& p) { return p.body == number && p.param_code == code; });
    return found == fit_->parameters.end() ? nullptr : &*found;
}

bool Bodies::is_wanted(const ColumnPlan& plan) const {
    if (plan.when == ColumnWhen::magnetics && !workspace_.has_mag()) return false;
    if (plan.when == ColumnWhen::remanence && !workspace_.has_mag()) return false;
    if (plan.when == ColumnWhen::gravity && !workspace_.has_grav()) return false;
    for (int number = 1; number <= workspace_.body_count; ++number) {
        const ModelBody& body = workspace_.body(number);
        if (!has(body, plan)) continue;
        const bool by_value = plan.when == ColumnWhen::not_zero || plan.when == ColumnWhen::remanence;
        const float value =
            plan.when == ColumnWhen::remanence ? body.rem_q.value : body_param(body, plan.code).value;
        if (!by_value || value != 0 || fitted(number, plan.code)) return true;
    }
    return false;
}

FigureCell Bodies::cell(int number, const ColumnPlan& plan) const {
    const ModelBody& body = workspace_.body(number);
    if (!has(body, plan)) return {};
    const float value = body_param(body, plan.code).value;
    const FittedParameter* parameter = fitted(number, plan.code);
    if (plan.endless_at_zero && value == 0 && !parameter) return {"∞", ""};
    if (!parameter) return {edit::parameter_text(body.type, plan.code, value), ""};
    const bool closed = std::isfinite(parameter->lower) && std::isfinite(parameter->upper);
    return {closed ? text_of_worth(static_cast<double>(value), (parameter->upper - parameter->lower) / 2)
                   : edit::parameter_text(body.type, plan.code, value),
            edit::interval_mark(*parameter)};
}

FigureCell Bodies::burial(int number) const {
    return {format_number(workspace_.body(number).top_elevation, "0.0"), ""};
}

FigureBody Bodies::row(int number, const std::vector<ColumnPlan>& columns) const {
    const ModelBody& body = workspace_.body(number);
    const std::string_view type = body_type_name(body.type);
    FigureBody row{body.colour,
                   std::to_string(number),
                   shown_text(body.name),
                   type.empty() ? "Type " + std::to_string(body.type) : std::string(type),
                   {}};
    if (body.turned_off == 1) row.type += ", off";
    for (const ColumnPlan& plan : columns) {
        row.cells.push_back(cell(number, plan));
        if (plan.code == param_top) row.cells.push_back(burial(number));
    }
    return row;
}

bool Bodies::any(bool (*is)(std::int32_t)) const {
    for (int number = 1; number <= workspace_.body_count; ++number)
        if (is(workspace_.body(number).type)) return true;
    return false;
}

FigureTable Bodies::table() const {
    FigureTable table;
    table.heading = fit_ ? "Bodies, with the 90 % intervals of the fit" : "Bodies";
    std::vector<ColumnPlan> columns;
    for (const ColumnPlan& plan : plans)
        if (is_wanted(plan)) columns.push_back(plan);
    for (const ColumnPlan& plan : columns) {
        table.columns.push_back({plan.caption, plan.unit});
        if (plan.code == param_top) table.columns.push_back({"Burial", "m"});
    }
    for (int number = 1; number <= workspace_.body_count; ++number)
        table.bodies.push_back(row(number, columns));
    table.notes.push_back(
        std::string("Elevation: of the top") +
        (any([](std::int32_t type) { return is_round(type); }) ? ", of pipes and wires of the axis" : "") +
        ". Burial: depth of the top below the ground. Width" +
        (any([](std::int32_t type) { return is_round(type); }) ? ": of pipes and wires the diameter" : "") +
        (any([](std::int32_t type) { return is_round(type); }) ? "." : " across the strike.") +
        " ∞: without end.");
    return table;
}

std::string degrees(float angle) {
    return format_number(angle, "0.##") + "°";
}

FigureFact field_fact(const Workspace& workspace) {
    const EarthField& field = workspace.field;
    if (workspace.source.field_missing) return {"Field", "not set: magnetics are not modelled"};
    const std::string& origin = workspace.source.field_origin;
    return {"Field", format_number(field.intensity, "0.##") + " nT, inclination " +
                         degrees(field.inclination) + ", declination " + degrees(field.declination) + "; " +
                         (origin.empty() ? "given by hand" : shown_text(origin))};
}

FigureFact fit_fact(const Workspace& workspace, const FitRecord* in_force) {
    std::string date = workspace.fit->date;
    std::ranges::replace(date, 'T', ' ');
    date = shown_text(date);
    if (!in_force) return {"Fit", "none: the model was changed since the fit of " + date};
    return {"Fit",
            std::string(in_force->method == InversionMethod::least_squares ? "least squares" : "sweep") +
                " over " + format_number(in_force->first_distance, "0") + " to " +
                format_number(in_force->last_distance, "0") + " m, " + date};
}

/// "1 : 25400", to three digits.
std::string ratio_text(double units_a_metre) {
    const double ratio = units_per_metre / units_a_metre;
    if (!(ratio > 0) || !std::isfinite(ratio)) return "not known";
    const double step = std::pow(10.0, std::max(0.0, std::floor(std::log10(ratio)) - 2));
    return "1 : " + format_number(std::round(ratio / step) * step, ratio < 10 ? "0.0#" : "0");
}

FigureFact scale_fact(const FigureScale& scale) {
    std::string text = "distance " + ratio_text(scale.along);
    if (scale.down > 0 && scale.along > 0)
        text += ", section with a vertical exaggeration of " +
                format_number(scale.down / scale.along, scale.down < 0.95 * scale.along ? "0.00" : "0.0") +
                "x";
    if (scale.plan > 0) text += ", plan " + ratio_text(scale.plan);
    return {"Scale", text};
}

std::vector<FigureFact> facts_of(const Workspace& workspace, const FigureScale& scale,
                                 const FitRecord* in_force) {
    std::vector<FigureFact> facts;
    if (workspace.has_mag()) facts.push_back(field_fact(workspace));
    facts.push_back({"Formulas", std::string(formulas_name(workspace.formulas))});
    facts.push_back(scale_fact(scale));
    for (const int channel : {channel_mag, channel_grav})
        if (const auto quality = fit_quality(workspace, channel))
            facts.push_back(
                {channel == channel_mag ? "Magnetics" : "Gravity", fit_quality_text(*quality, channel)});
    if (workspace.fit) facts.push_back(fit_fact(workspace, in_force));
    if (workspace.body_count <= 0) facts.push_back({"Bodies", "none"});
    return facts;
}

std::string data_name(const Workspace& workspace) {
    const LineSource& source = workspace.source;
    return source.file.empty() ? file_name(workspace.definition.data_file) : source.file;
}

std::string line_words(const Workspace& workspace) {
    const LineSource& source = workspace.source;
    std::string words = (source.line.empty() ? "" : "Line " + source.line + " of ") + data_name(workspace);
    for (const std::string& part : {source.coordinate_system, source.date})
        if (!part.empty()) words += ", " + part;
    const double length = workspace.station_count > 0
                              ? workspace.distances[workspace.station_count] - workspace.distances[1]
                              : 0;
    words +=
        ", " + std::to_string(workspace.station_count) + " stations over " +
        (length >= 1000 ? format_number(length / 1000, "0.00") + " km" : format_number(length, "0") + " m");
    return shown_text(words);
}

std::string usual_title(const Workspace& workspace) {
    if (!workspace.model_file.empty()) return base_name(workspace.model_file);
    if (!workspace.source.line.empty()) return "Line " + workspace.source.line;
    return base_name(workspace.definition.data_file);
}

}  // namespace

FigureContent figure_content(const Workspace& workspace, const FigureScale& scale, const std::string& title,
                             const std::string& date) {
    const Bodies bodies(workspace);
    FigureContent content;
    content.curves = (workspace.has_mag() ? 2 : 0) + (workspace.has_grav() ? 2 : 0);
    content.title = shown_text(title.empty() ? usual_title(workspace) : title);
    content.line = line_words(workspace);
    content.facts = facts_of(workspace, scale, bodies.fit());
    content.table = bodies.table();
    const std::string file =
        workspace.model_file.empty() ? "Model without a file" : shown_text(file_name(workspace.model_file));
    content.origin = file + "   Anomalis " + std::string(application_version());
    content.date = date;
    return content;
}

}  // namespace anomalis::show
