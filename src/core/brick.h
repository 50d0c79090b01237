#pragma once

#include <array>

namespace anomalis {

/// Corner numbers, from 1, of the six faces of a brick: corners 1 to 4 run round one end, 5 to 8 stand in the
/// same order round the other.
inline constexpr std::array<std::array<int, 4>, 6> brick_faces{{
    {1, 2, 3, 4},
    {2, 6, 7, 3},
    {3, 7, 8, 4},
    {4, 8, 5, 1},
    {1, 5, 6, 2},
    {8, 7, 6, 5},
}};

/// The same faces as two triangles each.
inline constexpr std::array<std::array<int, 3>, 12> brick_triangles{{
    {1, 2, 3},
    {1, 3, 4},
    {2, 6, 7},
    {2, 7, 3},
    {3, 7, 8},
    {3, 8, 4},
    {4, 8, 5},
    {4, 5, 1},
    {1, 5, 6},
    {1, 6, 2},
    {8, 7, 6},
    {8, 6, 5},
}};

}  // namespace anomalis
