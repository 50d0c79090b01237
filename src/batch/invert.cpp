#include <ostream>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/report_json.h"
#include "batch/stop_request.h"
#include "core/numbers.h"
#include "flow/inversion_report.h"

namespace anomalis::batch {

namespace {

flow::InvertOptions run_options(const InvertCommandOptions& options, const Session& session) {
    flow::InvertOptions run;
    run.channel = options.channel == "mag"     ? channel_mag
                  : options.channel == "grav"  ? channel_grav
                  : options.channel == "joint" ? channel_joint
                                               : session.inversion.inversion_channel;
    run.target = options.target == "gradient" ? target_gradient : target_data;
    run.method = options.method == "least-squares" ? inversion::InversionMethod::least_squares
                                                   : inversion::InversionMethod::sweep;
    run.iterations = options.iterations;
    run.body = options.body;
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
    flow::InversionReport report = flow::run_inversion(session, run_options(options, session),
                                                       [&](const inversion::InversionProgress& state) {
                                                           if (options.show_progress)
                                                               show_progress(state, batch.err);
                                                       });
    batch.prompts.on_yield = nullptr;
    if (options.show_progress && report.result.iterations > 0) batch.err << '\n';
    return report;
}

std::string summary(const flow::InversionReport& report) {
    const inversion::RunResult& result = report.result;
    std::string text = report.label + " after " + std::to_string(result.iterations) + " iterations, " +
                       std::to_string(result.evaluations) + " evaluations\n";
    if (result.initial_misfit)
        text +=
            "Misfit " + misfit_text(*result.initial_misfit) + " -> " + misfit_text(result.misfit_pair) + "\n";
    for (const flow::ReportedParameter& p : report.parameters) {
        text += "Body " + std::to_string(p.body) + " " + p.name + ":" + number_to_text(p.start) + " ->" +
                number_to_text(p.final) + "\n";
    }
    return text;
}

/// A run that has nothing to fit is refused without a word.
void tell_what_is_missing(const InvertCommandOptions& options, BatchSession& batch) {
    const int bodies = batch.session.workspace.body_count;
    if (bodies < 1) {
        batch.prompts.message("The model has no bodies to invert");
    } else if (options.body > bodies) {
        batch.prompts.message("There is no body " + std::to_string(options.body) +
                              " to invert: the model has " + std::to_string(bodies));
    }
}

}  // namespace

bool run_invert(const InvertCommandOptions& options, BatchSession& batch) {
    flow::InversionReport report;
    {
        const MessageScope scope(batch.prompts);
        if (batch.open(options.model) == OpenState::unread) return false;
        tell_what_is_missing(options, batch);
        report = invert(options, batch);
    }
    bool done = report.result.status >= 0;
    const std::string json = report_json_text(report, batch.prompts);
    if (!options.report.empty()) done = batch.write_result(options.report, json) == 0 && done;
    if (done && !options.output.empty()) done = batch.write_workspace(options.output) == 0;
    return batch.write_result("", summary(report)) == 0 && done;
}

}  // namespace anomalis::batch
