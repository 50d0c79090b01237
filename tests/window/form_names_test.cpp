#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStatusBar>

#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/widgets/stepper_bar.h"

namespace anomalis::window {

class FormNamesTest : public QObject {
    Q_OBJECT

  private slots:
    void every_name_is_found();
    void names_are_given_once();
    void every_control_explains_itself();
    void every_menu_entry_explains_itself();
};

namespace {

/// A control that comes several times is found as Name_0, Name_1 and so on.
const QStringList names_of_the_window{
    "Check_display_total_gradient",
    "Check_fix_this_body",
    "Check_float_base",
    "Check_include_demagnetisation",
    "Check_inversion_mode",
    "Check_maintain_aspect_ratio",
    "Check_show_body_label",
    "Check_small_step",
    "Check_turn_off_body",
    "Combo_invert",
    "Combo_model_type",
    "Combo_smooth_filter_type",
    "Combo_zoom",
    "Command_Save_Screenshot",
    "Command_define_observed_transform",
    "Command_invert",
    "Command_load_locations",
    "Command_reject_changes",
    "Command_reset_graph_scale",
    "Command_restore_best",
    "Command_save_axm_model",
    "Command_select_data_location_file",
    "Command_stop_inversion",
    "Command_toggle_invert_body",
    "Frame_axm_data_file_definitions",
    "Frame_base_levels",
    "Frame_body",
    "Frame_buttons",
    "Frame_cylinder",
    "Frame_data_processing_parameters",
    "Frame_field",
    "Frame_graph_display_options",
    "Frame_grav_profiles",
    "Frame_invert",
    "Frame_mag_profiles",
    "Frame_model_misfit",
    "Frame_move_body",
    "Frame_plan",
    "Frame_section",
    "Frame_stop_inversion",
    "Frame_wire",
    "Grid_body",
    "HScroll_body",
    "HScroll_dip",
    "HScroll_dist",
    "HScroll_length",
    "HScroll_offset",
    "HScroll_pan",
    "HScroll_plunge",
    "HScroll_strike",
    "HScroll_width",
    "Image_inversion_limit",
    "Image_splitter",
    "Image_splitter_grav",
    "Image_splitter_mag",
    "Label_VG",
    "Label_status",
    "Picture_inversion_limits",
    "ProgressBar_load",
    "StatusBar",
    "Tab_model",
    "Text_End_Thickness",
    "Text_MAGINV_basegrav",
    "Text_MAGINV_basemag",
    "Text_MAGINV_dtm",
    "Text_MAGINV_gravpos",
    "Text_MAGINV_magpos",
    "Text_MAGINV_misfit",
    "Text_MAGINV_nLast",
    "Text_MAGINV_nhead",
    "Text_MAGINV_nstep",
    "Text_MAGINV_sensor_offset",
    "Text_MAGINV_topo",
    "Text_MAGINV_xpos",
    "Text_MAGINV_ypos",
    "Text_MAGINV_zpos",
    "Text_Shell_Thickness",
    "Text_VG_filter_step",
    "Text_VG_filter_width",
    "Text_body_name",
    "Text_data_file",
    "Text_data_locations",
    "Text_depth_grid_spacing",
    "Text_finite_body_left_clip",
    "Text_finite_body_right_clip",
    "Text_infinite_body_length",
    "Text_line_length",
    "Text_line_spacing",
    "Text_mag_declination",
    "Text_mag_inclination",
    "Text_mag_intensity",
    "Text_maginv_minimum_station_spacing",
    "Text_maginv_station_spacing",
    "Text_max_iterations",
    "Text_max_triangle_size",
    "Text_model_misfit",
    "Text_num_iterations",
    "Text_num_sectors",
    "Text_num_segments",
    "Text_number_locations",
    "Text_profile_grid_spacing",
    "Text_residual_filter_width",
    "Text_smooth_filter_width",
    "Timer_resize",
    "VScroll_RemJ",
    "VScroll_dens",
    "VScroll_depth",
    "VScroll_depth_extent",
    "VScroll_pan",
    "VScroll_slope",
    "VScroll_susc",
    "VScroll_zoom",
    "menu_about",
    "menu_add_body",
    "menu_bodies",
    "menu_colour_body",
    "menu_delete_body",
    "menu_display_axes",
    "menu_do_logging",
    "menu_exit",
    "menu_export_data",
    "menu_export_dxf",
    "menu_file",
    "menu_file_list",
    "menu_find_file",
    "menu_force_recalc",
    "menu_help",
    "menu_highlight",
    "menu_highlight_on",
    "menu_model",
    "menu_open_model",
    "menu_restore_directory",
    "menu_save_defaults",
    "menu_save_directory",
    "menu_set_demag_flags",
    "menu_set_disable_flag",
    "menu_set_fix_flags",
    "menu_shift_bodies",
    "menu_sort_bodies",
    "menu_tie_pipe_depth_susc",
    "menu_view",
    "menu_view_mode",
    "sep_file_list",
    "vsgraph_model",
    "vsgraph_plan",
};

QString described(const QWidget& widget) {
    QString text = QString(widget.metaObject()->className()) + " " + widget.objectName();
    if (widget.parentWidget()) text += " in " + widget.parentWidget()->objectName();
    return text;
}

bool is_control(const QWidget& widget) {
    return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
           qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QAbstractSlider*>(&widget) ||
           qobject_cast<const QAbstractSpinBox*>(&widget) || qobject_cast<const StepperBar*>(&widget) ||
           qobject_cast<const QPlainTextEdit*>(&widget) || qobject_cast<const QAbstractItemView*>(&widget);
}

/// A part of another control, or one that Qt puts beside a tab bar or a scrolled view.
bool is_part(const QWidget& widget) {
    for (const QWidget* parent = widget.parentWidget(); parent; parent = parent->parentWidget())
        if (qobject_cast<const QComboBox*>(parent) || qobject_cast<const QAbstractSpinBox*>(parent) ||
            qobject_cast<const QTabBar*>(parent) || qobject_cast<const QAbstractScrollArea*>(parent))
            return true;
    return widget.objectName().startsWith("qt_");
}

}  // namespace

void FormNamesTest::every_name_is_found() {
    FormSample sample;
    QStringList missing;
    for (const QString& name : names_of_the_window)
        if (name != "Form_anomalis" && !sample.form->findChild<QObject*>(name) &&
            !sample.form->findChild<QObject*>(name + "_0"))
            missing << name;
    QCOMPARE(missing.join(" "), QString());
    QCOMPARE(sample.form->objectName(), QString("Form_anomalis"));
}

void FormNamesTest::names_are_given_once() {
    FormSample sample;
    QHash<QString, QObject*> owners;
    for (QObject* object : sample.form->findChildren<QObject*>()) {
        const QString name = object->objectName();
        if (!names_of_the_window.contains(name.section('_', 0, -2)) && !names_of_the_window.contains(name))
            continue;
        auto* menu = qobject_cast<QMenu*>(object);
        if (menu && owners.value(name) == menu->menuAction()) continue;
        QVERIFY2(!owners.contains(name), qPrintable(name));
        owners[name] = object;
    }
}

void FormNamesTest::every_control_explains_itself() {
    FormSample sample;
    QStringList silent;
    for (const auto* widget : sample.form->findChildren<QWidget*>())
        if (is_control(*widget) && !is_part(*widget) && widget->toolTip().isEmpty())
            silent << described(*widget);
    QCOMPARE(silent.join("; "), QString());
}

void FormNamesTest::every_menu_entry_explains_itself() {
    FormSample sample;
    QStringList silent;
    for (const auto* menu : sample.form->findChildren<QMenu*>()) {
        if (!menu->objectName().startsWith("menu_") || !menu->toolTipsVisible()) continue;
        for (const auto* entry : menu->actions())
            if (!entry->isSeparator() && !entry->menu() &&
                (entry->toolTip().isEmpty() || entry->toolTip() == QString(entry->text()).remove('&')))
                silent << entry->objectName() + " " + entry->text();
    }
    QCOMPARE(silent.join("; "), QString());
}

QObject* make_form_names_test() {
    return new FormNamesTest;
}

}  // namespace anomalis::window

#include "form_names_test.moc"
