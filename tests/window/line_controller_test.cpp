#include <filesystem>

#include <QCheckBox>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QTextBlock>

#include "core/paths.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/widgets/data_head_view.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

class LineControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void a_workspace_opens_with_its_data_on_the_model();
    void the_load_shows_number_length_and_spacing_and_stays_on_the_first_tab();
    void the_head_names_and_tints_the_columns_in_use();
    void a_refused_definition_stays_in_its_box_and_keeps_the_line();
    void an_accepted_definition_drops_the_line();
    void undo_of_the_final_line_shows_the_value_in_force();
    void a_refused_setting_stays_in_its_box_marked();
    void a_setting_is_taken_over_when_the_tab_is_left();
    void pasted_rubbish_is_refused_everywhere();
    void missing_files_are_told();
    void a_damaged_workspace_is_told_and_the_window_goes_on();
    void the_bodies_alone_leave_the_definitions();
    void a_data_file_is_chosen_by_click_key_and_button();
    void a_residual_filter_hides_the_base_levels();
    void a_file_without_records_says_so_in_the_status_bar();
};

namespace {

struct Opened : FormSample {
    Opened() : path(write_workspace(folder)) {
        prompts.open_paths.push_back(path);
        find<QAction>("menu_open_model_0").trigger();
        choose_tab(0);
    }
    void load() { click("Command_load_locations"); }
    int stations() const { return session.workspace.station_count; }

    TempFolder folder;
    std::string path;
};

}  // namespace

void LineControllerTest::a_workspace_opens_with_its_data_on_the_model() {
    FormSample sample;
    const TempFolder folder;
    sample.prompts.open_paths.push_back(write_workspace(folder));
    sample.find<QAction>("menu_open_model_0").trigger();
    QCOMPARE(sample.prompts.open_requests.at(0).title, std::string("Select the profile model file"));
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    QCOMPARE(sample.text("Text_data_locations"), QString("line.dat"));
    QCOMPARE(sample.text("Text_MAGINV_magpos"), QString("6"));
    QCOMPARE(sample.session.workspace.station_count, edit::LineSample::stations);
    QCOMPARE(sample.tab(), 1);
    QVERIFY(!sample.session.model_changed);
    QVERIFY(!sample.find<QWidget>("Frame_hint").isVisible());
    QVERIFY2(sample.status(1).endsWith("101 stations, 2.5 km, spacing 25 m"), qPrintable(sample.status(1)));
}

void LineControllerTest::the_load_shows_number_length_and_spacing_and_stays_on_the_first_tab() {
    Opened sample;
    sample.load();
    QCOMPARE(sample.text("Text_number_locations"), QString("101"));
    QCOMPARE(sample.text("Text_line_length"), QString("2500.00"));
    QCOMPARE(sample.text("Text_line_spacing"), QString("24.752"));
    QVERIFY(sample.text("Text_MAGINV_basemag").startsWith("510"));
    QCOMPARE(sample.tab(), 0);
    QVERIFY(sample.prompts.messages.empty());
    QVERIFY(!QApplication::overrideCursor());
}

void LineControllerTest::the_head_names_and_tints_the_columns_in_use() {
    Opened sample;
    auto& head = sample.find<DataHeadView>("Text_data_file");
    QVERIFY(head.isVisible());
    QCOMPARE(head.ruler_text(1), QString("1"));
    QCOMPARE(head.ruler_text(2), QString("2\nX"));
    QCOMPARE(head.ruler_text(4), QString("4\nSensor"));
    QCOMPARE(head.ruler_text(7), QString("7\nGrav"));
    const auto tint_at = [&](int line, int column) {
        const show::HeadCell cell = head.head()
                                        .lines.at(static_cast<std::size_t>(line))
                                        .cells.at(static_cast<std::size_t>(column - 1));
        QTextCursor cursor(head.document()->findBlockByNumber(line));
        cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, cell.begin + 1);
        return cursor.charFormat().background();
    };
    QCOMPARE(tint_at(1, 1).style(), Qt::NoBrush);
    QVERIFY(tint_at(1, 2) != tint_at(1, 3));
    QVERIFY(tint_at(1, 6).style() == Qt::SolidPattern);
    sample.type("Text_MAGINV_magpos", "1", false);
    QCOMPARE(head.ruler_text(1), QString("1\nMag"));
    QCOMPARE(head.ruler_text(6), QString("6"));
    QVERIFY(tint_at(1, 1).style() == Qt::SolidPattern);
}

