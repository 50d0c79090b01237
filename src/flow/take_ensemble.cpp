#include "flow/take_ensemble.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "core/body_parameters.h"
#include "core/workspace.h"
#include "forward/shape/reference_point.h"
#include "inversion/ensemble/find_ensemble.h"

namespace anomalis::flow {

namespace {

bool take_values(const ModelBody& fitted, const Workspace& workspace, ModelBody& body) {
    bool changed = false;
    for (const BodyParameter& row : body_parameters()) {
        float& value = (body.*row.slot).value;
        const float found = (fitted.*row.slot).value;
        if (value == found) continue;
        value = found;
        changed = true;
        if (row.stale.place)
            forward::update_body_reference_point(workspace, static_cast<double>(value), body.east,
                                                 body.north);
    }
    return changed;
}

}  // namespace

bool take_ensemble(Workspace& workspace, inversion::EnsembleResult& result) {
    bool changed = false;
    const int count = std::min(workspace.body_count, static_cast<std::int32_t>(result.bodies.size()));
    for (int number = 1; number <= count; ++number)
        changed |= take_values(result.bodies[static_cast<std::size_t>(number - 1)], workspace,
                               workspace.body(number));
    if (result.record) workspace.fit = result.record;
    if (result.ensemble) workspace.ensemble = std::make_shared<const Ensemble>(std::move(*result.ensemble));
    result.ensemble.reset();
    return changed;
}

}  // namespace anomalis::flow
