#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis
namespace anomalis::inversion {
struct FoundModel;
}  // namespace anomalis::inversion

namespace anomalis::flow {

/// Puts a model that was found for the line of a workspace there: its bodies (new ones get a name, and the
/// next colours of the palette), the degrees of its regionals and the record of its fit. Bodies that stood
/// there keep their responses unless they were moved. The next `refresh_model` brings up to date what hangs
/// on it, and the workspace is as fitted (core/model_mark.h). In a window it is one step of the history:
/// `note_change` with a new list of bodies.
void take_found(Workspace& workspace, const inversion::FoundModel& model);

}  // namespace anomalis::flow
