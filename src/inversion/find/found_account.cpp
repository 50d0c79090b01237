#include "inversion/find/found_account.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "core/body_parameters.h"
#include "core/gaps.h"
#include "inversion/fit_account.h"
#include "inversion/fit_weights.h"
#include "inversion/parameters.h"
#include "inversion/perform.h"
#include "inversion/rows_problem.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

std::string sheets(int count, const char* kind) {
    return std::to_string(count) + " " + kind + (count == 1 ? " sheet" : " sheets");
}

/// "2 thick sheets and 1 thin sheet, regional of degree 2".
std::string kind_of(const FoundModel& model, std::int32_t degree) {
    int thin = 0, limited = 0;
    for (auto body = model.bodies.end() - model.found; body != model.bodies.end(); ++body) {
        thin += body->type == thin_sheet;
        limited += body->depth_extent.value > 0;
    }
    const int thick = model.found - thin;
    std::string text = thick > 0 ? sheets(thick, "thick") : "";
    if (thin > 0) text += (text.empty() ? "" : " and ") + sheets(thin, "thin");
    if (text.empty()) text = "no new body";
    if (limited > 0) text += ", " + std::to_string(limited) + " of them limited in depth";
    if (degree != no_regional) text += ", regional of degree " + std::to_string(degree);
    return text;
}

}  // namespace

FoundModel found_model(const LineFit& line, const JudgedModel& judged) {
    FoundModel model;
    model.bodies = judged.model.bodies;
    model.found = judged.found;
    std::sort(model.bodies.end() - judged.found, model.bodies.end(),
              [](const ModelBody& a, const ModelBody& b) { return a.distance.value < b.distance.value; });
    const auto present = static_cast<int>(model.bodies.size()) - judged.found;
    for (int i = present; i < static_cast<int>(model.bodies.size()); ++i) {
        ModelBody& body = model.bodies[static_cast<std::size_t>(i)];
        body.name = "Body " + std::to_string(i + 1);
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        for (const int code : line.free_parameters(body)) body_param(body, code).vary = 1;
        // A thin sheet was found without it, but the line knows its depth no better than its width lets it.
        body.width.vary = 1;
    }
    const Workspace& workspace = line.workspace();
    const auto count = static_cast<Eigen::Index>(
        reading_stations(workspace, line.channels().front(), workspace.first_station, workspace.last_station)
            .size());
    model.rms = std::sqrt(judged.model.residual.head(count).squaredNorm() /
                          static_cast<double>(std::max<Eigen::Index>(count, 1)));
    model.criterion = judged.criterion;
    model.mag_degree = workspace.mag.regional_degree;
    model.grav_degree = workspace.grav.regional_degree;
    for (const std::int32_t channel : line.channels())
        (channel == channel_mag ? model.mag_degree : model.grav_degree) = judged.model.degree;
    model.kind = kind_of(model, judged.model.degree);
    return model;
}

namespace {

void fill_parameters(const FittedModel& model, const RunRequest& request) {
    int count = 0;
    setup_all_body_parameters(0, request.channel, count, model, request.method);
    model.inversion.inversion_params.assign(count);
    model.inversion.inversion_param_map.assign(count);
    count = 0;
    setup_all_body_parameters(1, request.channel, count, model, request.method);
}

/// The workspace becomes the model, and its numbers are brought up to date.
void take(const FoundModel& found, const FindRequest& request, Workspace& workspace,
          InversionState& inversion, Faults& faults, Pacer& pacer) {
    const auto count = static_cast<std::int32_t>(found.bodies.size());
    workspace.body_capacity = std::max(workspace.body_capacity, count);
    workspace.bodies.assign(static_cast<std::size_t>(workspace.body_capacity) + 1, {});
    workspace.body_count = count;
    for (int number = 1; number <= count; ++number) {
        ModelBody& body = workspace.body(number);
        body = found.bodies[static_cast<std::size_t>(number - 1)];
        if (number <= count - found.found && !request.free_present) body.vary = 0;
        body.response.assign(workspace.station_count);
        body.mag_response_valid = body.grav_response_valid = false;
        body.known_inputs.reset();
    }
    workspace.mag.regional_degree = found.mag_degree;
    workspace.grav.regional_degree = found.grav_degree;
    invalidate_filtered_data(0, workspace);
    model::evaluate_model_misfit(workspace, inversion, workspace.mag.data, workspace.grav.data, faults,
                                 pacer);
}

}  // namespace

void give_record(const LineFit& line, const FindRequest& request, FoundModel& found, Pacer& pacer) {
    Workspace workspace = line.workspace();
    InversionState inversion;
    RunResult result;
    const FittedModel model{workspace, inversion, result.faults, pacer};
    RunRequest run{.channel = request.channel, .method = InversionMethod::least_squares};
    inversion.inversion_channel = request.channel == channel_grav ? channel_grav : channel_mag;
    model::set_misfit_scale(inversion);
    inversion.fit_station_count = workspace.last_station - workspace.first_station + 1;
    take(found, request, workspace, inversion, result.faults, pacer);
    fill_parameters(model, run);
    FitRequest fit{
        .channels = {line.channels().begin(), line.channels().end()}, .target = target_data, .places = {}};
    const auto places = inversion.inversion_param_map.span();
    fit.places.assign(places.begin(), places.end());
    std::vector<FitParameter> parameters;
    FitOutcome outcome;
    // Bodies were fitted against correlated noise: plain squares are not at their least, and have no profile.
    outcome.end = FitEnd::iteration_limit;
    for (int i = 1; i <= inversion.inversion_params.count(); ++i) {
        const InversionParamPlace place = inversion.inversion_param_map[i];
        parameters.push_back(fit_parameter(workspace, workspace.body(place.body), place.param_code,
                                           inversion.inversion_params[i]));
        outcome.values.push_back(parameters.back().value);
    }
    outcome.at_limit = on_limits(parameters, outcome.values);
    FitRows rows(workspace, fit, result.faults, pacer);
    weigh_by_noise(workspace, target_data, rows);
    Eigen::VectorXd residuals(static_cast<Eigen::Index>(rows.row_count()));
    rows.residuals(outcome.values, residuals);
    outcome.sum_of_squares = residuals.squaredNorm();
    give_account(model, run, rows, parameters, outcome, {}, result);
    if (!result.record) return;
    found.record = *result.record;
    const auto& channel = found.record.mag ? found.record.mag : found.record.grav;
    if (channel) found.rms = channel->rms;
}

}  // namespace anomalis::inversion
