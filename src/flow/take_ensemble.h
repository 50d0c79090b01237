#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis
namespace anomalis::inversion {
struct EnsembleResult;
}  // namespace anomalis::inversion

namespace anomalis::flow {

/// Puts the fit that an ensemble stands about into the workspace that it was found for: the values of the
/// parameters, the record of the fit and the ensemble itself, which leaves the result. Bodies that the fit
/// did not move keep their responses. True when a value changed: in a window that is a step of the history.
bool take_ensemble(Workspace& workspace, inversion::EnsembleResult& result);

}  // namespace anomalis::flow
