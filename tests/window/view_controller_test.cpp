#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QSplitter>

#include "core/paths.h"
#include "core/version.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/charts_panel.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

class ViewControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void a_wrong_box_brings_the_first_tab_back_and_has_the_focus();
    void a_text_that_was_put_into_a_box_is_told_when_it_is_wrong();
    void an_unfinished_text_is_taken_over_before_the_model_is_shown();
    void highlighting_goes_by_the_menu();
    void the_log_tells_its_path_and_is_written_while_it_is_on();
    void a_log_is_not_begun_over_the_data_file_or_the_open_workspace();
    void the_working_folder_is_kept_and_gone_back_to();
    void the_values_of_a_body_become_the_defaults();
    void two_windows_over_one_settings_file_keep_each_others_values();
    void arrow_keys_move_the_bars_under_the_charts();
    void arrow_keys_step_the_bars_of_a_chart();
    void a_click_in_the_plan_selects_a_body();
    void the_menus_of_section_and_plan_lead_to_each_other();
    void the_menu_of_the_section_adds_a_body_at_the_pointer();
    void splitters_stand_where_the_file_has_them();
    void a_splitter_that_was_moved_stays_when_charts_come_and_go();
    void a_data_file_that_vanishes_before_the_load_is_told();
    void the_progress_bar_is_hidden_after_a_load();
};

namespace {

struct Shown : FormSample {
    Shown() : path(write_workspace(folder)) {
        form->resize(1280, 800);
        form->open_file(path);
        settle();
    }
    void settle() { QTest::qWait(120); }
    Workspace& workspace() { return session.workspace; }
    edit::ViewState& view() { return form->workbench().view; }
    chart::GrapherWidget& section() { return form->charts().chart_widget(edit::chart_section); }
    bool is_magenta(const chart::GrapherWidget& widget, QPoint at) {
        return const_cast<chart::GrapherWidget&>(widget).grab().toImage().pixelColor(at) ==
               QColor(255, 0, 255);
    }
    QPoint pixel(chart::GrapherWidget& widget, chart::Point user) {
        const chart::Point surface = widget.chart().UserToSurface(user);
        return {static_cast<int>(surface.x / chart::units_per_screen_pixel),
                static_cast<int>(widget.height() - surface.y / chart::units_per_screen_pixel)};
    }
    chart::Point inside(int number) {
        const ModelBody& body = workspace().body(number);
        return {body.distance.value + 40.0, body.top.value - 30.0};
    }

    TempFolder folder;
    std::string path;
};

}  // namespace

void ViewControllerTest::a_wrong_box_brings_the_first_tab_back_and_has_the_focus() {
    Shown sample;
    sample.choose_tab(0);
    sample.type("Text_VG_filter_width", "0.4");
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 0);
    QCOMPARE(sample.prompts.messages,
             std::vector<std::string>{"The VG/TG filter window width must be positive"});
    QVERIFY(sample.find<QWidget>("Text_VG_filter_width").hasFocus());
    sample.type("Text_VG_filter_width", "5");
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.prompts.messages.size(), std::size_t(1));
    QVERIFY(sample.section().chart().HasPlotDefined());
}

void ViewControllerTest::a_text_that_was_put_into_a_box_is_told_when_it_is_wrong() {
    Shown sample;
    const std::vector<std::pair<const char*, const char*>> messages{
        {"Text_residual_filter_width", "The residual filter window width is invalid"},
        {"Text_VG_filter_width", "The VG filter window width is invalid"},
        {"Text_MAGINV_basemag", "The data background value is invalid"},
        {"Text_MAGINV_topo", "The surface elevation is invalid"},
        {"Text_MAGINV_sensor_offset", "The sensor offset is invalid"}};
    for (const auto& [name, message] : messages) {
        sample.choose_tab(0);
        const QString before = sample.text(name);
        sample.prompts.messages.clear();
        sample.find<QLineEdit>(name).setText("abc");
        sample.choose_tab(1);
        QCOMPARE(sample.tab(), 0);
        QCOMPARE(sample.prompts.messages, std::vector<std::string>{message});
        QVERIFY2(sample.find<QWidget>(name).hasFocus(), name);
        sample.find<QLineEdit>(name).setText(before);
    }
}

