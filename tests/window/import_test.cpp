#include <filesystem>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTableWidget>

#include "chart/qt/grapher_widget.h"
#include "edit/change.h"
#include "support/survey_file.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/import/form_import.h"
#include "window/import/import_controller.h"
#include "window/import/line_list.h"
#include "window/import/survey_map_view.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

class ImportTest : public QObject {
    Q_OBJECT

  private slots:
    void four_clicks_lead_from_the_file_to_the_line_with_field_curves_and_map();
    void a_click_on_the_map_chooses_in_the_list_and_the_reverse();
    void a_click_on_a_head_chooses_role_unit_and_nulls();
    void the_lists_show_what_was_recognised_and_correct_it();
    void a_dropped_file_comes_onto_the_page();
    void what_is_wrong_is_told_on_the_page();
    void keys_go_from_line_to_line();
    void the_page_is_shown_again_as_it_was();
    void undo_brings_the_former_model_back();
    void lines_sort_by_number_and_keep_their_pieces();
    void nothing_is_cut_off();
};

namespace {

struct Importing : FormSample {
    Importing() : path(folder.write("survey.csv", survey_file_text())) {
        form->resize(1280, 800);
        prompts.on_yield = [] { QCoreApplication::processEvents(); };
    }
    flow::ImportDesk& desk() { return form->import().desk(); }
    void open() {
        form->open_file(path);
        read();
    }
    /// As the timer of the page does.
    void read() {
        for (int i = 0; i < 500 && desk().reading(); ++i) QTest::qWait(20);
    }
    Form_import& page() { return find<Form_import>("Form_import"); }
    LineList& lines() { return find<LineList>("Table_import_lines"); }
    SurveyMapView& map() {
        return *qobject_cast<SurveyMapView*>(find<QWidget>("vsgraph_survey").parentWidget());
    }
    QString words(const char* name) { return find<QLabel>(name).text(); }
    /// Where the middle of a line stands on the map.
    QPoint on_map(std::size_t line) {
        const intake::SurveyIndex& index = *desk().index();
        const intake::MapPoint& point = index.lines[line].track[index.lines[line].track.size() / 3];
        chart::GrapherWidget& widget = map().map_widget();
        const chart::Point at =
            widget.chart().UserToSurface({index.origin_east + static_cast<double>(point.east),
                                          index.origin_north + static_cast<double>(point.north)});
        return {static_cast<int>(at.x / chart::units_per_screen_pixel),
                static_cast<int>(widget.height() - at.y / chart::units_per_screen_pixel)};
    }
    void click_map(std::size_t line) {
        QTest::qWait(80);  // the layout of the page has come to rest
        QTest::mouseClick(&map().map_widget(), Qt::LeftButton, {}, on_map(line));
        QTest::qWait(5);
    }
    void key(const char* name, const QString& words) {
        auto& box = find<QLineEdit>(name);
        box.setFocus();
        box.selectAll();
        QTest::keyClicks(&box, words);
        if (box.completer()) box.completer()->popup()->hide();
        QTest::keyClick(&box, Qt::Key_Return);
        read();
    }
    QMenu* column_menu(const QString& name) {
        auto& table = find<QTableWidget>("Table_import_preview");
        QHeaderView* head = table.horizontalHeader();
        for (int c = 0; c < table.columnCount(); ++c) {
            if (!table.horizontalHeaderItem(c)->text().startsWith(name + "\n")) continue;
            table.scrollToItem(table.item(0, c));
            QTest::mouseClick(head->viewport(), Qt::LeftButton, {},
                              QPoint(head->sectionViewportPosition(c) + 12, head->height() / 2));
            QTest::qWait(5);
        }
        return page().findChild<QMenu*>("Menu_import_column");
    }
    void choose_role(const QString& column, const char* role) {
        QMenu* menu = column_menu(column);
        menu->findChild<QAction*>(role)->trigger();
        menu->close();
        QTest::qWait(5);
        read();
    }

    TempFolder folder;
    std::string path;
};

QString head_of(QTableWidget& table, const QString& name) {
    for (int c = 0; c < table.columnCount(); ++c)
        if (table.horizontalHeaderItem(c)->text().startsWith(name + "\n"))
            return table.horizontalHeaderItem(c)->text();
    return {};
}

}  // namespace

