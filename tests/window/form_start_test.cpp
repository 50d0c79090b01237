#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTextBrowser>

#include "core/paths.h"
#include "core/version.h"
#include "show/page_layout.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/shell/window_place.h"

namespace anomalis::window {

class FormStartTest : public QObject {
    Q_OBJECT

  private slots:
    void starts_on_the_first_tab_with_the_defaults_in_the_boxes();
    void menus_of_a_line_are_hidden_without_one();
    void without_a_line_the_model_page_says_what_to_do();
    void an_example_is_one_click_away();
    void settings_of_the_last_session_come_back();
    void keeps_field_values_size_and_axes_at_exit();
    void a_window_is_put_on_the_screens_that_are_there_data();
    void a_window_is_put_on_the_screens_that_are_there();
    void places_and_splitters_of_no_sense_are_as_none();
    void the_window_comes_back_where_it_stood();
    void a_screen_that_goes_takes_no_window_with_it();
    void a_dialog_larger_than_the_screen_is_cut_to_it();
    void a_dropped_workspace_opens_and_a_dropped_data_file_is_imported();
    void about_tells_the_version_and_whose_the_libraries_are();
};

namespace {

void drop(Form_anomalis& form, const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&form, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&form, &event);
}

bool menu_shown(FormSample& sample, const char* name) {
    return sample.find<QMenu>(name).menuAction()->isVisible();
}

}  // namespace

void FormStartTest::starts_on_the_first_tab_with_the_defaults_in_the_boxes() {
    FormSample sample;
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis"));
    QCOMPARE(sample.tab(), 0);
    QCOMPARE(sample.text("Text_mag_intensity"), QString("56000.0"));
    QCOMPARE(sample.text("Text_mag_inclination"), QString("-65.0"));
    QCOMPARE(sample.text("Text_MAGINV_nhead"), QString("2"));
    QCOMPARE(sample.text("Text_MAGINV_nLast"), QString("0"));
    QCOMPARE(sample.text("Text_VG_filter_width"), QString("5"));
    QCOMPARE(sample.text("Text_MAGINV_basemag"), QString());
    QCOMPARE(sample.text("Text_infinite_body_length"), QString("500"));
    QCOMPARE(sample.text("Text_number_locations"), QString());
    QVERIFY(!sample.session.model_changed);
    QVERIFY(sample.prompts.messages.empty());
}

void FormStartTest::menus_of_a_line_are_hidden_without_one() {
    FormSample sample;
    QVERIFY(!menu_shown(sample, "menu_view"));
    QVERIFY(!menu_shown(sample, "menu_model"));
    QVERIFY(menu_shown(sample, "menu_file"));
    const TempFolder folder;
    sample.form->open_file(write_workspace(folder));
    sample.choose_tab(0);
    QVERIFY(menu_shown(sample, "menu_view"));
    QVERIFY(menu_shown(sample, "menu_model"));
    sample.type("Text_MAGINV_nhead", "3");
    QVERIFY(!menu_shown(sample, "menu_view"));
}

void FormStartTest::without_a_line_the_model_page_says_what_to_do() {
    FormSample sample;
    sample.choose_tab(1);
    QVERIFY(sample.find<QWidget>("Frame_hint").isVisible());
    QVERIFY(!sample.find<QWidget>("vsgraph_model_4").isVisible());
    QVERIFY(sample.prompts.messages.empty());
}

void FormStartTest::an_example_is_one_click_away() {
    const TempFolder folder;
    FormSample sample({{write_workspace(folder), "Some line"}});
    for (auto* button : sample.find<QWidget>("Frame_welcome").findChildren<QPushButton*>())
        if (button->text() == "Some line") button->click();
    QCOMPARE(sample.tab(), 1);
    QVERIFY(sample.find<QWidget>("vsgraph_model_4").isVisible());
    QCOMPARE(sample.session.workspace.station_count, edit::LineSample::stations);
    QCOMPARE(sample.find<QAction>("menu_example_0").text(), QString("Some line"));
}

