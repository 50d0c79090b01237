#pragma once

#include "core/workspace.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// Sine and cosine of `dip` and `strike`, rounded to single precision as the body keeps them.
void set_body_angles(ModelBody& body);

/// The sine of the angle between the strike and the profile. Its sign tells to which side of the profile
/// a body dips; below 0.1 in size the body lies along the profile and has no response.
double strike_against_profile(const ModelBody& body, float azimuth);
inline constexpr double least_sine_with_response = 0.1;

/// Direction cosines of the ambient field in north, east, down, and its strength.
struct AmbientField {
    double north = 0, east = 0, down = 0;
    double intensity = 0;  ///< nT
};
AmbientField ambient_field(const Workspace& workspace);

/// Induced and remanent magnetisation in north, east, down without demagnetisation, in nT over 4 pi.
struct Magnetisation {
    double north = 0, east = 0, down = 0;
};
Magnetisation plain_magnetisation(const Workspace& workspace, const ModelBody& body);

/// The remanent magnitude: the Koenigsberger ratio times the induced one, in nT over 4 pi.
double remanent_magnitude(const Workspace& workspace, const ModelBody& body);

/// Fills the derived fields of the body: angles, directions of field and magnetisation, shape
/// coefficients and the resultant magnetisation, with the sheet's demagnetisation across strike where
/// `include_demagnetisation` is 1.
///
/// Returns 0, or -1 after a fault (a remanence without susceptibility), which is noted; fields written
/// before it keep their values. A wire gets its rotated field only, and stays marked as out of date.
int calculate_field_coefficients(const Workspace& workspace, ModelBody& body, Faults& faults);

}  // namespace anomalis::forward
