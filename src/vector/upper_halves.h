#pragma once

namespace anomalis::vector {

/// Forgets what wide instructions have left in the upper halves of the vector registers. Code for the
/// baseline runs several times slower as long as something stands there: called before long work of that
/// kind, as drawing is.
void clear_upper_halves();

}  // namespace anomalis::vector
