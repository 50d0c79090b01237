#include "flow/unattended_steps.h"

#include <algorithm>

#include "flow/channel_choice.h"
#include "flow/take_ensemble.h"
#include "model/refresh_model.h"

namespace anomalis::flow {

namespace {

bool found_nothing(const inversion::FindResult& result) {
    return std::ranges::none_of(result.models, [](const inversion::FoundModel& m) { return m.found > 0; });
}

/// Why a model cannot be fitted as it was asked for; "" when it can. A run by itself is refused without a
/// word, or gives way to the other channel.
std::string invert_refusal(const InvertOptions& options, const std::string& channel, const Session& session,
                           bool& wrong_usage) {
    const int bodies = session.workspace.body_count;
    if (bodies < 1) return "The model has no bodies to invert";
    if (options.body > bodies) {
        wrong_usage = true;
        return "There is no body " + std::to_string(options.body) + " to invert: the model has " +
               std::to_string(bodies);
    }
    return channel_refusal(channel, session);
}

/// The report of a run that was not begun.
InversionReport refused_inversion(const InvertOptions& options) {
    InversionReport report;
    report.result.status = inversion::run_failed;
    report.label = inversion::status_label(inversion::run_failed);
    report.method = options.method;
    return report;
}

/// What was said in place of what the workspace says. Returns why it cannot be had, or "".
std::string take_uncertainty_settings(const UncertaintyOptions& options, std::int32_t channel,
                                      Workspace& workspace) {
    for (const std::int32_t one : {channel_mag, channel_grav})
        if (options.regional_degree && (channel == one || channel == channel_joint))
            workspace.channel(one).regional_degree = *options.regional_degree;
    if (options.mag_noise) workspace.mag.noise = *options.mag_noise;
    if (options.grav_noise) workspace.grav.noise = *options.grav_noise;
    return options.window ? choose_fit_window(workspace, *options.window) : "";
}

/// Why nothing is begun; "" when it can be.
std::string uncertainty_refusal(const UncertaintyOptions& options, OpenState state,
                                const std::string& channel, Session& session, bool& wrong_usage) {
    if (state == OpenState::no_length) return "There is no line to tell how sure the model is";
    const std::string why = channel_refusal(channel, session);
    if (!why.empty() || session.workspace.station_count < 1) return why;
    const std::string outside =
        take_uncertainty_settings(options, chosen_channel(channel, session), session.workspace);
    wrong_usage = !outside.empty();
    return outside;
}

}  // namespace

FindReport find_on_line(Session& session, OpenState state, const std::string& channel, FindOptions options,
                        bool& wrong_usage, const GrowthCallback& grew, const StopCallback& stop) {
    FindReport report;
    report.refusal = state == OpenState::ready ? channel_refusal(channel, session)
                                               : "There is no line to look for bodies on";
    if (report.refusal.empty()) {
        options.request.channel = chosen_channel(channel, session);
        report = run_find(session, options, grew, stop);
        // A window beside the line.
        wrong_usage = options.window && !report.refusal.empty() &&
                      find_refusal(session.workspace, report.channel).empty();
    }
    if (!report.refusal.empty()) {
        session.prompts.message(report.refusal);
    } else if (found_nothing(report.result)) {
        // That a line shows nothing is an answer, and the person is told; it is no failure.
        session.prompts.remark(report.result.label);
    }
    return report;
}

InversionReport invert_on_line(Session& session, const std::string& channel, InvertOptions options,
                               bool& wrong_usage, const ProgressCallback& progress) {
    const std::string why = invert_refusal(options, channel, session, wrong_usage);
    if (!why.empty()) {
        session.prompts.message(why);
        return refused_inversion(options);
    }
    options.channel = chosen_channel(channel, session);
    return run_inversion(session, options, progress);
}

UncertaintyReport uncertainty_on_line(Session& session, OpenState state, const std::string& channel,
                                      const UncertaintyOptions& options, bool& wrong_usage,
                                      inversion::EnsembleObserver& observer) {
    UncertaintyReport report;
    report.request = options.request;
    report.request.channel = chosen_channel(channel, session);
    const std::string why = uncertainty_refusal(options, state, channel, session, wrong_usage);
    if (!why.empty()) {
        session.prompts.message(why);
        return report;
    }
    model::refresh_model(session);
    report.result = inversion::find_ensemble(session.workspace, report.request, observer);
    show_faults(report.result.faults, session.prompts);
    if (report.result.record) {
        take_ensemble(session.workspace, report.result);
        model::refresh_model(session);
    }
    return report;
}

}  // namespace anomalis::flow
