#pragma once

#include <string>
#include <vector>

#include "core/fit_record.h"
#include "core/session.h"
#include "quiet_prompts.h"

// Lines with bodies that are known and noise from a seed, fitted.
namespace anomalis {

enum class Bodies { thin_dyke, two_dykes };
enum class Disturbance { white, exponential, gaussian };

/// What the lines of one table have in common.
struct LineKind {
    std::string title;
    Bodies bodies = Bodies::thin_dyke;
    Disturbance noise = Disturbance::white;
    int true_degree = -1;    ///< of the regional that is added, some 10 nT across the line
    int fitted_degree = -1;  ///< of the one that is fitted
    bool both_channels = false;
    double strike_within = 0;  ///< degrees: the true strikes lie so far to each side of those of the model
};

std::vector<LineKind> line_kinds();
/// The kinds of lines whose ensembles are looked at.
std::vector<LineKind> ensemble_kinds();

struct FittedAgainstTruth {
    FittedParameter fitted;
    double truth = 0;
};

struct TruthAndFit {
    bool fitted = false;  ///< the run ended well
    std::vector<FittedAgainstTruth> parameters;
};

class CoverageLine {
  public:
    explicit CoverageLine(const LineKind& kind);
    /// A line with the noise and regional of a seed, fitted from bodies that are somewhat off.
    TruthAndFit fit(unsigned seed);
    /// The same with the bands of an ensemble of so many models for intervals.
    TruthAndFit ensemble(unsigned seed, int samples);
    /// The line and the model of a seed, before a fit.
    const Workspace& prepare(unsigned seed);

  private:
    void add_bodies();
    void calculate_truth();
    void turn_strikes(unsigned seed);
    FittedAgainstTruth against_truth(const FittedParameter& fitted) const;
    void add_noise(unsigned seed);
    void go_off(unsigned seed);

    LineKind kind_;
    QuietPrompts prompts_;
    Session session_{prompts_, Settings()};
    std::vector<ModelBody> truth_;
    std::vector<float> mag_, grav_;  ///< of the true bodies
};

}  // namespace anomalis
