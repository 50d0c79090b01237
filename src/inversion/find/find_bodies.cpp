#include "inversion/find/find_bodies.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>

#include "core/failure.h"
#include "core/gaps.h"
#include "core/numbers.h"
#include "inversion/find/found_account.h"
#include "inversion/find/line_fit.h"
#include "inversion/find/model_growth.h"
#include "inversion/find/model_trials.h"

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

/// A body has so many rows at least; fewer tell nothing of it.
constexpr int rows_a_body = 8, rows_of_regional = 4;
constexpr std::int32_t usual_degree = 2;

/// One search from its noise to its models.
class Search {
  public:
    Search(const Workspace& workspace, const FindRequest& request, FindObserver& observer, FindResult& result)
        : workspace_(workspace), request_(request), observer_(observer), result_(result), pacer_(observer) {
        use_channels_that_are_there();
    }

    void run() {
        LineFit line(workspace_, channels_);
        const bool degree_open = find_degree();
        if (degree_open) line.set_degree(usual_degree);
        observer_.stage(FindStage::noise);
        const ModelTrials trials(line, growth_request(), pacer_);
        tell_of_readings(trials);
        if (nothing_to_find(trials)) return;
        ModelGrowth grown(line, trials, pacer_);
        grown.on_trial([&](const JudgedModel& judged) { keep(line, judged); });
        const auto watcher = [&](const JudgedModel& judged) {
            best_ = found_model(line, judged);
            best_->record.channel = request_.channel;
            observer_.grew(*best_);
        };
        observer_.stage(FindStage::search);
        const std::vector<JudgedModel> path = grown.grow(watcher);
        nothing_ = path.front().criterion;
        const JudgedModel* start = request_.bodies ? &path.back() : &path.front();
        if (!request_.bodies)
            for (const JudgedModel& one : path)
                if (one.criterion < start->criterion) start = &one;
        if (request_.bodies && start->found < *request_.bodies)
            result_.remarks.push_back("There is no place for more than " + std::to_string(start->found) +
                                      " bodies on this line");
        observer_.stage(FindStage::refine);
        JudgedModel best = grown.refine(*start, watcher);
        keep(line, best);
        observer_.stage(FindStage::alternatives);
        if (degree_open && best.found > 0) {
            const std::vector<std::int32_t> degrees{0, 1, 2, 3};
            grown.with_degrees(best, degrees);
        }
        choose_alternatives();
        give_records(line);
    }

    /// What there was when somebody stopped it.
    void stop() {
        result_.stopped = true;
        if (result_.models.empty() && best_) result_.models.push_back(*best_);
        const LineFit line(workspace_, channels_);
        for (FoundModel& model : result_.models)
            if (model.record.date.empty()) give_record(line, request_, model, no_pace());
    }

  private:
    void use_channels_that_are_there();
    bool find_degree() const;
    GrowthRequest growth_request() const;
    void tell_of_readings(const ModelTrials& trials);
    bool nothing_to_find(const ModelTrials& trials);
    void keep(const LineFit& line, const JudgedModel& judged);
    void choose_alternatives();
    void give_records(const LineFit& line);

    const Workspace& workspace_;
    FindRequest request_;
    FindObserver& observer_;
    FindResult& result_;
    ObserverPacer pacer_;
    std::vector<std::int32_t> channels_;
    std::optional<FoundModel> best_;
    double nothing_ = 0;                       ///< criterion of the model as it stood
    std::map<std::string, FoundModel> kinds_;  ///< the best model of each kind that was seen
};

