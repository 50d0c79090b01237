#include <filesystem>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>

#include "chart/qt/grapher_widget.h"
#include "support/example_results.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/survey/line_card.h"
#include "window/survey/results_map_view.h"
#include "window/survey/survey_controller.h"
#include "window/survey/survey_list.h"

namespace anomalis::window {

class SurveyPageTest : public QObject {
    Q_OBJECT

  private slots:
    void a_folder_comes_by_menu_by_drop_and_by_name();
    void what_is_no_folder_of_results_is_told();
    void headings_sort_and_boxes_filter_by_what_is_right_in_them();
    void keys_flag_the_line_but_a_box_keeps_its_letters();
    void undo_on_the_page_is_of_the_flags();
    void a_note_goes_with_its_line();
    void flags_that_cannot_be_kept_are_told();
    void enter_opens_the_line_and_a_key_leads_back();
    void keys_go_from_line_to_line_of_the_results();
    void a_line_without_a_model_is_told();
    void a_click_on_the_map_chooses_and_a_double_click_opens();
    void a_survey_that_runs_is_read_on_while_scroll_and_choice_stay();
    void a_folder_that_vanishes_is_told();
    void nothing_is_cut_off();
};

namespace {

/// Six lines, the last of them failed; those before it have workspaces.
struct Surveyed : FormSample {
    explicit Surveyed(int lines = 6) : results(example_results(lines)) {
        form->resize(1280, 800);
        prompts.on_yield = [] { QCoreApplication::processEvents(); };
        write_example_results(folder, results);
        write_workspace(model);
        for (int i = 0; i < 3; ++i) keep_workspace(results.lines[static_cast<std::size_t>(i)].line);
    }
    void keep_workspace(const std::string& line) {
        const std::string target = folder.path("lines/" + line);
        std::filesystem::copy_file(model.path("line.axm"), target + "/" + line + ".axm");
        std::filesystem::copy_file(model.path("line.dat"), target + "/line.dat");
    }
    void open() {
        form->open_file(folder.folder());
        read();
    }
    void read() {
        for (int i = 0; i < 500 && desk().watch().lines_to_read() > 0; ++i) QTest::qWait(2);
        QTest::qWait(2);
    }
    survey::SurveyDesk& desk() { return form->survey().desk(); }
    QTabWidget& tabs() { return find<QTabWidget>("Tab_model"); }
    bool on_page() { return tabs().currentWidget()->objectName() == "Form_survey"; }
    SurveyList& list() { return find<SurveyList>("Table_survey_lines"); }
    QString cell(int row, survey::DeskColumn column) {
        return list().model()->index(row, static_cast<int>(column)).data().toString();
    }
    QStringList lines() {
        QStringList names;
        for (int row = 0; row < list().model()->rowCount(); ++row)
            names << cell(row, survey::DeskColumn::line);
        return names;
    }
    void choose(const char* line) {
        const int row = static_cast<int>(lines().indexOf(line));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                          list().visualRect(list().model()->index(row, 0)).center());
    }
    void click_head(survey::DeskColumn column) {
        QHeaderView* head = list().horizontalHeader();
        QTest::mouseClick(
            head->viewport(), Qt::LeftButton, {},
            QPoint(head->sectionViewportPosition(static_cast<int>(column)) + 12, head->height() / 2));
    }
    QString words(const char* name) { return find<QLabel>(name).text(); }
    QString chosen() { return QString::fromStdString(desk().chosen()); }

    TempFolder folder, model;
    survey::SurveyResults results;
};

}  // namespace

