#pragma once

namespace anomalis {

/// What a change of a field makes out of date. Responses are those of the body that the field belongs to, or of
/// all bodies for a field of the workspace.
enum class Stale : unsigned {
    nothing = 0,
    elevations = 1,  ///< of sensor and ground
    mag_response = 2,
    grav_response = 4,
    mag_rows = 8,  ///< the filtered rows of both stages
    grav_rows = 16,
    responses = mag_response | grav_response,
    rows = mag_rows | grav_rows
};

constexpr Stale operator|(Stale a, Stale b) {
    return static_cast<Stale>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr Stale& operator|=(Stale& a, Stale b) {
    return a = a | b;
}
constexpr bool includes(Stale all, Stale part) {
    return (static_cast<unsigned>(all) & static_cast<unsigned>(part)) != 0;
}

}  // namespace anomalis
