#include <functional>

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include "core/paths.h"
#include "diagnostics/qt/form_find_file.h"
#include "transform/qt/form_define_point_transform.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/modal_forms.h"

namespace anomalis::window {

class FormDialogsTest : public QObject {
    Q_OBJECT

  private slots:
    void a_transform_that_changed_drops_the_stations();
    void done_without_an_edit_and_cancel_change_nothing();
    void a_text_that_is_wrong_keeps_the_form_open_as_typed();
    void the_other_tab_waits_for_valid_texts();
    void buttons_load_save_invert_and_reset();
    void a_coordinate_file_is_not_written_over_the_data_file();
    void a_file_that_is_no_transform_leaves_the_old_one();
    void size_folder_and_tab_are_remembered();
    void forms_open_at_the_size_they_were_given();
    void the_report_is_shown_copied_and_searched();
    void every_control_of_the_forms_explains_itself();
};

namespace {

struct Dialogs : FormSample {
    void transform(const std::function<void(QDialog&)>& act) {
        drive([this] { find<QPushButton>("Command_define_observed_transform").click(); }, act);
    }
    void preferences(const std::function<void(QDialog&)>& act) {
        drive([this] { find<QAction>("menu_preferences").trigger(); }, act);
    }
    PointTransform& record() { return session.workspace.transform; }
    TempFolder folder;
};

void type(QDialog& dialog, const char* name, const char* words) {
    auto* box = dialog.findChild<QLineEdit*>(name);
    QVERIFY2(box, name);
    box->selectAll();
    QTest::keyClicks(box, words);
}

QString text(QDialog& dialog, const char* name) {
    auto* box = dialog.findChild<QLineEdit*>(name);
    return box ? box->text() : QString("no such box");
}

void choose_tab(QDialog& dialog, int tab) {
    dialog.findChild<QTabWidget*>("Tab_transform_type")->setCurrentIndex(tab);
}

}  // namespace

void FormDialogsTest::a_transform_that_changed_drops_the_stations() {
    Dialogs sample;
    sample.form->open_file(write_workspace(sample.folder));
    sample.choose_tab(0);
    sample.transform([](QDialog& dialog) {
        QCOMPARE(dialog.objectName(), QString("Form_define_point_transform"));
        QCOMPARE(dialog.windowTitle(), QString("Define Coordinate Transform"));
        QCOMPARE(text(dialog, "Text_rotang"), QString("0.000000"));
        QCOMPARE(text(dialog, "Text_xscale"), QString("1.00000000"));
        type(dialog, "Text_xoffset", "1000");
        press(dialog, "Command_Done");
    });
    QVERIFY(sample.record().active);
    QCOMPARE(sample.session.workspace.station_count, 0);
    QCOMPARE(sample.text("Text_number_locations"), QString());
    QCOMPARE(sample.text("Text_line_length"), QString());
    QVERIFY(sample.form->windowTitle().endsWith(" *"));
    sample.click("Command_load_locations");
    QCOMPARE(sample.session.workspace.stations(1, column_east), 501000.0);
}

void FormDialogsTest::done_without_an_edit_and_cancel_change_nothing() {
    Dialogs sample;
    sample.form->open_file(write_workspace(sample.folder));
    sample.transform([](QDialog& dialog) {
        choose_tab(dialog, 1);
        press(dialog, "Command_Done");
    });
    sample.transform([](QDialog& dialog) {
        choose_tab(dialog, 0);
        type(dialog, "Text_rotang", "20");
        press(dialog, "Command_cancel");
    });
    QCOMPARE(sample.session.workspace.station_count, edit::LineSample::stations);
    QCOMPARE(sample.record().rotation, 0.0);
    QVERIFY(!sample.form->windowTitle().endsWith(" *"));
}

void FormDialogsTest::a_text_that_is_wrong_keeps_the_form_open_as_typed() {
    Dialogs sample;
    sample.transform([](QDialog& dialog) {
        type(dialog, "Text_rotang", "north");
        press(dialog, "Command_Done");
        QVERIFY(dialog.isVisible());
        QCOMPARE(text(dialog, "Text_rotang"), QString("north"));
        type(dialog, "Text_rotang", QByteArray(10000, '9').constData());
        press(dialog, "Command_Done");
        QVERIFY(dialog.isVisible());
    });
    QCOMPARE(sample.prompts.messages, std::vector<std::string>(2, "Rotation angle must be numeric"));
}

void FormDialogsTest::the_other_tab_waits_for_valid_texts() {
    Dialogs sample;
    sample.transform([&sample](QDialog& dialog) {
        type(dialog, "Text_yscale", "0");
        choose_tab(dialog, 1);
        QCOMPARE(dialog.findChild<QTabWidget*>("Tab_transform_type")->currentIndex(), 0);
        QVERIFY(sample.prompts.told("Scale for current y axis must be non-zero"));
        type(dialog, "Text_yscale", "1");
        type(dialog, "Text_xoffset", "50");
        choose_tab(dialog, 1);
        QCOMPARE(text(dialog, "Text_new_x1"), QString("50.0000"));
        QCOMPARE(text(dialog, "Text_original_x2"), QString("100.0000"));
        QCOMPARE(text(dialog, "Text_new_x2"), QString("150.0000"));
        QCOMPARE(text(dialog, "Text_elevation_scale_1"), QString("1.00000000"));
    });
}

void FormDialogsTest::buttons_load_save_invert_and_reset() {
    Dialogs sample;
    sample.prompts.save_paths = {sample.folder.path("a.crd")};
    sample.prompts.open_paths = {sample.folder.path("a.crd")};
    sample.transform([](QDialog& dialog) {
        type(dialog, "Text_xoffset", "1000");
        type(dialog, "Text_rotang", "90");
        press(dialog, "Command_save_transform_file");
        press(dialog, "Command_invert_transform");
        QCOMPARE(text(dialog, "Text_rotang"), QString("-90.000000"));
        QCOMPARE(text(dialog, "Text_xorigin"), QString("1000.0000"));
        press(dialog, "Command_reset");
        QCOMPARE(text(dialog, "Text_xorigin"), QString("0.0000"));
        press(dialog, "Command_load_transform_file");
        QCOMPARE(text(dialog, "Text_xoffset"), QString("1000.0000"));
        QCOMPARE(text(dialog, "Text_rotang"), QString("90.000000"));
        press(dialog, "Command_Done");
    });
    QCOMPARE(sample.record().x_offset, 1000.0);
    QVERIFY(sample.prompts.messages.empty());
}

void FormDialogsTest::a_coordinate_file_is_not_written_over_the_data_file() {
    Dialogs sample;
    const std::string data = sample.folder.write("line.crd", "readings");
    sample.session.workspace.definition.data_file = data;
    sample.prompts.save_paths = {data};
    sample.prompts.yes_no = {true};
    sample.transform([](QDialog& dialog) {
        press(dialog, "Command_save_transform_file");
        press(dialog, "Command_Done");
    });
    QCOMPARE(sample.folder.read("line.crd"), std::string("readings"));
    QVERIFY(sample.prompts.told("The coordinate file " + data + " would be written over the data file"));
}

void FormDialogsTest::a_file_that_is_no_transform_leaves_the_old_one() {
    Dialogs sample;
    sample.record().x_offset = 77;
    sample.prompts.open_paths = {sample.folder.write("cut.crd", "title\r\n 1  2  3  4\r\n 1"),
                                 sample.folder.write("noise.crd", "\xff\xfe\x01PNG\n\n\n"),
                                 sample.folder.path("gone.crd")};
    sample.transform([&sample](QDialog& dialog) {
        for (std::size_t i = 1; i <= 3; ++i) {
            press(dialog, "Command_load_transform_file");
            QCOMPARE(sample.prompts.messages.size(), i);
            QCOMPARE(text(dialog, "Text_xoffset"), QString("77.0000"));
        }
        press(dialog, "Command_Done");
    });
    QCOMPARE(sample.record().x_offset, 77.0);
}

void FormDialogsTest::size_folder_and_tab_are_remembered() {
    Dialogs sample;
    sample.prompts.save_paths = {sample.folder.path("a.crd"), std::nullopt};
    const std::string before = current_folder();
    sample.transform([](QDialog& dialog) {
        choose_tab(dialog, 1);
        press(dialog, "Command_save_transform_file");
        dialog.resize(560, 600);
        press(dialog, "Command_Done");
    });
    QCOMPARE(sample.session.settings.get("TLX2024", "DefinePointTransformFormSize"),
             std::string("8400; 9000"));
    QCOMPARE(sample.session.settings.get("TLX2024", "DefinePointTransformCWD"), sample.folder.folder() + "/");
    QCOMPARE(current_folder(), before);
    sample.transform([](QDialog& dialog) {
        QCOMPARE(dialog.size(), QSize(560, 600));
        QCOMPARE(dialog.findChild<QTabWidget*>("Tab_transform_type")->currentIndex(), 1);
        press(dialog, "Command_save_transform_file");
        dialog.resize(10, 10);
        QVERIFY(dialog.width() >= 418 && dialog.height() >= 472);
    });
    QCOMPARE(sample.prompts.save_requests.back().default_name, sample.folder.folder() + "/");
}

void FormDialogsTest::forms_open_at_the_size_they_were_given() {
    const TempFolder folder;
    const std::string settings = folder.path("anomalis.conf");
    const auto size_of_guide = [](FormSample& sample) {
        sample.find<QAction>("menu_guide").trigger();
        return sample.find<QDialog>("Form_guide").size();
    };
    {
        FormSample first({}, settings);
        QCOMPARE(size_of_guide(first), QSize(960, 720));
        first.find<QDialog>("Form_guide").resize(620, 480);
        first.find<QDialog>("Form_guide").close();
    }
    {
        FormSample second({}, settings);
        QCOMPARE(size_of_guide(second), QSize(620, 480));
        second.find<QDialog>("Form_guide").resize(9000, 480);
        second.find<QDialog>("Form_guide").close();
    }
    FormSample third({}, settings);
    const QSize cut = size_of_guide(third);
    QVERIFY2(cut.width() <= third.form->screen()->availableSize().width(), "no wider than the screen");
    drive([&] { third.find<QAction>("menu_find_file").trigger(); },
          [](QDialog& dialog) { dialog.resize(700, 500); });
    drive([&] { third.find<QAction>("menu_find_file").trigger(); },
          [&](QDialog& dialog) {
              const std::string kept = third.session.settings.get("FormSizes", "Form_find_file", "");
              QCOMPARE(QString("%1 x %2").arg(dialog.width()).arg(dialog.height()),
                       QString::fromStdString(kept));
          });
}

void FormDialogsTest::the_report_is_shown_copied_and_searched() {
    Dialogs sample;
    const TempFolder tools;
    tools.write("tool", "123");
    const EnvironmentVariable path("PATH", tools.folder().c_str());
    drive([&] { sample.find<QAction>("menu_find_file").trigger(); },
          [&](QDialog& dialog) {
              QCOMPARE(dialog.objectName(), QString("Form_find_file"));
              QVERIFY(dialog.windowTitle().startsWith("Check File Environment "));
              auto* report = dialog.findChild<QPlainTextEdit*>("Text_report");
              const QString shown = report->toPlainText();
              QVERIFY(shown.startsWith("System files for Anomalis Version "));
              QVERIFY(shown.contains(QString("Qt: ") + qVersion()));
              QVERIFY(shown.contains("libQt6Core"));
              QVERIFY(!shown.contains("TLX DLL"));
              press(dialog, "Command_copy_text");
              QCOMPARE(QApplication::clipboard()->text(), shown);
              type(dialog, "Text_file_name", "tool");
              press(dialog, "Command_find_file_in_path");
              QVERIFY(report->toPlainText().contains(QString::fromStdString(tools.path("tool"))));
              press(dialog, "Command_Done");
          });
    QVERIFY(sample.prompts.messages.empty());
}

void FormDialogsTest::every_control_of_the_forms_explains_itself() {
    Dialogs sample;
    const auto check = [](QDialog& dialog) {
        for (auto* control : dialog.findChildren<QWidget*>()) {
            const bool own = qobject_cast<QLineEdit*>(control) || qobject_cast<QPushButton*>(control) ||
                             qobject_cast<QPlainTextEdit*>(control);
            if (own && !control->objectName().startsWith("qt_"))
                QVERIFY2(!control->toolTip().isEmpty(), qPrintable(control->objectName()));
        }
    };
    sample.transform(check);
    drive([&] { sample.find<QAction>("menu_find_file").trigger(); }, check);
    sample.preferences(check);
}

QObject* make_form_dialogs_test() {
    return new FormDialogsTest;
}

}  // namespace anomalis::window

#include "form_dialogs_test.moc"