void LineControllerTest::a_refused_definition_stays_in_its_box_and_keeps_the_line() {
    Opened sample;
    sample.load();
    sample.type("Text_MAGINV_xpos", "abc");
    QCOMPARE(sample.text("Text_MAGINV_xpos"), QString("abc"));
    QCOMPARE(sample.find<QWidget>("Text_MAGINV_xpos").property("refused").toBool(), true);
    QCOMPARE(sample.stations(), edit::LineSample::stations);
    QCOMPARE(sample.session.workspace.definition.x_column, 2);
    QCOMPARE(sample.text("Text_number_locations"), QString("101"));
}

void LineControllerTest::an_accepted_definition_drops_the_line() {
    Opened sample;
    sample.load();
    sample.type("Text_MAGINV_zpos", "3", false);
    QCOMPARE(sample.stations(), 0);
    QCOMPARE(sample.text("Text_number_locations"), QString());
    QCOMPARE(sample.text("Text_line_length"), QString("2500.00"));
    auto& length = sample.find<QLineEdit>("Text_line_length");
    QVERIFY2(!length.isEnabled() && length.toolTip().contains("before the change"),
             "it is that of the old line");
    sample.load();
    QVERIFY(length.isEnabled() && !length.toolTip().contains("before the change"));
    sample.type("Text_MAGINV_zpos", "4", false);
    sample.type("Text_MAGINV_xpos", "2 ", false);
    QCOMPARE(sample.text("Text_line_length"), QString());
    sample.choose_tab(1);
    QVERIFY(sample.find<QWidget>("Frame_hint").isVisible());
}

void LineControllerTest::undo_of_the_final_line_shows_the_value_in_force() {
    Opened sample;
    sample.type("Text_MAGINV_nLast", "25");
    QCOMPARE(sample.session.workspace.definition.last_data_line, 25);
    sample.find<QAction>("menu_undo").trigger();
    QCOMPARE(sample.session.workspace.definition.last_data_line, 0);
    QCOMPARE(sample.text("Text_MAGINV_nLast"), QString("0"));
    sample.find<QAction>("menu_redo").trigger();
    QCOMPARE(sample.text("Text_MAGINV_nLast"), QString("25"));
}

void LineControllerTest::a_refused_setting_stays_in_its_box_marked() {
    Opened sample;
    const float before = sample.session.workspace.field.intensity;
    sample.type("Text_mag_intensity", "-7");
    QCOMPARE(sample.text("Text_mag_intensity"), QString("-7"));
    QVERIFY(sample.find<EntryBox>("Text_mag_intensity").refused());
    QCOMPARE(sample.session.workspace.field.intensity, before);
    QVERIFY(sample.status(1).contains("-7"));
    sample.type("Text_MAGINV_sensor_offset", "0.05");
    QCOMPARE(sample.session.workspace.sensor_offset, 0.05F);
}

void LineControllerTest::a_setting_is_taken_over_when_the_tab_is_left() {
    Opened sample;
    sample.load();
    sample.type("Text_smooth_filter_width", "7", false);
    QCOMPARE(sample.session.workspace.processing.smooth_filter_width, 0);
    sample.choose_tab(1);
    QCOMPARE(sample.session.workspace.processing.smooth_filter_width, 7);
}

void LineControllerTest::pasted_rubbish_is_refused_everywhere() {
    Opened sample;
    drop_stations(sample.session.workspace);  // or Enter in a box of the search begins one
    const Workspace before = sample.session.workspace;
    for (auto* box : sample.form->findChildren<QLineEdit*>()) {
        if (box->isReadOnly() || box->objectName().contains("spacing")) continue;
        if (box->objectName() == "Text_body_name") continue;  // any text names a body
        for (const QString& rubbish :
             {QString("1e999"), QString("12\n34"), QString(10000, 'x'), QString("nan")}) {
            const QString shown = box->text();
            box->setFocus();
            box->selectAll();
            box->insert(rubbish);
            box->setModified(true);
            QTest::keyClick(box, Qt::Key_Return);
            if (box->property("refused").isValid() && box->property("refused").toBool()) {
                box->setText(shown);
            } else {
                QVERIFY2(box->text() == shown, qPrintable(box->objectName() + " took " + rubbish.left(10)));
            }
        }
    }
    const Workspace& after = sample.session.workspace;
    QVERIFY(after.definition == before.definition);
    QCOMPARE(after.field.intensity, before.field.intensity);
    QCOMPARE(after.mag.base, before.mag.base);
    QCOMPARE(after.drawing.infinite_body_length, before.drawing.infinite_body_length);
}

