#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>

#include "core/body_parameters.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/panels/body_panel.h"
#include "window/panels/charts_panel.h"
#include "window/panels/model_side.h"

namespace anomalis::window {

class BodiesControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void every_control_is_found_and_explains_itself();
    void frames_of_pipe_and_wire_follow_the_type();
    void the_bar_selects_the_body();
    void marks_and_name_change_the_current_body();
    void a_name_takes_any_text_as_one_line();
    void the_patch_chooses_the_colour();
    void buttons_and_keys_step_a_parameter();
    void a_step_takes_over_what_is_being_typed();
    void a_held_button_repeats();
    void bars_of_missing_rows_are_disabled();
    void nothing_is_edited_while_a_run_is_on();
    void commands_add_copy_split_and_delete();
    void a_command_from_the_first_tab_shows_the_model();
    void an_emptied_list_disables_the_column();
    void flags_colours_shift_and_sort_are_redrawn();
    void the_tie_is_checked_while_it_holds();
    void a_dropped_line_hides_the_commands();
    void the_column_shows_everything_at_1280_by_800();
};

namespace {

const QStringList column_names{"Frame_body",     "Frame_move_body", "Frame_invert",
                               "Frame_cylinder", "Frame_wire",      "Check_small_step"};
const QStringList controls{"HScroll_body",
                           "Text_body_name",
                           "Picture_body_colour",
                           "Check_fix_this_body",
                           "Check_turn_off_body",
                           "Check_include_demagnetisation",
                           "Grid_body",
                           "Combo_model_type",
                           "Text_Shell_Thickness",
                           "Text_End_Thickness",
                           "Text_num_sectors",
                           "Text_num_segments",
                           "Text_max_triangle_size",
                           "Command_toggle_invert_body",
                           "HScroll_dist_0",
                           "HScroll_dist_1",
                           "HScroll_strike_0",
                           "HScroll_dip_0",
                           "HScroll_dip_1",
                           "VScroll_depth_0",
                           "VScroll_depth_extent_1",
                           "HScroll_width_0",
                           "HScroll_length_0",
                           "VScroll_susc_1",
                           "VScroll_dens_0",
                           "HScroll_plunge_0",
                           "VScroll_slope_0",
                           "HScroll_offset_0",
                           "VScroll_RemJ_0",
                           "VScroll_RemJ_1",
                           "VScroll_RemJ_2",
                           "VScroll_RemJ_3",
                           "VScroll_RemJ_4",
                           "VScroll_RemJ_5"};
const QStringList entries{
    "menu_add_body_0",      "menu_add_body_1",        "menu_add_body_2",         "menu_delete_body_0",
    "menu_delete_body_1",   "menu_sort_bodies_0",     "menu_sort_bodies_3",      "menu_shift_bodies",
    "menu_save_defaults",   "menu_colour_body_0",     "menu_colour_body_2",      "menu_set_fix_flags_0",
    "menu_set_fix_flags_3", "menu_set_demag_flags_2", "menu_set_disable_flag_1", "menu_tie_pipe_depth_susc"};

}  // namespace

void BodiesControllerTest::every_control_is_found_and_explains_itself() {
    Modelled sample;
    for (const QString& name : column_names)
        QVERIFY2(sample.form->findChild<QWidget*>(name), qPrintable(name));
    for (const QString& name : controls) {
        const auto* control = sample.form->findChild<QWidget*>(name);
        QVERIFY2(control, qPrintable(name));
        QVERIFY2(!control->toolTip().isEmpty(), qPrintable(name));
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(name));
    }
    for (const QString& name : entries) {
        const auto* entry = sample.form->findChild<QAction*>(name);
        QVERIFY2(entry, qPrintable(name));
        QVERIFY2(!entry->toolTip().isEmpty(), qPrintable(name));
    }
    QVERIFY(!sample.find<QCheckBox>("Check_small_step").isVisible());
}

void BodiesControllerTest::frames_of_pipe_and_wire_follow_the_type() {
    Modelled sample;
    QVERIFY(!sample.find<QWidget>("Frame_cylinder").isVisible());
    QVERIFY(!sample.find<QWidget>("Frame_wire").isVisible());
    sample.body(1).type = pipe;
    sample.form->news().tell(News::bodies);
    QVERIFY(sample.find<QWidget>("Frame_cylinder").isVisible());
    QCOMPARE(sample.text("Text_num_sectors"), QString("12"));
    sample.type("Text_num_sectors", "20");
    QCOMPARE(sample.body(1).num_sectors, 20);
    for (const QString& text : {QString("-3"), QString("abc"), QString("1e999"), QString(" ")}) {
        sample.type("Text_Shell_Thickness", text);
        QCOMPARE(sample.text("Text_Shell_Thickness"), QString("0"));
    }
    QVERIFY(sample.status(1).startsWith("Wall"));
    sample.body(1).type = wire;
    sample.form->news().tell(News::bodies);
    QVERIFY(!sample.find<QWidget>("Frame_cylinder").isVisible());
    QVERIFY(sample.find<QWidget>("Frame_wire").isVisible());
}

