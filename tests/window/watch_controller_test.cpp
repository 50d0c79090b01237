#include "window/shell/watch_controller.h"

#include <filesystem>

#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "core/safe_file.h"
#include "edit/change.h"
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
    void a_kept_model_stays_until_it_is_wanted();
    void what_a_crash_left_is_offered_and_shown();
    void leaving_keeps_an_unsaved_model_and_nothing_of_a_saved_one();
    void what_was_kept_is_reached_over_a_file_that_was_named_and_goes_when_discarded();
    void a_model_that_cannot_be_kept_holds_the_window_once();
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

void WatchControllerTest::a_kept_model_stays_until_it_is_wanted() {
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
        QCOMPARE(closed.form->windowTitle(), QString("Anomalis"));
        closed.form->close();
    }
    FormSample next;
    next.form->recovery().start(folder.path("recovery"));
    next.find<QAction>("menu_kept_model_0").trigger();
    QCOMPARE(next.form->windowTitle(), QString("Anomalis: line.axm *"));
    QCOMPARE(next.text("Text_MAGINV_topo"), QString("12"));
}

void WatchControllerTest::what_a_crash_left_is_offered_and_shown() {
    const TempFolder state;
    const std::string root = state.path("recovery");
    TempFolder survey;
    const std::string path = write_workspace(survey);
    {
        FormSample crashed;
        crashed.form->recovery().start(root);
        crashed.form->open_file(path);
        crashed.form->load_locations();
        crashed.session.workspace.body(1).dip.value = 21;
        edit::note_change(crashed.form->workbench(), {"dip", "", false});
        crashed.form->recovery().keep_now();
    }
    FormSample next;
    QVERIFY(!next.find<QWidget>("Frame_welcome_kept").isVisible());
    next.form->recovery().start(root);
    QVERIFY2(next.prompts.choices.empty(), "nothing is asked");
    QVERIFY(next.find<QWidget>("Frame_welcome_kept").isVisible());
    auto& offer = next.find<QPushButton>("Frame_welcome_continue_0");
    QVERIFY2(offer.text().startsWith("Continue with line.axm, ") && offer.text().endsWith(", 2 bodies"),
             qPrintable(offer.text()));
    QVERIFY(!next.find<QWidget>("Frame_welcome_continue_1").isVisible());
    offer.click();
    QVERIFY(!next.find<QMenu>("menu_kept_models").menuAction()->isVisible());
    QCOMPARE(next.session.workspace.body(1).dip.value, 21.0F);
    QCOMPARE(next.form->windowTitle(), QString("Anomalis: line.axm *"));
    QCOMPARE(next.tab(), 1);
    QCOMPARE(next.session.workspace.station_count, edit::LineSample::stations);
}

void WatchControllerTest::leaving_keeps_an_unsaved_model_and_nothing_of_a_saved_one() {
    const TempFolder state;
    const std::string root = state.path("recovery");
    const TempFolder survey;
    {
        FormSample sample;
        sample.form->recovery().start(root);
        sample.form->open_file(write_workspace(survey));
        sample.find<QAction>("menu_add_body_1").trigger();
        sample.form->close();
        QVERIFY(!sample.form->isVisible());
        QVERIFY2(sample.prompts.choices.empty() && sample.prompts.questions.empty(), "nothing is asked");
    }
    {
        FormSample next;
        next.form->recovery().start(root);
        next.choose_tab(1);
        QVERIFY(next.find<QWidget>("Frame_hint_kept").isVisible());
        next.click("Frame_hint_continue_0");
        QCOMPARE(next.session.workspace.body_count, 3);
        next.find<QAction>("Shortcut_save").trigger();
        next.form->close();
    }
    FormSample last;
    last.form->recovery().start(root);
    QVERIFY(!last.find<QMenu>("menu_kept_models").menuAction()->isVisible());
}

void WatchControllerTest::what_was_kept_is_reached_over_a_file_that_was_named_and_goes_when_discarded() {
    const TempFolder state, other;
    const std::string root = state.path("recovery");
    const std::string named = write_workspace(other, 51);
    TempFolder survey;
    {
        FormSample left;
        left.form->recovery().start(root);
        left.form->open_file(write_workspace(survey));
        left.find<QAction>("menu_delete_body_1").trigger();
        left.form->close();
    }
    FormSample next;
    next.form->open_file(named);
    next.form->recovery().start(root);
    QCOMPARE(next.session.workspace.station_count, 51);
    QVERIFY2(next.status(1).contains("Not saved when the program was left: line.axm"),
             qPrintable(next.status(1)));
    QVERIFY(next.find<QPushButton>("StatusBar_link").isVisible());
    auto& entry = next.find<QAction>("menu_kept_model_0");
    QVERIFY(entry.isVisible() && next.find<QMenu>("menu_kept_models").menuAction()->isVisible());
    next.prompts.chosen = {"Keep"};
    auto& discard = next.find<QPushButton>("Frame_welcome_discard_0");
    discard.click();
    QVERIFY2(entry.isVisible(), "only a yes discards");
    next.prompts.chosen = {"Discard"};
    discard.click();
    QVERIFY(!entry.isVisible());
    QCOMPARE(next.prompts.choices.size(), std::size_t(2));
}

void WatchControllerTest::a_model_that_cannot_be_kept_holds_the_window_once() {
    const TempFolder folder;
    FormSample sample;
    sample.form->recovery().start(folder.write("no_folder", "a file"));
    sample.form->open_file(write_workspace(folder));
    sample.find<QAction>("menu_delete_body_1").trigger();
    sample.form->close();
    QVERIFY(sample.form->isVisible());
    QVERIFY(sample.prompts.told("cannot be kept for the next start"));
    sample.form->close();
    QVERIFY(!sample.form->isVisible());
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
