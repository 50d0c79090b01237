#include <filesystem>
#include <fstream>
#include <iterator>

#include <QClipboard>
#include <QDialog>
#include <QPushButton>

#include "edit/change.h"
#include "window/form_sample.h"
#include "window/form_tests.h"

namespace anomalis::window {

/// Nothing that is opened can be lost or written by chance, and every load answers.
class OpeningTest : public QObject {
    Q_OBJECT

  private slots:
    void an_example_is_an_untitled_copy_whose_file_is_never_written();
    void undo_after_an_opened_workspace_brings_back_the_former_line();
    void a_workspace_whose_data_are_gone_shows_the_first_tab_and_says_so();
    void a_click_on_the_status_bar_shows_the_report();
};

namespace {

std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

void OpeningTest::an_example_is_an_untitled_copy_whose_file_is_never_written() {
    FormSample sample;
    const TempFolder folder;
    const std::string path = write_workspace(folder);
    const std::string shipped = contents(path);
    sample.form->open_example(path);
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: untitled, copy of line.axm"));
    sample.session.workspace.body(1).dip.value += 5;
    edit::note_change(sample.form->workbench(), {"dip", "", false});
    sample.form->news().tell(News::parameters);
    sample.prompts.save_paths.push_back(folder.path("mine.axm"));
    sample.click("Command_save_axm_model");
    QCOMPARE(sample.prompts.save_requests.size(), 1U);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: mine.axm"));
    QCOMPARE(contents(path), shipped);
}

void OpeningTest::undo_after_an_opened_workspace_brings_back_the_former_line() {
    FormSample sample;
    const TempFolder folder, other;
    sample.form->open_file(write_workspace(folder));
    sample.form->open_file(write_workspace(other, 51));
    QCOMPARE(sample.session.workspace.station_count, 51);
    std::filesystem::remove(folder.path("line.dat"));
    sample.find<QAction>("menu_undo").trigger();
    QCOMPARE(sample.session.workspace.station_count, edit::LineSample::stations);
    QCOMPARE(sample.text("Text_number_locations"), QString("101"));
    QVERIFY(sample.prompts.messages.empty());
    sample.find<QAction>("menu_redo").trigger();
    QCOMPARE(sample.text("Text_number_locations"), QString("51"));
}

void OpeningTest::a_workspace_whose_data_are_gone_shows_the_first_tab_and_says_so() {
    FormSample sample;
    const TempFolder folder;
    const std::string path = write_workspace(folder);
    folder.write("line.dat", "nothing here\n");
    sample.form->open_file(path);
    QCOMPARE(sample.tab(), 0);
    QVERIFY2(sample.status(1).startsWith("Nothing was loaded: "), qPrintable(sample.status(1)));
}

void OpeningTest::a_click_on_the_status_bar_shows_the_report() {
    FormSample sample;
    const TempFolder folder;
    sample.form->open_file(write_workspace(folder));
    sample.click("StatusBar_1");
    auto& report = sample.find<QDialog>("Form_load_report");
    QVERIFY(report.isVisible());
    QVERIFY(!report.isModal());
    sample.click("Command_copy_load_report");
    QVERIFY(QApplication::clipboard()->text().contains("Length\t2500.00 m\n"));
}

QObject* make_opening_test() {
    return new OpeningTest;
}

}  // namespace anomalis::window

#include "opening_test.moc"
