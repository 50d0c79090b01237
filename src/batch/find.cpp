#include <algorithm>
#include <ostream>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/found_text.h"
#include "batch/stop_request.h"
#include "core/numbers.h"
#include "flow/channel_choice.h"
#include "flow/find_report.h"
#include "report/find_json.h"
#include "show/fit_quality.h"

namespace anomalis::batch {

namespace {

constexpr int usual_most = 8;

flow::FindOptions find_options(const FindCommandOptions& options, const Session& session) {
    flow::FindOptions find;
    find.request = {.channel = flow::chosen_channel(options.channel, session),
                    .most = std::max(options.most.value_or(usual_most), options.bodies.value_or(1)),
                    .bodies = options.bodies,
                    .thin = options.thin,
                    .thick = options.thick,
                    .free_present = options.free_present,
                    .alternatives = options.alternatives};
    find.regional_degree = options.fit.regional;
    find.mag_noise = options.fit.mag_noise;
    find.grav_noise = options.fit.grav_noise;
    if (options.noise)
        (find.request.channel == channel_grav ? find.grav_noise : find.mag_noise) = options.noise;
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

flow::FindReport find(const FindCommandOptions& options, BatchSession& batch) {
    const StopRequest stop;
    bool shown = false;
    flow::FindReport report = flow::run_find(
        batch.session, find_options(options, batch.session),
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

bool found_nothing(const inversion::FindResult& result) {
    return std::ranges::none_of(result.models, [](const inversion::FoundModel& m) { return m.found > 0; });
}

/// Looks where it can, and tells why not or that there is nothing.
flow::FindReport searched(const FindCommandOptions& options, BatchSession& batch, OpenState state) {
    flow::FindReport report;
    report.refusal = state == OpenState::ready ? flow::channel_refusal(options.channel, batch.session)
                                               : "There is no line to look for bodies on";
    if (report.refusal.empty()) {
        report = find(options, batch);
        // A window beside the line.
        batch.wrong_usage = options.window && !report.refusal.empty() &&
                            flow::find_refusal(batch.session.workspace, report.channel).empty();
    }
    if (!report.refusal.empty()) {
        batch.prompts.message(report.refusal);
    } else if (found_nothing(report.result)) {
        // That a line shows nothing is an answer, and the person is told; it is no failure.
        batch.prompts.remark(report.result.label);
    }
    return report;
}

}  // namespace

bool run_find(const FindCommandOptions& options, BatchSession& batch) {
    flow::FindReport report;
    const Workspace& workspace = batch.session.workspace;
    {
        const MessageScope scope(batch.prompts);
        const OpenState state = batch.open(options.model);
        if (state == OpenState::unread) return false;
        report = searched(options, batch, state);
    }
    bool done = report.refusal.empty();
    const std::string json = report::find_json_text(report, workspace, batch.prompts);
    if (!options.report.empty()) done = batch.write_result(options.report, json) == 0 && done;
    if (done && !options.output.empty()) done = batch.write_workspace(options.output) == 0;
    if (!report.refusal.empty()) return false;
    return batch.write_result("", summary(report, workspace)) == 0 && done;
}

}  // namespace anomalis::batch
