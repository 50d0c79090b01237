#pragma once

#include <cstdint>
#include <optional>

#include "core/ensemble.h"
#include "core/faults.h"
#include "core/fit_record.h"
#include "core/inversion_state.h"
#include "core/pacer.h"
#include "core/workspace.h"

// How far the data let a model move: others that explain them as well.
namespace anomalis::inversion {

struct EnsembleRequest {
    std::int32_t channel = channel_mag;
    std::int32_t target = target_data;
    int samples = 300;
    std::uint32_t seed = 1;
    bool vary_regional = true;  ///< regionals of other degrees that explain the data as well take part
    bool vary_bodies = false;   ///< so do models with a body less
    double strike_within = 0;   ///< degrees: the strike is not known better than that to each side; up to 90
    int cores = 0;              ///< 0: all there are; the answer does not hang on it
};

struct EnsembleResult {
    /// The fit of the model itself, from where it stood; its values are those of `bodies`.
    std::optional<FitRecord> record;
    std::vector<ModelBody> bodies;     ///< as fitted, without responses, body 1 first
    std::optional<Ensemble> ensemble;  ///< of that model; none after a refusal
    bool stopped = false;              ///< somebody stopped it; the ensemble holds what there was
    double seconds = 0;
    Faults faults;
};

class EnsembleObserver {
  public:
    virtual ~EnsembleObserver() = default;
    /// `units` of work more are done (core/pacer.h): who waits can be served. True: it ends with what it has.
    virtual bool working(double /*units*/) { return false; }
    virtual double turn_units() const { return TurnPacer::usual_turn; }
    virtual void samples_done(int /*done*/, int /*of*/) {}
};

/// Fits the free parameters of a model whose numbers are up to date, then an ensemble about the fit: refits
/// of residuals drawn in blocks (Kuensch 1989) from starts spread over the intervals, and the profile
/// likelihood of each parameter. The workspace stays as it is. The same seed gives the same ensemble,
/// whatever the cores.
EnsembleResult find_ensemble(const Workspace& workspace, const EnsembleRequest& request,
                             EnsembleObserver& observer);

}  // namespace anomalis::inversion
