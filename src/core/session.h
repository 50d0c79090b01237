#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "core/inversion_state.h"
#include "core/log.h"
#include "core/preferences.h"
#include "core/prompts.h"
#include "core/settings.h"
#include "core/workspace.h"

namespace anomalis {

/// Folders and facts of the running system, found once at the start. Folders end in a separator.
struct SystemInfo {
    bool done = false;
    std::string user_name;
    std::string computer_name;
    std::string temp_folder;
    std::string app_data_folder;  ///< in the user's data folder, made when missing; "" when it cannot be
    std::string exe_folder;
    float machine_epsilon = 0;  ///< the smallest power of two that a single of 1 can still grow by
    char decimal_symbol = 0;
    char list_symbol = 0;  ///< the other of "." and ","
};

/// Finds folders and machine facts; a second call returns at once. What cannot be found stays empty.
void init_system(SystemInfo& system);

/// What a session start read from the settings: the field values went into the workspace already.
struct StartSettings {
    bool mag_intensity = false;  ///< a usable value was read, to be shown
    bool mag_inclination = false;
    bool mag_declination = false;
    std::optional<bool> display_axes;  ///< no value: as designed
    struct FormSize {
        double width = 0;
        double height = 0;
    };
    std::optional<FormSize> form_size;  ///< twips; only a size above the least one is restored
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
    Session(Prompts& the_prompts, Settings the_settings);

    /// The start that needs no window: system facts, workspace defaults, body records, settings.
    StartSettings start();
    /// Keeps at exit what the next start reads. Nothing of the workspace is saved.
    void save_at_exit(const ExitValues& values);

    /// The file dialogs.
    std::optional<std::string> open_file_dialog(const FileRequest& request);
    std::optional<std::string> save_file_dialog(const FileRequest& request);

    /// Keeps the values of a body as the defaults of new ones. Body 0 (none is current) keeps nothing.
    void save_body_defaults(int body_number);
    /// Keeps the current folder as the working folder, and goes back to the kept one if it still exists.
    void save_directory();
    void restore_directory();

    Workspace workspace;
    Settings settings;
    Preferences preferences;  ///< as the settings had them at the start
    SessionLog log;
    InversionState inversion;
    SystemInfo system;
    Prompts& prompts;
    bool model_changed = false;
    /// The session has no working folder of its own yet: the first data file that is chosen may set it.
    bool first_dialog = true;
};

}  // namespace anomalis
