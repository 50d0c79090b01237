#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/ensemble.h"
#include "core/workspace.h"
#include "inversion/ensemble/model_variants.h"

namespace anomalis::inversion {

/// What an ensemble says, a sentence each: of each parameter ("Top of body 2: 84 to 118 m below ground
/// (90 %)", "Width of body 1: below 140 m (90 %)"), of width times susceptibility where the width alone is
/// open, and of the variants that took part. `workspace` holds the fitted model.
std::vector<std::string> ensemble_words(const Workspace& workspace, const Ensemble& ensemble,
                                        std::span<const ModelVariant> variants);

}  // namespace anomalis::inversion
