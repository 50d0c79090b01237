#include "window/shell/entry_gate.h"

#include <array>

#include <QComboBox>
#include <QDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>

#include "chart/grapher_events.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/panels/charts_panel.h"
#include "window/shell/actions.h"
#include "window/shell/form_inversion.h"
#include "window/widgets/limit_strip.h"

namespace anomalis::window {

/// What stands half typed goes to its own model before anything else is done, whatever that is.
class EntryGateTest : public QObject {
    Q_OBJECT

  private slots:
    void no_action_runs_before_any_open_editor_is_settled_data();
    void no_action_runs_before_any_open_editor_is_settled();
    void every_command_on_files_takes_over_what_is_typed_first_data();
    void every_command_on_files_takes_over_what_is_typed_first();
    void every_other_way_takes_it_over_too_data();
    void every_other_way_takes_it_over_too();
    void a_number_in_the_grid_never_lands_in_the_file_just_opened();
    void a_number_in_the_grid_is_saved_by_key();
    void a_name_that_is_being_typed_stays_with_its_body();
    void an_open_list_of_types_is_put_away();
    void a_text_that_is_wrong_is_refused_and_told();
    void what_was_refused_is_told_beside_what_the_command_tells();
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
        form->open_file(path);
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

void drop(Form_anomalis& form, const std::string& path) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
    QDragEnterEvent enter({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&form, &enter);
    QDropEvent event({400, 300}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&form, &event);
}

/// Closes the form or the message that an action opens.
void close_dialogs() {
    QTimer::singleShot(0, qApp, [] {
        if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) dialog->reject();
    });
}

/// A kind of editor: how it is opened and typed into, and what the model holds of it.
struct OpenEditor {
    const char* name;
    int tab;
    bool inversion;  ///< it stands among the controls of the inversion
    int first;       ///< the numbers behind this one are right
    const char* wrong;
    void (*open)(Modelled&, const QString& text);
    QString (*stored)(Modelled&);
};

void type_into_cell(Modelled& sample, int row, int column, const QString& text) {
    sample.click_cell(row, column);
    if (!sample.editor()) throw std::runtime_error("no editor");
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), text);
}

template <class Number>
QString number(Number value) {
    return QString::number(static_cast<double>(value));
}

const std::array open_editors{
    OpenEditor{
        "a value of the grid", 1, false, 100, "wide",
        [](Modelled& s, const QString& text) { type_into_cell(s, param_width, edit::grid_value, text); },
        [](Modelled& s) { return number(s.body(1).width.value); }},
    OpenEditor{"a limit of the grid", 1, false, 200, "low",
               [](Modelled& s, const QString& text) { type_into_cell(s, param_width, edit::grid_max, text); },
               [](Modelled& s) { return number(s.body(1).width.max); }},
    OpenEditor{"the name", 1, false, 0, nullptr,
               [](Modelled& s, const QString& text) { s.type("Text_body_name", text, false); },
               [](Modelled& s) { return QString::fromStdString(s.body(1).name); }},
    OpenEditor{"a box of the pipe", 1, false, 0, "-3",
               [](Modelled& s, const QString& text) { s.type("Text_End_Thickness", text, false); },
               [](Modelled& s) { return number(s.body(1).end_thickness); }},
    OpenEditor{"the iterations", 1, true, 0, nullptr,
               [](Modelled& s, const QString& text) { s.type("Text_max_iterations", text, false); },
               [](Modelled& s) {
                   return QString::fromStdString(s.form->inversion().desk().panel().max_iterations_text);
               }},
    OpenEditor{"the sensor offset", 0, false, 10, "-5",
               [](Modelled& s, const QString& text) { s.type("Text_MAGINV_sensor_offset", text, false); },
               [](Modelled& s) { return number(s.workspace().sensor_offset); }},
    OpenEditor{"the field", 0, false, 50000, "0",
               [](Modelled& s, const QString& text) { s.type("Text_mag_intensity", text, false); },
               [](Modelled& s) { return number(s.workspace().field.intensity); }},
    OpenEditor{"a grid spacing", 0, false, 0, "fine",
               [](Modelled& s, const QString& text) { s.type("Text_depth_grid_spacing", text, false); },
               [](Modelled& s) { return number(s.workspace().drawing.depth_grid_spacing); }}};

const std::vector<std::pair<const char*, Editor>> editors{{"the grid", Editor::grid},
                                                          {"a box of the first page", Editor::definitions}};

}  // namespace

void EntryGateTest::no_action_runs_before_any_open_editor_is_settled_data() {
    QTest::addColumn<int>("editor");
    for (std::size_t i = 0; i < open_editors.size(); ++i)
        QTest::newRow(open_editors.at(i).name) << static_cast<int>(i);
}