void Search::use_channels_that_are_there() {
    const auto there = [&](std::int32_t channel) {
        const bool column = channel == channel_mag ? workspace_.has_mag() : workspace_.has_grav();
        return column &&
               !reading_stations(workspace_, channel, workspace_.first_station, workspace_.last_station)
                    .empty();
    };
    for (const std::int32_t channel : {channel_mag, channel_grav})
        if ((request_.channel == channel || request_.channel == channel_joint) && there(channel))
            channels_.push_back(channel);
    if (channels_.empty())
        throw Fault(request_.channel == channel_grav ? "The line has no gravity to find bodies by"
                                                     : "The line has no magnetics to find bodies by");
    if (request_.channel != channel_joint || channels_.size() == 2) return;
    request_.channel = channels_.front();
    result_.remarks.push_back(request_.channel == channel_grav
                                  ? "The line has no magnetics: bodies are found by gravity alone"
                                  : "The line has no gravity: bodies are found by magnetics alone");
}

/// Nobody chose a regional, and no filter takes it off.
bool Search::find_degree() const {
    if (workspace_.processing.residual_filter_width != 0) return false;
    return std::ranges::all_of(channels_, [&](std::int32_t channel) {
        return workspace_.channel(channel).regional_degree == no_regional;
    });
}

GrowthRequest Search::growth_request() const {
    // Of the channel that is read at most stations.
    std::size_t readings = 0;
    for (const std::int32_t channel : channels_)
        readings = std::max(
            readings,
            reading_stations(workspace_, channel, workspace_.first_station, workspace_.last_station).size());
    const auto stations = static_cast<int>(readings);
    const int most = std::max((stations - rows_of_regional) / rows_a_body, 0);
    return {.present = present_bodies(workspace_),
            .free_present = request_.free_present,
            .most = std::min(most, request_.bodies.value_or(request_.most)),
            .exactly = request_.bodies.has_value(),
            .thin = request_.thin,
            .thick = request_.thick};
}

void Search::tell_of_readings(const ModelTrials& trials) {
    const std::vector<double> places = trials.lone_readings();
    if (places.size() == 1)
        result_.remarks.push_back("The reading at " + format_number(places.front(), "0") +
                                  " m stands alone and is no anomaly: it is left out");
    if (places.size() > 1)
        result_.remarks.push_back(std::to_string(places.size()) + " readings, the first at " +
                                  format_number(places.front(), "0") +
                                  " m, stand alone and are no anomaly: they are left out");
}

bool Search::nothing_to_find(const ModelTrials& trials) {
    const Eigen::VectorXd& observed = trials.rows().front().observed;
    if (!(observed.maxCoeff() > observed.minCoeff())) {
        result_.remarks.push_back(
            "The readings are the same at every station of the window: they tell of no body");
        return true;
    }
    if (growth_request().most < 1) {
        result_.remarks.push_back("There are too few stations in the window to find a body by");
        return true;
    }
    if (!trials.blind()) return false;
    result_.remarks.push_back(
        "Sheets square to this line give no anomaly in this field: check intensity, inclination and "
        "declination of the field, or the direction of the line");
    return true;
}

void Search::keep(const LineFit& line, const JudgedModel& judged) {
    if (judged.found == 0 ||
        (request_.bodies && judged.found != std::min(*request_.bodies, growth_request().most)))
        return;
    FoundModel model = found_model(line, judged);
    const auto known = kinds_.find(model.kind);
    if (known == kinds_.end() || model.criterion < known->second.criterion)
        kinds_.insert_or_assign(model.kind, std::move(model));
}

/// A model without new bodies is no answer, and one that is worse than that is none either.
void Search::choose_alternatives() {
    if (!best_ && !request_.bodies) return;
    for (auto& [kind, model] : kinds_)
        if (request_.bodies || model.criterion < nothing_) result_.models.push_back(model);
    std::ranges::sort(result_.models, {}, &FoundModel::criterion);
    const auto count = static_cast<std::size_t>(std::max(request_.alternatives, 1));
    if (result_.models.size() > count) result_.models.resize(count);
}

void Search::give_records(const LineFit& line) {
    observer_.stage(FindStage::errors);
    for (FoundModel& model : result_.models) {
        model.record.channel = request_.channel;
        give_record(line, request_, model, pacer_);
    }
}

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
