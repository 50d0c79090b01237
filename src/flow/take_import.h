#pragma once

#include "flow/import_survey.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// Makes an imported line, whose table is written, the workspace, untitled; with `bodies` those of the model
/// before come along. One step of the history brings the old model back. Its data are to be loaded then.
void take_imported(edit::Workbench& workbench, const ImportedLine& imported, bool bodies);

/// Puts an imported line, whose table is written, under the model that is open: its bodies, processing and
/// file stay, and so does its field where the import found none. One step of the history. Its data are to be
/// loaded then.
void take_data_of(edit::Workbench& workbench, const ImportedLine& imported);

}  // namespace anomalis::flow
