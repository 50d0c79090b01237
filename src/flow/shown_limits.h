#pragma once

#include <string>

#include "core/fit_record.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// A limit of the grid that nobody keyed and that holds all the same.
struct ShownLimit {
    std::string text;  ///< "" where there is none, or a keyed one stands in the cell
    std::string tip;
};

/// Of a cell under Min or Max, in a fit by `method`.
ShownLimit shown_limit(const edit::Workbench& workbench, int row, int column, InversionMethod method);

}  // namespace anomalis::flow
