#include "window/shell/watch_controller.h"

#include <filesystem>

#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "core/safe_file.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/shell/qt_prompts.h"
#include "window/shell/recovery_controller.h"

namespace anomalis::window {

class WatchControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void two_windows_on_one_file_are_told_of_each_other();
    void changed_data_are_told_when_the_window_comes_to_the_front();
    void the_save_button_asks_before_it_replaces_what_others_wrote();
    void a_recovered_model_is_kept_when_the_question_is_closed();
    void closing_a_question_is_its_last_answer();
};

namespace {

/// A window in which line.axm is open, its programs' folders beside it.
struct Opened : FormSample {
    explicit Opened(const TempFolder& folder) {
        form->recovery().start(folder.path("recovery"));
        form->open_file(folder.path("line.axm"));
        QCoreApplication::processEvents();
    }
    void come_to_front() {
        QEvent event(QEvent::WindowActivate);
        QCoreApplication::sendEvent(form.get(), &event);
    }
};

}  // namespace

void WatchControllerTest::two_windows_on_one_file_are_told_of_each_other() {
    const TempFolder folder;
    write_workspace(folder);
    Opened first(folder);
    QVERIFY2(first.status(1).endsWith("101 stations, 2.5 km, spacing 25 m"), qPrintable(first.status(1)));
    Opened second(folder);
    const QString others = "line.axm is open in another window of Anomalis too";
    QVERIFY2(second.status(1).endsWith("101 stations, 2.5 km, spacing 25 m. " + others),
             qPrintable(second.status(1)));
    first.come_to_front();
    QVERIFY(first.status(1).endsWith(others));

    first.type("Text_MAGINV_topo", "12");
    first.find<QAction>("Shortcut_save").trigger();
    QCoreApplication::processEvents();
    QVERIFY(first.prompts.choices.empty());
    QVERIFY(first.status(1).startsWith("Saved as ") && first.status(1).endsWith(others));
    second.come_to_front();
    QVERIFY2(second.status(1).contains("line.axm was written by another program"),
             qPrintable(second.status(1)));
    second.type("Text_MAGINV_topo", "13");
    second.find<QAction>("Shortcut_save").trigger();
    QCOMPARE(second.prompts.choices.size(), std::size_t{1});

    second.form->close();
    first.type("Text_MAGINV_topo", "14");
    first.find<QAction>("Shortcut_save").trigger();
    QCoreApplication::processEvents();
    QVERIFY(!first.status(1).contains("another window"));
    QVERIFY(second.prompts.messages.empty() && first.prompts.messages.empty());
}

void WatchControllerTest::changed_data_are_told_when_the_window_comes_to_the_front() {
    const TempFolder folder;
    write_workspace(folder);
    Opened sample(folder);
    sample.click("Command_load_locations");
    append_to_file(folder.path("line.dat"), "1 503000 7000000 180 100 51000 12\n");
    sample.come_to_front();
    QVERIFY2(
        sample.status(1).endsWith("line.dat changed since it was loaded; load the data again to see that"),
        qPrintable(sample.status(1)));
    sample.click("Command_load_locations");
    sample.come_to_front();
    QVERIFY(!sample.status(1).contains("changed"));
}

void WatchControllerTest::the_save_button_asks_before_it_replaces_what_others_wrote() {
    const TempFolder folder;
    write_workspace(folder);
    Opened sample(folder);
    sample.type("Text_MAGINV_topo", "12");
    folder.write("line.axm", "by another program");
    auto& button = sample.find<QPushButton>("Command_save_axm_model");
    button.click();
    QCOMPARE(folder.read("line.axm"), std::string("by another program"));
    QVERIFY(button.isEnabled() && sample.form->windowTitle().endsWith(" *"));
    sample.prompts.chosen = {"Overwrite"};
    button.click();
    QVERIFY(folder.read("line.axm").find("Dyke") != std::string::npos);
    QVERIFY(!button.isEnabled() && !sample.form->windowTitle().endsWith(" *"));
}

void WatchControllerTest::a_recovered_model_is_kept_when_the_question_is_closed() {
    const TempFolder folder;
    write_workspace(folder);
    {
        Opened crashed(folder);
        crashed.type("Text_MAGINV_topo", "12");
        crashed.form->recovery().keep_now();
    }
    {
        FormSample closed;
        closed.form->recovery().start(folder.path("recovery"));
        QCOMPARE(closed.prompts.choices.size(), std::size_t{1});
        QCOMPARE(closed.form->windowTitle(), QString("Anomalis"));
        closed.form->close();
    }
    FormSample next;
    next.prompts.chosen = {"Bring back"};
    next.form->recovery().start(folder.path("recovery"));
    QCOMPARE(next.form->windowTitle(), QString("Anomalis: line.axm *"));
    QCOMPARE(next.text("Text_MAGINV_topo"), QString("12"));
}

/// Esc and the close button of the box itself.
void WatchControllerTest::closing_a_question_is_its_last_answer() {
    QtPrompts prompts;
    const std::vector<std::string> answers{"Bring back", "Discard", "Not now"};
    const auto answer = [&](const std::function<void(QMessageBox&)>& act) {
        QTimer::singleShot(0, [&] { act(*qobject_cast<QMessageBox*>(QApplication::activeModalWidget())); });
        return prompts.choose("A & B?", answers);
    };
    QCOMPARE(answer([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), std::size_t{2});
    QCOMPARE(answer([](QMessageBox& box) { box.close(); }), std::size_t{2});
    QCOMPARE(answer([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }), std::size_t{0});
    QCOMPARE(answer([](QMessageBox& box) {
                 for (QAbstractButton* button : box.buttons())
                     if (button->text() == "Discard") button->click();
             }),
             std::size_t{1});
}

QObject* make_watch_controller_test() {
    return new WatchControllerTest;
}

}  // namespace anomalis::window

#include "watch_controller_test.moc"