void BodiesControllerTest::the_bar_selects_the_body() {
    Modelled sample;
    auto& bar = sample.find<QScrollBar>("HScroll_body");
    QCOMPARE(bar.minimum(), 1);
    QCOMPARE(bar.maximum(), 2);
    QCOMPARE(sample.find<QLabel>("Label_body").text(), QString("Body 1 of 2"));
    bar.setValue(2);
    QCOMPARE(sample.current(), 2);
    QCOMPARE(sample.text("Text_body_name"), QString("Second"));
    QCOMPARE(sample.shown(param_distance, edit::grid_value), QString("1807.0"));
    QVERIFY2(!sample.form->workbench().unsaved, "looking is no change");
    sample.form->charts().view().select_body(1);
    QCOMPARE(bar.value(), 1);
    QCOMPARE(sample.text("Text_body_name"), QString("Dyke"));
}

void BodiesControllerTest::marks_and_name_change_the_current_body() {
    Modelled sample;
    const QString before = sample.status(7);
    sample.click("Check_turn_off_body");
    QCOMPARE(sample.body(1).turned_off, 1);
    QVERIFY(sample.status(7) != before);
    sample.click("Check_fix_this_body");
    QCOMPARE(sample.body(1).vary, 0);
    sample.click("Check_include_demagnetisation");
    QCOMPARE(sample.body(1).include_demagnetisation, 1);
    sample.type("Text_body_name", "Gabbro");
    QCOMPARE(sample.body(1).name, std::string("Gabbro"));
    sample.find<QScrollBar>("HScroll_body").setValue(2);
    QVERIFY(!sample.find<QCheckBox>("Check_turn_off_body").isChecked());
    QVERIFY(!sample.find<QCheckBox>("Check_fix_this_body").isChecked());
    QCOMPARE(sample.body(2).turned_off, 0);
}

void BodiesControllerTest::a_name_takes_any_text_as_one_line() {
    Modelled sample;
    auto& box = sample.find<QLineEdit>("Text_body_name");
    QApplication::clipboard()->setText("two\nlines");
    box.selectAll();
    box.paste();
    QTest::keyClick(&box, Qt::Key_Return);
    QVERIFY(sample.body(1).name.find('\n') == std::string::npos);
    QVERIFY(sample.body(1).name.rfind("two", 0) == 0);
    QApplication::clipboard()->setText(QString(10000, 'n'));
    box.selectAll();
    box.paste();
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(sample.body(1).name.size(), std::size_t{10000});
    // A name that is still being typed goes to its own body.
    box.selectAll();
    QTest::keyClicks(&box, "first");
    sample.find<QScrollBar>("HScroll_body").setValue(2);
    QCOMPARE(sample.body(1).name, std::string("first"));
    QCOMPARE(sample.body(2).name, std::string("Second"));
}

void BodiesControllerTest::the_patch_chooses_the_colour() {
    Modelled sample;
    QColor offered;
    sample.form->side().body().set_choose_colour([&](const QColor& present) {
        offered = present;
        return std::optional(QColor(0x10, 0x20, 0x30));
    });
    sample.click("Picture_body_colour");
    QCOMPARE(offered, QColor(0, 0, 255));
    QCOMPARE(sample.body(1).colour, 0x302010);
    sample.form->side().body().set_choose_colour(
        [](const QColor&) -> std::optional<QColor> { return std::nullopt; });
    sample.click("Picture_body_colour");
    QCOMPARE(sample.body(1).colour, 0x302010);
}

