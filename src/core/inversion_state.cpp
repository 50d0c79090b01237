#include "core/inversion_state.h"

#include "core/model_body.h"

namespace anomalis {

void forget_best_model(InversionState& inversion) {
    inversion.best_misfit = {unset, unset};
    inversion.best_model_available = false;
}

void forget_run(InversionState& inversion) {
    forget_best_model(inversion);
    inversion.inversion_params.release();
    inversion.inversion_param_map.release();
    inversion.start_params.release();
    inversion.best_params.release();
    inversion.best_param_map.release();
}

}  // namespace anomalis
