#pragma once

#include <string>
#include <string_view>

#include "edit/body_rows.h"

// The parameter grid of the current body: what its cells show and what may be keyed into them. Rows are
// numbered from 1, columns from 0.
namespace anomalis::edit {

struct Workbench;

inline constexpr int grid_column_count = 5;
enum GridColumn : int { grid_property = 0, grid_value, grid_vary, grid_min, grid_max };

/// "" in every cell without a current body, and in the cells of a row that its type has not.
std::string grid_text(const Workbench& workbench, int row, int column);
/// "m", "°", ... behind the value; "" for a row that is not used.
std::string grid_unit(const Workbench& workbench, int row);
/// The 90 % interval of the fit in force: "±0.31", "<140", "±?" (see edit/interval_text.h); "" without a fit.
std::string grid_error(const Workbench& workbench, int row);
/// A word beside a caption that says more than it ("elev." behind "Depth"), or beside a value what it comes
/// to
/// ("40.40 m deep" behind an elevation); "" for most.
std::string grid_note(const Workbench& workbench, int row, int column);
std::string grid_tip(const Workbench& workbench, int row, int column);

enum class VaryMark {
    none,  ///< the row takes no mark
    held,  ///< the type holds it whatever is clicked
    fixed,
    free
};
VaryMark grid_vary_mark(const Workbench& workbench, int row);

/// True for cells whose text may be keyed: values and limits of parameters that the type has.
bool grid_editable(const Workbench& workbench, int row, int column);
/// The number with all its digits, to be edited; "" for an unset limit.
std::string grid_edit_text(const Workbench& workbench, int row, int column);

enum class GridChange { unchanged, refused, stored };

/// Keys a text into a value or a limit. A value that is no number or out of its range is dropped without a
/// message. A limit is a number or blank (none); a lower one above the upper one is refused with a message.
GridChange enter_grid_text(Workbench& workbench, int row, int column, std::string_view text);

/// The inversion may change the parameter, or not. False where the row takes no mark.
bool toggle_grid_vary(Workbench& workbench, int row);

/// Stores a parameter of the current body with all that follows from it: caches, the place on the map.
void store_parameter(Workbench& workbench, int param_code, float value);

}  // namespace anomalis::edit