void LineControllerTest::missing_files_are_told() {
    Opened sample;
    sample.prompts.open_paths.push_back(sample.folder.path("gone.axm"));
    sample.find<QAction>("menu_open_model_0").trigger();
    QCOMPARE(sample.prompts.messages, std::vector<std::string>{"That file does not exist"});
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    sample.prompts.messages.clear();
    std::filesystem::remove(sample.session.workspace.definition.data_file);
    sample.load();
    QCOMPARE(sample.prompts.messages, std::vector<std::string>{"The specified data file does not exist"});
    QCOMPARE(sample.stations(), 0);
    QVERIFY(!QApplication::overrideCursor());
}

void LineControllerTest::a_damaged_workspace_is_told_and_the_window_goes_on() {
    Opened sample;
    sample.load();
    const std::string whole = sample.folder.read("line.axm");
    sample.form->open_file(sample.folder.write("cut.axm", whole.substr(0, whole.size() / 2)));
    QCOMPARE(sample.prompts.messages.size(), std::size_t(1));
    QVERIFY(sample.prompts.told("Input past end of file"));
    QCOMPARE(sample.stations(), edit::LineSample::stations);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    sample.prompts.messages.clear();
    sample.load();
    sample.choose_tab(1);
    QCOMPARE(sample.stations(), edit::LineSample::stations);
    QCOMPARE(sample.prompts.messages, std::vector<std::string>());
}

void LineControllerTest::the_bodies_alone_leave_the_definitions() {
    Opened sample;
    sample.type("Text_MAGINV_magpos", "7", false);
    sample.prompts.open_paths.push_back(sample.path);
    sample.find<QAction>("menu_open_model_3").trigger();
    QCOMPARE(sample.session.workspace.definition.mag_column, 7);
    QCOMPARE(sample.text("Text_MAGINV_magpos"), QString("7"));
    QCOMPARE(sample.session.workspace.body_count, 2);
    QVERIFY(sample.session.model_changed);
}

void LineControllerTest::a_data_file_is_chosen_by_click_key_and_button() {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    Opened sample;
    for (const char* name : {"a.dat", "b.dat", "c.dat"}) sample.folder.write(name, edit::east_line_text(4));
    sample.prompts.open_paths = {sample.folder.path("a.dat"), sample.folder.path("b.dat"),
                                 sample.folder.path("c.dat"), std::nullopt};
    sample.click("Text_data_locations");
    QCOMPARE(sample.text("Text_data_locations"), QString("a.dat"));
    QTest::keyClick(&sample.find<QWidget>("Text_data_locations"), Qt::Key_Return);
    QCOMPARE(sample.text("Text_data_locations"), QString("b.dat"));
    sample.click("Command_select_data_location_file");
    QCOMPARE(sample.text("Text_data_locations"), QString("c.dat"));
    QCOMPARE(sample.prompts.open_requests.back().title, std::string("Select the observed  data file"));
    sample.click("Command_select_data_location_file");
    QCOMPARE(sample.text("Text_data_locations"), QString("c.dat"));
    QCOMPARE(current_folder(), sample.folder.folder());
}

void LineControllerTest::a_residual_filter_hides_the_base_levels() {
    Opened sample;
    QVERIFY(sample.find<QWidget>("Frame_base_levels").isVisible());
    sample.type("Text_residual_filter_width", "30");
    QVERIFY(!sample.find<QWidget>("Frame_base_levels").isVisible());
    sample.type("Text_residual_filter_width", "0");
    QVERIFY(sample.find<QWidget>("Frame_base_levels").isVisible());
}

void LineControllerTest::a_file_without_records_says_so_in_the_status_bar() {
    Opened sample;
    sample.prompts.open_paths.push_back(sample.folder.write("empty.dat", "header\n   \n\n"));
    sample.click("Command_select_data_location_file");
    sample.load();
    QVERIFY(sample.prompts.messages.empty());
    QVERIFY2(sample.status(1).startsWith("Nothing was loaded: "), qPrintable(sample.status(1)));
    QCOMPARE(sample.text("Text_number_locations"), QString());
    QCOMPARE(sample.stations(), 0);
}

QObject* make_line_controller_test() {
    return new LineControllerTest;
}

}  // namespace anomalis::window

#include "line_controller_test.moc"
