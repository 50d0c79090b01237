#include "window/shell/form_inversion.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>

#include "chart/ax_grapher.h"
#include "core/body_parameters.h"
#include "core/paths.h"
#include "edit/change.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/charts_panel.h"
#include "window/widgets/limit_strip.h"

namespace anomalis::window {

namespace {

/// An opened line with two sheets, the page of the model in front, yields served as in the real window.
struct Opened : FormSample {
    explicit Opened(int stations = edit::LineSample::stations) {
        form->open_file(write_workspace(folder, stations));
        form->load_locations();
        choose_tab(1);
        prompts.messages.clear();
        prompts.on_yield = [] { QCoreApplication::processEvents(); };
        // The runs of these tests take their iterations one by one.
        auto& methods = find<QComboBox>("Combo_inversion_method");
        emit methods.activated(methods.findText("Sweep"));
    }
    Workspace& workspace() { return session.workspace; }
    float distance(int number) { return workspace().body(number).distance.value; }
    QAction& action(const char* name) { return find<QAction>(name); }
    void show_inversion() {
        if (!find<QWidget>("Frame_invert").isVisible()) click("Command_toggle_invert_body");
    }
    const flow::InversionPanel& panel() { return form->inversion().desk().panel(); }

    TempFolder folder;
};

class FormInversionTest : public QObject {
    Q_OBJECT

  private slots:
    void the_button_shows_the_inversion_and_the_misfit_before_it();
    void a_run_by_click_moves_the_model_and_can_be_undone_by_key();
    void deleting_and_reading_come_back_by_key();
    void the_caption_marks_what_is_unsaved();
    void while_it_runs_only_the_stop_is_served();
    void escape_stops_the_run();
    void a_bar_held_down_does_not_move_during_a_run();
    void a_request_to_close_stops_the_run_first();
    void the_limit_bars_lie_over_the_plot_and_choose_the_stations();
    void odd_texts_in_the_box_of_iterations_do_no_harm();
    void the_list_of_channels_follows_the_line();
    void a_new_line_goes_back_to_the_bars_that_move_the_body();
    void half_typed_texts_keep_the_keys_of_undo();
};

void FormInversionTest::the_button_shows_the_inversion_and_the_misfit_before_it() {
    Opened sample;
    QVERIFY(!sample.find<QWidget>("Frame_invert").isVisible());
    sample.show_inversion();
    QVERIFY(sample.find<QWidget>("Frame_invert").isVisible());
    QVERIFY(!sample.find<QWidget>("Frame_move_body").isVisible());
    QCOMPARE(sample.find<QPushButton>("Command_toggle_invert_body").text(), QString("Move This Body"));
    QVERIFY(sample.text("Text_MAGINV_misfit_0").toDouble() > 0);
    QVERIFY(!sample.find<QWidget>("Frame_stop_inversion").isVisible());
    QVERIFY(!sample.find<QWidget>("Label_status").isVisible());
    QVERIFY(!sample.find<QPushButton>("Command_restore_best").isEnabled());
    QVERIFY(!sample.find<QPushButton>("Command_reject_changes").isEnabled());
    sample.click("Command_toggle_invert_body");
    QVERIFY(!sample.find<QWidget>("Frame_invert").isVisible());
}

void FormInversionTest::a_run_by_click_moves_the_model_and_can_be_undone_by_key() {
    Opened sample;
    sample.show_inversion();
    const float before = sample.workspace().body(1).susc.value;
    const float place = sample.distance(1);
    sample.click("Command_invert_1");
    QVERIFY(sample.find<QLabel>("Label_status").isVisible());
    QVERIFY(!sample.find<QLabel>("Label_status").text().isEmpty());
    QVERIFY(sample.distance(1) != place || sample.workspace().body(1).susc.value != before);
    QVERIFY(sample.text("Text_num_iterations").toInt() >= 1);
    QVERIFY(sample.text("Text_MAGINV_misfit_1").toDouble() < sample.text("Text_MAGINV_misfit_0").toDouble());
    QVERIFY(sample.find<QPushButton>("Command_reject_changes").isEnabled());
    QVERIFY(sample.form->windowTitle().endsWith(" *"));
    QVERIFY(!QApplication::overrideCursor());
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.distance(1), place);
    QVERIFY2(!sample.find<QLabel>("Label_status").isVisible(), "the run is taken back");
    QVERIFY(!sample.form->windowTitle().endsWith(" *"));
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(sample.distance(1) != place || sample.workspace().body(1).susc.value != before);
    QVERIFY(sample.find<QLabel>("Label_status").isVisible());
    QVERIFY(sample.find<QPushButton>("Command_reject_changes").isEnabled());
    QVERIFY(sample.find<QAction>("menu_reject_changes").isEnabled());
    sample.click("Command_reject_changes");
    QCOMPARE(sample.distance(1), place);
    QVERIFY(!sample.find<QPushButton>("Command_reject_changes").isEnabled());
    emit sample.find<QMenu>("menu_model").aboutToShow();
    QVERIFY(!sample.find<QAction>("menu_reject_changes").isEnabled());
}

void FormInversionTest::deleting_and_reading_come_back_by_key() {
    Opened sample;
    edit::Workbench& workbench = sample.form->workbench();
    sample.workspace().body_count = 0;
    edit::note_change(workbench, {"delete all bodies", "", true});
    sample.form->news().tell(News::bodies);
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.workspace().body_count, 2);
    sample.workspace().body(1).distance.value += 5;
    edit::note_change(workbench, {"distance", "", false});
    const TempFolder other;
    sample.form->open_file(write_workspace(other, 51));
    QCOMPARE(sample.workspace().station_count, 51);
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.workspace().station_count, edit::LineSample::stations);
    QCOMPARE(sample.distance(1), 1265.0F);
    QCOMPARE(sample.workspace().definition.data_file, sample.folder.path("line.dat"));
    QVERIFY(sample.find<QWidget>("Text_data_locations")
                .toolTip()
                .contains(QString::fromStdString(sample.folder.path("line.dat"))));
}

