#pragma once

#include <cstdint>

#include "core/workspace.h"

namespace anomalis::flow {

/// A channel without a column gives way to the other one; both at once need both.
inline std::int32_t available_channel(std::int32_t channel, const Workspace& workspace) {
    if (channel != channel_grav && !workspace.has_mag()) return channel_grav;
    if (channel != channel_mag && !workspace.has_grav()) return channel_mag;
    return channel;
}

/// Whether a fit of `channel` (a `ChannelCode`) is one of the channel `one` too.
inline bool is_fitted(std::int32_t channel, std::int32_t one) {
    return channel == one || channel == channel_joint;
}

}  // namespace anomalis::flow