/// The button of the welcome, the file in its dialog, the line on the map, Import; the date is typed where
/// the page has put the cursor.
void ImportTest::four_clicks_lead_from_the_file_to_the_line_with_field_curves_and_map() {
    Importing sample;
    int clicks = 0;
    QPushButton* begin = nullptr;
    for (QPushButton* button : sample.form->findChildren<QPushButton*>())
        if (button->text() == "Import survey..." && button->isVisible()) begin = button;
    QVERIFY(begin);
    sample.prompts.open_paths.push_back(sample.path);
    ++clicks;  // in the dialog
    QTest::mouseClick(begin, Qt::LeftButton);
    ++clicks;
    sample.read();
    QVERIFY(sample.page().isVisible());
    QTest::qWait(50);
    QTest::keyClicks(QApplication::focusWidget(), "1990-07-01");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    sample.click_map(2);
    ++clicks;
    QCOMPARE(sample.desk().line(), std::optional<std::size_t>(2));
    QTest::mouseClick(&sample.find<QPushButton>("Command_import"), Qt::LeftButton);
    ++clicks;
    QTest::qWait(20);
    QCOMPARE(clicks, 4);
    const Workspace& workspace = sample.session.workspace;
    QVERIFY(!sample.page().isVisible());
    QCOMPARE(workspace.source.line, std::string("5710"));
    QCOMPARE(workspace.station_count, 41);
    QCOMPARE(sample.tab(), 1);
    QVERIFY(sample.form->charts().isVisible());
    QVERIFY(!sample.desk().index()->lines.empty());
}

void ImportTest::a_click_on_the_map_chooses_in_the_list_and_the_reverse() {
    Importing sample;
    sample.open();
    sample.click_map(3);
    QCOMPARE(sample.lines().currentIndex().row(), sample.lines().lines().row_of(3, {}));
    sample.lines().selectRow(sample.lines().lines().row_of(1, {}));
    QCOMPARE(sample.map().map().chosen(), std::optional<std::size_t>(1));
    QCOMPARE(sample.desk().line(), std::optional<std::size_t>(1));
}

void ImportTest::a_click_on_a_head_chooses_role_unit_and_nulls() {
    Importing sample;
    sample.open();
    auto& table = sample.find<QTableWidget>("Table_import_preview");
    QVERIFY(head_of(table, "tmi").contains("Magnetics\nnT"));
    sample.choose_role("ground", "role_none");
    QVERIFY2(!head_of(table, "ground").contains("Terrain"), qPrintable(head_of(table, "ground")));
    sample.choose_role("ground", "role_terrain");
    QVERIFY(!head_of(table, "ground").split('\n')[1].isEmpty());

    QMenu* menu = sample.column_menu("height");
    auto* units = menu->findChild<QMenu*>("Menu_import_unit");
    QVERIFY(units);
    for (QAction* action : units->actions())
        if (action->text() == "ft") action->trigger();
    menu->close();
    QTest::qWait(5);
    sample.read();
    QVERIFY(head_of(table, "height").contains("\nft"));

    menu = sample.column_menu("tmi");
    auto* nulls = menu->findChild<QLineEdit*>("Text_import_nulls");
    nulls->setText("-99999.99 51300");
    QTest::keyClick(nulls, Qt::Key_Return);
    QTest::qWait(5);
    sample.read();
    QVERIFY2(head_of(table, "tmi").contains("null -99999.99, 1 more"), qPrintable(head_of(table, "tmi")));
    QVERIFY(sample.desk().index());
}

void ImportTest::the_lists_show_what_was_recognised_and_correct_it() {
    Importing sample;
    sample.open();
    QCOMPARE(sample.find<QComboBox>("Combo_import_format").currentText(), QString("Text table"));
    auto& separator = sample.find<QComboBox>("Combo_import_separator");
    QCOMPARE(separator.currentText(), QString("Commas"));
    const auto choose = [&](int entry) {
        separator.setCurrentIndex(entry);
        emit separator.activated(entry);
        QTest::qWait(5);
        sample.read();
    };
    choose(3);
    QVERIFY(!sample.desk().layout());
    QVERIFY(sample.words("Label_import_report").contains("cannot be read in this way"));
    choose(2);
    QVERIFY(sample.desk().index());
    QVERIFY(sample.find<QPushButton>("Command_import").isEnabled());
}

