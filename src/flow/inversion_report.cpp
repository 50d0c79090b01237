#include "flow/inversion_report.h"

#include <string>

#include "core/body_parameters.h"
#include "flow/available_channel.h"
#include "model/refresh_model.h"

namespace anomalis::flow {

namespace {

class CallbackObserver : public inversion::RunObserver {
  public:
    CallbackObserver(const ProgressCallback& callback, Session& session)
        : callback_(callback), session_(session) {}
    void evaluated() override { session_.prompts.yield(); }
    bool working(double) override {
        session_.prompts.yield();
        return session_.inversion.leave_inversion;
    }
    void progress(const inversion::InversionProgress& state) override {
        if (callback_) callback_(state);
    }

  private:
    const ProgressCallback& callback_;
    Session& session_;
};

void take_settings(const InvertOptions& options, std::int32_t channel, Workspace& workspace) {
    for (const int one : {channel_mag, channel_grav})
        if (options.regional_degree && is_fitted(channel, one))
            workspace.channel(one).regional_degree = *options.regional_degree;
    if (options.mag_noise) workspace.mag.noise = *options.mag_noise;
    if (options.grav_noise) workspace.grav.noise = *options.grav_noise;
}

std::vector<ReportedChannel> reported_channels(const Workspace& workspace, std::int32_t channel,
                                               const InversionReport& report) {
    std::vector<ReportedChannel> list;
    for (const int one : {channel_mag, channel_grav}) {
        if (!is_fitted(channel, one)) continue;
        ReportedChannel& reported = list.emplace_back();
        reported.channel = one;
        reported.regional = workspace.channel(one).regional;
        if (const std::optional<FitRecord>& record = report.result.record)
            reported.fitted = one == channel_mag ? record->mag : record->grav;
        if (report.target == target_data) reported.quality = show::fit_quality(workspace, one);
    }
    return list;
}

std::vector<ReportedParameter> reported_parameters(const InversionState& inversion,
                                                   const Workspace& workspace) {
    std::vector<ReportedParameter> list;
    for (int i = 1; i <= inversion.inversion_params.count(); ++i) {
        const InversionParamPlace place = inversion.inversion_param_map[i];
        const InversionParam& param = inversion.inversion_params[i];
        const BodyParameter& row = body_parameter(place.param_code);
        list.push_back({.body = place.body,
                        .param_code = place.param_code,
                        .name = std::string(row.name),
                        .unit = std::string(row.grid.unit.of(workspace.body(place.body).type)),
                        .start = inversion.start_params[i],
                        .final = param.value,
                        .lower = param.lower,
                        .upper = param.upper,
                        .step = param.step});
    }
    return list;
}

}  // namespace

InversionReport run_inversion(Session& session, const InvertOptions& options,
                              const ProgressCallback& progress) {
    const MessageScope scope(session.prompts);
    const std::int32_t channel = available_channel(options.channel, session.workspace);
    session.inversion.stop_inversion = session.inversion.leave_inversion = false;
    session.inversion.inversion_target = options.target == target_gradient ? target_gradient : target_data;
    // Stored before the set-up, which takes its scale: a run by itself has no previous channel.
    session.inversion.inversion_channel = channel == channel_grav ? channel_grav : channel_mag;
    take_settings(options, channel, session.workspace);
    model::refresh_model(session);

    const inversion::RunRequest request{
        .entire_model = options.body == 0,
        .current_body = options.body == 0 ? 1 : options.body,
        .channel = options.channel == channel_joint ? options.channel : channel,
        .max_iterations = options.iterations,
        .method = options.method,
        .starts = options.starts};
    CallbackObserver observer(progress, session);
    const inversion::RunClock clock;
    InversionReport report;
    report.method = options.method;
    report.target = session.inversion.inversion_target;
    report.tap_step = session.workspace.processing.vg_filter_step;
    inversion::perform_inversion(session.workspace, session.inversion, request, observer, report.result);
    show_faults(report.result.faults, session.prompts);
    report.label = inversion::status_label(report.result);
    report.seconds = clock.seconds();
    if (report.result.filled) report.parameters = reported_parameters(session.inversion, session.workspace);
    if (report.result.record) session.workspace.fit = report.result.record;
    reset_calculated_data(session.workspace, session.prompts);
    model::refresh_model(session);
    if (report.result.filled) report.channels = reported_channels(session.workspace, channel, report);
    return report;
}

}  // namespace anomalis::flow
