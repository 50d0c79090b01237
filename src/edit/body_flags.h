#pragma once

namespace anomalis::edit {

struct Workbench;

/// A flag that all bodies carry.
enum class BodyFlag {
    fix,  ///< "On" lets the bodies vary: the flag is 1 for a body that is free
    demagnetisation,
    use  ///< "On" uses the bodies: the field behind it says turned off
};
enum class FlagSetting : int { on = 0, off = 1, flip = 2 };

/// Sets one flag of every body; responses are calculated anew. False without bodies.
bool set_body_flags(Workbench& workbench, BodyFlag flag, FlagSetting setting);

/// Fixes the bodies outside the part of the line that is fitted; the others keep their flag.
bool fix_outside_limits(Workbench& workbench);

}  // namespace anomalis::edit
