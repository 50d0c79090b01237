#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>

#include "edit/body_grid.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

/// The page of the model as someone works it with keys and clicks.
class ModelKeysTest : public QObject {
    Q_OBJECT

  private slots:
    void right_and_up_raise_the_body();
    void page_keys_change_the_body_from_any_control_data();
    void page_keys_change_the_body_from_any_control();
    void page_keys_take_over_what_is_typed_first();
    void page_keys_leave_the_first_page_alone();
    void an_arrow_on_a_fine_bar_is_a_fine_step();
    void the_misfit_now_follows_every_command_data();
    void the_misfit_now_follows_every_command();
    void the_types_are_on_their_list_from_the_start();
    void an_empty_section_says_how_to_begin_until_the_first_body();
    void moving_and_inverting_are_two_tabs_of_one_place();
    void all_bodies_are_fixed_and_freed_in_plain_words();
};

namespace {

/// Three bodies, so that there is a way from the middle one both up and down.
struct ThreeBodies : Modelled {
    ThreeBodies() {
        trigger("menu_add_body_1");
        form->charts().view().select_body(2);
        form->activateWindow();
        QTest::qWait(1);
    }
    /// Hands a key to whatever has the focus, by way of the window as the system does.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(form->windowHandle(), key, modifiers);
    }
};

}  // namespace

void ModelKeysTest::right_and_up_raise_the_body() {
    ThreeBodies sample;
    auto& selector = sample.find<QScrollBar>("HScroll_body");
    selector.setFocus();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up}) {
        sample.form->charts().view().select_body(2);
        sample.press(key);
        QCOMPARE(sample.current(), 3);
        sample.press(key);
        QCOMPARE(sample.current(), 3);
    }
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Down}) {
        sample.form->charts().view().select_body(2);
        sample.press(key);
        QCOMPARE(sample.current(), 1);
    }
    sample.press(Qt::Key_End);
    QCOMPARE(sample.current(), 3);
    sample.press(Qt::Key_Home);
    QCOMPARE(sample.current(), 1);
}

void ModelKeysTest::page_keys_change_the_body_from_any_control_data() {
    QTest::addColumn<QString>("control");
    for (const char* control :
         {"HScroll_body", "Text_body_name", "Grid_body", "HScroll_dip_0", "HScroll_dip_1", "vsgraph_model_0",
          "vsgraph_model_4", "VScroll_zoom_0", "HScroll_pan", "Combo_zoom", "Check_fix_this_body",
          "Command_toggle_invert_body", "Tab_model"})
        QTest::newRow(control) << QString(control);
}

void ModelKeysTest::page_keys_change_the_body_from_any_control() {
    QFETCH(QString, control);
    ThreeBodies sample;
    QWidget* widget = &sample.find<QWidget>(qPrintable(control));
    if (auto* tabs = qobject_cast<QTabWidget*>(widget)) widget = tabs->tabBar();
    widget->setFocus();
    if (widget->isEnabled()) QVERIFY2(widget->hasFocus(), qPrintable(control));
    sample.press(Qt::Key_PageDown);
    QCOMPARE(sample.current(), 3);
    QCOMPARE(sample.find<QScrollBar>("HScroll_body").value(), 3);
    sample.press(Qt::Key_PageDown);
    QCOMPARE(sample.current(), 3);
    for (const int body : {2, 1, 1}) {
        sample.press(Qt::Key_PageUp);
        QCOMPARE(sample.current(), body);
    }
    QVERIFY2(!sample.form->workbench().unsaved || sample.workspace().body_count == 3, "looking is no change");
}

void ModelKeysTest::page_keys_take_over_what_is_typed_first() {
    ThreeBodies sample;
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "64");
    sample.press(Qt::Key_PageUp);
    QCOMPARE(sample.current(), 1);
    QCOMPARE(sample.body(2).width.value, 64.0F);
    QCOMPARE(sample.body(1).width.value, 100.0F);
    QVERIFY(!sample.editor());
    sample.type("Text_body_name", "Renamed", false);
    sample.press(Qt::Key_PageDown);
    QCOMPARE(sample.body(1).name, std::string("Renamed"));
    QCOMPARE(sample.current(), 2);
}

void ModelKeysTest::page_keys_leave_the_first_page_alone() {
    ThreeBodies sample;
    sample.choose_tab(0);
    sample.press(Qt::Key_PageUp);
    QCOMPARE(sample.current(), 2);
    QVERIFY(!sample.find<QAction>("Shortcut_next_body").isEnabled());
    sample.choose_tab(1);
    QVERIFY(sample.find<QAction>("Shortcut_next_body").isEnabled());
    sample.trigger("menu_delete_body_0");
    QVERIFY(!sample.find<QAction>("Shortcut_next_body").isEnabled());
}

