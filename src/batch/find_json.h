#pragma once

#include <string>

namespace anomalis {
struct Workspace;
}  // namespace anomalis
namespace anomalis::flow {
struct FindReport;
}  // namespace anomalis::flow

namespace anomalis::batch {

class BatchPrompts;

/// The report of a search on the line of `workspace` as one JSON object. Where nothing was found its one
/// alternative has no bodies; after a refusal there is none.
std::string find_json_text(const flow::FindReport& report, const Workspace& workspace,
                           const BatchPrompts& told);

}  // namespace anomalis::batch
