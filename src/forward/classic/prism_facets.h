#pragma once

#include <array>

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/classic/facet.h"

namespace anomalis::forward {

/// Adds all six faces of a prism to the body's response, as `calculate_facet_response` would face by face:
/// each shared edge is worked out once and the stations run in vectors; a face that has an edge close to a
/// station is left to the single face's routine there, with its moved observer.
void add_prism_facets(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted,
                      const NedVector& magnetisation, const std::array<NedVector, 8>& corners, Faults& faults,
                      Pacer& pacer = no_pace());

}  // namespace anomalis::forward
