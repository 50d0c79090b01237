#include <ostream>
#include <string>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "batch/stop_request.h"
#include "core/ensemble.h"
#include "core/numbers.h"
#include "flow/unattended_steps.h"
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

flow::UncertaintyOptions run_options(const UncertaintyCommandOptions& options) {
    flow::UncertaintyOptions run{.request = {},
                                 .regional_degree = options.fit.regional,
                                 .mag_noise = options.fit.mag_noise,
                                 .grav_noise = options.fit.grav_noise,
                                 .window = options.window};
    run.request.target = options.target == "gradient" ? target_gradient : target_data;
    run.request.samples = options.samples;
    run.request.seed = static_cast<std::uint32_t>(options.seed);
    run.request.vary_regional = !options.same_regional;
    run.request.vary_bodies = options.vary_bodies;
    run.request.strike_within = options.strike_within;
    return run;
}

std::string summary(const inversion::EnsembleResult& result, const Ensemble& ensemble) {
    std::string text =
        std::to_string(ensemble.samples.size()) + (ensemble.samples.size() == 1 ? " model" : " models") +
        " in " + format_number(result.seconds, "0.0") + " s" + (result.stopped ? ", stopped" : "") + "\n";
    for (const std::string& words : ensemble.words) text += words + "\n";
    return text;
}

}  // namespace

bool run_uncertainty(const UncertaintyCommandOptions& options, BatchSession& batch) {
    const Workspace& workspace = batch.session.workspace;
    flow::UncertaintyReport report;
    {
        const MessageScope scope(batch.prompts);
        const OpenState state = batch.open(options.model);
        if (state == OpenState::unread) return false;
        Watcher watcher(batch);
        report = flow::uncertainty_on_line(batch.session, state, options.channel, run_options(options),
                                           batch.wrong_usage, watcher);
    }
    const inversion::EnsembleResult& result = report.result;
    const Ensemble* ensemble = workspace.ensemble.get();
    bool done = ensemble != nullptr;
    const std::string json =
        report::uncertainty_json_text(workspace, report.request, result, ensemble, batch.prompts);
    if (!options.report.empty()) done = batch.write_result(options.report, json) == 0 && done;
    if (!ensemble) return false;
    if (!options.table.empty())
        done = output::write_ensemble_table(options.table, workspace, *ensemble, batch.prompts) == 0 && done;
    if (done && !options.output.empty()) done = batch.write_workspace(options.output) == 0;
    return batch.write_result("", summary(result, *ensemble)) == 0 && done;
}

}  // namespace anomalis::batch