void ModelKeysTest::an_arrow_on_a_fine_bar_is_a_fine_step() {
    ThreeBodies sample;
    const auto dip = [&] { return sample.body(2).dip.value; };
    const float before = dip();
    sample.find<QWidget>("HScroll_dip_1").setFocus();
    sample.press(Qt::Key_Left);
    QCOMPARE(dip(), before - 0.5F);
    sample.press(Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(dip(), before);
    sample.find<QWidget>("HScroll_dip_0").setFocus();
    sample.press(Qt::Key_Left);
    QCOMPARE(dip(), before - 5.0F);
    sample.press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(dip(), before - 4.5F);
}

void ModelKeysTest::the_misfit_now_follows_every_command_data() {
    QTest::addColumn<QString>("command");
    for (const char* command :
         {"menu_add_body_0", "menu_add_body_1", "menu_add_body_2", "menu_delete_body_1", "menu_sort_bodies_1",
          "menu_sort_bodies_3", "menu_set_disable_flag_1", "menu_set_demag_flags_0", "menu_force_recalc",
          "menu_undo", "type", "click", "bar", "from the first page", "the first body", "on the plan"})
        QTest::newRow(command) << QString(command);
}

void ModelKeysTest::the_misfit_now_follows_every_command() {
    QFETCH(QString, command);
    ThreeBodies sample;
    sample.click("Command_toggle_invert_body");
    if (command == "type") {
        sample.click_cell(edit::row_type, edit::grid_value);
        auto& types = sample.find<QComboBox>("Combo_model_type");
        types.setCurrentIndex(types.findData(thin_sheet));
        emit types.activated(types.currentIndex());
    } else if (command == "click") {
        sample.form->charts().view().select_body(1);
        sample.click("Check_turn_off_body");
    } else if (command == "bar") {
        sample.click("Command_toggle_invert_body");
        QTest::mouseClick(&sample.half("HScroll_dip_0", 1), Qt::LeftButton);
    } else if (command == "from the first page") {
        sample.choose_tab(0);
        sample.trigger("menu_add_body_1");
    } else if (command == "the first body") {
        sample.trigger("menu_delete_body_0");
        sample.trigger("menu_add_body_0");
    } else if (command == "on the plan") {
        sample.click("Command_show_plan");
        sample.trigger("menu_sort_bodies_1");
    } else {
        sample.trigger(qPrintable(command));
    }
    const MisfitPair& misfit = sample.form->charts().misfit();
    QCOMPARE(sample.text("Text_MAGINV_misfit_1"), QString::number(static_cast<double>(misfit[0]), 'f', 3));
    QCOMPARE(sample.text("Text_MAGINV_misfit_3"), QString::number(static_cast<double>(misfit[1]), 'f', 3));
}

void ModelKeysTest::the_types_are_on_their_list_from_the_start() {
    FormSample sample;
    auto& types = sample.find<QComboBox>("Combo_model_type");
    QStringList names;
    for (int i = 0; i < types.count(); ++i) names << types.itemText(i);
    QStringList offered;
    for (const BodyType type : body_types_offered(sample.session.workspace))
        offered << QString::fromStdString(std::string(body_type_name(type)));
    QCOMPARE(names, offered);
    for (const char* usual : {"Thin Sheet", "Thick Sheet", "Cylinder/pipe", "Wire"})
        QVERIFY2(names.contains(usual), usual);
    QCOMPARE(types.currentIndex(), -1);
    QVERIFY(!types.isVisible());
}

void ModelKeysTest::an_empty_section_says_how_to_begin_until_the_first_body() {
    Modelled sample;
    auto& hint = sample.find<QWidget>("Frame_empty_section");
    QVERIFY(!hint.isVisible());
    sample.trigger("menu_delete_body_0");
    QVERIFY(hint.isVisible());
    QVERIFY(hint.parentWidget()->rect().contains(hint.geometry()));
    sample.click("Command_hint_add");
    QCOMPARE(sample.workspace().body_count, 1);
    QVERIFY(!hint.isVisible());
    sample.trigger("menu_undo");
    QVERIFY(hint.isVisible());
    sample.click("Command_hint_find");
    QVERIFY(sample.find<QPushButton>("Command_find").isVisible());
    QVERIFY2(!hint.isVisible(), "models are looked at there");
}

void ModelKeysTest::moving_and_inverting_are_two_tabs_of_one_place() {
    Modelled sample;
    auto& toggle = sample.find<QPushButton>("Command_toggle_invert_body");
    auto& on_show = sample.find<QPushButton>("Label_view_on_show");
    const auto left_of = [](const QWidget& a, const QWidget& b) { return a.x() < b.x(); };
    QTest::qWait(1);
    QCOMPARE(on_show.text(), QString("Move This Body"));
    QVERIFY(left_of(on_show, toggle));
    toggle.click();
    QTest::qWait(1);
    QCOMPARE(on_show.text(), QString("Perform Inversion"));
    QCOMPARE(toggle.text(), QString("Move This Body"));
    QVERIFY2(left_of(toggle, on_show), "the captions keep their places");
    QVERIFY(sample.find<QWidget>("Frame_invert").isVisible());
    QVERIFY(!sample.find<QWidget>("Frame_move_body").isVisible());
}

void ModelKeysTest::all_bodies_are_fixed_and_freed_in_plain_words() {
    Modelled sample;
    sample.trigger("menu_fix_all");
    QVERIFY(sample.body(1).vary == 0 && sample.body(2).vary == 0);
    QVERIFY(sample.find<QCheckBox>("Check_fix_this_body").isChecked());
    sample.trigger("menu_free_all");
    QVERIFY(sample.body(1).vary == 1 && sample.body(2).vary == 1);
}

QObject* make_model_keys_test() {
    return new ModelKeysTest;
}

}  // namespace anomalis::window

#include "model_keys_test.moc"
