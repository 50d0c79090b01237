#pragma once

#include <string>

#include "output/gis_files.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The export entries of the File menu: the question for a name, the numbers brought up to date, the file.
namespace anomalis::flow {

enum class ExportOutcome {
    nothing,  ///< there is nothing to export; a beep is due
    cancelled,
    failed,  ///< told; an old file stands
    written  ///< to be told: "Output complete"
};
inline constexpr const char* output_complete = "Output complete";

struct Exported {
    ExportOutcome outcome = ExportOutcome::nothing;
    std::string path;  ///< of the file, when it was written
};

/// The profile table, one line a station. The current folder stays.
Exported export_profile_data(edit::Workbench& workbench);

/// The profile table, or the table of bodies, as data-frame libraries read them without options. Without
/// stations, or bodies, there is nothing.
Exported export_clean_profile(edit::Workbench& workbench);
Exported export_clean_model(edit::Workbench& workbench);

/// Stations and bodies for a map: GeoJSON in WGS 84, GeoPackage in the system of the line or in WGS 84. A
/// line whose system nobody knows is told what to do about it, before any question.
Exported export_geojson(edit::Workbench& workbench);
Exported export_geopackage(edit::Workbench& workbench, output::GisSystem system);

/// The models of the ensemble in force, one row each; without one there is nothing.
Exported export_ensemble(edit::Workbench& workbench);

enum class ScreenshotKind : int { charts = 0, form = 1 };

/// Where a picture of the window goes: beside the model file; "" without one. While the plan is on show both
/// kinds have its name.
std::string screenshot_path(const Workspace& workspace, ScreenshotKind kind, bool plan);

}  // namespace anomalis::flow
