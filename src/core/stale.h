#pragma once

namespace anomalis {

/// What a change of one field leaves out of date: of the body that the field belongs to, or of all bodies for
/// a field of the workspace.
struct Stale {
    bool mag = false;   ///< magnetic response
    bool grav = false;  ///< gravity response
    bool burial_depth = false;
    bool place = false;       ///< map position of the reference point
    bool elevations = false;  ///< of sensor and ground
    bool mag_rows = false;    ///< filtered rows of both stages
    bool grav_rows = false;

    bool operator==(const Stale&) const = default;
    constexpr Stale& operator|=(const Stale& other) {
        mag |= other.mag;
        grav |= other.grav;
        burial_depth |= other.burial_depth;
        place |= other.place;
        elevations |= other.elevations;
        mag_rows |= other.mag_rows;
        grav_rows |= other.grav_rows;
        return *this;
    }
    constexpr bool any() const { return *this != Stale{}; }
};

}  // namespace anomalis
