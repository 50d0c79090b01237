#include "inversion/sweep.h"

#include <cmath>

#include "inversion/parameters.h"
#include "inversion/trial_rows.h"
#include "model/misfit.h"

namespace anomalis::inversion {

namespace {

constexpr double probe_fraction = 0.01;
constexpr double flat_misfit = 0.0001;
constexpr double limit_margin = 0.0001;
constexpr int halving_budget = 4;

/// A limit of a free parameter counts unless it is the mark for none.
bool is_set(float limit) {
    return limit > unset;
}

float within_limits(double value, const InversionParam& param) {
    auto single = static_cast<float>(value);
    if (is_set(param.lower) && single < param.lower) single = param.lower;
    if (is_set(param.upper) && single > param.upper) single = param.upper;
    return single;
}

/// A parameter that stands on a limit refuses to leave it inward as well, as the tests are written; `value`
/// is the probed one. Moves past a limit are cut when the step is taken.
bool pinned(const InversionParam& param, double delta) {
    const auto value = static_cast<double>(param.value);
    if (delta < 0 && is_set(param.lower) && value <= static_cast<double>(param.lower) + limit_margin)
        return true;
    return delta > 0 && is_set(param.upper) && value >= static_cast<double>(param.upper) - limit_margin;
}

double capped(double delta, double step) {
    if (std::abs(delta) <= step) return delta;
    return delta > 0 ? step : -step;
}

/// The turn of one parameter.
class Turn {
  public:
    Turn(const FittedModel& model, SweepState& state, RunObserver& observer, int index)
        : model_(model),
          state_(state),
          observer_(observer),
          index_(index),
          target_(static_cast<std::size_t>(model.inversion.inversion_target)),
          param_(model.inversion.inversion_params[index]),
          saved_value_(param_.value) {}

    /// Lets Stopped through, with the parameter as it was.
    void take() {
        try {
            probe_and_step();
        } catch (const Stopped&) {
            put_back();
            throw;
        }
    }

  private:
    void probe_and_step() {
        const double h =
            probe_fraction * static_cast<double>(larger_of(std::abs(saved_value_), std::abs(param_.step)));
        try_value(static_cast<float>(static_cast<double>(saved_value_) + h));
        const double change =
            static_cast<double>(trial_misfit_[target_]) - static_cast<double>(state_.misfit_pair[target_]);
        if (std::abs(change) <= flat_misfit) return;
        const double secant = h * static_cast<double>(state_.misfit_pair[target_]) / change;
        finish(try_steps(first_step(secant)));
    }

    double first_step(double secant) const {
        if (!std::isfinite(secant)) return 0;
        const double delta = capped(secant, static_cast<double>(param_.step));
        return pinned(param_, delta) ? 0.0 : delta;
    }

    void try_value(float value) {
        param_.value = value;
        apply_parameter(index_, penalty_, model_);
        trial_misfit_ =
            model::evaluate_model_misfit(model_.workspace, model_.inversion, model_.workspace.mag.work,
                                         model_.workspace.grav.work, model_.faults, model_.pacer);
        observer_.evaluated();
    }

    void put_back() {
        param_.value = saved_value_;
        apply_parameter(index_, penalty_, model_);
    }

    /// The accepted step, 0 when there is none.
    double try_steps(double delta) {
        while (delta != 0) {
            try_value(within_limits(static_cast<double>(saved_value_) - delta, param_));
            if (trial_misfit_[target_] < state_.misfit_pair[target_]) break;
            delta /= 2;
            ++state_.halvings;
            if (state_.halvings >= halving_budget) delta = 0;
        }
        return delta;
    }

    void finish(double delta) {
        if (delta == 0) return put_back();
        state_.misfit_pair = trial_misfit_;
        accept_trial_rows(model_.workspace);
    }

    const FittedModel& model_;
    SweepState& state_;
    RunObserver& observer_;
    int index_;
    std::size_t target_;
    InversionParam& param_;
    float saved_value_;
    MisfitPair trial_misfit_{};
    double penalty_ = 0;  ///< how close to its limits a value came; the misfit alone decides
};

}  // namespace

void sweep_parameters(const FittedModel& model, SweepState& state, RunObserver& observer) {
    for (int p = 1; p <= model.inversion.inversion_params.count(); ++p)
        Turn(model, state, observer, p).take();
}

}  // namespace anomalis::inversion
