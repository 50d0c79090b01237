#pragma once

#include <cstdint>
#include <span>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// Colours of bodies that are told apart by where they stand, not by a property (edit/body_colours.h).
namespace anomalis::edit {

/// Colours that people with any of the common colour deficiencies tell apart (M. Okabe and K. Ito, "Color
/// Universal Design", 2008), as blue, green, red bytes, high to low. Their black is left to curves and
/// outlines, their reddish purple to the magenta of the selected body.
std::span<const std::int32_t> body_palette();

/// The colour of a new body beside bodies of colours `used`: of the palette, the first of those that are used
/// least. A colour from elsewhere counts as the nearest of the palette.
std::int32_t next_body_colour(std::span<const std::int32_t> used);
/// The same beside the bodies that stand in a workspace.
std::int32_t next_body_colour(const Workspace& workspace);

}  // namespace anomalis::edit
