#include "window/shell/action_table.h"

#include <array>

#include "edit/pipe_tie.h"
#include "edit/workbench.h"

namespace anomalis::window {

namespace {

constexpr QKeyCombination no_key{};

constexpr std::array rows{
    ActionRow{ActionId::read_all, "menu_open_model_0", "&Read Data Format and Model Definitions",
              "Open a workspace file: how the data are read, the settings and the bodies", When::always,
              Qt::CTRL | Qt::Key_O},
    ActionRow{
        ActionId::import_survey, "menu_import_survey", "&Import survey...",
        "Read a survey file of many lines: formats, columns, units and coordinates are recognised and can "
        "be corrected; the chosen line becomes a new workspace",
        When::always, Qt::CTRL | Qt::SHIFT | Qt::Key_I},
    ActionRow{
        ActionId::next_line, "menu_next_line", "&Next line of the survey",
        "Import the next line of the survey that this one is of; filters, regional and spacings go along, "
        "and the bodies where the import says so",
        When::line, Qt::CTRL | Qt::Key_PageDown},
    ActionRow{ActionId::previous_line, "menu_previous_line", "Pre&vious line of the survey",
              "Import the line before this one in the same way", When::line, Qt::CTRL | Qt::Key_PageUp},
    ActionRow{ActionId::save_as, "menu_open_model_1", "&Save Data Format and Model Definitions",
              "Write everything into a workspace file of a name to be chosen, and the tables beside it",
              When::always, Qt::CTRL | Qt::SHIFT | Qt::Key_S},
    ActionRow{ActionId::save, "Shortcut_save", "Save into the workspace file",
              "Write everything into the workspace file it came from; without one its name is asked for",
              When::always, Qt::CTRL | Qt::Key_S},
    ActionRow{ActionId::read_bodies, "menu_open_model_3", "Read &Model Defintions",
              "Take the bodies alone from another workspace file"},
    ActionRow{ActionId::export_solids, "menu_export_dxf_0", "&3-D bodies",
              "Write the bodies as faces in space, for CAD", When::bodies},
    ActionRow{ActionId::export_plan, "menu_export_dxf_1", "&Plan",
              "Write the profile and the outlines of the bodies, for CAD"},
    ActionRow{ActionId::export_profile, "menu_export_data", "Export data &values",
              "Write the profile, one line a station: observed and calculated"},
    ActionRow{ActionId::export_clean_profile, "menu_export_clean_0", "&Profile",
              "One row a station, as data-frame libraries read it without options", When::stations},
    ActionRow{ActionId::export_clean_bodies, "menu_export_clean_1", "&Bodies",
              "One row a body, as data-frame libraries read it without options", When::bodies},
    ActionRow{ActionId::export_geojson, "menu_export_map_0", "&GeoJSON",
              "Write stations, outlines and tops of the bodies in WGS 84 longitude and latitude"},
    ActionRow{ActionId::export_geopackage, "menu_export_map_1", "Geo&Package",
              "Write the same in the coordinate system of the line"},
    ActionRow{ActionId::export_geopackage_wgs84, "menu_export_map_2", "GeoPackage in &WGS 84",
              "Write the same in WGS 84 longitude and latitude"},
    ActionRow{ActionId::print_figure, "menu_print_figure", "&Print/Export figure...",
              "The charts with section or plan, field, fit and table of bodies on a sheet of paper: to a "
              "printer, or as PDF, SVG, EMF or PNG",
              When::line, Qt::CTRL | Qt::Key_P},
    ActionRow{ActionId::example, "menu_example", "", "", When::always, no_key, Mark::none, Family::examples},
    ActionRow{ActionId::save_directory, "menu_save_directory", "Save &working directory",
              "Keep the current folder as the one that the next session starts in"},
    ActionRow{ActionId::restore_directory, "menu_restore_directory", "Return to working &directory",
              "Make the kept folder the current one again"},
    ActionRow{ActionId::logging, "menu_do_logging", "&Logging",
              "Write what is done into axm_logging.dat in the current folder", When::always, no_key,
              Mark::logging},
    ActionRow{ActionId::recent_file, "menu_file_list", "", "Open this workspace file", When::always, no_key,
              Mark::none, Family::recent_files},
    ActionRow{ActionId::leave, "menu_exit", "E&xit", "Close the window; nothing is saved", When::always,
              Qt::CTRL | Qt::Key_Q},
    // Both always answer to their keys: with nothing to take back they say so.
    ActionRow{ActionId::undo, "menu_undo", "&Undo",
              "Take the last change of the model or its settings back, up to 200 steps", When::always,
              Qt::CTRL | Qt::Key_Z},
    ActionRow{ActionId::redo, "menu_redo", "&Redo", "Make the change again", When::always,
              Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
    ActionRow{ActionId::preferences, "menu_preferences", "&Preferences...",
              "Colours and widths of the curves, dark charts, legend, units, threads: kept between sessions",
              When::always, Qt::CTRL | Qt::Key_Comma},
    ActionRow{ActionId::next_tab, "Shortcut_next_tab", "Next page", "Go to the other page of the window",
              When::always, Qt::CTRL | Qt::Key_Tab},
    ActionRow{ActionId::previous_tab, "Shortcut_previous_tab", "Previous page",
              "Go to the other page of the window", When::always, Qt::CTRL | Qt::Key_Backtab},
    ActionRow{ActionId::display_axes, "menu_display_axes", "Display &Axes", "Axes and numbers on the charts",
              When::line, no_key, Mark::axes},
    ActionRow{ActionId::display_regional, "menu_display_regional", "Display &regional",
              "The regional that was taken off the observed curve, dashed about its mean", When::line, no_key,
              Mark::regional},
    ActionRow{
        ActionId::display_uncertainty, "menu_display_uncertainty", "Display &uncertainty",
        "Other models that explain the line as well: faint outlines behind the bodies, and the room that "
        "the calculated curve keeps to in 90 % of them",
        When::line, no_key, Mark::ensemble},
    ActionRow{ActionId::display_legend, "menu_display_legend", "Display &legend",
              "The names of the curves in the charts on screen; pictures always have them", When::line,
              no_key, Mark::legend},
    ActionRow{ActionId::show_section, "menu_view_mode_0", "&Section", "The section below the curves",
              When::line, no_key, Mark::section},
    ActionRow{ActionId::show_plan, "menu_view_mode_1", "&Plan", "The plan below the curves", When::line,
              no_key, Mark::plan},
    ActionRow{ActionId::survey_map, "menu_survey_map", "Survey &map...",
              "All lines of the survey that was imported last, on the page of the import"},
    ActionRow{ActionId::add_body, "menu_add_body_0", "&Add a new body",
              "A thick sheet across the line, in the middle of the view, its top on the ground", When::line,
              Qt::CTRL | Qt::Key_B},
    ActionRow{ActionId::copy_body, "menu_add_body_1", "&Copy current body",
              "A second body like the current one, beside it along the line", When::body,
              Qt::CTRL | Qt::Key_D},
    ActionRow{ActionId::split_body, "menu_add_body_2", "S&plit current body",
              "Two bodies of half the width in the place of the current one", When::body},
    ActionRow{ActionId::add_body_here, "menu_add_body_here", "Add a body here",
              "A new body with its top at the pointer", When::pointed},
    ActionRow{ActionId::delete_all, "menu_delete_body_0", "&All bodies",
              "Delete every body; undo brings them back", When::bodies},
    ActionRow{ActionId::delete_current, "menu_delete_body_1", "&Current body",
              "Delete the current body; undo brings it back", When::body},
    ActionRow{ActionId::sort_ascending, "menu_sort_bodies_0", "&Ascending distance",
              "By distance along the profile; all bodies get numbered names", When::bodies},
    ActionRow{ActionId::sort_descending, "menu_sort_bodies_1", "&Descending distance",
              "By distance along the profile, the far end first; all bodies get numbered names",
              When::bodies},
    ActionRow{ActionId::send_to_start, "menu_sort_bodies_2", "Send current body to &start",
              "The current body becomes body 1", When::body},
    ActionRow{ActionId::send_to_end, "menu_sort_bodies_3", "Send current body to &end",
              "The current body becomes the last", When::body},
    ActionRow{ActionId::shift_bodies, "menu_shift_bodies", "Shift All &Bodies laterally",
              "Move every body along the profile by a distance in m, 1 or more either way", When::bodies},
    ActionRow{ActionId::highlight, "menu_highlight_on", "&On",
              "Draw the current body in magenta, in the section and in the plan", When::line, no_key,
              Mark::highlight},
    ActionRow{ActionId::save_defaults, "menu_save_defaults", "Save current body parameters as &default",
              "New bodies start with type, dip, sizes, density, susceptibility and colour of this one",
              When::body},
    ActionRow{ActionId::force_recalc, "menu_force_recalc", "Force &Recalc",
              "Calculate every body's response anew", When::line, Qt::Key_F5},
    ActionRow{ActionId::colour_by_susceptibility, "menu_colour_body_0", "&Susceptability",
              "Dark for the lowest susceptibility, yellow for the highest", When::bodies},
    ActionRow{ActionId::colour_by_remanence, "menu_colour_body_1", "&Remanent J",
              "Dark for the lowest remanent magnetisation, yellow for the highest", When::bodies},
    ActionRow{ActionId::colour_by_density, "menu_colour_body_2", "&Density",
              "Dark for the lowest density, yellow for the highest", When::bodies},
    ActionRow{ActionId::fix_on, "menu_set_fix_flags_0", "&On", "Free every body for the inversion",
              When::bodies},
    ActionRow{ActionId::fix_off, "menu_set_fix_flags_1", "O&ff", "Fix every body", When::bodies},
    ActionRow{ActionId::fix_flip, "menu_set_fix_flags_2", "Fli&p",
              "Fix the bodies that are free, free the others", When::bodies},
    ActionRow{ActionId::fix_outside_limits, "menu_set_fix_flags_3", "Fix outside inversion &limits",
              "Fix the bodies that stand outside the part of the line that is fitted", When::bodies},
    ActionRow{ActionId::demag_on, "menu_set_demag_flags_0", "&On",
              "Calculate every body with demagnetisation", When::bodies},
    ActionRow{ActionId::demag_off, "menu_set_demag_flags_1", "O&ff",
              "Calculate every body without demagnetisation", When::bodies},
    ActionRow{ActionId::demag_flip, "menu_set_demag_flags_2", "Fli&p", "Change the mark of every body",
              When::bodies},
    ActionRow{ActionId::use_on, "menu_set_disable_flag_0", "&On", "Use every body in the model",
              When::bodies},
    ActionRow{ActionId::use_off, "menu_set_disable_flag_1", "O&ff", "Turn every body off", When::bodies},
    ActionRow{ActionId::use_flip, "menu_set_disable_flag_2", "Fli&p", "Change the mark of every body",
              When::bodies},
    ActionRow{ActionId::tie_pipes, "menu_tie_pipe_depth_susc", "&Tie Pipe Depth and Susceptability",
              "While a bar changes the depth of a pipe its susceptibility follows, so that the anomaly keeps "
              "its size",
              When::line, no_key, Mark::pipe_tie},
    ActionRow{ActionId::exact_formulas, "menu_exact_formulas", "E&xact formulas",
              "Calculate the field of the bodies as section and plan draw them; without the mark with "
              "the classic formulas",
              When::line, no_key, Mark::exact_formulas},
    ActionRow{ActionId::field_from_place, "menu_field_from_place", "Fi&eld from place and date...",
              "Find the earth's field by IGRF-14 for the place and the day of the survey", When::always,
              Qt::CTRL | Qt::Key_E},
    ActionRow{ActionId::remove_igrf, "menu_remove_igrf", "Remove IGRF from the readings",
              "Take the field of IGRF-14 at each station out of the magnetic readings, which are loaded anew",
              When::line},
    ActionRow{ActionId::add_igrf, "menu_add_igrf", "Add IGRF to the readings",
              "Put the field of IGRF-14 at each station into the magnetic readings, which are loaded anew",
              When::line},
    ActionRow{ActionId::find_bodies, "menu_find_bodies", "&Find bodies...",
              "Propose bodies that explain the line, starting from nothing or beside those that are there; "
              "the model stays as it is until one proposal is taken",
              When::line, Qt::CTRL | Qt::Key_F},
    ActionRow{ActionId::invert_current, "menu_invert_0", "Invert &Current Body",
              "Fit the free parameters of the current body", When::body},
    ActionRow{ActionId::invert_all, "menu_invert_1", "&Invert Entire Model",
              "Fit the free parameters of all bodies", When::bodies, Qt::CTRL | Qt::Key_I},
    ActionRow{ActionId::stop_inversion, "menu_stop_inversion", "&Stop Inversion",
              "End the run after the iteration that it is in", When::running, Qt::Key_Escape},
    ActionRow{ActionId::restore_best, "menu_restore_best", "Restore &Best Model",
              "Go back to the best model of the runs so far", When::best_model},
    ActionRow{ActionId::reject_changes, "menu_reject_changes", "Re&ject Changes",
              "Put back the values that the last run started with", When::bodies},
    ActionRow{
        ActionId::fit_results, "menu_fit_results", "&Fit results",
        "What the last fit found: values with 90 % intervals, correlations, and what is left of the data",
        When::line, Qt::CTRL | Qt::Key_R},
    ActionRow{ActionId::uncertainty, "menu_uncertainty", "&Uncertainty...",
              "How far the data let each value move: other models that explain the line as well",
              When::bodies, Qt::CTRL | Qt::Key_U},
    ActionRow{ActionId::section_to_plan, "menu_section_show_plan", "Show Plan",
              "Show the plan in place of the section", When::line},
    ActionRow{ActionId::plan_to_section, "menu_plan_show_section", "Show Section",
              "Show the section in place of the plan", When::line},
    ActionRow{ActionId::next_body, "Shortcut_next_body", "Next body", "Make the next body the current one",
              When::body_shown, Qt::Key_PageDown},
    ActionRow{ActionId::previous_body, "Shortcut_previous_body", "Previous body",
              "Make the body before it the current one", When::body_shown, Qt::Key_PageUp},
    ActionRow{ActionId::guide, "menu_guide", "&Guide", "Open the guide at what has the focus", When::any_time,
              Qt::Key_F1},
    ActionRow{ActionId::explain_focus, "menu_explain_focus", "&Explain what has the focus",
              "Say what the box, bar or chart with the focus is for", When::any_time, Qt::SHIFT | Qt::Key_F1},
    ActionRow{ActionId::whats_this, "menu_whats_this", "&What's this?",
              "Click anything in the window to be told what it is for", When::any_time},
    ActionRow{ActionId::keyboard_shortcuts, "menu_keyboard_shortcuts", "&Keyboard shortcuts",
              "Every key that does something in this window"},
    ActionRow{ActionId::find_file, "menu_find_file", "&Find File in Path",
              "What the program finds of its files, folders and libraries"},
    ActionRow{ActionId::about, "menu_about", "&About", "Which version this is"}};

static_assert(edit::History::kept_steps == 200, "the tip of undo names it");

constexpr bool in_order() {
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (static_cast<std::size_t>(rows[i].id) != i) return false;
    return true;
}
static_assert(in_order());

bool has_current_body(const edit::Workbench& workbench) {
    const int number = workbench.view.current_body;
    return number >= 1 && number <= workbench.session.workspace.body_count;
}

}  // namespace

bool holds(When when, const edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    switch (when) {
        case When::any_time:
        case When::always:
            return true;
        case When::line:
            return edit::line_loaded(workspace);
        case When::stations:
            return workspace.station_count > 0;
        case When::bodies:
            return workspace.body_count > 0;
        case When::body:
            return has_current_body(workbench);
        case When::body_shown:
            return workbench.view.on_page && has_current_body(workbench);
        case When::best_model:
            return workbench.session.inversion.best_model_available;
        case When::running:
        case When::pointed:
            break;
    }
    return false;
}

bool is_set(Mark mark, const edit::Workbench& workbench) {
    const edit::ViewState& view = workbench.view;
    const Workspace& workspace = workbench.session.workspace;
    switch (mark) {
        case Mark::none:
            return false;
        case Mark::axes:
            return view.show_axes;
        case Mark::regional:
            return view.show_regional;
        case Mark::ensemble:
            return view.show_ensemble;
        case Mark::legend:
            return workbench.session.preferences.legend;
        case Mark::section:
            return !view.show_plan;
        case Mark::plan:
            return view.show_plan;
        case Mark::highlight:
            return view.highlight_on;
        case Mark::logging:
            return workbench.session.log.on();
        case Mark::pipe_tie:
            return edit::pipes_are_tied(workspace);
        case Mark::exact_formulas:
            return workspace.formulas == Formulas::exact;
    }
    return false;
}

std::span<const ActionRow> action_rows() {
    return rows;
}

const ActionRow& action_row(ActionId id) {
    return rows.at(static_cast<std::size_t>(id));
}

}  // namespace anomalis::window
