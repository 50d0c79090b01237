#include "inversion/find/find_bodies.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "core/failure.h"
#include "inversion/find/found_account.h"
#include "inversion/find/line_fit.h"
#include "inversion/find/model_growth.h"

namespace anomalis::inversion {

namespace {

class ObserverPacer : public TurnPacer {
  public:
    explicit ObserverPacer(FindObserver& observer) : TurnPacer(observer.turn_units()), observer_(observer) {}

  protected:
    bool turn(double units) override { return observer_.working(units); }

  private:
    FindObserver& observer_;
};

std::vector<ModelBody> present_bodies(const Workspace& workspace) {
    std::vector<ModelBody> bodies;
    for (int number = 1; number <= workspace.body_count; ++number) {
        bodies.push_back(workspace.body(number));
        bodies.back().response = {};
    }
    return bodies;
}

/// One search from its noise to its models.
class Search {
  public:
    Search(const Workspace& workspace, const FindRequest& request, FindObserver& observer, FindResult& result)
        : workspace_(workspace), request_(request), observer_(observer), result_(result), pacer_(observer) {}

    void run() {
        std::vector<std::int32_t> channels;
        for (const std::int32_t channel : {channel_mag, channel_grav})
            if (request_.channel == channel || request_.channel == channel_joint) channels.push_back(channel);
        LineFit line(workspace_, channels);
        GrowthRequest growth{.present = present_bodies(workspace_),
                             .free_present = request_.free_present,
                             .most = request_.bodies.value_or(request_.most),
                             .exactly = request_.bodies.has_value(),
                             .thin = request_.thin,
                             .thick = request_.thick};
        observer_.stage(FindStage::noise);
        const ModelTrials trials(line, growth, pacer_);
        ModelGrowth grown(line, trials, pacer_);
        const auto watcher = [&](const JudgedModel& judged) {
            best_ = found_model(line, judged);
            observer_.grew(*best_);
        };
        observer_.stage(FindStage::search);
        const std::vector<JudgedModel> path = grown.grow(watcher);
        observer_.stage(FindStage::refine);
        const JudgedModel best =
            grown.refine(*std::ranges::min_element(path, {}, &JudgedModel::criterion), watcher);
        best_ = best.found > 0 ? std::optional(found_model(line, best)) : std::nullopt;
        if (best_) result_.models.push_back(*best_);
    }

    /// What there was when somebody stopped it.
    void stop() {
        result_.stopped = true;
        if (result_.models.empty() && best_) result_.models.push_back(*best_);
    }

  private:
    const Workspace& workspace_;
    const FindRequest& request_;
    FindObserver& observer_;
    FindResult& result_;
    ObserverPacer pacer_;
    std::optional<FoundModel> best_;
};

}  // namespace

FindResult find_bodies(const Workspace& workspace, const FindRequest& request, FindObserver& observer) {
    FindResult result;
    const auto start = std::chrono::steady_clock::now();
    report_failure(result.faults, "An error occurred while finding bodies: ", [&] {
        Search search(workspace, request, observer, result);
        try {
            search.run();
        } catch (const Stopped&) {
            search.stop();
        }
    });
    const int found = result.models.empty() ? 0 : result.models.front().found;
    result.label = found == 0   ? "No body stands out of the noise"
                   : found == 1 ? "1 body found"
                                : std::to_string(found) + " bodies found";
    result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return result;
}

}  // namespace anomalis::inversion
