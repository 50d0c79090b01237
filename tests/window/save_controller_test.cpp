#include <filesystem>

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>

#include "core/paths.h"
#include "output/clean_tables.h"
#include "output/tables.h"
#include "window/file_dialog_answer.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/chart_file_dialogs.h"
#include "window/shell/form_inversion.h"
#include "window/shell/screenshot.h"

namespace anomalis::window {

class SaveControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void the_file_menu_has_its_entries_in_their_order();
    void save_as_writes_names_the_window_and_lists_the_file();
    void the_button_saves_without_a_question_and_is_done();
    void without_a_name_the_button_says_where_to_give_one_and_the_key_asks();
    void a_save_that_fails_keeps_button_and_asterisk();
    void a_file_that_cannot_be_read_leaves_window_and_file_as_they_were();
    void a_repaired_body_is_no_step_that_keys_must_pass();
    void the_key_of_save_during_a_run_says_why_nothing_is_saved();
    void recent_files_come_back_at_the_next_start_and_open();
    void recent_files_that_vanished_are_told_and_not_listed_at_the_next_start();
    void exports_write_calculated_numbers();
    void drawings_are_written();
    void a_done_export_leads_to_its_folder();
    void exports_without_a_line_ask_nothing();
    void pictures_go_beside_the_model_and_to_the_clipboard();
    void without_a_model_file_a_picture_is_on_the_clipboard_alone();
    void a_picture_that_fails_puts_everything_back();
    void a_picture_of_the_window_spares_the_files_that_are_open();
    void a_picture_of_a_chart_spares_the_files_that_are_open();
};

namespace {

struct Opened : FormSample {
    Opened() { form->open_file(write_workspace(folder)); }
    void trigger(const char* name) { find<QAction>(name).trigger(); }
    bool exists(const char* name) { return !file_exists(folder.path(name)).empty(); }
    TempFolder folder;
};

QStringList entries_of(QMenu& menu) {
    QStringList names;
    for (const QAction* action : menu.actions())
        names << (action->menu() ? action->menu()->objectName() : action->objectName());
    return names;
}

}  // namespace

void SaveControllerTest::the_file_menu_has_its_entries_in_their_order() {
    FormSample sample;
    const QStringList names = entries_of(sample.find<QMenu>("menu_file"));
    qsizetype before = -1;
    for (const char* name : {"menu_open_model_0", "menu_open_model_1", "menu_open_model_2",
                             "menu_open_model_3", "menu_export_dxf", "menu_export_data", "menu_export_clean",
                             "menu_save_directory", "menu_restore_directory", "menu_do_logging",
                             "sep_file_list", "menu_file_list_0", "menu_file_list_5", "menu_exit"}) {
        const auto place = names.indexOf(name);
        QVERIFY2(place > before, name);
        before = place;
    }
    QVERIFY(sample.find<QAction>("menu_open_model_2").isSeparator());
    QCOMPARE(sample.find<QAction>("menu_open_model_1").text().remove('&'),
             QString("Save Data Format and Model Definitions"));
    QCOMPARE(sample.find<QAction>("menu_export_data").text().remove('&'), QString("Export data values"));
    QCOMPARE(entries_of(sample.find<QMenu>("menu_export_dxf")),
             QStringList({"menu_export_dxf_0", "menu_export_dxf_1"}));
    QVERIFY(!sample.find<QAction>("sep_file_list").isVisible());
    QVERIFY(!sample.find<QAction>("menu_file_list_0").isVisible());
    QVERIFY(!sample.find<QPushButton>("Command_save_axm_model").isEnabled());
}

