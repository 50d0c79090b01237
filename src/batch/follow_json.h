#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/workspace.h"
#include "flow/follow_report.h"

namespace anomalis::batch {

class BatchPrompts;

/// A line that was followed to, with the workspace that it was fitted in.
struct FollowedFile {
    std::string model, output;  ///< paths; "" where nothing is written
    flow::FollowedLine line;
    Workspace workspace;
};

/// The report as one JSON object. `channel`: what was fitted, a `ChannelCode`.
std::string follow_json_text(const std::string& first, std::int32_t channel,
                             std::span<const FollowedFile> files,
                             std::span<const flow::FollowedStrike> strikes, double seconds,
                             const BatchPrompts& told);

}  // namespace anomalis::batch
