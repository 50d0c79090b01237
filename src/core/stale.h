#pragma once

namespace anomalis {

/// What a change of one field of a body leaves out of date.
struct Stale {
    bool mag = false;           ///< magnetic response
    bool grav = false;          ///< gravity response
    bool coefficients = false;  ///< field coefficients and all that is derived with them
    bool elevation = false;     ///< burial depth
    bool place = false;         ///< map position of the reference point

    bool operator==(const Stale&) const = default;
    constexpr Stale& operator|=(const Stale& other) {
        mag |= other.mag;
        grav |= other.grav;
        coefficients |= other.coefficients;
        elevation |= other.elevation;
        place |= other.place;
        return *this;
    }
    constexpr bool any() const { return mag || grav || coefficients || elevation || place; }
};

}  // namespace anomalis
