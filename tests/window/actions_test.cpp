#include "window/shell/actions.h"

#include <map>

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTimer>

#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/panels/charts_panel.h"
#include "window/shell/action_table.h"
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
    void entries_follow_the_model_data();
    void entries_follow_the_model();
    void delete_takes_the_current_body_away_on_its_page_but_not_in_a_box();
    void undo_is_named_while_its_menu_is_open();
    void help_lists_every_key();
    void capitals_are_alike_everywhere();
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
    QVERIFY(enabled("menu_open_model_0") && !enabled("menu_export_data"));
}

/// Whether an entry is enabled without a line, over a line without bodies, over one body, over two of which
/// the first is the current one.
void ActionsTest::entries_follow_the_model_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("states");
    const std::pair<const char*, const char*> expected[]{
        {"menu_open_model_0", "1111"},       {"menu_open_model_1", "1111"},
        {"menu_next_line", "0000"},          {"menu_export_dxf_0", "0011"},
        {"menu_export_dxf_1", "0111"},       {"menu_export_data", "0111"},
        {"menu_export_clean_0", "0111"},     {"menu_export_clean_1", "0011"},
        {"menu_export_map_0", "0111"},       {"menu_restore_directory", "0000"},
        {"menu_display_axes", "0111"},       {"menu_add_body_0", "0111"},
        {"menu_add_body_1", "0011"},         {"menu_add_body_2", "0011"},
        {"menu_delete_body_1", "0011"},      {"menu_sort_bodies_0", "0001"},
        {"menu_sort_bodies_1", "0001"},      {"menu_sort_bodies_2", "0000"},
        {"menu_sort_bodies_3", "0001"},      {"menu_shift_bodies", "0011"},
        {"menu_highlight_on", "0011"},       {"menu_colour_body_0", "0001"},
        {"menu_colour_body_2", "0001"},      {"menu_set_fix_flags_0", "0000"},
        {"menu_set_fix_flags_1", "0011"},    {"menu_fix_all", "0011"},
        {"menu_free_all", "0000"},           {"menu_set_demag_flags_0", "0011"},
        {"menu_set_demag_flags_1", "0000"},  {"menu_set_disable_flag_0", "0000"},
        {"menu_set_disable_flag_1", "0011"}, {"menu_remove_igrf", "0111"},
        {"menu_restore_best", "0000"},       {"menu_reject_changes", "0000"},
        {"menu_invert_0", "0011"},           {"menu_find_bodies", "0111"},
        {"Shortcut_delete_body", "0011"}};
    for (const auto& [name, states] : expected) QTest::newRow(name) << QString(name) << QString(states);
}

void ActionsTest::entries_follow_the_model() {
    QFETCH(QString, name);
    QFETCH(QString, states);
    static const std::map<QString, QString> seen = [] {
        std::map<QString, QString> found;
        const auto look = [&](FormSample& sample) {
            for (const ActionRow& row : action_rows())
                if (row.family == Family::single)
                    found[row.name] += sample.form->actions().action(row.id).isEnabled() ? '1' : '0';
        };
        FormSample empty;
        look(empty);
        Modelled sample;
        sample.trigger("menu_delete_body_0");
        look(sample);
        sample.trigger("menu_undo");
        sample.trigger("menu_delete_body_1");
        look(sample);
        sample.trigger("menu_undo");
        sample.form->charts().view().select_body(1);
        look(sample);
        return found;
    }();
    QCOMPARE(seen.at(name), states);
}

