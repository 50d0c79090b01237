#include "window/shell/entry_gate.h"

#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QTimer>

#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/shell/actions.h"

namespace anomalis::window {

/// What stands half typed goes to its own model before anything else is done, whatever that is.
class EntryGateTest : public QObject {
    Q_OBJECT

  private slots:
    void every_action_takes_over_what_is_typed_first_data();
    void every_action_takes_over_what_is_typed_first();
    void every_other_way_takes_it_over_too_data();
    void every_other_way_takes_it_over_too();
    void a_number_in_the_grid_never_lands_in_the_file_just_opened();
    void a_number_in_the_grid_is_saved_by_key();
    void a_name_that_is_being_typed_stays_with_its_body();
    void an_open_list_of_types_is_put_away();
    void a_text_that_is_wrong_is_refused_and_told();
};

namespace {

constexpr float typed_width = 64;

/// Where something is half typed.
enum class Editor { grid, side, definitions };

/// Two workspaces, the second on show with something half typed.
struct HalfTyped : Modelled {
    HalfTyped() {
        other = write_workspace(other_folder, 51);
        form->open_file(other);
        path = folder.path("line.axm");
        form->open_example(path);
        prompts.messages.clear();
        prompts.open_paths = {other};
        prompts.save_paths = {folder.path("written"), folder.path("written_too")};
        prompts.texts = {"100"};
        QTest::qWait(20);
    }

    void begin(Editor where) {
        editor_kind = where;
        switch (where) {
            case Editor::grid:
                click_cell(param_width, edit::grid_value);
                editor()->selectAll();
                QTest::keyClicks(editor(), "64");
                break;
            case Editor::side:
                type("Text_body_name", "Half typed", false);
                break;
            case Editor::definitions:
                choose_tab(0);
                type("Text_MAGINV_sensor_offset", "77", false);
                break;
        }
        form->gate().add_editor([this] {
            if (asked) return;
            asked = true;
            landed = has_landed() && workspace().model_file == path && workspace().body_count == 2;
        });
    }
    bool has_landed() {
        switch (editor_kind) {
            case Editor::grid:
                return body(1).width.value == typed_width;
            case Editor::side:
                return body(1).name == "Half typed";
            case Editor::definitions:
                return workspace().sensor_offset == 77.0F;
        }
        return false;
    }
    /// Nothing of it is in another file's model.
    bool is_elsewhere() { return workspace().model_file == other && has_landed(); }

    TempFolder other_folder;
    std::string other, path;
    Editor editor_kind = Editor::grid;
    bool asked = false, landed = false;
};

/// Closes the form or the message that an action opens.
void close_dialogs() {
    QTimer::singleShot(0, qApp, [] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
    });
}

const std::vector<std::pair<const char*, Editor>> editors{{"the grid", Editor::grid},
                                                          {"a box of the first page", Editor::definitions}};

}  // namespace

void EntryGateTest::every_action_takes_over_what_is_typed_first_data() {
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("editor");
    for (const ActionRow& row : action_rows()) {
        const bool needs_more = row.when == When::running || row.when == When::pointed ||
                                row.when == When::best_model || row.family == Family::examples;
        if (needs_more) continue;
        for (const auto& [name, editor] : editors) {
            if (row.when == When::body_shown && editor == Editor::definitions) continue;  // of the other page
            QTest::newRow(qPrintable(QString("%1, %2").arg(row.name, name)))
                << static_cast<int>(row.id) << static_cast<int>(editor);
        }
    }
}

void EntryGateTest::every_action_takes_over_what_is_typed_first() {
    QFETCH(int, action);
    QFETCH(int, editor);
    HalfTyped sample;
    const CurrentFolder here(sample.folder.folder());
    const auto id = static_cast<ActionId>(action);
    QAction& chosen = id == ActionId::recent_file ? *sample.form->actions().family(id).at(1)
                                                  : sample.form->actions().action(id);
    sample.begin(static_cast<Editor>(editor));
    QVERIFY2(chosen.isEnabled(), qPrintable(chosen.objectName()));
    close_dialogs();
    chosen.trigger();
    QVERIFY2(sample.asked, "the gate was not asked");
    QVERIFY2(sample.landed, "the text was not taken over by its own model before");
    QVERIFY(!sample.is_elsewhere());
    QVERIFY(!sample.editor());
}

void EntryGateTest::every_other_way_takes_it_over_too_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"open_file", "open_example", "load", "tab", "close", "Command_load_locations",
                            "Command_select_data_location_file", "Command_define_observed_transform",
                            "Command_Save_Screenshot_0", "Command_Save_Screenshot_1", "Command_invert_0"})
        QTest::newRow(way) << QString(way);
}

void EntryGateTest::every_other_way_takes_it_over_too() {
    QFETCH(QString, way);
    HalfTyped sample;
    const CurrentFolder here(sample.folder.folder());
    sample.begin(Editor::grid);
    close_dialogs();
    if (way == "open_file") {
        sample.form->open_file(sample.other);
    } else if (way == "open_example") {
        sample.form->open_example(sample.other);
    } else if (way == "load") {
        sample.form->load_locations();
    } else if (way == "tab") {
        sample.choose_tab(0);
    } else if (way == "close") {
        sample.form->close();
    } else {
        sample.find<QPushButton>(qPrintable(way)).click();
    }
    QVERIFY(sample.asked && sample.landed);
    QVERIFY(!sample.is_elsewhere());
}

void EntryGateTest::a_number_in_the_grid_never_lands_in_the_file_just_opened() {
    HalfTyped sample;
    sample.begin(Editor::grid);
    sample.trigger("menu_file_list_1");
    QCOMPARE(sample.workspace().model_file, sample.other);
    QCOMPARE(sample.body(1).width.value, 100.0F);
    QCOMPARE(sample.form->windowTitle(), QString("Anomalis: line.axm"));
    sample.trigger("menu_undo");
    QCOMPARE(sample.workspace().model_file, sample.path);
    QCOMPARE(sample.body(1).width.value, typed_width);
}

void EntryGateTest::a_number_in_the_grid_is_saved_by_key() {
    HalfTyped sample;
    sample.begin(Editor::grid);
    QTest::keyClick(sample.editor(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!sample.form->workbench().unsaved);
    FormSample again;
    again.form->open_file(sample.path);
    QCOMPARE(again.session.workspace.body(1).width.value, typed_width);
}

void EntryGateTest::a_name_that_is_being_typed_stays_with_its_body() {
    HalfTyped sample;
    sample.begin(Editor::side);
    sample.trigger("menu_sort_bodies_3");
    QVERIFY(sample.asked && sample.landed);
    QCOMPARE(sample.body(2).name, std::string("Half typed"));
    QCOMPARE(sample.body(1).name, std::string("Second"));
}

void EntryGateTest::an_open_list_of_types_is_put_away() {
    Modelled sample;
    sample.click_cell(edit::row_type, edit::grid_value);
    auto& types = sample.find<QComboBox>("Combo_model_type");
    QVERIFY(types.isVisible());
    sample.form->gate().settle();
    QVERIFY(!types.isVisible());
}

void EntryGateTest::a_text_that_is_wrong_is_refused_and_told() {
    Modelled sample;
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "wide");
    QVERIFY(sample.form->gate().pass());
    QCOMPARE(sample.body(1).width.value, 100.0F);
    QVERIFY(sample.status(1).contains("wide"));
    QVERIFY(!sample.form->workbench().unsaved);
}

QObject* make_entry_gate_test() {
    return new EntryGateTest;
}

}  // namespace anomalis::window

#include "entry_gate_test.moc"
