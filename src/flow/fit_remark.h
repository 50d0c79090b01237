#pragma once

#include <string>

#include "core/fit_record.h"

// What a least-squares fit says beside its values.
namespace anomalis::flow {

/// How it ended: as it was told, with the names of the parameters that stopped at a limit.
std::string fit_label(const FitRecord& fit);

/// Its remarks, and which parameters the data leave open, a sentence each; "" when there is nothing to say.
std::string fit_remark(const FitRecord& fit);

/// That the model is another one by now, with the date of the fit.
std::string changed_since(const FitRecord& fit);

}  // namespace anomalis::flow