void SurveyPageTest::a_folder_comes_by_menu_by_drop_and_by_name() {
    Surveyed sample;
    QCOMPARE(sample.tabs().count(), 2);
    QVERIFY(!sample.find<QAction>("menu_next_result").isEnabled());
    sample.prompts.open_paths.push_back(sample.folder.path("survey.json"));
    sample.find<QAction>("menu_open_results").trigger();
    sample.read();
    QVERIFY(sample.on_page());
    QCOMPARE(sample.tabs().tabText(2), QString("Survey"));
    QCOMPARE(sample.words("Label_survey_title"), QString("example"));
    QCOMPARE(sample.words("Label_survey_counts"), QString("6 lines, 5 done, 1 failed"));
    QCOMPARE(sample.chosen(), QString("L1000"));
    QVERIFY(sample.find<QAction>("menu_next_result").isEnabled());

    sample.click("Command_survey_close");
    QTRY_COMPARE(sample.tabs().count(), 2);
    QVERIFY(!sample.find<QAction>("menu_next_result").isEnabled());
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(sample.folder.folder()))});
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(sample.form.get(), &enter);
    QDropEvent event({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(sample.form.get(), &event);
    sample.read();
    QVERIFY(sample.on_page());
    QCOMPARE(sample.lines().size(), 6);

    sample.choose_tab(0);
    sample.form->open_file(sample.folder.path("survey.json"));
    QVERIFY(sample.on_page());
    QVERIFY(sample.prompts.messages.empty());
}

void SurveyPageTest::what_is_no_folder_of_results_is_told() {
    Surveyed sample;
    const TempFolder empty, foreign;
    foreign.write("table.csv", "1,2\n");
    sample.form->open_file(empty.folder());
    QVERIFY(sample.prompts.told("is empty: no survey has written to it yet"));
    sample.form->open_file(foreign.folder());
    QVERIFY(sample.prompts.told("there is no survey.json in it"));
    QCOMPARE(sample.tabs().count(), 2);
    sample.folder.write("lines/L1010/result.json", "{");
    sample.open();
    QCOMPARE(sample.cell(1, survey::DeskColumn::status), QString("damaged"));
    sample.choose("L1010");
    QVERIFY(sample.words("Label_survey_facts").contains("L1010/result.json is damaged"));
    QVERIFY(!sample.find<QPushButton>("Command_survey_open").isEnabled());
    sample.choose("L1050");
    QVERIFY(sample.words("Label_survey_facts").startsWith("The line has no magnetic readings"));
}

void SurveyPageTest::headings_sort_and_boxes_filter_by_what_is_right_in_them() {
    Surveyed sample;
    sample.open();
    QCOMPARE(sample.cell(0, survey::DeskColumn::rms), QString("1.50\u00a0nT"));
    QCOMPARE(sample.cell(0, survey::DeskColumn::depth), QString("40.0\u00a0m"));
    QCOMPARE(sample.cell(0, survey::DeskColumn::depth_interval), QString("14.0\u00a0m"));
    sample.choose("L1020");
    sample.click_head(survey::DeskColumn::depth);
    sample.click_head(survey::DeskColumn::depth);
    QCOMPARE(sample.lines(), QStringList({"L1040", "L1030", "L1020", "L1010", "L1000", "L1050"}));
    QCOMPARE(sample.list().currentIndex().row(), 2);
    sample.click_head(survey::DeskColumn::depth);
    QCOMPARE(sample.lines().first(), QString("L1000"));
    sample.type("Text_survey_rms", "1.65");
    QCOMPARE(sample.lines(), QStringList({"L1020", "L1030", "L1040", "L1050"}));
    sample.find<QComboBox>("Combo_survey_status").setCurrentIndex(1);
    sample.type("Text_survey_depth_to", "43");
    QCOMPARE(sample.lines(), QStringList({"L1020", "L1030"}));
    QVERIFY(sample.words("Label_survey_counts").startsWith("2 of 6 lines"));
    QCOMPARE(sample.chosen(), QString("L1020"));
    sample.click("Command_survey_clear");
    QCOMPARE(sample.lines().size(), 6);
    QVERIFY(!sample.find<QPushButton>("Command_survey_clear").isEnabled());
    sample.type("Text_survey_interval", "wide");
    QVERIFY(sample.find<QLineEdit>("Text_survey_interval").property("refused").toBool());
    QCOMPARE(sample.lines().size(), 6);
    sample.type("Text_survey_interval", "20");
    QVERIFY(!sample.find<QLineEdit>("Text_survey_interval").property("refused").toBool());
    QCOMPARE(sample.lines().size(), 0);
    QCOMPARE(sample.words("Label_survey_line"), QString("No line is chosen"));
}

void SurveyPageTest::keys_flag_the_line_but_a_box_keeps_its_letters() {
    Surveyed sample;
    sample.open();
    sample.choose("L1010");
    QTest::keyClick(&sample.list(), Qt::Key_A);
    QCOMPARE(sample.cell(1, survey::DeskColumn::flag), QString("accept"));
    QVERIFY(sample.find<QPushButton>("Command_survey_accept").isChecked());
    QTest::keyClick(&sample.list(), Qt::Key_Down);
    QTest::keyClick(&sample.list(), Qt::Key_L);
    QCOMPARE(sample.chosen(), QString("L1020"));
    QTest::keyClick(&sample.list(), Qt::Key_R);
    QCOMPARE(sample.folder.read("flags.csv"), std::string("line,flag,note\nL1010,accept,\nL1020,reject,\n"));
    sample.type("Text_survey_filter", "al", false);
    QCOMPARE(sample.text("Text_survey_filter"), QString("al"));
    QCOMPARE(sample.folder.read("flags.csv"), std::string("line,flag,note\nL1010,accept,\nL1020,reject,\n"));
    sample.click("Command_survey_clear");
    sample.choose("L1010");
    QTest::keyClick(&sample.list(), Qt::Key_N);
    sample.click("Command_survey_look");
    QCOMPARE(sample.folder.read("flags.csv"),
             std::string("line,flag,note\nL1010,look again,\nL1020,reject,\n"));
    QVERIFY(sample.words("Label_survey_counts").endsWith("1 × look again, 1 × reject"));
}

void SurveyPageTest::undo_on_the_page_is_of_the_flags() {
    Surveyed sample;
    sample.form->open_file(sample.model.path("line.axm"));
    const auto undone = sample.session.workspace.station_count;
    sample.open();
    sample.choose("L1000");
    QTest::keyClick(&sample.list(), Qt::Key_A);
    QTest::keyClick(&sample.list(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.cell(0, survey::DeskColumn::flag), QString());
    QTest::keyClick(&sample.list(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.words("Label_survey_trouble"), QString("There is no flag to take back"));
    QCOMPARE(sample.session.workspace.station_count, undone);
    QTest::keyClick(&sample.list(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(sample.cell(0, survey::DeskColumn::flag), QString("accept"));
    QVERIFY(!sample.find<QLabel>("Label_survey_trouble").isVisible());
}

void SurveyPageTest::a_note_goes_with_its_line() {
    Surveyed sample;
    sample.open();
    sample.choose("L1000");
    sample.type("Text_survey_note", "too deep, I think", false);
    sample.choose("L1010");
    QCOMPARE(sample.chosen(), QString("L1010"));
    QCOMPARE(sample.text("Text_survey_note"), QString());
    QCOMPARE(sample.folder.read("flags.csv"), std::string("line,flag,note\nL1000,,\"too deep, I think\"\n"));
    sample.type("Text_survey_note", "fine", false);
    sample.find<QAction>("menu_next_result").trigger();  // what is half typed is taken over first
    QCOMPARE(sample.desk().mark("L1010").note, std::string("fine"));
    sample.find<QAction>("menu_survey_results").trigger();
    sample.choose("L1000");
    QCOMPARE(sample.text("Text_survey_note"), QString("too deep, I think"));
}

void SurveyPageTest::flags_that_cannot_be_kept_are_told() {
    Surveyed sample;
    std::filesystem::create_directory(sample.folder.path("flags.csv"));
    sample.open();
    QTest::keyClick(&sample.list(), Qt::Key_A);
    QVERIFY(sample.words("Label_survey_trouble").startsWith("The flag was not kept: "));
    QVERIFY(sample.words("Label_survey_trouble").contains("flags.csv"));
    QVERIFY(!sample.find<QPushButton>("Command_survey_accept").isChecked());
    std::filesystem::remove(sample.folder.path("flags.csv"));
    QTest::keyClick(&sample.list(), Qt::Key_A);
    QVERIFY(!sample.find<QLabel>("Label_survey_trouble").isVisible());
    QVERIFY(sample.find<QPushButton>("Command_survey_accept").isChecked());
}

void SurveyPageTest::enter_opens_the_line_and_a_key_leads_back() {
    Surveyed sample;
    sample.open();
    sample.choose("L1010");
    QTest::keyClick(&sample.list(), Qt::Key_Return);
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of L1010.axm"));
    QCOMPARE(sample.session.workspace.body_count, 2);
    QVERIFY(sample.status(1).endsWith("Line L1010, 2 of 6 on the list of the survey"));
    QTest::keyClick(sample.form.get(), Qt::Key_R, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(sample.on_page());
    QCOMPARE(sample.chosen(), QString("L1010"));
    QTRY_VERIFY(sample.find<SectionPicture>("Picture_survey_section").has_section());
    sample.choose("L1000");
    QTest::mouseDClick(sample.list().viewport(), Qt::LeftButton, {},
                       sample.list().visualRect(sample.list().model()->index(0, 0)).center());
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of L1000.axm"));
    sample.find<QAction>("menu_undo").trigger();
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of L1010.axm *"));
}

void SurveyPageTest::keys_go_from_line_to_line_of_the_results() {
    Surveyed sample;
    sample.keep_workspace("L1040");
    sample.results.lines[3].status = survey::LineStatus::failed;
    write_example_results(sample.folder, sample.results);
    sample.open();
    sample.choose("L1020");
    QTest::keyClick(&sample.list(), Qt::Key_Return);
    QTest::keyClick(sample.form.get(), Qt::Key_PageDown, Qt::AltModifier);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of L1040.axm"));
    QTest::keyClick(sample.form.get(), Qt::Key_PageDown, Qt::AltModifier);
    QCOMPARE(sample.status(1), QString("This is the last line on the list of the survey"));
    QCOMPARE(sample.chosen(), QString("L1040"));
    QTest::keyClick(sample.form.get(), Qt::Key_PageUp, Qt::AltModifier);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of L1020.axm"));
}

void SurveyPageTest::a_line_without_a_model_is_told() {
    Surveyed sample;
    std::filesystem::remove_all(sample.folder.path("lines/L1040"));
    sample.open();
    const auto told = [&](const char* line) {
        sample.choose(line);
        QTest::keyClick(&sample.list(), Qt::Key_Return);
        return sample.words("Label_survey_trouble");
    };
    QCOMPARE(told("L1050"),
             QString("Line L1050 has no model to be opened: The line has no magnetic readings"));
    QCOMPARE(told("L1040"),
             QString("Line L1040 has no model to be opened: the survey has no result of it yet"));
    QVERIFY(told("L1030").startsWith("There is no workspace in "));
    QVERIFY(sample.on_page());
}

void SurveyPageTest::a_click_on_the_map_chooses_and_a_double_click_opens() {
    Surveyed sample;
    sample.open();
    QTest::qWait(80);  // the layout of the page has come to rest
    chart::GrapherWidget& map = sample.find<chart::GrapherWidget>("vsgraph_results");
    const auto on_map = [&](std::size_t line) {
        const auto& track = sample.results.lines[line].track;
        const chart::Point at = map.chart().UserToSurface(
            {track[0].east + (track[1].east - track[0].east) * 0.1, track[0].north});
        return QPoint(static_cast<int>(at.x / chart::units_per_screen_pixel),
                      static_cast<int>(map.height() - at.y / chart::units_per_screen_pixel));
    };
    QTest::mouseClick(&map, Qt::LeftButton, {}, on_map(2));
    QCOMPARE(sample.chosen(), QString("L1020"));
    QCOMPARE(sample.list().currentIndex().row(), 2);
    sample.choose("L1000");
    QTest::mouseClick(&map, Qt::LeftButton, {}, on_map(1));
    QTest::mouseDClick(&map, Qt::LeftButton, {}, on_map(1));
    QTest::mouseRelease(&map, Qt::LeftButton, {}, on_map(1));
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of L1010.axm"));
}

void SurveyPageTest::a_survey_that_runs_is_read_on_while_scroll_and_choice_stay() {
    Surveyed sample(80);
    std::filesystem::remove_all(sample.folder.path("lines/L1790"));
    sample.open();
    QCOMPARE(sample.cell(79, survey::DeskColumn::status), QString("not done"));
    sample.desk().choose("L1600");
    sample.list().scrollTo(sample.list().model()->index(60, 0));
    const int scrolled = sample.list().verticalScrollBar()->value();
    QVERIFY(scrolled > 0);
    sample.folder.write("lines/L1790/result.json", survey::line_result_json(sample.results.lines[78]));
    sample.desk().look();
    sample.choose_tab(0);
    sample.choose_tab(2);  // a page that comes on show is brought up to date
    sample.read();
    QCOMPARE(sample.cell(79, survey::DeskColumn::status), QString("done"));
    QCOMPARE(sample.chosen(), QString("L1600"));
    QCOMPARE(sample.list().currentIndex().row(), 60);
    QCOMPARE(sample.list().verticalScrollBar()->value(), scrolled);
}

void SurveyPageTest::a_folder_that_vanishes_is_told() {
    Surveyed sample;
    sample.open();
    const std::string folder = sample.folder.folder();
    std::filesystem::rename(folder, folder + "-away");
    sample.choose_tab(0);
    sample.choose_tab(2);
    QTRY_VERIFY(sample.words("Label_survey_trouble").contains("is gone"));
    QVERIFY(sample.find<QLabel>("Label_survey_trouble").isVisible());
    QCOMPARE(sample.lines().size(), 6);
    std::filesystem::rename(folder + "-away", folder);
}

void SurveyPageTest::nothing_is_cut_off() {
    Surveyed sample;
    sample.open();
    QTest::qWait(20);
    QCOMPARE(sample.form->size(), QSize(1280, 800));
    QWidget& page = sample.find<QWidget>("Form_survey");
    for (QPushButton* button : page.findChildren<QPushButton*>())
        QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->objectName()));
    for (QComboBox* list : page.findChildren<QComboBox*>())
        QVERIFY2(list->width() >= list->sizeHint().width(), qPrintable(list->objectName()));
    const SurveyList& lines = sample.list();
    for (int column = 0; column < SurveyRows::columns; ++column) {
        const int wanted = lines.horizontalHeader()->sectionSizeHint(column);
        QVERIFY2(lines.columnWidth(column) >= wanted, qPrintable(QString::number(column)));
    }
}

QObject* make_survey_page_test() {
    return new SurveyPageTest;
}

}  // namespace anomalis::window

#include "survey_page_test.moc"
