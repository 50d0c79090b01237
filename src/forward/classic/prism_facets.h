#pragma once

#include <array>

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/classic/facet.h"
#include "forward/shape/prism_kernel.h"

namespace anomalis::forward {

/// The six faces for the loop over stations, whose integrals give the magnetic field or else gravity. With
/// `needs_poles` a face without poles is left out.
PrismFaces prism_faces_for_stations(const std::array<NedVector, 8>& corners, const NedVector& magnetisation,
                                    bool needs_poles, bool magnetic);

/// Adds all six faces of a prism to the body's response, as `calculate_facet_response` would face by face:
/// each shared edge is worked out once and the stations run in vectors, those that are moved away from an
/// edge too.
void add_prism_facets(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted,
                      const NedVector& magnetisation, const std::array<NedVector, 8>& corners, Faults& faults,
                      Pacer& pacer = no_pace());

}  // namespace anomalis::forward
