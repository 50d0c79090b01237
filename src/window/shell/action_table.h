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
    explain_focus,
    whats_this,
    keyboard_shortcuts,
    find_file,
    about
};

/// What must be there for an action to do anything.
enum class When {
    always,
    any_time,    ///< the same, and it leaves alone what is half typed
    line,        ///< a line is loaded
    stations,    ///< at least one station, though they may make no line
    bodies,      ///< the model has bodies
    body,        ///< one of them is the current one
    body_shown,  ///< the same, and its page is on show
    best_model,  ///< a run has left a model to go back to
    running,     ///< a run goes on; everything else is closed then
    pointed      ///< the menu of a chart decides as it opens
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
enum class Family { single, recent_files, examples };

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
