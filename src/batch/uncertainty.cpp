#include <ostream>
#include <string>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/stop_request.h"
#include "core/ensemble.h"
#include "core/numbers.h"
#include "flow/channel_choice.h"
#include "flow/take_ensemble.h"
#include "inversion/ensemble/find_ensemble.h"
#include "model/refresh_model.h"
#include "output/ensemble_table.h"
#include "report/uncertainty_json.h"

namespace anomalis::batch {

namespace {

/// Listens to the keyboard, and writes one line that is written over by the next.
class Watcher : public inversion::EnsembleObserver {
  public:
    explicit Watcher(BatchSession& batch) : batch_(batch) {}
    ~Watcher() override {
        if (shown_) batch_.err << '\n';
    }
    bool working(double /*units*/) override { return stop_.made(); }
    void samples_done(int done, int of) override {
        if (!batch_.show_progress) return;
        shown_ = true;
        batch_.err << "\r" << done << " of " << of << " models  " << std::flush;
    }

  private:
    BatchSession& batch_;
    StopRequest stop_;
    bool shown_ = false;
};

inversion::EnsembleRequest request_of(const UncertaintyCommandOptions& options, const Session& session) {
    inversion::EnsembleRequest request;
    request.channel = flow::chosen_channel(options.channel, session);
    request.target = options.target == "gradient" ? target_gradient : target_data;
    request.samples = options.samples;
    request.seed = static_cast<std::uint32_t>(options.seed);
    request.vary_regional = !options.same_regional;
    request.vary_bodies = options.vary_bodies;
    request.strike_within = options.strike_within;
    return request;
}

/// What was said in place of what the workspace says. Returns why it cannot be had, or "".
std::string take_settings(const UncertaintyCommandOptions& options, std::int32_t channel,
                          Workspace& workspace) {
    for (const std::int32_t one : {channel_mag, channel_grav})
        if (options.fit.regional && (channel == one || channel == channel_joint))
            workspace.channel(one).regional_degree = *options.fit.regional;
    if (options.fit.mag_noise) workspace.mag.noise = *options.fit.mag_noise;
    if (options.fit.grav_noise) workspace.grav.noise = *options.fit.grav_noise;
    return options.window ? flow::choose_fit_window(workspace, *options.window) : "";
}

/// The fit and its ensemble end in the workspace of the session.
inversion::EnsembleResult find(const inversion::EnsembleRequest& request, BatchSession& batch) {
    Session& session = batch.session;
    model::refresh_model(session);
    Watcher watcher(batch);
    inversion::EnsembleResult result = inversion::find_ensemble(session.workspace, request, watcher);
    show_faults(result.faults, batch.prompts);
    if (result.record) {
        flow::take_ensemble(session.workspace, result);
        model::refresh_model(session);
    }
    return result;
}

std::string summary(const inversion::EnsembleResult& result, const Ensemble& ensemble) {
    std::string text =
        std::to_string(ensemble.samples.size()) + (ensemble.samples.size() == 1 ? " model" : " models") +
        " in " + format_number(result.seconds, "0.0") + " s" + (result.stopped ? ", stopped" : "") + "\n";
    for (const std::string& words : ensemble.words) text += words + "\n";
    return text;
}

/// Why nothing is begun; "" when it can be.
std::string refusal(const UncertaintyCommandOptions& options, OpenState state, BatchSession& batch) {
    if (state == OpenState::no_length) return "There is no line to tell how sure the model is";
    const std::string why = flow::channel_refusal(options.channel, batch.session);
    if (!why.empty() || batch.session.workspace.station_count < 1) return why;
    const std::string outside =
        take_settings(options, flow::chosen_channel(options.channel, batch.session), batch.session.workspace);
    batch.wrong_usage = !outside.empty();
    return outside;
}

}  // namespace

bool run_uncertainty(const UncertaintyCommandOptions& options, BatchSession& batch) {
    const Workspace& workspace = batch.session.workspace;
    inversion::EnsembleRequest request;
    inversion::EnsembleResult result;
    {
        const MessageScope scope(batch.prompts);
        const OpenState state = batch.open(options.model);
        if (state == OpenState::unread) return false;
        request = request_of(options, batch.session);
        const std::string why = refusal(options, state, batch);
        if (!why.empty()) batch.prompts.message(why);
        if (why.empty()) result = find(request, batch);
    }
    const Ensemble* ensemble = workspace.ensemble.get();
    bool done = ensemble != nullptr;
    const std::string json =
        report::uncertainty_json_text(workspace, request, result, ensemble, batch.prompts);
    if (!options.report.empty()) done = batch.write_result(options.report, json) == 0 && done;
    if (!ensemble) return false;
    if (!options.table.empty())
        done = output::write_ensemble_table(options.table, workspace, *ensemble, batch.prompts) == 0 && done;
    if (done && !options.output.empty()) done = batch.write_workspace(options.output) == 0;
    return batch.write_result("", summary(result, *ensemble)) == 0 && done;
}

}  // namespace anomalis::batch