void ActionsTest::delete_takes_the_current_body_away_on_its_page_but_not_in_a_box() {
    Modelled sample;
    QVERIFY(QTest::qWaitForWindowActive(sample.form.get()));
    for (const char* focus : {"Grid_body", "HScroll_body", "vsgraph_model_4", "HScroll_dip_0"}) {
        sample.find<QWidget>(focus).setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
        QVERIFY2(sample.workspace().body_count == 1, focus);
        QVERIFY(sample.status(1).endsWith("Ctrl+Z brings it back"));
        sample.trigger("menu_undo");
        QCOMPARE(sample.workspace().body_count, 2);
    }
    auto& name = sample.find<QLineEdit>("Text_body_name");
    name.setFocus();
    name.setCursorPosition(0);
    const QString before = name.text();
    QTest::keyClick(&name, Qt::Key_Delete);
    QCOMPARE(name.text(), before.mid(1));
    sample.choose_tab(0);
    QTest::keyClick(&sample.find<QWidget>("Combo_smooth_filter_type"), Qt::Key_Delete);
    QCOMPARE(sample.workspace().body_count, 2);
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

namespace {

/// Words of long standing in this kind of program, which people and their notes know as they are.
const QStringList kept_as_they_are{" Data Definitions",
                                   "Body Type",
                                   "Current Model",
                                   "Data File",
                                   "Display Axes",
                                   "Final Data Line",
                                   "Final Gradient Data Misfit",
                                   "Final Observed Data Misfit",
                                   "Find File in Path",
                                   "Force Recalc",
                                   "Grav Column",
                                   "Initial Gradient Data Misfit",
                                   "Initial Observed Data Misfit",
                                   "Invert Current Body",
                                   "Invert Entire Model",
                                   "Invert Total Grad",
                                   "Invert Vertical Grad",
                                   "Magnetic Field",
                                   "Minimum Station Spacing",
                                   "Move This Body",
                                   "Number of Data",
                                   "Observed Data",
                                   "Perform Inversion",
                                   "Read Data Format and Model Definitions",
                                   "Read Model Defintions",
                                   "Reject Changes",
                                   "Remanent J",
                                   "Restore Best Model",
                                   "Save Data Format and Model Definitions",
                                   "Sensor Height",
                                   "Set Demag flags",
                                   "Set Fix body flags",
                                   "Set Use body flags",
                                   "Shift All Bodies laterally",
                                   "Show Plan",
                                   "Show Section",
                                   "Stop Inversion",
                                   "TG Filter Half-Width",
                                   "Tie Pipe Depth and Susceptability",
                                   "VG Filter Half-Width",
                                   "Data Processing Parameters",
                                   "Graph Display Parameters",
                                   "Copy to Clipboard",
                                   "Lock X Zoom",
                                   "Lock Y Zoom",
                                   "Print Preview",
                                   "Zoom Options",
                                   "Length/Spacing"};
const QStringList names_of_their_own{"GeoJSON", "GeoPackage", "Hanning", "Hamming"};

/// One capital at the beginning; names and words all in capitals (DXF, IGRF) apart.
bool is_sentence_case(const QString& text) {
    if (text.isEmpty() || kept_as_they_are.contains(text)) return true;
    bool first = true;
    for (const QString& word : text.split(' ', Qt::SkipEmptyParts)) {
        const bool capital = word.size() > 1 && word[0].isUpper() && word[1].isLower();
        if (!first && capital && !names_of_their_own.contains(word)) return false;
        first = false;
    }
    return true;
}

QString plain(QString text) {
    return text.remove('&');
}

}  // namespace

void ActionsTest::capitals_are_alike_everywhere() {
    FormSample sample;
    QStringList unlike;
    const auto look_at = [&](const QString& text) {
        if (!is_sentence_case(plain(text)) && !unlike.contains(text)) unlike << text;
    };
    const auto begins = [&](const QString& text) {
        if (!text.isEmpty() && plain(text)[0].isLower()) unlike << text;
    };
    for (const ActionRow& row : action_rows()) {
        look_at(row.text);
        begins(row.text);
    }
    for (const auto* action : sample.form->findChildren<QAction*>()) look_at(action->text());
    for (const auto* button : sample.form->findChildren<QAbstractButton*>()) {
        look_at(button->text());
        begins(button->text());
    }
    for (const auto* label : sample.form->findChildren<QLabel*>()) {
        if (!label->buddy() && !label->property("heading").toBool()) continue;
        look_at(label->text());
        begins(label->text());
    }
    for (const auto* view : sample.form->findChildren<QTableView*>())
        for (int column = 0; view->model() && column < view->model()->columnCount(); ++column)
            look_at(view->model()->headerData(column, Qt::Horizontal).toString());
    for (const auto* list : sample.form->findChildren<QComboBox*>())
        if (list->objectName() != "Combo_model_type")
            for (int i = 0; i < list->count(); ++i) look_at(list->itemText(i));
    QCOMPARE(unlike.join("; "), QString());
}

QObject* make_actions_test() {
    return new ActionsTest;
}

}  // namespace anomalis::window

#include "actions_test.moc"