void FormInversionTest::the_caption_marks_what_is_unsaved() {
    Opened sample;
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    sample.choose_tab(0);
    sample.type("Text_MAGINV_sensor_offset", "12");
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm *"));
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.text("Text_MAGINV_sensor_offset"), QString("10"));
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
}

void FormInversionTest::while_it_runs_only_the_stop_is_served() {
    Opened sample;
    sample.show_inversion();
    bool looked = false;
    sample.prompts.on_yield = [&] {
        if (looked || !sample.form->inversion().desk().running()) return;
        looked = true;
        QVERIFY(sample.find<QWidget>("Frame_stop_inversion").isVisible());
        QVERIFY(sample.find<QPushButton>("Command_stop_inversion").isEnabled());
        QVERIFY(sample.action("menu_stop_inversion").isEnabled());
        for (const char* name : {"menu_undo", "menu_open_model_0", "menu_invert_1", "menu_force_recalc"})
            QVERIFY2(!sample.action(name).isEnabled(), name);
        for (const char* name : {"Command_invert_0", "Command_invert_1", "Command_show_plan", "Combo_zoom",
                                 "Text_MAGINV_xpos", "Command_load_locations"})
            QVERIFY2(!sample.find<QWidget>(name).isEnabled(), name);
        sample.choose_tab(0);
        sample.form->load_locations();
        sample.form->open_file(sample.folder.path("line.axm"));
        QCOMPARE(sample.workspace().station_count, edit::LineSample::stations);
        sample.choose_tab(1);
        sample.click("Command_stop_inversion");
        QVERIFY(!sample.find<QWidget>("Frame_stop_inversion").isVisible());
    };
    sample.click("Command_invert_1");
    QVERIFY(looked);
    QCOMPARE(sample.text("Text_num_iterations"), QString("1"));
    for (const char* name : {"Command_invert_0", "Command_show_plan", "Combo_zoom", "Text_MAGINV_xpos"})
        QVERIFY2(sample.find<QWidget>(name).isEnabled(), name);
    QVERIFY(sample.action("menu_undo").isEnabled());
    QVERIFY(!sample.action("menu_stop_inversion").isEnabled());
}

