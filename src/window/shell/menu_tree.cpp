#include "window/shell/menu_tree.h"

#include <array>

namespace anomalis::window {

namespace {

constexpr MenuItem open(const char* name, const char* text, When when = When::always) {
    return {MenuItem::Kind::open, name, text, {}, when};
}

constexpr MenuItem entry(ActionId action) {
    return {MenuItem::Kind::entry, "", "", action};
}

constexpr MenuItem separator(const char* name = "") {
    return {MenuItem::Kind::separator, name};
}

constexpr MenuItem close{};

constexpr std::array items{
    open("menu_file", "&File"),
    entry(ActionId::read_all),
    entry(ActionId::import_survey),
    entry(ActionId::next_line),
    entry(ActionId::previous_line),
    entry(ActionId::open_results),
    entry(ActionId::next_result),
    entry(ActionId::previous_result),
    entry(ActionId::save_as),
    separator("menu_open_model_2"),
    entry(ActionId::read_bodies),
    separator(),
    open("menu_export_dxf", "Export &DXF"),
    entry(ActionId::export_solids),
    entry(ActionId::export_plan),
    close,
    entry(ActionId::export_profile),
    open("menu_export_clean", "Export &clean tables"),
    entry(ActionId::export_clean_profile),
    entry(ActionId::export_clean_bodies),
    close,
    open("menu_export_map", "Export &map"),
    entry(ActionId::export_geojson),
    entry(ActionId::export_geopackage),
    entry(ActionId::export_geopackage_wgs84),
    close,
    entry(ActionId::print_figure),
    separator(),
    open("menu_examples", "&Examples"),
    entry(ActionId::example),
    close,
    open("menu_kept_models", "Continue &with"),
    entry(ActionId::kept_model),
    close,
    separator(),
    entry(ActionId::save_directory),
    entry(ActionId::restore_directory),
    entry(ActionId::logging),
    separator("sep_file_list"),
    entry(ActionId::recent_file),
    separator(),
    entry(ActionId::leave),
    close,

    open("menu_edit", "&Edit"),
    entry(ActionId::undo),
    entry(ActionId::redo),
    separator(),
    entry(ActionId::preferences),
    close,

    open("menu_view", "&View", When::line),
    entry(ActionId::display_axes),
    entry(ActionId::display_regional),
    entry(ActionId::display_uncertainty),
    entry(ActionId::display_legend),
    open("menu_view_mode", "&Show"),
    entry(ActionId::show_section),
    entry(ActionId::show_plan),
    close,
    entry(ActionId::survey_map),
    entry(ActionId::survey_results),
    close,

    open("menu_bodies", "&Bodies", When::line),
    entry(ActionId::add_body),
    entry(ActionId::copy_body),
    entry(ActionId::split_body),
    open("menu_delete_body", "&Delete"),
    entry(ActionId::delete_all),
    entry(ActionId::delete_current),
    close,
    open("menu_sort_bodies", "&Sort"),
    entry(ActionId::sort_ascending),
    entry(ActionId::sort_descending),
    entry(ActionId::send_to_start),
    entry(ActionId::send_to_end),
    close,
    entry(ActionId::shift_bodies),
    separator(),
    open("menu_highlight", "&Highlight current body"),
    entry(ActionId::highlight),
    close,
    entry(ActionId::save_defaults),
    close,

    open("menu_model", "&Model", When::line),
    entry(ActionId::force_recalc),
    open("menu_colour_body", "&Colour bodies by ..."),
    entry(ActionId::colour_by_susceptibility),
    entry(ActionId::colour_by_remanence),
    entry(ActionId::colour_by_density),
    close,
    open("menu_set_fix_flags", "Set &Fix body flags"),
    entry(ActionId::fix_on),
    entry(ActionId::fix_off),
    entry(ActionId::fix_flip),
    entry(ActionId::fix_outside_limits),
    separator(),
    entry(ActionId::fix_all),
    entry(ActionId::free_all),
    close,
    open("menu_set_demag_flags", "Set &Demag flags"),
    entry(ActionId::demag_on),
    entry(ActionId::demag_off),
    entry(ActionId::demag_flip),
    close,
    open("menu_set_disable_flag", "Set &Use body flags"),
    entry(ActionId::use_on),
    entry(ActionId::use_off),
    entry(ActionId::use_flip),
    close,
    entry(ActionId::tie_pipes),
    entry(ActionId::exact_formulas),
    separator(),
    entry(ActionId::field_from_place),
    entry(ActionId::remove_igrf),
    entry(ActionId::add_igrf),
    separator(),
    entry(ActionId::find_bodies),
    entry(ActionId::invert_current),
    entry(ActionId::invert_all),
    entry(ActionId::stop_inversion),
    entry(ActionId::restore_best),
    entry(ActionId::reject_changes),
    entry(ActionId::fit_results),
    entry(ActionId::uncertainty),
    close,

    open("menu_help", "&Help"),
    entry(ActionId::guide),
    entry(ActionId::tutorials),
    entry(ActionId::explain_focus),
    entry(ActionId::whats_this),
    entry(ActionId::keyboard_shortcuts),
    entry(ActionId::find_file),
    separator(),
    entry(ActionId::about),
    close,
};

}  // namespace

std::span<const MenuItem> menu_tree() {
    return items;
}

}  // namespace anomalis::window
