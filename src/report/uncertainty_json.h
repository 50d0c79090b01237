#pragma once

#include <string>

#include "core/workspace.h"
#include "inversion/ensemble/find_ensemble.h"

namespace anomalis {
class RecordingPrompts;
}  // namespace anomalis

namespace anomalis::report {

/// The report of an ensemble as one JSON object: the fit, of each parameter its value, the band of the models
/// and the profile interval with their unit, words, how the parameters of each body go together, the models
/// and the fan of the curves. After a refusal `fit` is null and the lists are empty. `workspace` holds the
/// fitted model.
std::string uncertainty_json_text(const Workspace& workspace, const inversion::EnsembleRequest& request,
                                  const inversion::EnsembleResult& result, const Ensemble* ensemble,
                                  const RecordingPrompts& told);

}  // namespace anomalis::report
