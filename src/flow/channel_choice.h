#pragma once

#include <cstdint>
#include <string>

namespace anomalis {
class Session;
}  // namespace anomalis

namespace anomalis::flow {

/// The `ChannelCode` of "mag", "grav" or "joint"; of "" the one that the line has, magnetics first.
std::int32_t chosen_channel(const std::string& name, const Session& session);

/// "mag", "grav" or "joint".
std::string channel_name(std::int32_t channel);

/// Why the line cannot give the channel of that name; "" when it can.
std::string channel_refusal(const std::string& name, const Session& session);

}  // namespace anomalis::flow
