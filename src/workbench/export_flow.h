#pragma once

// The export entries of the File menu: the question for a name, the numbers brought up to date, the file.
namespace anomalis {

struct Workbench;

enum class ExportOutcome {
    nothing,  ///< there is nothing to export; a beep is due
    cancelled,
    failed,  ///< told; an old file stands
    written  ///< told: "Output complete"
};

/// The profile table, one line a station. The current folder stays.
ExportOutcome export_profile_data(Workbench& workbench);

}  // namespace anomalis
