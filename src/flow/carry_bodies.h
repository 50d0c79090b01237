#pragma once

#include <string>
#include <vector>

#include "core/model_body.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The model of one line under a neighbouring one.
namespace anomalis::flow {

/// A body of the first line, as it starts on the next one.
struct CarriedBody {
    int first_number = 0;     ///< of the body on the first line
    ModelBody before;         ///< there, without responses
    ModelBody body;           ///< here: carried, without responses
    double along_strike = 0;  ///< m that it was carried, positive where its strike points
};

struct CarriedModel {
    std::vector<CarriedBody> bodies;
    std::vector<std::string> doubts;   ///< why a body was not carried, or hardly can be meant to
    std::vector<std::string> remarks;  ///< what there is to know
};

/// Carries the bodies of `first` that take part to the line of `next`, which both have their stations: to
/// where the strike line through a body's reference point crosses that line, and to the same depth below the
/// ground there. Keyed limits of place and top move along. A sheet of limited length keeps its ends on the
/// map. The workspaces stay as they are.
CarriedModel carry_bodies(const Workspace& first, const Workspace& next);

/// They take the place of the bodies of a line, which has its stations.
void put_bodies(const std::vector<CarriedBody>& carried, Workspace& next);

}  // namespace anomalis::flow