void SaveControllerTest::save_as_writes_names_the_window_and_lists_the_file() {
    Opened sample;
    sample.type("Text_MAGINV_topo", "12");
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm *"));
    sample.prompts.save_paths = {sample.folder.path("R&D")};
    sample.trigger("menu_open_model_1");
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: R&D.axm"));
    QVERIFY(sample.exists("R&D.axm") && sample.exists("R&D_model.csv") && sample.exists("R&D_model.msh"));
    QCOMPARE(sample.find<QAction>("menu_file_list_0").text(),
             QString::fromStdString("1: " + sample.folder.folder() + "/R&&D.axm"));
    QCOMPARE(sample.find<QAction>("menu_file_list_1").text(),
             QString::fromStdString("2: " + sample.folder.path("line.axm")));
    QVERIFY(sample.find<QPushButton>("Command_save_axm_model").isEnabled());
    QCOMPARE(sample.session.workspace.display.form_height, 15 * sample.form->height());
}

void SaveControllerTest::the_button_saves_without_a_question_and_is_done() {
    Opened sample;
    sample.type("Text_MAGINV_topo", "12");
    std::filesystem::remove(sample.folder.path("line.axm"));
    sample.find<QPushButton>("Command_save_axm_model").click();
    QVERIFY(sample.exists("line.axm"));
    QVERIFY(!sample.find<QPushButton>("Command_save_axm_model").isEnabled());
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    QVERIFY(sample.prompts.save_requests.empty());
}

void SaveControllerTest::without_a_name_the_button_says_where_to_give_one_and_the_key_asks() {
    FormSample sample;
    const TempFolder folder;
    sample.type("Text_MAGINV_topo", "12");
    sample.find<QPushButton>("Command_save_axm_model").click();
    QCOMPARE(sample.status(1), QString("No file name yet: use File, Save Data Format and Model Definitions"));
    QVERIFY(!sample.find<QPushButton>("Command_save_axm_model").isEnabled());
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis *"));
    sample.prompts.save_paths = {folder.path("new.axm")};
    sample.find<QAction>("Shortcut_save").trigger();
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: new.axm"));
    sample.find<QAction>("Shortcut_save").trigger();
    QCOMPARE(sample.prompts.save_requests.size(), std::size_t{1});
}

void SaveControllerTest::a_save_that_fails_keeps_button_and_asterisk() {
    Opened sample;
    sample.type("Text_MAGINV_topo", "12");
    sample.session.workspace.model_file = sample.folder.path("no/such/line.axm");
    sample.find<QPushButton>("Command_save_axm_model").click();
    QVERIFY(sample.prompts.told("An error occurred while saving the model parameters: "));
    QVERIFY(sample.find<QPushButton>("Command_save_axm_model").isEnabled());
    QVERIFY(sample.form->windowTitle().endsWith(" *"));
}