void ViewControllerTest::an_unfinished_text_is_taken_over_before_the_model_is_shown() {
    Shown sample;
    sample.choose_tab(0);
    sample.type("Text_residual_filter_width", "7", false);
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.workspace().processing.residual_filter_width, 7);
    QVERIFY(sample.prompts.messages.empty());
    sample.choose_tab(0);
    sample.type("Text_residual_filter_width", "x7", false);
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 0);
    QCOMPARE(sample.workspace().processing.residual_filter_width, 7);
    QCOMPARE(sample.prompts.messages,
             std::vector<std::string>{"The residual filter window width is invalid"});
}

void ViewControllerTest::highlighting_goes_by_the_menu() {
    Shown sample;
    const QPoint at = sample.pixel(sample.section(), sample.inside(1));
    QVERIFY(sample.find<QAction>("menu_highlight_on").isChecked());
    QVERIFY(sample.is_magenta(sample.section(), at));
    sample.find<QAction>("menu_highlight_on").trigger();
    QVERIFY(!sample.view().highlight_on);
    QVERIFY(!sample.is_magenta(sample.section(), at));
}

void ViewControllerTest::the_log_tells_its_path_and_is_written_while_it_is_on() {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    FormSample sample;
    const std::string path = folder.path("axm_logging.dat");
    auto& logging = sample.find<QAction>("menu_do_logging");
    logging.trigger();
    QVERIFY(logging.isChecked());
    QCOMPARE(sample.prompts.messages, std::vector<std::string>{"Logging file is: " + path});
    QVERIFY(sample.session.log.on());
    const std::string first_words = "Start Logging " + std::string(application_version());
    QVERIFY(folder.read("axm_logging.dat").find(first_words) != std::string::npos);
    logging.trigger();
    QVERIFY(!logging.isChecked());
    QVERIFY(!sample.session.log.on());
    QCOMPARE(sample.prompts.messages.size(), std::size_t(2));
    QVERIFY(!folder.read("axm_logging.dat").empty());
}

void ViewControllerTest::a_log_is_not_begun_over_the_data_file_or_the_open_workspace() {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    const std::string path = folder.write("axm_logging.dat", "work of a day");
    FormSample sample;
    Workspace& workspace = sample.session.workspace;
    auto& logging = sample.find<QAction>("menu_do_logging");
    for (std::string* open : {&workspace.definition.data_file, &workspace.model_file}) {
        *open = path;
        logging.trigger();
        open->clear();
        QVERIFY(!logging.isChecked());
        QVERIFY(!sample.session.log.on());
        QCOMPARE(folder.read("axm_logging.dat"), std::string("work of a day"));
    }
    QVERIFY(sample.prompts.told("The log " + path + " would be written over the data file"));
    QVERIFY(sample.prompts.told("The log " + path + " would be written over the open workspace"));
}

void ViewControllerTest::the_working_folder_is_kept_and_gone_back_to() {
    const TempFolder home, elsewhere;
    const CurrentFolder here(home.folder());
    FormSample sample;
    sample.find<QAction>("menu_save_directory").trigger();
    change_to_folder(elsewhere.folder());
    QVERIFY(sample.session.first_dialog);
    sample.find<QAction>("menu_restore_directory").trigger();
    QCOMPARE(current_folder(), home.folder());
    QVERIFY(!sample.session.first_dialog);
}

void ViewControllerTest::the_values_of_a_body_become_the_defaults() {
    Shown sample;
    sample.workspace().body(1).dip.value = 47;
    sample.find<QAction>("menu_save_defaults").trigger();
    QCOMPARE(sample.session.settings.get(settings_section, "Dip"), std::string("47.0"));
    FormSample empty;
    empty.find<QAction>("menu_save_defaults").trigger();
    QCOMPARE(empty.session.settings.get(settings_section, "Dip"), std::string(no_setting));
}