void BodiesControllerTest::buttons_and_keys_step_a_parameter() {
    Modelled sample;
    const QString before = sample.status(7);
    QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    QCOMPARE(sample.body(1).dip.value, 95.0F);
    QCOMPARE(sample.shown(param_dip, edit::grid_value), QString("95.0"));
    QVERIFY(sample.status(7) != before);
    QTest::mouseClick(&sample.half("HScroll_dip_1", 0), Qt::LeftButton);
    QCOMPARE(sample.body(1).dip.value, 94.5F);
    auto& bar = sample.find<QWidget>("HScroll_dip_0");
    bar.setFocus();
    QTest::keyClick(&bar, Qt::Key_Left);
    QCOMPARE(sample.body(1).dip.value, 89.5F);
    QTest::keyClick(&bar, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(sample.body(1).dip.value, 90.0F);
    QTest::keyClick(&sample.find<QWidget>("VScroll_depth_1"), Qt::Key_Up, Qt::ShiftModifier);
    QVERIFY(sample.body(1).top.value > 60);
    QTest::mouseClick(&sample.half("VScroll_RemJ_2", 1), Qt::LeftButton);
    QCOMPARE(sample.body(1).rem_i.value, 2.5F);
    QVERIFY(sample.form->workbench().unsaved);
}

void BodiesControllerTest::a_step_takes_over_what_is_being_typed() {
    Modelled sample;
    sample.form->activateWindow();
    sample.type("Text_body_name", "Half typed", false);
    QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    QCOMPARE(sample.body(1).name, std::string("Half typed"));
    QCOMPARE(sample.body(1).dip.value, 95.0F);
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "70");
    QTest::mouseClick(&sample.half("HScroll_dip_0", 0), Qt::LeftButton);
    QCOMPARE(sample.body(1).width.value, 70.0F);
    QCOMPARE(sample.body(1).dip.value, 90.0F);
}

void BodiesControllerTest::a_held_button_repeats() {
    Modelled sample;
    QToolButton& more = sample.half("HScroll_dist_1", 1);
    QTest::mousePress(&more, Qt::LeftButton);
    const bool moved = QTest::qWaitFor([&] { return sample.body(1).distance.value > 1263.5F; }, 5000);
    QTest::mouseRelease(&more, Qt::LeftButton);
    QVERIFY(moved);
}

void BodiesControllerTest::bars_of_missing_rows_are_disabled() {
    Modelled sample;
    QVERIFY(sample.find<QWidget>("HScroll_plunge_0").isEnabled());
    sample.body(1).type = pipe;
    sample.form->news().tell(News::bodies);
    QVERIFY(!sample.find<QWidget>("HScroll_plunge_0").isEnabled());
    QVERIFY(!sample.find<QWidget>("VScroll_depth_extent_1").isEnabled());
    QVERIFY(sample.find<QWidget>("VScroll_depth_0").isEnabled());
}

void BodiesControllerTest::nothing_is_edited_while_a_run_is_on() {
    Modelled sample;
    sample.session.inversion.running = true;
    QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    QTest::keyClick(&sample.find<QWidget>("HScroll_dip_0"), Qt::Key_Right);
    sample.click_cell(param_strike, edit::grid_vary);
    sample.click_cell(param_width, edit::grid_value);
    QVERIFY(!sample.editor());
    sample.click("Check_turn_off_body");
    sample.find<QScrollBar>("HScroll_body").setValue(2);
    for (const char* name : {"menu_add_body_0", "menu_delete_body_0", "menu_set_disable_flag_1"})
        sample.trigger(name);
    sample.click("Command_toggle_invert_body");
    sample.session.inversion.running = false;
    QCOMPARE(sample.body(1).dip.value, 90.0F);
    QCOMPARE(sample.body(1).strike.vary, 0.0F);
    QCOMPARE(sample.body(1).turned_off, 0);
    QCOMPARE(sample.workspace().body_count, 2);
    QCOMPARE(sample.current(), 1);
    QVERIFY(!sample.form->workbench().unsaved);
}

void BodiesControllerTest::commands_add_copy_split_and_delete() {
    Modelled sample;
    const QString before = sample.status(7);
    sample.trigger("menu_add_body_0");
    QCOMPARE(sample.workspace().body_count, 3);
    QCOMPARE(sample.find<QLabel>("Label_body").text(), QString("Body 3 of 3"));
    QCOMPARE(sample.shown(param_distance, edit::grid_value), QString("1250.0"));
    QVERIFY(sample.status(7) != before);
    sample.trigger("menu_add_body_1");
    sample.trigger("menu_add_body_2");
    QCOMPARE(sample.workspace().body_count, 5);
    QCOMPARE(sample.current(), 5);
    QCOMPARE(sample.find<QScrollBar>("HScroll_body").maximum(), 5);
    for (int i = 0; i < 3; ++i) sample.trigger("menu_delete_body_1");
    QCOMPARE(sample.workspace().body_count, 2);
    QCOMPARE(sample.status(7), before);
}

void BodiesControllerTest::a_command_from_the_first_tab_shows_the_model() {
    Modelled sample;
    sample.choose_tab(0);
    sample.trigger("menu_add_body_0");
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.shown(param_distance, edit::grid_value), QString("1250.0"));
    sample.choose_tab(0);
    sample.trigger("menu_sort_bodies_1");
    QCOMPARE(sample.tab(), 0);
}