void FormInversionTest::escape_stops_the_run() {
    Opened sample;
    bool pressed = false;
    sample.prompts.on_yield = [&] {
        if (pressed || !sample.form->inversion().desk().running()) return;
        pressed = true;
        QTest::keyClick(sample.form.get(), Qt::Key_Escape);
    };
    QTest::keyClick(sample.form.get(), Qt::Key_I, Qt::ControlModifier);
    QVERIFY(pressed);
    QCOMPARE(sample.text("Text_num_iterations"), QString("1"));
    QVERIFY(sample.find<QWidget>("Frame_invert").isVisible());
}

void FormInversionTest::a_bar_held_down_does_not_move_during_a_run() {
    Opened sample;
    sample.find<QComboBox>("Combo_zoom").setCurrentIndex(5);
    sample.form->charts().view().choose_zoom_factor(5);
    auto& bar = sample.find<QScrollBar>("HScroll_pan");
    QVERIFY(bar.isEnabled());
    QTest::mousePress(&bar, Qt::LeftButton, {}, {bar.width() - 4, bar.height() / 2});
    int before = 0;
    int yields = 0;
    sample.prompts.on_yield = [&] {
        if (!sample.form->inversion().desk().running()) return;
        if (yields++ == 0) before = bar.value();
        if (yields < 10) QTest::qWait(60);
        QCOMPARE(bar.value(), before);
    };
    QTest::keyClick(sample.form.get(), Qt::Key_I, Qt::ControlModifier);
    QVERIFY(yields > 0);
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, {bar.width() - 4, bar.height() / 2});
    QVERIFY(bar.isEnabled());
    QVERIFY(!sample.prompts.told("Subscript"));
}

void FormInversionTest::a_request_to_close_stops_the_run_first() {
    Opened sample;
    bool asked = false;
    sample.prompts.on_yield = [&] {
        if (asked || !sample.form->inversion().desk().running()) return;
        asked = true;
        QVERIFY(!sample.form->close());
        QVERIFY(sample.form->isVisible());
    };
    QTest::keyClick(sample.form.get(), Qt::Key_I, Qt::ControlModifier);
    QVERIFY(asked);
    QTRY_VERIFY(!sample.form->isVisible());
    QCOMPARE(sample.text("Text_num_iterations"), QString("1"));
}

void FormInversionTest::the_limit_bars_lie_over_the_plot_and_choose_the_stations() {
    Opened sample;
    sample.form->grab();
    auto& strip = sample.find<QWidget>("Picture_inversion_limits");
    auto& first = sample.find<QWidget>("Image_inversion_limit_0");
    auto& last = sample.find<QWidget>("Image_inversion_limit_1");
    QVERIFY(strip.isVisible() && first.isVisible() && last.isVisible());
    const chart::Rect plot = sample.form->charts().chart_widget(edit::chart_section).chart().PlotRect();
    QVERIFY(std::abs(strip.x() + first.geometry().center().x() - plot.x_low / 15) < 12);
    QVERIFY(std::abs(strip.x() + last.geometry().center().x() - plot.x_high / 15) < 12);
    const auto drag = [](QWidget& bar, int by) {
        const QPoint from = bar.rect().center();
        QTest::mousePress(&bar, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + QPoint(by, 0), bar.mapToGlobal(from + QPoint(by, 0)),
                         Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&bar, &move);
        QTest::mouseRelease(&bar, Qt::LeftButton, {}, bar.rect().center());
    };
    const int quarter = static_cast<int>(plot.width() / 15 / 4);
    drag(first, quarter);
    QVERIFY(std::abs(sample.workspace().first_station - 26) <= 2);
    QCOMPARE(sample.workspace().last_station, edit::LineSample::stations);
    sample.form->grab();
    QVERIFY(std::abs(strip.x() + first.geometry().center().x() - plot.x_low / 15 - quarter) < 10);
    drag(last, -quarter);
    QVERIFY(std::abs(sample.workspace().last_station - 76) <= 2);
    drag(first, 3 * quarter);
    QVERIFY(sample.workspace().first_station < sample.workspace().last_station);
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.workspace().last_station, edit::LineSample::stations);
    QCOMPARE(sample.workspace().first_station, 1);
}