void ViewControllerTest::two_windows_over_one_settings_file_keep_each_others_values() {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    const std::string path = folder.path("settings.conf");
    const std::string model = write_workspace(folder);
    {
        FormSample first({}, path), second({}, path);
        first.form->open_example(model);
        first.session.workspace.body(1).dip.value = 47;
        first.find<QAction>("menu_save_defaults").trigger();
        second.type("Text_mag_intensity", "48000");
        second.form->close();
        first.find<QAction>("menu_save_directory").trigger();
    }
    ScriptedPrompts prompts;
    const Settings after(path, prompts);
    QCOMPARE(after.get(settings_section, "Dip"), std::string("47.0"));
    QCOMPARE(after.get(settings_section, "MagIntensity"), std::string("48000.0"));
    QVERIFY(prompts.messages.empty());
}

void ViewControllerTest::arrow_keys_move_the_bars_under_the_charts() {
    Shown sample;
    auto& zoom = sample.find<QComboBox>("Combo_zoom");
    zoom.setCurrentIndex(5);
    emit zoom.activated(5);
    auto& pan = sample.find<QScrollBar>("HScroll_pan");
    QTest::keyClick(&pan, Qt::Key_Right);
    QCOMPARE(sample.view().window_pan, 8);
    QTest::keyClick(&pan, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(sample.view().window_pan, 9);
    QTest::keyClick(&pan, Qt::Key_Left);
    QCOMPARE(sample.view().window_pan, 1);

    // A wheel on a chart: the list tells the factor, the bar goes on from there.
    chart::AX_Grapher& chart = sample.form->charts().chart_widget(0).chart();
    const chart::Rect plot = chart.PlotRect();
    const double height = chart.Surface()->height();
    chart.HandleWheel(0, 360, static_cast<float>((plot.x_low + plot.x_high) / 2),
                      static_cast<float>(height - (plot.y_low + plot.y_high) / 2));
    QCOMPARE(zoom.currentText(), QString("5.32 x"));
    QCOMPARE(pan.maximum(), 106);
    const chart::Rect before = chart.ViewLimits();
    QTest::keyClick(&pan, Qt::Key_Right);
    QVERIFY(chart.ViewLimits().x_low > before.x_low);
    QVERIFY(std::abs(chart.ViewLimits().width() - before.width()) < 0.01);
    QCOMPARE(zoom.currentText(), QString("5.32 x"));
    emit zoom.activated(zoom.currentIndex());
    QVERIFY(std::abs(chart.ViewLimits().width() - before.width()) < 0.01);
    zoom.setCurrentIndex(0);
    emit zoom.activated(0);
    QCOMPARE(zoom.count(), static_cast<int>(zoom_factors.size()));
    QCOMPARE(zoom.currentText(), QString("1 x"));
}

void ViewControllerTest::arrow_keys_step_the_bars_of_a_chart() {
    Shown sample;
    QTest::keyClick(&sample.find<QWidget>("VScroll_zoom_0"), Qt::Key_Up);
    QCOMPARE(sample.view().charts[edit::chart_mag].chart_zoom_index, 2);
    QTest::keyClick(&sample.find<QWidget>("VScroll_zoom_0"), Qt::Key_Down);
    QCOMPARE(sample.view().charts[edit::chart_mag].chart_zoom_index, 1);
    const float centre = sample.view().charts[edit::chart_grav].chart_centre;
    QTest::keyClick(&sample.find<QWidget>("VScroll_pan_2"), Qt::Key_Up);
    QVERIFY(sample.view().charts[edit::chart_grav].chart_centre > centre);
}

void ViewControllerTest::a_click_in_the_plan_selects_a_body() {
    Shown sample;
    sample.click("Command_show_plan");
    sample.settle();
    chart::GrapherWidget& plan = sample.form->charts().plan_widget();
    const ModelBody& body = sample.workspace().body(2);
    const QPoint at = sample.pixel(plan, {body.east + 40.0, body.north + 60.0});
    QVERIFY(!sample.is_magenta(plan, at));
    QTest::mouseClick(&plan, Qt::LeftButton, {}, at);
    sample.settle();
    QCOMPARE(sample.view().current_body, 2);
    QVERIFY(sample.is_magenta(plan, at));
}

void ViewControllerTest::the_menus_of_section_and_plan_lead_to_each_other() {
    Shown sample;
    sample.find<QAction>("menu_section_show_plan").trigger();
    QVERIFY(sample.view().show_plan);
    sample.find<QAction>("menu_plan_show_section").trigger();
    QVERIFY(!sample.view().show_plan);
}

void ViewControllerTest::the_menu_of_the_section_adds_a_body_at_the_pointer() {
    Shown sample;
    const chart::Point wanted{600, -40};
    const QPoint at = sample.pixel(sample.section(), wanted);
    QTest::mousePress(&sample.section(), Qt::RightButton, {}, at);
    QTest::mouseRelease(&sample.section(), Qt::RightButton, {}, at);
    auto& entry = sample.find<QAction>("menu_add_body_here");
    QVERIFY(sample.section().menu()->isVisible());
    QVERIFY(entry.isEnabled());
    entry.trigger();
    sample.section().menu()->hide();
    QCOMPARE(sample.workspace().body_count, 3);
    QCOMPARE(sample.view().current_body, 3);
    const ModelBody& body = sample.workspace().body(3);
    QVERIFY(std::abs(body.distance.value - wanted.x) < 10);
    QVERIFY(std::abs(body.top.value - wanted.y) < 5);
    QVERIFY(sample.form->windowTitle().endsWith("*"));

    QTest::mousePress(&sample.section(), Qt::RightButton, {}, {3, 3});
    QTest::mouseRelease(&sample.section(), Qt::RightButton, {}, {3, 3});
    QVERIFY2(!entry.isEnabled(), "outside the plot");
    sample.section().menu()->hide();
}

void ViewControllerTest::splitters_stand_where_the_file_has_them() {
    Shown sample;
    DisplaySettings& display = sample.workspace().display;
    display.valid = true;
    display.splitter_fraction = {0.45F, 0.4F, 0.7F, 0};
    const std::string moved = sample.folder.path("moved.axm");
    QCOMPARE(workspace_file::write_model_parameters(0, moved, sample.workspace(), sample.prompts), 0);
    sample.form->open_example(moved);
    sample.settle();
    const auto height = [&](int chart) { return sample.form->charts().chart_widget(chart).height(); };
    const double all = sample.find<QWidget>("Image_splitter").height();
    QVERIFY(std::abs(height(edit::chart_section) - 0.55 * all) < 0.03 * all);
    const double mag = height(edit::chart_mag) + height(edit::chart_mag_gradient);
    QVERIFY(std::abs(height(edit::chart_mag) - 0.4 * mag) < 0.05 * mag);
    const double grav = height(edit::chart_grav) + height(edit::chart_grav_gradient);
    QVERIFY(height(edit::chart_grav) > 0.6 * grav);
}

void ViewControllerTest::a_splitter_that_was_moved_stays_when_charts_come_and_go() {
    Shown sample;
    auto& splitter = sample.find<QSplitter>("Image_splitter");
    const int all = splitter.height();
    splitter.setSizes({all / 4, all / 4, all / 2});
    emit splitter.splitterMoved(all / 2, 2);
    sample.settle();
    QVERIFY(std::abs(sample.view().pane_fractions[edit::splitter_section] - 0.5) < 0.03);
    sample.click("Command_show_plan");
    sample.settle();
    sample.click("Command_show_plan");
    sample.choose_tab(0);
    sample.choose_tab(1);
    sample.settle();
    QVERIFY(std::abs(sample.section().height() - all / 2) < 0.03 * all);
}

void ViewControllerTest::a_data_file_that_vanishes_before_the_load_is_told() {
    FormSample sample;
    const TempFolder folder;
    const std::string data = folder.write("line.dat", edit::east_line_text(20));
    sample.prompts.open_paths.push_back(data);
    sample.click("Command_select_data_location_file");
    QVERIFY(!sample.find<QPlainTextEdit>("Text_data_file").toPlainText().isEmpty());
    QVERIFY(std::filesystem::remove(data));
    sample.click("Command_load_locations");
    QCOMPARE(sample.prompts.messages, std::vector<std::string>{"The specified data file does not exist"});
    QCOMPARE(sample.text("Text_number_locations"), QString());
    QVERIFY(!QApplication::overrideCursor());
}

void ViewControllerTest::the_progress_bar_is_hidden_after_a_load() {
    Shown sample;
    QVERIFY(!sample.find<QProgressBar>("ProgressBar_load").isVisible());
}

QObject* make_view_controller_test() {
    return new ViewControllerTest;
}

}  // namespace anomalis::window

#include "view_controller_test.moc"
