#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>

#include "core/paths.h"
#include "window/form_sample.h"
#include "window/form_tests.h"

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
    void a_dropped_workspace_opens_and_a_dropped_data_file_is_imported();
    void about_tells_the_version();
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

void FormStartTest::about_tells_the_version() {
    FormSample sample;
    sample.find<QAction>("menu_about").trigger();
    QVERIFY(sample.prompts.told("Anomalis 0.1.0"));
}

QObject* make_form_start_test() {
    return new FormStartTest;
}

}  // namespace anomalis::window

#include "form_start_test.moc"
