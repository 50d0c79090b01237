#pragma once

#include <string>
#include <vector>

#include "edit/body_grid.h"
#include "inversion/perform.h"

// What a least-squares fit says beside its values.
namespace anomalis::flow {

/// The standard errors of a fit by body and parameter; none when it was no such fit.
std::vector<edit::ParameterError> fit_errors(const inversion::RunResult& result,
                                             const InversionState& inversion);

/// Which parameters the data leave open and which a limit holds; "" when there is nothing to say.
std::string fit_remark(const inversion::RunResult& result, const InversionState& inversion);

}  // namespace anomalis::flow
