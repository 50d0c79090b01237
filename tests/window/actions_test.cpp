#include "window/shell/actions.h"

#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QTimer>

#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/shell/menu_tree.h"
#include "window/shell/shortcut_list.h"

namespace anomalis::window {

class ActionsTest : public QObject {
    Q_OBJECT

  private slots:
    void every_row_is_found_by_its_name();
    void every_row_stands_in_one_menu_or_has_a_key();
    void no_key_is_given_twice();
    void what_can_do_nothing_is_disabled();
    void marks_show_what_is_in_force();
    void nothing_happens_while_the_window_is_closed();
    void undo_is_named_while_its_menu_is_open();
    void help_lists_every_key();
};

void ActionsTest::every_row_is_found_by_its_name() {
    FormSample sample(std::vector<flow::ExampleFile>{{"/no/such/example.axm", "Example"}});
    for (const ActionRow& row : action_rows()) {
        const QString name = row.family == Family::single ? QString(row.name) : QString(row.name) + "_0";
        QVERIFY2(sample.form->findChild<QAction*>(name), qPrintable(name));
        QCOMPARE(sample.form->findChild<QAction*>(name), &sample.form->actions().action(row.id));
    }
}

void ActionsTest::every_row_stands_in_one_menu_or_has_a_key() {
    for (const ActionRow& row : action_rows()) {
        const auto tree = menu_tree();
        const auto places = std::count_if(tree.begin(), tree.end(), [&](const MenuItem& item) {
            return item.kind == MenuItem::Kind::entry && item.action == row.id;
        });
        const bool of_a_chart = row.id == ActionId::add_body_here || row.id == ActionId::section_to_plan ||
                                row.id == ActionId::plan_to_section;
        QVERIFY2(places == 1 || (places == 0 && (row.has_key() || of_a_chart)), row.name);
    }
}

void ActionsTest::no_key_is_given_twice() {
    QSet<QString> keys;
    for (const ActionRow& row : action_rows()) {
        if (!row.has_key()) continue;
        const QString key = QKeySequence(row.key).toString();
        QVERIFY2(!keys.contains(key), qPrintable(key));
        keys.insert(key);
    }
}

void ActionsTest::what_can_do_nothing_is_disabled() {
    Modelled sample;
    const auto enabled = [&](const char* name) { return sample.find<QAction>(name).isEnabled(); };
    for (const char* name : {"menu_add_body_0", "menu_add_body_1", "menu_delete_body_0", "menu_colour_body_0",
                             "menu_invert_0", "menu_export_dxf_0", "menu_force_recalc"})
        QVERIFY2(enabled(name), name);
    for (const char* name : {"menu_stop_inversion", "menu_restore_best"}) QVERIFY2(!enabled(name), name);
    sample.trigger("menu_delete_body_0");
    for (const char* name : {"menu_add_body_1", "menu_delete_body_0", "menu_delete_body_1",
                             "menu_sort_bodies_0", "menu_shift_bodies", "menu_save_defaults",
                             "menu_set_fix_flags_0", "menu_invert_1", "menu_export_dxf_0"})
        QVERIFY2(!enabled(name), name);
    QVERIFY(enabled("menu_add_body_0") && enabled("menu_force_recalc"));
    sample.trigger("menu_undo");
    QVERIFY(enabled("menu_add_body_1") && enabled("menu_invert_1"));
    sample.choose_tab(0);
    sample.type("Text_MAGINV_nhead", "3");
    for (const char* name : {"menu_add_body_0", "menu_force_recalc", "menu_export_clean_0"})
        QVERIFY2(!enabled(name), name);
    QVERIFY(enabled("menu_open_model_0") && enabled("menu_export_data"));
}

void ActionsTest::marks_show_what_is_in_force() {
    Modelled sample;
    QVERIFY(sample.find<QAction>("menu_view_mode_0").isChecked());
    sample.click("Command_show_plan");
    QVERIFY(sample.find<QAction>("menu_view_mode_1").isChecked());
    QVERIFY(!sample.find<QAction>("menu_view_mode_0").isChecked());
    sample.trigger("menu_view_mode_1");
    QVERIFY2(sample.find<QAction>("menu_view_mode_1").isChecked(), "chosen again it stays");
    auto& axes = sample.find<QAction>("menu_display_axes");
    QVERIFY(axes.isChecked());
    sample.trigger("menu_display_axes");
    QVERIFY(!axes.isChecked() && !sample.form->workbench().view.show_axes);
}

void ActionsTest::nothing_happens_while_the_window_is_closed() {
    Modelled sample;
    sample.session.inversion.running = true;
    sample.trigger("menu_delete_body_0");
    sample.trigger("menu_highlight_on");
    QVERIFY2(sample.find<QAction>("menu_highlight_on").isChecked(), "the mark goes back");
    sample.session.inversion.running = false;
    QCOMPARE(sample.workspace().body_count, 2);
    QVERIFY(sample.form->workbench().view.highlight_on);
}

void ActionsTest::undo_is_named_while_its_menu_is_open() {
    Modelled sample;
    auto& undo = sample.find<QAction>("menu_undo");
    auto& menu = sample.find<QMenu>("menu_edit");
    sample.trigger("menu_delete_body_1");
    emit menu.aboutToShow();
    QCOMPARE(undo.text(), QString("&Undo delete body"));
    QVERIFY(undo.isEnabled());
    QVERIFY(!sample.find<QAction>("menu_redo").isEnabled());
    emit menu.aboutToHide();
    QVERIFY2(sample.find<QAction>("menu_redo").isEnabled(), "the key answers with a word");
    sample.trigger("menu_redo");
    QCOMPARE(sample.status(1), QString("Nothing to redo"));
}

void ActionsTest::help_lists_every_key() {
    QStringList keys;
    for (const ShortcutGroup& group : shortcut_groups())
        for (const ShortcutLine& line : group.lines) keys << line.keys;
    for (const char* key : {"Ctrl+S", "Ctrl+Tab", "Ctrl+Shift+Tab", "Ctrl+Z", "Ctrl+I", "F5", "Esc", "F1",
                            "Shift+F1", "Wheel", "Right button", "Double click"})
        QVERIFY2(keys.contains(key), key);
    for (const ActionRow& row : action_rows())
        if (row.has_key())
            QVERIFY2(keys.contains(QKeySequence(row.key).toString().replace("Backtab", "Shift+Tab")),
                     row.name);

    FormSample sample;
    bool seen = false;
    QStringList cut;
    QTimer::singleShot(0, qApp, [&] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog) return;
        seen = true;
        QCOMPARE(dialog->objectName(), QString("Form_keyboard_shortcuts"));
        QVERIFY(dialog->width() <= 1280 && dialog->height() <= 800);
        QStringList shown;
        for (const auto* label : dialog->findChildren<QLabel*>()) shown << label->text();
        for (const QString& key : keys) QVERIFY2(shown.contains(key), qPrintable(key));
        for (const auto* label : dialog->findChildren<QLabel*>())
            if (label->width() < label->fontMetrics().horizontalAdvance(label->text())) cut << label->text();
        dialog->reject();
    });
    sample.find<QAction>("menu_keyboard_shortcuts").trigger();
    QVERIFY(seen);
    QCOMPARE(cut.join("; "), QString());
}

QObject* make_actions_test() {
    return new ActionsTest;
}

}  // namespace anomalis::window

#include "actions_test.moc"