void FormStartTest::settings_of_the_last_session_come_back() {
    const TempFolder folder;
    const std::string path = folder.path("settings.conf");
    {
        ScriptedPrompts prompts;
        Settings settings(path, prompts);
        settings.set(settings_section, "MagIntensity", "48123");
        settings.set(settings_section, "MagInclination", "61.5");
        settings.set(settings_section, "DisplayAxes", "0");
        settings.set(settings_section, "FormSize", " 20100; 13500");
    }
    FormSample sample({}, path);
    QCOMPARE(sample.text("Text_mag_intensity"), QString("48123.0"));
    QCOMPARE(sample.text("Text_mag_inclination"), QString("61.5"));
    QCOMPARE(sample.text("Text_mag_declination"), QString("-4.0"));
    QVERIFY(!sample.find<QAction>("menu_display_axes").isChecked());
    QCOMPARE(sample.form->size(), QSize(1340, 900));
}

void FormStartTest::keeps_field_values_size_and_axes_at_exit() {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    const std::string path = folder.path("settings.conf");
    {
        FormSample sample({}, path);
        sample.form->resize(1400, 900);
        sample.type("Text_mag_intensity", "51940.25", false);
        sample.form->close();
    }
    ScriptedPrompts prompts;
    const Settings settings(path, prompts);
    QCOMPARE(settings.get(settings_section, "MagIntensity"), std::string("51940.3"));
    QCOMPARE(settings.get(settings_section, "MagDeclination"), std::string("-4.0"));
    QCOMPARE(settings.get(settings_section, "FormSize"), std::string("21000; 13500"));
    QCOMPARE(settings.get(settings_section, "DisplayAxes"), std::string("1"));
    QCOMPARE(settings.get(settings_section, "WorkingDirectory"), folder.folder());
}

namespace {

const QRect laptop(0, 0, 1366, 768), desk(1366, 0, 1920, 1040);

}  // namespace

void FormStartTest::a_window_is_put_on_the_screens_that_are_there_data() {
    QTest::addColumn<QRect>("wanted");
    QTest::addColumn<QList<QRect>>("screens");
    QTest::addColumn<QRect>("placed");
    const QList<QRect> both{laptop, desk};
    QTest::newRow("fits") << QRect(20, 30, 1280, 720) << both << QRect(20, 30, 1280, 720);
    QTest::newRow("too large") << QRect(0, 0, 1920, 1080) << QList<QRect>{laptop} << laptop;
    QTest::newRow("too far right") << QRect(800, 30, 1000, 700) << QList<QRect>{laptop}
                                   << QRect(366, 30, 1000, 700);
    QTest::newRow("above the top") << QRect(10, -300, 1000, 700) << QList<QRect>{laptop}
                                   << QRect(10, 0, 1000, 700);
    QTest::newRow("most of it on the second")
        << QRect(1300, 10, 1280, 800) << both << QRect(1366, 10, 1280, 800);
    QTest::newRow("of a screen that is gone")
        << QRect(2000, 100, 1280, 800) << QList<QRect>{laptop} << QRect(86, 0, 1280, 768);
    QTest::newRow("nearest") << QRect(5000, 100, 1280, 800) << both << QRect(2006, 100, 1280, 800);
    QTest::newRow("beside a panel") << QRect(0, 0, 1280, 800) << QList<QRect>{QRect(64, 28, 1216, 772)}
                                    << QRect(64, 28, 1216, 772);
    QTest::newRow("no screen at all") << QRect(7, 8, 1280, 800) << QList<QRect>{} << QRect(7, 8, 1280, 800);
}

void FormStartTest::a_window_is_put_on_the_screens_that_are_there() {
    QFETCH(QRect, wanted);
    QFETCH(QList<QRect>, screens);
    QFETCH(QRect, placed);
    QCOMPARE(place_on_screens(wanted, screens), placed);
    if (!screens.isEmpty()) QVERIFY(lies_on_screens(placed, screens));
    QCOMPARE(place_on_screens(placed, screens), placed);
}

void FormStartTest::places_and_splitters_of_no_sense_are_as_none() {
    QVERIFY(lies_on_screens(QRect(1000, 0, 1000, 700), {laptop, desk}));
    QVERIFY(!lies_on_screens(QRect(1000, 0, 1000, 800), {laptop, desk}));
    for (const WindowPlace& place : {WindowPlace{{12, 40}, false}, WindowPlace{{-1300, 0}, true}})
        QVERIFY(place_of_text(place_text(place)) == place);
    for (const char* text : {"", "<no value>", "12", "12;", "x;y", "1e99;3", "nan;3", ";;;"})
        QVERIFY2(!place_of_text(text), text);
    const edit::PaneFractions places{0.5F, 0, 0.625F};
    QVERIFY(show::places_of_text(show::places_text(places)) == places);
    for (const char* text : {"", "<no value>", "5;-1;0", "x;y;z", "nan;inf;1e99"})
        QVERIFY2(show::places_of_text(text) == edit::PaneFractions{}, text);
}

