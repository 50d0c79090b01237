#include "inversion/ensemble/find_ensemble.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <utility>

#include "core/failure.h"
#include "core/numbers.h"
#include "inversion/ensemble/ensemble_bands.h"
#include "inversion/ensemble/ensemble_words.h"
#include "inversion/ensemble/model_variants.h"
#include "inversion/ensemble/sample_refits.h"
#include "inversion/perform.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

constexpr int fit_iterations = 100;
/// Values of curves that are kept for the fan.
constexpr std::size_t most_curve_values = 30'000'000;
constexpr double most_strike = 90;

/// The turns of who watches; remembers that it was stopped.
class WatchedRun : public RunObserver {
  public:
    explicit WatchedRun(EnsembleObserver& observer) : observer_(observer) {}
    bool working(double units) override {
        stopped_ = observer_.working(units) || stopped_;
        return stopped_;
    }
    double turn_units() const override { return observer_.turn_units(); }
    bool stopped() const { return stopped_; }

  private:
    EnsembleObserver& observer_;
    bool stopped_ = false;
};

class WatchedPacer : public TurnPacer {
  public:
    explicit WatchedPacer(WatchedRun& run) : TurnPacer(run.turn_units()), run_(run) {}

  protected:
    bool turn(double units) override { return run_.working(units); }

  private:
    WatchedRun& run_;
};

/// Why it cannot be begun; "" when it can.
std::string refusal(const Workspace& workspace, const EnsembleRequest& request) {
    if (workspace.body_count < 1) return "The model has no bodies: add one before asking how sure it is";
    if (workspace.station_count < 1) return "No stations are loaded: load the data file first";
    // A run takes a window of no length for the whole line.
    if (workspace.first_station < workspace.last_station &&
        (workspace.first_station < 1 || workspace.last_station > workspace.station_count))
        return "The station window " + std::to_string(workspace.first_station) + " to " +
               std::to_string(workspace.last_station) + " is outside the line, which has stations 1 to " +
               std::to_string(workspace.station_count);
    if (request.samples < 1)
        return "An ensemble needs at least 1 sample, not " + std::to_string(request.samples);
    if (!(request.strike_within >= 0) || request.strike_within > most_strike)
        return "Strikes can vary by 0 to 90 degrees to each side, not by " +
               format_number(request.strike_within, "0.##");
    for (const auto& [channel, words, there] : {std::tuple{channel_mag, "magnetic", workspace.has_mag()},
                                                std::tuple{channel_grav, "gravity", workspace.has_grav()}})
        if (!there && request.channel == channel)
            return "The line has no " + std::string(words) + " column to tell how sure the model is";
    return {};
}

std::vector<ModelBody> bodies_of(const Workspace& workspace) {
    std::vector<ModelBody> bodies;
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = bodies.emplace_back(workspace.body(number));
        body.response = {};
        body.mag_response_valid = body.grav_response_valid = false;
    }
    return bodies;
}

class Run {
  public:
    Run(const Workspace& workspace, const EnsembleRequest& request, EnsembleObserver& observer,
        EnsembleResult& result)
        : workspace_(std::make_shared<Workspace>(workspace)),
          request_(request),
          observer_(observer),
          watched_(observer),
          result_(result) {}

    void run() {
        if (!fit()) return;
        WatchedPacer pacer(watched_);
        const std::vector<ModelVariant> variants = find_variants(fitted(),
                                                                 {.vary_regional = request_.vary_regional,
                                                                  .vary_bodies = request_.vary_bodies,
                                                                  .draw_strikes = request_.strike_within > 0},
                                                                 result_.faults, pacer);
        draw(variants);
    }
    bool stopped() const { return watched_.stopped(); }

  private:
    bool fit();
    FittedRun fitted() const;
    void draw(std::span<const ModelVariant> variants);
    EnsembleSample sample_of(const ModelVariant& first, const ModelVariant& variant,
                             const SampleRefit& refit) const;

    std::shared_ptr<Workspace> workspace_;
    const EnsembleRequest& request_;
    EnsembleObserver& observer_;
    WatchedRun watched_;
    EnsembleResult& result_;
    InversionState inversion_;
};