void SaveControllerTest::a_file_that_cannot_be_read_leaves_window_and_file_as_they_were() {
    Opened sample;
    sample.type("Text_MAGINV_topo", "12");
    sample.choose_tab(1);
    const QString undo = QString::fromStdString(sample.form->workbench().history.undo_name());
    const std::string whole = sample.folder.read("line.axm");
    const auto cut = whole.find("Second");
    QVERIFY(cut != std::string::npos);
    for (const std::string& other : {sample.folder.write("cut.axm", whole.substr(0, cut)),
                                     sample.folder.write("readme.axm", "words\n")}) {
        sample.prompts.messages.clear();
        sample.form->open_file(other);
        QCOMPARE(sample.prompts.messages.size(), std::size_t{1});
        QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm *"));
        QCOMPARE(sample.tab(), 1);
        QCOMPARE(sample.session.workspace.body_count, 2);
        QVERIFY(edit::line_loaded(sample.session.workspace));
        QCOMPARE(QString::fromStdString(sample.form->workbench().history.undo_name()), undo);
        QVERIFY(sample.find<QPushButton>("Command_save_axm_model").isEnabled());
    }
    QTest::keyClick(sample.form.get(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(sample.folder.read("line.axm").find("Second") != std::string::npos);
}

void SaveControllerTest::a_repaired_body_is_no_step_that_keys_must_pass() {
    Opened sample;
    std::string text = sample.folder.read("line.axm");
    const auto heading = text.find(" 2  0  1 ");
    QVERIFY(heading != std::string::npos);
    text.replace(heading, 2, " 9");
    const std::string nameless = sample.folder.write("nameless.axm", text);
    sample.type("Text_MAGINV_topo", "12");
    sample.form->open_file(nameless);
    sample.choose_tab(1);
    QTest::qWait(30);
    QCOMPARE(sample.session.workspace.body(1).type, std::int32_t{thin_sheet});
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm *"));
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: nameless.axm"));
    QCOMPARE(sample.session.workspace.body(1).type, std::int32_t{thin_sheet});
    QTest::qWait(30);
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.session.workspace.surface_elevation, 0.0F);
}

void SaveControllerTest::the_key_of_save_during_a_run_says_why_nothing_is_saved() {
    Opened sample;
    const std::string before = sample.folder.read("line.axm");
    bool pressed = false;
    sample.prompts.on_yield = [&] {
        if (pressed || !sample.form->inversion().desk().running()) return;
        pressed = true;
        QVERIFY(!sample.find<QPushButton>("Command_save_axm_model").isEnabled());
        QTest::keyClick(sample.form.get(), Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(sample.status(1), QString("Not saved: a run goes on. Stop it with Esc, then save"));
        QTest::keyClick(sample.form.get(), Qt::Key_Escape);
    };
    QTest::keyClick(sample.form.get(), Qt::Key_I, Qt::ControlModifier);
    QVERIFY(pressed);
    QCOMPARE(sample.folder.read("line.axm"), before);
    QVERIFY(sample.prompts.save_requests.empty());
    QTest::keyClick(sample.form.get(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(sample.folder.read("line.axm") != before);
}

void SaveControllerTest::recent_files_come_back_at_the_next_start_and_open() {
    const TempFolder folder, settings_folder;
    const CurrentFolder here(settings_folder.folder());
    const std::string settings = settings_folder.path("settings.conf");
    const std::string path = write_workspace(folder);
    { FormSample(std::vector<flow::ExampleFile>{}, settings).form->open_file(path); }
    FormSample next({}, settings);
    QAction& entry = next.find<QAction>("menu_file_list_0");
    QVERIFY(entry.isVisible() && next.find<QAction>("sep_file_list").isVisible());
    QVERIFY(!next.find<QAction>("menu_file_list_1").isVisible());
    next.choose_tab(1);
    entry.trigger();
    QCOMPARE(next.form->windowTitle(), QString("Anomalis: line.axm"));
    QCOMPARE(next.tab(), 1);
    QCOMPARE(current_folder(), folder.folder());
}

void SaveControllerTest::recent_files_that_vanished_are_told_and_not_listed_at_the_next_start() {
    const TempFolder folder, settings_folder;
    const std::string settings = settings_folder.path("settings.conf");
    const std::string path = write_workspace(folder);
    {
        FormSample sample({}, settings);
        sample.form->open_file(path);
        std::filesystem::remove(path);
        sample.find<QAction>("menu_file_list_0").trigger();
        QCOMPARE(sample.prompts.messages, std::vector<std::string>{"That file does not exist"});
        QVERIFY(sample.find<QAction>("menu_file_list_0").isVisible());
    }
    FormSample next({}, settings);
    QVERIFY(!next.find<QAction>("menu_file_list_0").isVisible());
}

void SaveControllerTest::exports_write_calculated_numbers() {
    Opened sample;
    sample.prompts.save_paths = {sample.folder.path("profile.csv"), sample.folder.path("rows.csv"),
                                 sample.folder.path("bodies.csv")};
    for (const char* entry : {"menu_export_data", "menu_export_clean_0", "menu_export_clean_1"})
        sample.trigger(entry);
    const Workspace& workspace = sample.session.workspace;
    QVERIFY2(sample.prompts.messages.empty(), "no box stands in the way");
    QCOMPARE(sample.status(1), QString("Output complete. bodies.csv"));
    QCOMPARE(sample.folder.read("profile.csv"), output::profile_table_text(workspace));
    QCOMPARE(sample.folder.read("rows.csv"), output::clean_profile_table_text(workspace));
    QCOMPARE(sample.folder.read("bodies.csv"), output::clean_model_table_text(workspace));
}

void SaveControllerTest::drawings_are_written() {
    Opened sample;
    sample.prompts.save_paths = {sample.folder.path("solids.dxf"), sample.folder.path("plan.dxf")};
    sample.trigger("menu_export_dxf_0");
    sample.trigger("menu_export_dxf_1");
    QVERIFY(sample.folder.read("solids.dxf").find("3DFACE") != std::string::npos);
    QVERIFY(sample.folder.read("plan.dxf").find("POLYLINE") != std::string::npos);
    QVERIFY(sample.prompts.messages.empty());
    QCOMPARE(sample.status(1), QString("Output complete. plan.dxf"));
}

/// Takes what the desktop is asked to open.
class OpenedUrls : public QObject {
    Q_OBJECT

  public:
    OpenedUrls() { QDesktopServices::setUrlHandler("file", this, "take"); }
    ~OpenedUrls() override { QDesktopServices::unsetUrlHandler("file"); }
    QList<QUrl> urls;

  public slots:
    void take(const QUrl& url) { urls << url; }
};

void SaveControllerTest::a_done_export_leads_to_its_folder() {
    Opened sample;
    OpenedUrls opened;
    sample.prompts.save_paths = {sample.folder.path("rows.csv"), std::nullopt};
    auto& link = sample.find<QPushButton>("StatusBar_link");
    sample.trigger("menu_export_clean_0");
    QCOMPARE(link.text(), QString("Show in folder"));
    QVERIFY(!link.isHidden());
    link.click();
    QCOMPARE(opened.urls.size(), 1);
    QCOMPARE(QFileInfo(opened.urls[0].toLocalFile()).canonicalFilePath(),
             QFileInfo(QString::fromStdString(sample.folder.folder())).canonicalFilePath());
    QTest::qWait(1);
    sample.trigger("menu_export_clean_0");
    QVERIFY2(link.isHidden(), "a cancelled one tells nothing");
}

void SaveControllerTest::exports_without_a_line_ask_nothing() {
    FormSample sample;
    for (const char* entry :
         {"menu_export_data", "menu_export_clean_0", "menu_export_clean_1", "menu_export_dxf_0"})
        sample.find<QAction>(entry).trigger();
    QVERIFY(sample.prompts.save_requests.empty());
    QVERIFY(sample.prompts.messages.empty());
}

void SaveControllerTest::pictures_go_beside_the_model_and_to_the_clipboard() {
    Opened sample;
    auto& bars = sample.find<QWidget>("Frame_move_body");
    const CurrentFolder here(sample.folder.folder());
    sample.session.log.turn_on(sample.prompts);
    sample.prompts.messages.clear();
    sample.click("Command_Save_Screenshot_1");
    QVERIFY(sample.prompts.messages.empty());
    QVERIFY(sample.folder.read("axm_logging.dat").find(sample.folder.path("line_model_form.bmp")) !=
            std::string::npos);
    const QImage form(QString::fromStdString(sample.folder.path("line_model_form.bmp")));
    QCOMPARE(form.size(), sample.form->size());
    QCOMPARE(QApplication::clipboard()->image().size(), form.size());
    QVERIFY(bars.isVisible() && sample.find<QWidget>("Frame_buttons").isVisible());
    QVERIFY(!sample.find<QWidget>("Frame_model_misfit").isVisible());
    const QString misfit = sample.text("Text_model_misfit");
    QVERIFY2(QRegularExpression("^\\d+\\.\\d\\d \\d+\\.\\d\\d$").match(misfit).hasMatch(),
             qPrintable(misfit));

    sample.click("Command_Save_Screenshot_0");
    const QImage charts(QString::fromStdString(sample.folder.path("line_model_graph.bmp")));
    QCOMPARE(charts.size(), sample.find<QWidget>("Image_splitter").size());
    sample.click("Command_show_plan");
    sample.click("Command_Save_Screenshot_0");
    const QImage plan(QString::fromStdString(sample.folder.path("line_plan.bmp")));
    QCOMPARE(plan.size(), sample.find<QWidget>("Frame_plan").size());
    for (const QImage& picture : {form, charts, plan}) {
        bool uniform = true;
        for (int x = 0; x < picture.width() && uniform; ++x)
            uniform = picture.pixel(x, picture.height() / 2) == picture.pixel(0, picture.height() / 2);
        QVERIFY(!uniform);
    }
}

void SaveControllerTest::without_a_model_file_a_picture_is_on_the_clipboard_alone() {
    Opened sample;
    sample.session.workspace.model_file.clear();
    const int files = sample.folder.entries();
    QApplication::clipboard()->setText("before");
    sample.click("Command_Save_Screenshot_0");
    QCOMPARE(sample.folder.entries(), files);
    QVERIFY(!QApplication::clipboard()->image().isNull());
}

void SaveControllerTest::a_picture_that_fails_puts_everything_back() {
    Opened sample;
    std::filesystem::create_directories(sample.folder.path("line_model_form.bmp/in the way"));
    sample.click("Command_Save_Screenshot_1");
    QCOMPARE(sample.prompts.messages.size(), std::size_t{1});
    QVERIFY(sample.prompts.told("An error occurred while saving the screenshot: "));
    for (const char* name : {"Frame_move_body", "Frame_buttons"})
        QVERIFY(sample.find<QWidget>(name).isVisible());
    for (const char* name : {"Frame_invert", "Frame_model_misfit"})
        QVERIFY(!sample.find<QWidget>(name).isVisible());
}

void SaveControllerTest::a_picture_of_the_window_spares_the_files_that_are_open() {
    Opened sample;
    const std::string path = sample.folder.write("line_model_graph.bmp", "readings");
    sample.session.workspace.definition.data_file = path;
    QApplication::clipboard()->setText("before");
    sample.click("Command_Save_Screenshot_0");
    QCOMPARE(sample.folder.read("line_model_graph.bmp"), std::string("readings"));
    QCOMPARE(sample.prompts.messages.size(), std::size_t{1});
    QVERIFY(sample.prompts.told("The picture " + path + " would be written over the data file"));
    QVERIFY(!QApplication::clipboard()->image().isNull());
}

void SaveControllerTest::a_picture_of_a_chart_spares_the_files_that_are_open() {
    Opened sample;
    Workspace& workspace = sample.session.workspace;
    const std::string other = sample.folder.path("other.axm");
    ChartFileDialogs dialogs(sample.form->workbench());
    for (const std::string& path : {workspace.definition.data_file, workspace.model_file, other}) {
        FileDialogAnswer answer(QString::fromStdString(path));
        const auto chosen = dialogs.save_path(
            nullptr, {"Picture", "All files (*)", QFileInfo(QString::fromStdString(path)).suffix(), "chart"});
        QCOMPARE(chosen.has_value(), path == other);
    }
    QCOMPARE(sample.prompts.messages.size(), std::size_t{2});
    QVERIFY(sample.prompts.told("The picture " + workspace.definition.data_file +
                                " would be written over the data file"));
    QVERIFY(sample.prompts.told("The picture " + workspace.model_file +
                                " would be written over the open workspace"));
}

QObject* make_save_controller_test() {
    return new SaveControllerTest;
}

}  // namespace anomalis::window

#include "save_controller_test.moc"
