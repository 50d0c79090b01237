#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/inversion_state.h"
#include "core/log.h"
#include "core/prompts.h"
#include "core/settings.h"
#include "core/workspace.h"

namespace anomalis {

/// Folders and facts of the running system, found once at the start.
struct SystemInfo {
    bool done = false;
    std::string user_name;
    std::string computer_name;
    std::string temp_folder;
    std::string app_data_folder;  ///< under the user's data folder by the XDG rules, made when missing
    std::string exe_folder;       ///< with a trailing separator
    float machine_epsilon = 0;
    char decimal_symbol = '.';
    char list_symbol = ',';
};

/// What a session start read from the settings and the window may want to show.
struct StartSettings {
    bool working_directory = false;
    bool mag_intensity = false;
    bool mag_inclination = false;
    bool mag_declination = false;
    bool display_axes_present = false;
    bool display_axes = true;
    bool form_size_present = false;
    double form_width = 0;   ///< twips
    double form_height = 0;  ///< twips
};

/// What exit saves. Texts stand as their boxes show them; a blank inclination saves no field values.
struct ExitValues {
    std::string mag_intensity, mag_inclination, mag_declination;
    double form_width = 0;   ///< twips, the tab control's
    double form_height = 0;  ///< twips, the window's
    bool display_axes = true;
};

/// The zoom list of the charts.
inline constexpr std::array<float, 9> zoom_factors{1, 1.25F, 1.5F, 2, 3, 4, 6, 8, 10};

/// One run of the program: the workspace, the settings, the log, the inversion's memory and the door to
/// the person. There is one a process; everything takes it, or the parts it touches, by reference.
class Session {
  public:
    Session(Prompts& prompts, Settings settings);

    /// The start that needs no window: system facts, workspace defaults, body records, settings.
    StartSettings start();
    /// Keeps at exit what the next start reads.
    void save_at_exit(const ExitValues& values);

    Workspace workspace;
    Settings settings;
    SessionLog log;
    InversionState inversion;
    SystemInfo system;
    Prompts& prompts;
    bool model_changed = false;
    bool first_dialog = true;  ///< no file dialog has succeeded yet; the first one sets the working folder
};

/// Finds folders and machine facts; a second call returns at once. Returns 0, or -1 after a failure.
int init_system(SystemInfo& system, Prompts& prompts);

}  // namespace anomalis
