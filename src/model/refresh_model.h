#pragma once

#include <string>
#include <vector>

#include "core/failure.h"
#include "core/inversion_state.h"
#include "core/session.h"

// The moments at which the rest of the program needs the numbers of a model without a run.
namespace anomalis {
class Pacer;
}  // namespace anomalis

namespace anomalis::model {

/// Ends a successful load: the inversion speaks of magnetics where the line has them, else of gravity, and
/// takes that channel's misfit scale; what the inversion remembered of the line before is forgotten.
void finish_load(Session& session);

/// Brings the elevations of sensor and ground alone up to date.
void refresh_elevations(Workspace& workspace, Faults& faults);

/// The person had the calculation left: the curves are those of before, and the bodies that were not finished
/// are calculated the next time. For whoever needs the numbers a failure like any other.
class CalculationStopped : public Fault {
  public:
    CalculationStopped() : Fault("the calculation was stopped") {}
};

/// Brings everything that is derived up to date, and only what is not: elevations, responses, burial depths,
/// the four filter chains. Returns the misfit pair of the inversion channel, zeros without stations. What
/// failed is shown at the end. Raises CalculationStopped.
MisfitPair refresh_model(Session& session);

/// The same for a workspace that is no session's, without the misfit; what failed is noted. Raises Stopped.
void refresh_numbers(Workspace& workspace, Faults& faults, Pacer& pacer);

/// What fails when the model of the session is calculated from nothing, and what can hardly be meant: what a
/// table of its numbers must say, whenever it was told. Takes as long as a first calculation. Changes
/// nothing. Raises CalculationStopped.
std::vector<std::string> calculation_failures(const Session& session);

}  // namespace anomalis::model
