#pragma once

#include <cstdint>
#include <string>

namespace anomalis {
class Faults;
struct Workspace;
}  // namespace anomalis

namespace anomalis::model {

/// Why magnetics cannot be modelled or fitted while nobody gave the field of the line, and what to do; "" for
/// a line that has one, and for gravity alone (`channel`, a `ChannelCode`).
std::string missing_field(const Workspace& workspace, std::int32_t channel);

/// Notes a doubt when magnetics are modelled in a field of 0 nT or less: what bodies gain from it is then 0
/// or upside down, which is no failure of any formula. A wire carries its own current.
void note_unusable_field(const Workspace& workspace, Faults& faults);

}  // namespace anomalis::model
