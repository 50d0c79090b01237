#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "core/pacer.h"
#include "inversion/find/model_trials.h"

// A model that grows body by body until no more of them is worth its parameters, on all cores.
namespace anomalis::inversion {

class ModelGrowth {
  public:
    using Watcher = std::function<void(const JudgedModel&)>;

    ModelGrowth(const LineFit& line, const ModelTrials& trials, Pacer& pacer);

    /// The models of 0, 1, 2 ... bodies, each the best of its number; `watcher` sees each that is better than
    /// the ones before.
    std::vector<JudgedModel> grow(const Watcher& watcher);
    /// The model with bodies left out, added, put elsewhere or made of another kind, as long as that pays.
    JudgedModel refine(JudgedModel judged, const Watcher& watcher);
    /// Each trial is seen, whatever comes of it.
    void on_trial(Watcher watcher) { on_trial_ = std::move(watcher); }
    /// The model with each of these degrees of its regional.
    std::vector<JudgedModel> with_degrees(const JudgedModel& judged, std::span<const std::int32_t> degrees);

  private:
    using Trial = std::function<JudgedModel(const TrialBench&)>;

    std::vector<JudgedModel> judge_all(const std::vector<Trial>& trials);
    TriedModel with_new_body(const TriedModel& model);
    std::vector<Trial> fewer(const JudgedModel& judged) const;
    std::vector<Trial> more(const JudgedModel& judged);
    std::vector<Trial> moved(const JudgedModel& judged) const;
    std::vector<Trial> merged(const JudgedModel& judged) const;
    std::vector<Trial> fewer_that_end(const JudgedModel& judged) const;
    JudgedModel with_best_source(const TrialBench& bench, TriedModel less, const LineNoise& noise,
                                 int found) const;
    std::vector<Trial> other_kinds(const JudgedModel& judged) const;

    const ModelTrials& trials_;
    Pacer& pacer_;
    Watcher on_trial_ = [](const JudgedModel&) {};
    std::vector<LineFit> lines_;  ///< one a core
};

}  // namespace anomalis::inversion
