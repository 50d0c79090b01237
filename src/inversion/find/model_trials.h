#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "core/pacer.h"
#include "inversion/find/line_fit.h"
#include "inversion/find/source_bank.h"

// One step from a model to another that may be better. Each trial works on a line of its own, so several go
// on at once.
namespace anomalis::inversion {

/// A model against the noise that its residuals show.
struct JudgedModel {
    TriedModel model = {};
    LineNoise noise = {};
    int found = 0;         ///< the last so many bodies are new
    double criterion = 0;  ///< -2 log likelihood and the price of its parameters (Schwarz 1978)
    bool empty() const { return model.empty(); }
};

struct GrowthRequest {
    std::vector<ModelBody> present = {};  ///< bodies that stand there
    bool free_present = false;
    int most = 8;
    bool exactly = false;  ///< `most` bodies, whether they are worth it or not
    bool thin = true, thick = true;
};

/// What one core works with.
struct TrialBench {
    LineFit& line;
    Pacer& pacer;
};

class ModelTrials {
  public:
    ModelTrials(LineFit& line, const GrowthRequest& request, Pacer& pacer);
    /// The same on a line whose regional has another degree.
    ModelTrials(LineFit& line, const ModelTrials& other, Pacer& pacer);

    const GrowthRequest& request() const { return request_; }
    /// The bodies that are fitted, new ones and those of the present ones that may move.
    std::vector<bool> free_of(const std::vector<ModelBody>& bodies) const;

    /// The places where another body would explain most of what a model leaves.
    std::vector<Source> sources(const TriedModel& model, std::size_t count, Pacer& pacer) const;
    /// The model with a body at a source, which alone is fitted.
    TriedModel with_source(const TrialBench& bench, const TriedModel& model, const Source& source,
                           const LineNoise& noise) const;
    /// All that is free fitted together.
    TriedModel refitted(const TrialBench& bench, const TriedModel& model, const LineNoise& noise) const;
    /// Fits a model again against its noise, and says what it is worth.
    JudgedModel judge(const TrialBench& bench, TriedModel model, int found) const;
    /// White noise as large as what the model leaves.
    LineNoise white_noise(const TriedModel& model) const;

    const std::vector<LineFit::ChannelRows>& rows() const { return rows_; }
    /// No sheet across the line gives an anomaly.
    bool blind() const { return bank_->empty(); }
    /// Readings that stand alone, and are no anomaly, as m along the profile.
    std::vector<double> lone_readings() const;

  private:
    ModelBody body_of(const LineFit& line, const Source& source) const;
    LineNoise noise_of(const TriedModel& model, Pacer& pacer) const;

    GrowthRequest request_;
    std::vector<LineFit::ChannelRows> rows_;
    std::vector<double> floor_;            ///< of the noise of each channel
    std::vector<double> most_correlated_;  ///< of each channel, its unit
    std::vector<Eigen::VectorXd> alone_;   ///< of each channel, 0 at readings that stand alone
    std::shared_ptr<const SourceBank> bank_;
};

}  // namespace anomalis::inversion
