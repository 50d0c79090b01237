#pragma once

#include <span>

#include <QKeyCombination>

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

// Everything that a person can choose by menu or key: one row each.
namespace anomalis::window {

enum class ActionId {
    read_all,
    import_survey,
    next_line,
    previous_line,
    open_results,
    next_result,
    previous_result,
    save_as,
    save,
    read_bodies,
    export_solids,
    export_plan,
    export_profile,
    export_clean_profile,
    export_clean_bodies,
    export_geojson,
    export_geopackage,
    export_geopackage_wgs84,
    print_figure,
    example,
    kept_model,
    save_directory,
    restore_directory,
    logging,
    recent_file,
    leave,
    undo,
    redo,
    preferences,
    next_tab,
    previous_tab,
    display_axes,
    display_regional,
    display_uncertainty,
    display_legend,
    show_section,
    show_plan,
    survey_map,
    survey_results,
    add_body,
    copy_body,
    split_body,
    add_body_here,
    delete_all,
    delete_current,
    sort_ascending,
    sort_descending,
    send_to_start,
    send_to_end,
    shift_bodies,
    highlight,
    save_defaults,
    force_recalc,
    colour_by_susceptibility,
    colour_by_remanence,
    colour_by_density,
    fix_on,
    fix_off,
    fix_flip,
    fix_outside_limits,
    fix_all,
    free_all,
    demag_on,
    demag_off,
    demag_flip,
    use_on,
    use_off,
    use_flip,
    tie_pipes,
    exact_formulas,
    field_from_place,
    remove_igrf,
    add_igrf,
    find_bodies,
    invert_current,
    invert_all,
    stop_inversion,
    restore_best,
    reject_changes,
    fit_results,
    uncertainty,
    section_to_plan,
    plan_to_section,
    next_body,
    previous_body,
    guide,
    tutorials,
    explain_focus,
    whats_this,
    delete_shown,
    keyboard_shortcuts,
    find_file,
    about
};

/// What must be there for an action to do anything.
enum class When {
    always,
    any_time,            ///< the same, and it leaves alone what is half typed
    line,                ///< a line is loaded
    survey_line,         ///< the same, and it was imported from a survey
    igrf_in,             ///< the same, and IGRF can be taken out of its magnetic readings
    igrf_out,            ///< or put into them
    stations,            ///< at least one station, though they may make no line
    drawable,            ///< stations or bodies
    bodies,              ///< the model has bodies
    several_bodies,      ///< at least two
    fixed_body,          ///< at least one that no inversion changes
    free_body,           ///< at least one that it may change
    body_with_demag,     ///< at least one that is calculated with demagnetisation
    body_without_demag,  ///< or without
    body_turned_off,     ///< at least one that is left out of the model
    body_in_use,         ///< or that counts
    body,                ///< one of the bodies is the current one
    body_shown,          ///< the same, and its page is on show
    body_across,         ///< the same, and it strikes across the line
    body_before,         ///< the same, and another stands before it
    body_behind,         ///< or behind it
    best_model,          ///< a run has left a model to go back to
    kept_folder,         ///< a working folder was kept
    running,             ///< a run goes on; everything else is closed then
    pointed              ///< the menu of a chart decides as it opens
};
bool holds(When when, const edit::Workbench& workbench);

/// The state that a check mark stands for.
enum class Mark {
    none,
    axes,
    regional,
    ensemble,
    legend,
    section,
    plan,
    highlight,
    logging,
    pipe_tie,
    exact_formulas
};
bool is_set(Mark mark, const edit::Workbench& workbench);

/// How many entries a row stands for. Those of a family are told apart by a number behind the name, and get
/// their texts from what they open.
enum class Family { single, recent_files, examples, kept_models };

struct ActionRow {
    ActionId id;
    const char* name;  ///< how tests and tools find it
    const char* text;
    const char* tip;
    When when = When::always;
    QKeyCombination key{};
    Mark mark = Mark::none;
    Family family = Family::single;

    bool has_key() const { return key.key() != Qt::Key_unknown; }
};

/// In the order of the enumeration.
std::span<const ActionRow> action_rows();
const ActionRow& action_row(ActionId id);

}  // namespace anomalis::window
