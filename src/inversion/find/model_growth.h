#pragma once

#include <functional>
#include <vector>

#include "core/pacer.h"
#include "inversion/find/line_fit.h"
#include "inversion/find/source_bank.h"

// A model that grows body by body until no more of them is worth its parameters.
namespace anomalis::inversion {

/// A model against the noise that its residuals show.
struct JudgedModel {
    TriedModel model = {};
    LineNoise noise;
    int found = 0;         ///< the last so many bodies are new
    double criterion = 0;  ///< -2 log likelihood and the price of its parameters (Schwarz 1978)
};

struct GrowthRequest {
    std::vector<ModelBody> present;  ///< bodies that stand there
    bool free_present = false;
    int most = 8;
    bool exactly = false;  ///< `most` bodies, whether they are worth it or not
    bool thin = true, thick = true;
};

class ModelGrowth {
  public:
    using Watcher = std::function<void(const JudgedModel&)>;

    ModelGrowth(LineFit& line, const GrowthRequest& request, Pacer& pacer);

    /// The models of 0, 1, 2 ... bodies, each the best of its number; `watcher` sees each that is better than
    /// the ones before.
    std::vector<JudgedModel> grow(const Watcher& watcher);
    /// Fits a model again against its noise, and says what it is worth.
    JudgedModel judge(TriedModel model, int found);
    /// Bodies left out one by one as long as that pays.
    JudgedModel without_idle(JudgedModel judged);
    /// Wide or limited bodies made simple where that pays, and simple ones limited.
    JudgedModel with_best_kinds(JudgedModel judged);

    const std::vector<LineFit::ChannelRows>& rows() const { return rows_; }

  private:
    std::vector<bool> free_of(const std::vector<ModelBody>& bodies) const;
    ModelBody body_of(const Source& source) const;
    TriedModel with_new_body(const TriedModel& model);
    LineNoise white_noise(const TriedModel& model) const;
    LineNoise noise_of(const TriedModel& model);

    LineFit& line_;
    GrowthRequest request_;
    Pacer& pacer_;
    std::vector<LineFit::ChannelRows> rows_;
    std::vector<double> floor_;  ///< of the noise of each channel
    SourceBank bank_;
};

}  // namespace anomalis::inversion