void FormStartTest::the_window_comes_back_where_it_stood() {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    const std::string path = folder.path("settings.conf");
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    {
        FormSample first({}, path);
        QVERIFY(area.contains(first.form->geometry()));
        first.form->resize(1270, 790);
        first.form->move(33, 44);
        first.form->workbench().view.pane_fractions = {0.5F, 0.25F, 0};
        first.form->close();
    }
    {
        FormSample second({}, path);
        QCOMPARE(second.form->pos(), QPoint(33, 44));
        QCOMPARE(second.form->size(), QSize(1270, 790));
        QVERIFY((second.form->workbench().view.pane_fractions == edit::PaneFractions{0.5F, 0.25F, 0}));
        second.form->setWindowState(Qt::WindowMaximized);
        second.form->close();
    }
    {
        FormSample third({}, path);
        QVERIFY(third.form->isMaximized());
        QCOMPARE(third.session.settings.get(settings_section, "FormSize"), std::string("19050; 11850"));
        third.session.settings.set(settings_section, "FormPlace", "90000;-500;0");
        third.session.settings.set(settings_section, "FormSize", "1e30; 1e30");
    }
    FormSample lost({}, path);
    QVERIFY2(area.contains(lost.form->geometry()), "a place of another screen, a size of none");
    QVERIFY(lost.form->width() > area.width() / 2);
}

void FormStartTest::a_screen_that_goes_takes_no_window_with_it() {
    FormSample sample;
    auto& placer = *sample.form->findChild<WindowPlacer*>();
    sample.form->resize(1260, 720);
    sample.form->move(1500, 60);
    placer.keep_on({laptop, desk});
    QCOMPARE(sample.form->pos(), QPoint(1500, 60));
    placer.keep_on({laptop});
    QVERIFY2(laptop.contains(sample.form->geometry()), "moved to the screen that is left");
    sample.form->resize(1900, 1000);
    placer.keep_on({laptop});
    QVERIFY2(laptop.contains(sample.form->geometry()), "and cut to it");
    const QRect before = sample.form->geometry();
    placer.keep_on({});
    QCOMPARE(sample.form->geometry(), before);
}

void FormStartTest::a_dialog_larger_than_the_screen_is_cut_to_it() {
    FormSample sample;
    QDialog dialog(sample.form.get());
    dialog.resize(5000, 4000);
    dialog.show();
    const QSize screen = dialog.screen()->availableGeometry().size();
    QVERIFY(dialog.width() <= screen.width() && dialog.height() <= screen.height());
    QVERIFY(dialog.width() > screen.width() / 2);
}

void FormStartTest::a_dropped_workspace_opens_and_a_dropped_data_file_is_imported() {
    const TempFolder folder;
    const std::string path = write_workspace(folder);
    FormSample sample;
    drop(*sample.form, path);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    QCOMPARE(sample.session.workspace.body_count, 2);
    drop(*sample.form, folder.write("other.xyz", edit::east_line_text(5)));
    QVERIFY(sample.find<QDialog>("Form_import").isVisible());
    QCOMPARE(sample.text("Text_data_locations"), QString("line.dat"));
}

void FormStartTest::about_tells_the_version_and_whose_the_libraries_are() {
    FormSample sample;
    sample.find<QAction>("menu_about").trigger();
    QVERIFY(sample.find<QDialog>("Form_about").isVisible());
    const QString version = QString::fromUtf8(application_version());
    QVERIFY(sample.find<QLabel>("Label_about").text().startsWith("Anomalis " + version + "\n"));
    const QString libraries = sample.find<QTextBrowser>("Text_libraries").toPlainText();
    for (const char* library : {"Qt", "libEMF", "PROJ", "Eigen", "LGPL-3"})
        QVERIFY2(libraries.contains(library), library);
    const QString licences = sample.find<QPlainTextEdit>("Text_licences").toPlainText();
    QVERIFY(licences.contains("GNU LESSER GENERAL PUBLIC LICENSE"));
    QVERIFY(licences.endsWith("```\n"));
}

QObject* make_form_start_test() {
    return new FormStartTest;
}

}  // namespace anomalis::window

#include "form_start_test.moc"
