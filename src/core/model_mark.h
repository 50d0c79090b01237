#pragma once

#include <string>
#include <string_view>

namespace anomalis {

struct Workspace;

/// Tells one state that a fit speaks of from another: the values of the bodies, formulas, field, elevations,
/// processing, base levels and regional degrees, each in the digits of a workspace file; and of a loaded line
/// its readings, distances and station window. Limits, colours, noise and drawings are no part of it.
std::string model_mark(const Workspace& workspace);

/// Whether the workspace is what a mark was made of. Without a line the model alone is looked at.
bool bears_mark(const Workspace& workspace, std::string_view mark);

/// Whether the workspace is what `Workspace::fit` was found for. Without a line the model alone is looked
/// at. False without a record.
bool as_fitted(const Workspace& workspace);

}  // namespace anomalis
