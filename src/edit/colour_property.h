#pragma once

namespace anomalis::edit {

/// What bodies can be coloured by.
enum class ColourProperty : int { susceptibility = 0, remanence = 1, density = 2 };

}  // namespace anomalis::edit
