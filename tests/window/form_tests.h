#pragma once

#include <QObject>

namespace anomalis::window {

QObject* make_actions_test();
QObject* make_bodies_controller_test();
QObject* make_body_hand_test();
QObject* make_calculation_watch_test();
QObject* make_entry_gate_test();
QObject* make_field_form_test();
QObject* make_figure_test();
QObject* make_find_test();
QObject* make_first_work_test();
QObject* make_form_charts_test();
QObject* make_form_dialogs_test();
QObject* make_form_fit_test();
QObject* make_form_grid_test();
QObject* make_form_handles_test();
QObject* make_form_inversion_test();
QObject* make_form_layout_test();
QObject* make_form_names_test();
QObject* make_form_regional_test();
QObject* make_form_start_test();
QObject* make_formulas_controller_test();
QObject* make_help_test();
QObject* make_import_test();
QObject* make_invert_panel_test();
QObject* make_keyboard_page_test();
QObject* make_line_controller_test();
QObject* make_opening_test();
QObject* make_look_test();
QObject* make_model_keys_test();
QObject* make_model_news_test();
QObject* make_picture_test();
QObject* make_preferences_test();
QObject* make_save_controller_test();
QObject* make_sharp_test();
QObject* make_status_panels_test();
QObject* make_survey_page_test();
QObject* make_uncertainty_test();
QObject* make_view_controller_test();
QObject* make_watch_controller_test();
QObject* make_wrong_boxes_test();

/// Keeps pictures of both tabs, the plan and a search for bodies of each workspace named (split by ":") in a
/// folder, at three sizes, of a survey file its import, of a folder of results its page: for people to look
/// at, and for the guide.
void keep_pictures(const QString& folder, const QString& workspaces);

/// The keys of the program as a page of the guide; written into docs/.
QString keyboard_page();
void write_keyboard_page();

}  // namespace anomalis::window
