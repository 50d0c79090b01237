#pragma once

namespace anomalis::inversion {

/// The 95 % quantile of Student's t (both ends of a 90 % interval), from one degree of freedom on; whole or
/// not (Hill 1970, algorithm 396).
double student_quantile(double freedom);

}  // namespace anomalis::inversion
