#pragma once

#include <QObject>

namespace anomalis::window {

QObject* make_form_start_test();
QObject* make_form_formulas_test();
QObject* make_form_load_test();
QObject* make_form_charts_test();
QObject* make_form_grid_test();
QObject* make_form_bodies_test();
QObject* make_form_dialogs_test();
QObject* make_form_files_test();
QObject* make_form_inversion_test();
QObject* make_form_layout_test();
QObject* make_form_names_test();
QObject* make_form_views_test();
QObject* make_look_test();
QObject* make_picture_test();
/// For a program of its own: it takes its time.
QObject* make_first_work_test();
/// For a program of its own, with QT_SCALE_FACTOR=2 in the environment.
QObject* make_sharp_test();

/// Keeps pictures of both tabs and the plan of each workspace named (split by ":") in a folder, at two sizes:
/// for people to look at, and for the guide.
void keep_pictures(const QString& folder, const QString& workspaces);

}  // namespace anomalis::window
