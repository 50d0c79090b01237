#pragma once

namespace anomalis {
class Faults;
struct Workspace;
}  // namespace anomalis

namespace anomalis::model {

/// Notes a doubt when magnetics are modelled in a field of 0 nT or less: what bodies gain from it is then 0
/// or upside down, which is no failure of any formula. A wire carries its own current.
void note_unusable_field(const Workspace& workspace, Faults& faults);

}  // namespace anomalis::model
