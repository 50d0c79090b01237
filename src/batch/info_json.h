#pragma once

#include <string>

namespace anomalis::batch {

class BatchSession;

/// What `info` tells of a session, as one JSON object; units stand in the names. `misfits`: the model is up
/// to date and can be measured.
std::string info_json_text(const BatchSession& batch, bool misfits);

}  // namespace anomalis::batch
