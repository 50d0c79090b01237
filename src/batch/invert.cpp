#include <algorithm>
#include <cmath>
#include <ostream>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/stop_request.h"
#include "core/numbers.h"
#include "flow/unattended_steps.h"
#include "report/inversion_json.h"
#include "show/fit_quality.h"
#include "show/fit_view.h"

namespace anomalis::batch {

namespace {

flow::InvertOptions run_options(const InvertCommandOptions& options) {
    flow::InvertOptions run;
    run.target = options.target == "gradient" ? target_gradient : target_data;
    run.method = method_of_name(options.method).value_or(run.method);
    run.iterations = options.iterations;
    run.body = options.body;
    run.starts = options.starts;
    run.regional_degree = options.fit.regional;
    run.mag_noise = options.fit.mag_noise;
    run.grav_noise = options.fit.grav_noise;
    return run;
}

std::string misfit_text(const MisfitPair& misfit) {
    return format_number(misfit[0], "0.00000") + " " + format_number(misfit[1], "0.00000");
}

/// One line that is written over by the next.
void show_progress(const inversion::InversionProgress& state, std::ostream& err) {
    constexpr int bar_width = 20;
    const int limit = std::max(state.iteration_limit, 1);
    const auto filled = static_cast<std::size_t>(bar_width * std::min(state.iteration, limit) / limit);
    std::string bar(filled, '#');
    bar.resize(bar_width, '.');
    err << "\r[" << bar << "] iteration " << state.iteration << " of " << state.iteration_limit << ", misfit "
        << misfit_text(state.misfit) << ", " << format_number(state.seconds, "0.0") << " s  " << std::flush;
}

flow::InversionReport invert(const InvertCommandOptions& options, BatchSession& batch) {
    Session& session = batch.session;
    const StopRequest stop;
    // Asked after each evaluation; the run itself looks once an iteration.
    batch.prompts.on_yield = [&] {
        if (stop.made()) session.inversion.stop_inversion = true;
    };
    flow::InversionReport report =
        flow::invert_on_line(session, options.channel, run_options(options), batch.wrong_usage,
                             [&](const inversion::InversionProgress& state) {
                                 if (batch.show_progress) show_progress(state, batch.err);
                             });
    batch.prompts.on_yield = nullptr;
    if (batch.show_progress && report.result.iterations > 0) batch.err << '\n';
    return report;
}

std::string channels_text(const flow::InversionReport& report) {
    std::string text;
    for (const flow::ReportedChannel& channel : report.channels)
        if (channel.quality)
            text += (channel.channel == channel_mag ? "Magnetics: " : "Gravity: ") +
                    show::fit_quality_text(*channel.quality, channel.channel) + "\n";
    return text;
}

/// "Top of body 1: 144.3 m (90 %: 139.0 to 150.1), from 160"; the intervals stand in the order of the list.
std::string value_text(const show::FitParameterRow& row, const FittedParameter& fitted, float start) {
    const bool open = std::isnan(fitted.lower) && std::isnan(fitted.upper);
    return row.name + ": " + row.value + (row.unit.empty() ? "" : " " + row.unit) + " (" +
           (open ? "" : "90 %: ") + row.interval + "), from " + shortest_text(start) + "\n";
}

/// The values of a least-squares fit, and what else there is to say of it.
std::string fit_text(const flow::InversionReport& report, const Workspace& workspace) {
    const FitRecord& record = *report.result.record;
    const show::FitView view = show::fit_view(record, workspace);
    std::string text;
    for (std::size_t i = 0; i < std::min(view.parameters.size(), report.parameters.size()); ++i)
        text += value_text(view.parameters[i], record.parameters[i], report.parameters[i].start);
    for (const std::string& remark : view.remarks) text += remark + "\n";
    return text;
}

std::string summary(const flow::InversionReport& report, const Workspace& workspace) {
    const inversion::RunResult& result = report.result;
    std::string text = report.label + " after " + std::to_string(result.iterations) + " iterations, " +
                       std::to_string(result.evaluations) + " evaluations\n";
    if (result.initial_misfit)
        text +=
            "Misfit " + misfit_text(*result.initial_misfit) + " -> " + misfit_text(result.misfit_pair) + "\n";
    text += channels_text(report);
    if (result.record) return text + fit_text(report, workspace);
    for (const flow::ReportedParameter& p : report.parameters) {
        text += "Body " + std::to_string(p.body) + " " + p.name + ":" + number_to_text(p.start) + " ->" +
                number_to_text(p.final) + "\n";
    }
    return text;
}

}  // namespace

bool run_invert(const InvertCommandOptions& options, BatchSession& batch) {
    batch.force = options.force;
    flow::InversionReport report;
    {
        const MessageScope scope(batch.prompts);
        if (batch.open(options.model) == OpenState::unread) return false;
        report = invert(options, batch);
    }
    bool done = report.result.status >= 0;
    const std::string json = report::inversion_json_text(report, batch.prompts);
    if (!options.report.empty()) done = batch.write_result(options.report, json) == 0 && done;
    if (done && !options.output.empty()) done = batch.write_workspace(options.output) == 0;
    return batch.write_result("", summary(report, batch.session.workspace)) == 0 && done;
}

}  // namespace anomalis::batch
