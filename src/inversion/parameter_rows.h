#pragma once

#include <span>

#include "core/model_body.h"
#include "core/workspace.h"

// The rules of each parameter that an inversion may free; private to this room.
namespace anomalis::inversion {

struct ParameterRow {
    ParamCode code;
    BodyParam ModelBody::*slot;
    /// Free only if this holds, besides the mark to vary.
    bool (*may_vary)(const ModelBody&, const Workspace&);
    /// Largest change in one turn.
    float (*step)(const ModelBody&);
    float (*lower)(const ModelBody&, const Workspace&);
    float (*upper)(const ModelBody&, const Workspace&);
};

/// Place and shape, in the order of the scan.
std::span<const ParameterRow> geometry_rows();
/// Magnetisation: susceptibility or remanence ratio, then the remanence direction.
std::span<const ParameterRow> magnetic_rows();
std::span<const ParameterRow> gravity_rows();

}  // namespace anomalis::inversion