/// False when there is nothing to draw models about.
bool Run::fit() {
    inversion_.inversion_target = request_.target;
    inversion_.inversion_channel = request_.channel == channel_grav ? channel_grav : channel_mag;
    RunResult run;
    perform_inversion(*workspace_, inversion_,
                      {.channel = request_.channel,
                       .max_iterations = fit_iterations,
                       .method = InversionMethod::least_squares},
                      watched_, run);
    result_.faults = run.faults;
    result_.bodies = bodies_of(*workspace_);
    result_.record = run.record;
    return run.record.has_value() && !watched_.stopped();
}

FittedRun Run::fitted() const {
    FittedRun fit;
    fit.workspace = workspace_;
    fit.request.target = request_.target;
    for (const std::int32_t channel : {channel_mag, channel_grav}) {
        const bool there = channel == channel_mag ? workspace_->has_mag() : workspace_->has_grav();
        if (there && (request_.channel == channel || request_.channel == channel_joint))
            fit.request.channels.push_back(channel);
    }
    for (int i = 1; i <= inversion_.inversion_params.count(); ++i) {
        const InversionParamPlace place = inversion_.inversion_param_map[i];
        fit.request.places.push_back(place);
        fit.parameters.push_back(fit_parameter(*workspace_, workspace_->body(place.body), place.param_code,
                                               inversion_.inversion_params[i]));
        const FittedParameter& told = result_.record->parameters[static_cast<std::size_t>(i - 1)];
        fit.open.push_back(open_sides(told));
    }
    return fit;
}

EnsembleSample Run::sample_of(const ModelVariant& first, const ModelVariant& variant,
                              const SampleRefit& refit) const {
    EnsembleSample sample;
    sample.values.assign(first.parameters.size(), static_cast<float>(EnsembleParameter::open));
    for (std::size_t i = 0; i < refit.values.size(); ++i) sample.values[variant.place[i]] = refit.values[i];
    for (std::size_t c = 0; c < refit.rms.size(); ++c) {
        const bool magnetic = variant.rows->channels()[c].channel == channel_mag;
        (magnetic ? sample.mag_degree : sample.grav_degree) = variant.degrees[c];
        (magnetic ? sample.mag_rms : sample.grav_rms) = refit.rms[c];
    }
    return sample;
}

void Run::draw(std::span<const ModelVariant> variants) {
    const ModelVariant& first = variants.front();
    int told = -1;
    const auto watch = [&](int done) {
        if (std::exchange(told, done) != done) observer_.samples_done(done, request_.samples);
        return watched_.working(observer_.turn_units());
    };
    const std::size_t room = most_curve_values / std::max<std::size_t>(first.rows->row_count(), 1);
    const std::vector<std::optional<SampleRefit>> refits =
        refit_samples(variants,
                      {.samples = request_.samples,
                       .seed = request_.seed,
                       .strike_within = request_.strike_within,
                       .cores = request_.cores,
                       .curves = static_cast<int>(std::min(static_cast<std::size_t>(request_.samples), room)),
                       .leave = watch},
                      no_pace());
    Ensemble ensemble;
    std::vector<const SampleRefit*> done;
    for (const std::optional<SampleRefit>& refit : refits) {
        if (!refit) continue;
        done.push_back(&*refit);
        ensemble.samples.push_back(sample_of(first, variants[refit->variant], *refit));
    }
    observer_.samples_done(static_cast<int>(done.size()), request_.samples);
    if (done.empty()) return;
    ensemble.parameters = parameter_bands(first, *result_.record, ensemble.samples);
    for (std::size_t c = 0; c < first.rows->channels().size(); ++c)
        ensemble.fans.push_back(
            fan_of(done, c, first.rows->channels()[c].channel, first.rows->channels()[c].chain.stations()));
    ensemble.seed = request_.seed;
    ensemble.strike_within = request_.strike_within;
    ensemble.model_mark = result_.record->model_mark;
    ensemble.words = ensemble_words(*workspace_, ensemble, variants);
    result_.ensemble = std::move(ensemble);
}

}  // namespace

EnsembleResult find_ensemble(const Workspace& workspace, const EnsembleRequest& request,
                             EnsembleObserver& observer) {
    EnsembleResult result;
    const RunClock clock;
    const std::string why = refusal(workspace, request);
    if (!why.empty()) {
        result.faults.add(why);
        return result;
    }
    Run run(workspace, request, observer, result);
    report_failure(result.faults, "How sure the model is could not be found: ", [&] {
        try {
            run.run();
        } catch (const Stopped&) {  // with what there was
        }
    });
    result.stopped = run.stopped();
    result.seconds = clock.seconds();
    return result;
}

}  // namespace anomalis::inversion