void BodiesControllerTest::an_emptied_list_disables_the_column() {
    Modelled sample;
    sample.click("Command_toggle_invert_body");
    QVERIFY(sample.form->side().invert_view());
    sample.trigger("menu_delete_body_0");
    QCOMPARE(sample.workspace().body_count, 0);
    QCOMPARE(sample.prompts.questions, std::vector<std::string>());
    QVERIFY2(!sample.form->side().invert_view(), "the bars come back");
    QCOMPARE(sample.find<QLabel>("Label_body").text(), QString("No body"));
    QCOMPARE(sample.shown(param_distance, edit::grid_value), QString());
    for (const char* name : {"HScroll_body", "Text_body_name", "Check_fix_this_body", "Grid_body",
                             "HScroll_dip_0", "Picture_body_colour"})
        QVERIFY2(!sample.find<QWidget>(name).isEnabled(), name);
    for (const char* name : {"menu_add_body_1", "menu_add_body_2", "menu_delete_body_1", "menu_sort_bodies_2",
                             "menu_colour_body_0", "menu_set_fix_flags_3"})
        sample.trigger(name);
    QCOMPARE(sample.workspace().body_count, 0);
    sample.trigger("menu_add_body_0");
    QCOMPARE(sample.current(), 1);
    QVERIFY(sample.find<QWidget>("Grid_body").isEnabled());
    QCOMPARE(sample.find<QLabel>("Label_body").text(), QString("Body 1 of 1"));
}

void BodiesControllerTest::flags_colours_shift_and_sort_are_redrawn() {
    Modelled sample;
    const QString before = sample.status(7);
    sample.trigger("menu_set_disable_flag_1");
    QVERIFY2(sample.status(7) != before, "the curves are flat");
    QVERIFY(sample.find<QCheckBox>("Check_turn_off_body").isChecked());
    sample.trigger("menu_set_disable_flag_0");
    QCOMPARE(sample.status(7), before);
    sample.body(2).susc.value = 100;
    sample.trigger("menu_colour_body_0");
    QVERIFY(sample.body(1).colour != sample.body(2).colour);
    sample.prompts.texts = {"100"};
    sample.trigger("menu_shift_bodies");
    QCOMPARE(sample.shown(param_distance, edit::grid_value), QString("1360.0"));
    sample.trigger("menu_sort_bodies_1");
    QCOMPARE(sample.current(), 2);
    QCOMPARE(sample.text("Text_body_name"), QString("Body 2"));
    QCOMPARE(sample.prompts.messages, std::vector<std::string>{"The bodies have been sorted"});
}

void BodiesControllerTest::the_tie_is_checked_while_it_holds() {
    Modelled sample;
    auto& tie = sample.find<QAction>("menu_tie_pipe_depth_susc");
    QVERIFY(!tie.isChecked());
    sample.trigger("menu_tie_pipe_depth_susc");
    QVERIFY2(!tie.isChecked(), "a cancel leaves it");
    sample.prompts.texts = {"2.5"};
    sample.trigger("menu_tie_pipe_depth_susc");
    QVERIFY(tie.isChecked());
    sample.trigger("menu_tie_pipe_depth_susc");
    QVERIFY(!tie.isChecked());
    QVERIFY(!sample.workspace().display.tie_pipe_depth_susc);
    sample.workspace().display.tie_pipe_depth_susc = true;
    emit sample.find<QMenu>("menu_model").aboutToShow();
    QVERIFY(tie.isChecked());
}

void BodiesControllerTest::a_dropped_line_hides_the_commands() {
    Modelled sample;
    QVERIFY(sample.find<QMenu>("menu_bodies").menuAction()->isVisible());
    sample.choose_tab(0);
    sample.type("Text_MAGINV_nhead", "3");
    QVERIFY(!sample.find<QMenu>("menu_bodies").menuAction()->isVisible());
    QVERIFY(!sample.find<QMenu>("menu_model").menuAction()->isVisible());
    sample.trigger("menu_add_body_0");
    QCOMPARE(sample.workspace().body_count, 2);
}

void BodiesControllerTest::the_column_shows_everything_at_1280_by_800() {
    Modelled sample;
    sample.body(1).type = pipe;
    sample.form->news().tell(News::bodies);
    QTest::qWait(50);
    for (const char* name : {"Frame_body", "Grid_body", "Frame_cylinder", "Command_toggle_invert_body",
                             "VScroll_susc_0", "VScroll_RemJ_5"}) {
        const auto& control = sample.find<QWidget>(name);
        QVERIFY2(control.isVisible(), name);
        QVERIFY2(control.visibleRegion().boundingRect().size() == control.size(), name);
    }
    const int width = sample.form->side().width();
    sample.form->resize(1920, 1080);
    QTest::qWait(30);
    QCOMPARE(sample.form->side().width(), width);
}

QObject* make_bodies_controller_test() {
    return new BodiesControllerTest;
}

}  // namespace anomalis::window

#include "bodies_controller_test.moc"
