#pragma once

#include <string>

namespace anomalis {
class RecordingPrompts;
struct Workspace;
}  // namespace anomalis
namespace anomalis::flow {
struct FindReport;
}  // namespace anomalis::flow

namespace anomalis::report {

/// The report of a search on the line of `workspace` as one JSON object. Where nothing was found its one
/// alternative has no bodies; after a refusal there is none.
std::string find_json_text(const flow::FindReport& report, const Workspace& workspace,
                           const RecordingPrompts& told);

}  // namespace anomalis::report