void FormInversionTest::odd_texts_in_the_box_of_iterations_do_no_harm() {
    Opened sample;
    sample.show_inversion();
    for (Workspace* w = &sample.workspace(); ModelBody * body : {&w->body(1), &w->body(2)})
        for (const BodyParameter& row : body_parameters()) (body->*row.slot).vary = 0;
    sample.workspace().body(1).susc.vary = 1;
    const std::vector<std::pair<QString, QString>> cases{{"", "25"},
                                                         {"   ", "25"},
                                                         {"abc", "25"},
                                                         {"1e999", "25"},
                                                         {"0", "1"},
                                                         {"-3", "1"},
                                                         {"2.6", "3"},
                                                         {"3\n4", "25"},
                                                         {"nan", "25"},
                                                         {"7", "7"},
                                                         {QString(10000, '9'), "25"}};
    for (const auto& [typed, shown] : cases) {
        auto& box = sample.find<QLineEdit>("Text_max_iterations");
        box.setFocus();
        box.selectAll();
        QApplication::clipboard()->setText(typed);
        if (typed.isEmpty()) {
            QTest::keyClick(&box, Qt::Key_Delete);
        } else {
            box.paste();
        }
        sample.click("Command_invert_0");
        QVERIFY2(box.text() == shown, qPrintable(typed.left(20) + " gave " + box.text()));
    }
}

void FormInversionTest::the_list_of_channels_follows_the_line() {
    Opened sample;
    sample.show_inversion();
    auto& channels = sample.find<QComboBox>("Combo_invert");
    QCOMPARE(channels.currentIndex(), 0);
    channels.setFocus();
    QTest::keyClick(&channels, Qt::Key_Down);
    QCOMPARE(sample.panel().channel_index, 1);
    sample.choose_tab(0);
    sample.choose_tab(1);
    QCOMPARE(channels.currentIndex(), 1);
    sample.workspace().definition.grav_column = 0;
    sample.choose_tab(0);
    sample.choose_tab(1);
    QCOMPARE(channels.currentIndex(), 0);
}

void FormInversionTest::a_new_line_goes_back_to_the_bars_that_move_the_body() {
    Opened sample;
    sample.show_inversion();
    sample.click("Command_invert_0");
    sample.form->load_locations();
    QVERIFY(!sample.find<QWidget>("Frame_invert").isVisible());
    sample.choose_tab(1);
    QVERIFY(sample.find<QWidget>("Frame_move_body").isVisible());
    QCOMPARE(sample.text("Text_MAGINV_misfit_0"), QString());
    QVERIFY(!sample.find<QPushButton>("Command_restore_best").isEnabled());
    sample.show_inversion();
    QVERIFY(!sample.text("Text_MAGINV_misfit_0").isEmpty());
}

void FormInversionTest::half_typed_texts_keep_the_keys_of_undo() {
    Opened sample;
    sample.choose_tab(0);
    sample.type("Text_MAGINV_sensor_offset", "12");
    sample.type("Text_MAGINV_sensor_offset", "34", false);
    auto& box = sample.find<QLineEdit>("Text_MAGINV_sensor_offset");
    QTest::keyClick(&box, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.workspace().sensor_offset, 12.0F);
    QVERIFY(box.text() != "34");
}

}  // namespace

QObject* make_form_inversion_test() {
    return new FormInversionTest;
}

}  // namespace anomalis::window

#include "form_inversion_test.moc"
