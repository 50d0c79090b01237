#include "flow/find_report.h"

#include "core/numbers.h"
#include "flow/available_channel.h"
#include "flow/take_found.h"
#include "model/refresh_model.h"
#include "model/usable_field.h"
#include "show/fit_quality.h"

namespace anomalis::flow {

namespace {

class CallbackObserver : public inversion::FindObserver {
  public:
    CallbackObserver(const GrowthCallback& grew, const StopCallback& stop, Prompts& prompts)
        : grew_(grew), stop_(stop), prompts_(prompts) {}
    bool working(double) override {
        prompts_.yield();
        return stop_ && stop_();
    }
    void grew(const inversion::FoundModel& model) override {
        if (grew_) grew_(model);
    }

  private:
    const GrowthCallback& grew_;
    const StopCallback& stop_;
    Prompts& prompts_;
};

void take_settings(const FindOptions& options, std::int32_t channel, Workspace& workspace) {
    for (const int one : {channel_mag, channel_grav})
        if (options.regional_degree && is_fitted(channel, one))
            workspace.channel(one).regional_degree = *options.regional_degree;
    if (options.mag_noise) workspace.mag.noise = *options.mag_noise;
    if (options.grav_noise) workspace.grav.noise = *options.grav_noise;
}

}  // namespace

std::string find_refusal(const Workspace& workspace, std::int32_t channel) {
    if (std::string missing = model::missing_field(workspace, channel); !missing.empty()) return missing;
    if (channel == channel_grav || workspace.field.intensity > 0) return {};
    return "The field intensity is " + shortest_text(workspace.field.intensity) +
           " nT: it magnetises nothing, and no body can be found by magnetics. Key the field of the survey";
}

FindReport run_find(Session& session, const FindOptions& options, const GrowthCallback& grew,
                    const StopCallback& stop) {
    const MessageScope scope(session.prompts);
    Workspace& workspace = session.workspace;
    FindReport report;
    report.channel = available_channel(options.request.channel, workspace);
    if (options.window) report.refusal = choose_fit_window(workspace, *options.window);
    if (report.refusal.empty()) report.refusal = find_refusal(workspace, report.channel);
    if (!report.refusal.empty()) return report;
    take_settings(options, report.channel, workspace);
    model::refresh_model(session);
    const int shown = report.channel == channel_grav ? channel_grav : channel_mag;
    if (const auto quality = show::fit_quality(workspace, shown)) report.rms_of_none = quality->rms;

    inversion::FindRequest request = options.request;
    request.channel = report.channel;
    CallbackObserver observer(grew, stop, session.prompts);
    report.result = inversion::find_bodies(workspace, request, observer);
    show_faults(report.result.faults, session.prompts);
    for (const std::string& remark : report.result.remarks) session.prompts.remark(remark);
    if (report.result.models.empty()) return report;
    take_found(workspace, report.result.models.front());
    model::refresh_model(session);
    return report;
}

}  // namespace anomalis::flow
