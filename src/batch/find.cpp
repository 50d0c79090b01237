#include <algorithm>
#include <ostream>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/found_text.h"
#include "batch/stop_request.h"
#include "core/numbers.h"
#include "flow/channel_choice.h"
#include "flow/unattended_steps.h"
#include "report/find_json.h"
#include "show/fit_quality.h"

namespace anomalis::batch {

namespace {

flow::FindOptions find_options(const FindCommandOptions& options, const Session& session) {
    flow::FindOptions find;
    find.request = {
        .most = std::max(options.most.value_or(flow::usual_most_bodies), options.bodies.value_or(1)),
        .bodies = options.bodies,
        .thin = options.thin,
        .thick = options.thick,
        .free_present = options.free_present,
        .alternatives = options.alternatives};
    find.regional_degree = options.fit.regional;
    find.mag_noise = options.fit.mag_noise;
    find.grav_noise = options.fit.grav_noise;
    if (options.noise)
        (flow::chosen_channel(options.channel, session) == channel_grav ? find.grav_noise : find.mag_noise) =
            options.noise;
    find.window = options.window;
    return find;
}

std::string_view unit_of(const flow::FindReport& report) {
    return show::channel_unit(report.channel == channel_grav ? channel_grav : channel_mag);
}

std::string rms_text(double rms, std::string_view unit) {
    constexpr int digits = 3;
    return "rms " + show::quantity_text(rms, digits, unit);
}

/// One line that is written over by the next.
void show_growth(const inversion::FoundModel& model, std::ostream& err) {
    err << "\r" << model.found << (model.found == 1 ? " body" : " bodies") << ", rms "
        << format_number(model.rms, "0.000") << "      " << std::flush;
}

/// Looks where it can, and tells why not or that there is nothing.
flow::FindReport find(const FindCommandOptions& options, BatchSession& batch, OpenState state) {
    const StopRequest stop;
    bool shown = false;
    flow::FindReport report = flow::find_on_line(
        batch.session, state, options.channel, find_options(options, batch.session), batch.wrong_usage,
        [&](const inversion::FoundModel& model) {
            if (!batch.show_progress) return;
            show_growth(model, batch.err);
            shown = true;
        },
        [&] { return stop.made(); });
    if (shown) batch.err << '\n';
    return report;
}

std::string model_text(const inversion::FoundModel& model, std::size_t rank, const flow::FindReport& report,
                       const Workspace& workspace) {
    std::string text = std::to_string(rank) + ". " + model.kind + ": " +
                       rms_text(model.rms, unit_of(report)) + ", criterion " +
                       format_number(model.criterion, "0.0") + "\n";
    for (std::size_t i = model.bodies.size() - static_cast<std::size_t>(model.found); i < model.bodies.size();
         ++i)
        text += "   " +
                found_body_text(model.bodies[i], static_cast<int>(i) + 1, model.record, report.channel,
                                workspace) +
                "\n";
    return text;
}

std::string summary(const flow::FindReport& report, const Workspace& workspace) {
    const inversion::FindResult& result = report.result;
    std::string text = result.label + " (" + format_number(result.seconds, "0.0") + " s)\n";
    std::size_t rank = 0;
    for (const inversion::FoundModel& model : result.models)
        text += model_text(model, ++rank, report, workspace);
    return text;
}

}  // namespace

bool run_find(const FindCommandOptions& options, BatchSession& batch) {
    flow::FindReport report;
    const Workspace& workspace = batch.session.workspace;
    {
        const MessageScope scope(batch.prompts);
        const OpenState state = batch.open(options.model);
        if (state == OpenState::unread) return false;
        report = find(options, batch, state);
    }
    bool done = report.refusal.empty();
    const std::string json = report::find_json_text(report, workspace, batch.prompts);
    if (!options.report.empty()) done = batch.write_result(options.report, json) == 0 && done;
    if (done && !options.output.empty()) done = batch.write_workspace(options.output) == 0;
    if (!report.refusal.empty()) return false;
    return batch.write_result("", summary(report, workspace)) == 0 && done;
}

}  // namespace anomalis::batch
