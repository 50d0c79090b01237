#pragma once

#include <string>
#include <vector>

#include "output/gis_tables.h"

// Sheets in space as surfaces for other programs: VTK, Wavefront OBJ, DXF. Coordinates are east, north and
// elevation in m, whole as on the map; to a millimetre.
namespace anomalis::output {

/// A strip from a top down to a bottom.
struct SheetSurface {
    std::string name;                   ///< of its group or layer
    std::vector<GisPoint> top, bottom;  ///< at least two each, as many bottoms as tops, in order along strike
    std::vector<double> values;         ///< one a name that is given with the sheets
};

/// What stands in VTK where a value is not known: that format knows no missing numbers.
inline constexpr double no_vtk_value = -99999;

/// Legacy VTK 3.0 polygons in ASCII (VTK user's guide), a quadrangle for each step along strike, with the
/// number of its sheet (from 1, "sheet") and the values named `names` for each.
std::string vtk_of_sheets(const std::vector<SheetSurface>& sheets, const std::vector<std::string>& names,
                          const std::string& title);
/// A group a sheet; `title` is a comment.
std::string obj_of_sheets(const std::vector<SheetSurface>& sheets, const std::string& title);
/// A layer a sheet: its top as a polyline in space, the sheet as 3D faces. `system` is named in a comment, ""
/// where nobody knows it. An existing file survives a failure. Raises FileFault. Returns how many other names
/// the replaced file has (core/safe_file.h).
int write_sheet_dxf(const std::string& path, const std::vector<SheetSurface>& sheets,
                    const std::string& system);

}  // namespace anomalis::output