void ImportTest::a_dropped_file_comes_onto_the_page() {
    Importing sample;
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(sample.path))});
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(sample.form.get(), &enter);
    QDropEvent event({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(sample.form.get(), &event);
    sample.read();
    QVERIFY(sample.page().isVisible());
    QCOMPARE(sample.desk().index()->lines.size(), std::size_t(5));
}

void ImportTest::what_is_wrong_is_told_on_the_page() {
    Importing sample;
    sample.path = sample.folder.write("letter.txt", "Dear reader,\nthis is none.\n");
    sample.open();
    QVERIFY(!sample.find<QPushButton>("Command_import").isEnabled());
    QVERIFY(!sample.words("Label_import_report").isEmpty());
    QVERIFY(sample.find<QTableWidget>("Table_import_preview").rowCount() > 0);

    sample.path = sample.folder.path("survey.csv");
    sample.open();
    sample.key("Text_import_system", "EPSG:999999");
    QVERIFY(sample.find<QLineEdit>("Text_import_system").property("refused").toBool());
    QVERIFY(sample.words("Label_import_report").contains("999999"));
    sample.key("Text_import_system", "EPSG:32754");
    QVERIFY(!sample.find<QLineEdit>("Text_import_system").property("refused").toBool());
    QVERIFY(sample.words("Label_import_system").contains("54S"));
    sample.key("Text_import_date", "yesterday");
    QVERIFY(sample.find<QLineEdit>("Text_import_date").property("refused").toBool());
    sample.key("Text_import_date", "1990-07-01");
    QVERIFY2(sample.words("Label_import_field").contains("nT"),
             qPrintable(sample.words("Label_import_field")));
    sample.choose_role("northing", "role_none");
    QVERIFY(sample.words("Label_import_report").contains("Northing"));
    QVERIFY(!sample.find<QPushButton>("Command_import").isEnabled());
    QVERIFY(sample.prompts.messages.empty());
}

void ImportTest::keys_go_from_line_to_line() {
    Importing sample;
    sample.open();
    sample.click("Command_import");
    QTest::qWait(5);
    QCOMPARE(sample.session.workspace.source.line, std::string("5690"));
    QVERIFY(QTest::qWaitForWindowActive(sample.form.get()));
    QTest::keyClick(sample.form.get(), Qt::Key_PageDown, Qt::ControlModifier);
    QTest::qWait(5);
    QCOMPARE(sample.session.workspace.source.line, std::string("5700"));
    QVERIFY2(sample.status(1).startsWith("Line 5700, 2 of 5"), qPrintable(sample.status(1)));
    QTest::keyClick(sample.form.get(), Qt::Key_PageUp, Qt::ControlModifier);
    QTest::qWait(5);
    QCOMPARE(sample.session.workspace.source.line, std::string("5690"));
}

void ImportTest::the_page_is_shown_again_as_it_was() {
    Importing sample;
    sample.open();
    sample.click_map(1);
    sample.click("Command_import");
    QVERIFY(!sample.page().isVisible());
    sample.find<QAction>("menu_survey_map").trigger();
    QTest::qWait(5);
    QVERIFY(sample.page().isVisible());
    QCOMPARE(sample.map().map().chosen(), std::optional<std::size_t>(1));
    QTest::keyClick(&sample.page(), Qt::Key_Escape);
    QVERIFY(!sample.page().isVisible());
}

void ImportTest::undo_brings_the_former_model_back() {
    Importing sample;
    const std::string model = write_workspace(sample.folder);
    sample.form->open_file(model);
    sample.form->load_locations();
    sample.open();
    sample.click("Command_import");
    QTest::qWait(5);
    QCOMPARE(sample.session.workspace.body_count, 0);
    QCOMPARE(sample.session.workspace.model_file, std::string());
    sample.find<QAction>("menu_undo").trigger();
    QTest::qWait(5);
    QCOMPARE(sample.session.workspace.body_count, 2);
    QCOMPARE(sample.session.workspace.model_file, model);
}

void ImportTest::lines_sort_by_number_and_keep_their_pieces() {
    intake::SurveyIndex index;
    for (const char* name : {"10", "9", "T2"}) {
        intake::SurveyLineInfo line;
        line.name = name;
        line.stations = index.lines.size() == 1 ? 500 : 20;
        if (index.lines.size() == 1) line.pieces = {{0, 249}, {250, 499}};
        index.lines.push_back(line);
    }
    LineModel model;
    model.show(&index);
    QCOMPARE(model.rowCount(), 5);
    model.sort(LineModel::name, Qt::AscendingOrder);
    QCOMPARE(model.row_of(1, {}), 0);
    QCOMPARE(model.row_of(1, 0), 1);
    QCOMPARE(model.row_of(1, 1), 2);
    QCOMPARE(model.row_of(0, {}), 3);
    model.sort(LineModel::stations, Qt::DescendingOrder);
    QCOMPARE(model.row_of(1, {}), 0);
    QCOMPARE(model.row_of(0, {}), 3);
}

void ImportTest::nothing_is_cut_off() {
    Importing sample;
    sample.open();
    QTest::qWait(20);
    QVERIFY(sample.page().width() <= 1280 && sample.page().height() <= 800);
    for (QPushButton* button : sample.page().findChildren<QPushButton*>())
        QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->objectName()));
    for (const QCheckBox* check : sample.page().findChildren<QCheckBox*>())
        QVERIFY2(check->width() >= check->sizeHint().width(), qPrintable(check->objectName()));
    QVERIFY(sample.page().minimumSizeHint().width() <= 1280);
    QVERIFY(sample.page().minimumSizeHint().height() <= 760);
}

QObject* make_import_test() {
    return new ImportTest;
}

}  // namespace anomalis::window

#include "import_test.moc"
