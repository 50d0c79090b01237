#pragma once

#include <cstdint>

namespace anomalis {

class Prompts;
class Settings;
struct Workspace;

inline constexpr float default_susceptibility = 50000;         ///< micro SI
inline constexpr float default_density = 2.67F;                ///< g/cc
inline constexpr std::int32_t default_body_colour = 0xFF0000;  ///< blue, green, red bytes, high to low

/// Fills the body at `index` with its defaults, those of the settings store last. Its type must be set.
void initialise_body(Workspace& workspace, int index, const Settings& settings, Prompts& prompts);

}  // namespace anomalis