void EntryGateTest::no_action_runs_before_any_open_editor_is_settled() {
    QFETCH(int, editor);
    const OpenEditor& kind = open_editors.at(static_cast<std::size_t>(editor));
    Modelled sample;
    sample.body(1).type = pipe;  // has every kind of box
    sample.form->news().tell(News::bodies);
    if (kind.inversion) sample.click("Command_toggle_invert_body");
    sample.choose_tab(kind.tab);
    Actions& actions = sample.form->actions();
    int typed = kind.first;
    QString found;
    int asked = 0;
    for (const ActionRow& row : action_rows())
        actions.on_member(row.id, [&](int) {
            ++asked;
            found = kind.stored(sample);
        });
    int walked = 0;
    for (const ActionRow& row : action_rows()) {
        // Help leaves what is half typed as it is.
        if (row.when == When::running || row.when == When::any_time || actions.family(row.id).empty())
            continue;
        QAction& action = actions.action(row.id);
        kind.open(sample, QString::number(++typed));
        action.setEnabled(true);
        action.trigger();
        QCOMPARE(asked, ++walked);
        QVERIFY2(found == QString::number(typed), qPrintable(action.objectName() + " found " + found));
        if (!kind.wrong || walked % 8 != 0) continue;
        kind.open(sample, kind.wrong);
        action.setEnabled(true);
        action.trigger();
        ++walked;
        QVERIFY2(found == QString::number(typed), qPrintable(action.objectName() + " found " + found));
        QVERIFY2(sample.status(1).contains(kind.wrong), qPrintable(sample.status(1)));
    }
    QVERIFY(walked > 60);
    QVERIFY(!sample.editor());
}

void EntryGateTest::every_command_on_files_takes_over_what_is_typed_first_data() {
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("editor");
    for (const ActionRow& row : action_rows()) {
        if (row.id > ActionId::redo || row.family == Family::examples || row.family == Family::kept_models)
            continue;
        for (const auto& [name, editor] : editors)
            QTest::newRow(qPrintable(QString("%1, %2").arg(row.name, name)))
                << static_cast<int>(row.id) << static_cast<int>(editor);
    }
}

void EntryGateTest::every_command_on_files_takes_over_what_is_typed_first() {
    QFETCH(int, action);
    QFETCH(int, editor);
    HalfTyped sample;
    const CurrentFolder here(sample.folder.folder());
    const auto id = static_cast<ActionId>(action);
    QAction& chosen = id == ActionId::recent_file ? *sample.form->actions().family(id).at(1)
                                                  : sample.form->actions().action(id);
    sample.begin(static_cast<Editor>(editor));
    chosen.setEnabled(true);  // some ask for more than a model
    close_dialogs();
    chosen.trigger();
    QVERIFY2(sample.asked, "the gate was not asked");
    QVERIFY2(sample.landed, "the text was not taken over by its own model before");
    QVERIFY(!sample.is_elsewhere());
    QVERIFY(!sample.editor());
}

void EntryGateTest::every_other_way_takes_it_over_too_data() {
    QTest::addColumn<QString>("way");
    for (const char* way : {"open_file",
                            "open_example",
                            "load",
                            "tab",
                            "close",
                            "Command_load_locations",
                            "Command_select_data_location_file",
                            "Command_define_observed_transform",
                            "Command_field_from_place",
                            "Command_Save_Screenshot_0",
                            "Command_Save_Screenshot_1",
                            "Command_invert_0",
                            "Command_toggle_invert_body",
                            "Command_show_plan",
                            "Command_reset_graph_scale",
                            "Check_turn_off_body",
                            "Check_display_total_gradient",
                            "body selector",
                            "a body clicked in the section",
                            "a bar",
                            "a type",
                            "a filter",
                            "the bars of the fit",
                            "drop"})
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
    } else if (way == "body selector") {
        sample.find<QScrollBar>("HScroll_body").setValue(2);
    } else if (way == "a body clicked in the section") {
        chart::GrapherEvents& section = sample.form->charts().view().events(edit::chart_section);
        for (int polygon = 1; polygon <= 4; ++polygon) section.GraphicSelected(1, polygon, 0, 0);
    } else if (way == "a bar") {
        sample.half("HScroll_dip_0", 1).click();
    } else if (way == "a type") {
        emit sample.find<QComboBox>("Combo_model_type").activated(0);
    } else if (way == "a filter") {
        sample.find<QComboBox>("Combo_smooth_filter_type").setCurrentIndex(2);
    } else if (way == "the bars of the fit") {
        emit sample.find<LimitBar>("Image_inversion_limit_0").pressed(1);
    } else if (way == "drop") {
        drop(*sample.form, sample.other);
    } else {
        sample.find<QAbstractButton>(qPrintable(way)).click();
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

void EntryGateTest::what_was_refused_is_told_beside_what_the_command_tells() {
    HalfTyped sample;
    const CurrentFolder here(sample.folder.folder());
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "wide");
    QTest::keyClick(sample.editor(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY2(sample.status(1).contains("wide") && sample.status(1).contains("Saved as"),
             qPrintable(sample.status(1)));
    QCOMPARE(sample.body(1).width.value, 100.0F);
    QTest::qWait(1);
    sample.trigger("menu_undo");
    QVERIFY2(!sample.status(1).contains("wide"), qPrintable(sample.status(1)));
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "wide");
    sample.trigger("menu_file_list_1");
    QCOMPARE(sample.workspace().model_file, sample.other);
    QVERIFY2(sample.status(1).contains("wide"), qPrintable(sample.status(1)));
}

QObject* make_entry_gate_test() {
    return new EntryGateTest;
}

}  // namespace anomalis::window

#include "entry_gate_test.moc"
