#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTableView>
#include <QTimer>

#include "edit/change.h"
#include "edit/fit_in_force.h"
#include "support/scripted_finder.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/charts_panel.h"
#include "window/shell/find_controller.h"
#include "window/widgets/model_card.h"
#include "workspace_file/axm.h"

namespace anomalis::window {

namespace {

/// A loaded line on the page of the model, with two sheets or none, and a scripted search.
struct Searched : FormSample {
    explicit Searched(bool bodies = true) {
        form->resize(1280, 800);
        form->open_file(write_workspace(folder));
        if (!bodies) session.workspace.body_count = 0;
        form->load_locations();
        edit::start_history(form->workbench());
        choose_tab(1);
        form->find().desk().set_finder(
            [this](const Workspace& w, const inversion::FindRequest& request,
                   inversion::FindObserver& observer) { return finder(w, request, observer); });
        prompts.on_yield = [] { QCoreApplication::processEvents(); };
        before = state();
    }
    Workspace& workspace() { return session.workspace; }
    std::string state() { return workspace_file::model_parameters_text(0, workspace()); }
    const flow::FindState& found() { return form->find().desk().state(); }
    bool previewing() { return form->charts().view().previewing(); }
    QListWidget& cards() { return find<QListWidget>("List_found"); }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : form.get(), static_cast<Qt::Key>(key), modifiers);
        QTest::qWait(1);
    }
    void trigger(const char* name) { find<QAction>(name).trigger(); }
    bool visible(const char* name) { return find<QWidget>(name).isVisible(); }
    void search() {
        key(Qt::Key_F, Qt::ControlModifier);
        click("Command_find");
    }
    /// Does something in the middle of a search.
    void meanwhile(const std::function<void()>& what) {
        finder.on_turn = [what](int bodies) {
            if (bodies == 1) what();
        };
    }

    ScriptedFinder finder;
    TempFolder folder;
    std::string before;
};

class FindTest : public QObject {
    Q_OBJECT

  private slots:
    void the_key_opens_a_panel_with_what_matters();
    void keys_find_flip_and_take_in_one_step();
    void clicks_do_the_same();
    void escape_leaves_the_model_as_it_was();
    void what_is_looked_at_gets_into_no_file_and_no_step();
    void an_inversion_begins_with_the_open_model();
    void the_plan_and_the_other_page_come_back_to_what_was_looked_at();
    void a_change_of_the_model_forgets_the_alternatives();
    void while_it_searches_its_two_ends_alone_are_served();
    void escape_keeps_what_was_found();
    void a_request_to_close_leaves_the_search_first();
    void nothing_found_is_said();
    void a_long_heading_of_a_card_takes_two_lines();
    void without_a_line_nothing_can_be_found();
    void a_new_line_offers_it_as_the_next_step();
};

void FindTest::the_key_opens_a_panel_with_what_matters() {
    Searched sample;
    QVERIFY(sample.visible("Grid_body"));
    QVERIFY(!sample.visible("Frame_find"));
    sample.key(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(sample.visible("Frame_find"));
    QVERIFY(!sample.visible("Grid_body"));
    QVERIFY(sample.visible("vsgraph_model_0"));
    QCOMPARE(sample.find<QSpinBox>("Spin_find_most").value(), 8);
    QVERIFY(sample.visible("Combo_find_channel"));
    QVERIFY(sample.visible("Combo_find_present"));
    QCOMPARE(sample.find<QLabel>("Label_find_window").text(), QString("0 to 2500 m, 101 stations"));
    QVERIFY(!sample.visible("Frame_find_run"));
    QVERIFY(!sample.visible("List_found"));
    QVERIFY(!sample.find<QWidget>("Command_find_take").isEnabled());
    sample.find<QSpinBox>("Spin_find_most").setValue(4);
    auto& kinds = sample.find<QComboBox>("Combo_find_kinds");
    emit kinds.activated(1);
    auto& present = sample.find<QComboBox>("Combo_find_present");
    emit present.activated(1);
    sample.click("Command_find");
    QCOMPARE(sample.finder.request.most, 4);
    QVERIFY(sample.finder.request.thin && !sample.finder.request.thick);
    QVERIFY(sample.finder.request.free_present);
    Searched empty(false);
    empty.key(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(!empty.visible("Combo_find_present"));
}

void FindTest::keys_find_flip_and_take_in_one_step() {
    Searched sample;
    sample.key(Qt::Key_F, Qt::ControlModifier);
    sample.key(Qt::Key_Return);
    QCOMPARE(sample.finder.searches, 1);
    QCOMPARE(sample.cards().count(), 3);
    QCOMPARE(sample.cards().currentRow(), 0);
    QCOMPARE(sample.cards().item(0)->text(), QString("3 thick sheets, rms 3.33 nT, criterion 497.0"));
    QVERIFY(sample.previewing());
    sample.key(Qt::Key_Down);
    QCOMPARE(sample.found().previewed, 1);
    sample.key(Qt::Key_Down);
    sample.key(Qt::Key_Up);
    QCOMPARE(sample.found().previewed, 1);
    QCOMPARE(sample.state(), sample.before);
    sample.key(Qt::Key_Return);
    QCOMPARE(sample.workspace().body_count, 4);
    QCOMPARE(sample.form->workbench().history.steps(), std::size_t{1});
    QVERIFY(!sample.previewing());
    QVERIFY(sample.visible("Grid_body"));
    QCOMPARE(sample.form->workbench().view.current_body, 3 + ScriptedFinder::strongest);
    QVERIFY(edit::fit_in_force(sample.form->workbench()));
    QVERIFY(sample.form->windowTitle().endsWith(" *"));
    sample.key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.state(), sample.before);
    QVERIFY(!sample.form->windowTitle().endsWith(" *"));
}

void FindTest::clicks_do_the_same() {
    Searched sample(false);
    sample.trigger("menu_find_bodies");
    sample.click("Command_find");
    QListWidget& cards = sample.cards();
    const auto click = [&](int row) {
        QTest::mouseClick(cards.viewport(), Qt::LeftButton, {},
                          cards.visualItemRect(cards.item(row)).center());
    };
    click(2);
    QCOMPARE(sample.found().previewed, 2);
    click(1);
    QCOMPARE(sample.found().previewed, 1);
    sample.click("Command_find_take");
    QCOMPARE(sample.workspace().body_count, 2);
    QCOMPARE(sample.workspace().mag.regional_degree, 1);
    QCOMPARE(sample.form->workbench().history.steps(), std::size_t{1});
    const auto& grid = sample.find<QTableView>("Grid_body");
    QVERIFY(grid.isVisible());
    sample.trigger("menu_undo");
    QCOMPARE(sample.state(), sample.before);
}

void FindTest::escape_leaves_the_model_as_it_was() {
    Searched sample;
    sample.search();
    sample.key(Qt::Key_Down);
    sample.key(Qt::Key_Escape);
    QVERIFY(!sample.visible("Frame_find"));
    QVERIFY(!sample.previewing());
    QVERIFY(sample.found().models.empty());
    QCOMPARE(sample.state(), sample.before);
    QCOMPARE(sample.form->workbench().history.steps(), std::size_t{0});
}

void FindTest::what_is_looked_at_gets_into_no_file_and_no_step() {
    Searched sample;
    sample.search();
    QVERIFY(sample.previewing());
    sample.trigger("Shortcut_save");
    const std::string saved = sample.folder.read("line.axm");
    QVERIFY(saved.find("Dyke") != std::string::npos);
    QCOMPARE(sample.workspace().body_count, 2);
    Session other(sample.prompts, Settings{});
    other.start();
    QCOMPARE(workspace_file::read_model_parameters(0, other.workspace, sample.folder.path("line.axm"),
                                                   other.settings, sample.prompts),
             0);
    QCOMPARE(other.workspace.body_count, 2);
    QCOMPARE(sample.workspace().body_count, 2);
    QVERIFY2(sample.previewing(), "it can be looked at again");
    QTest::keyClick(sample.form.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(sample.status(1), QString("Nothing to undo"));
    QCOMPARE(sample.workspace().body_count, 2);
    QCOMPARE(sample.found().models.size(), std::size_t{3});
}

void FindTest::an_inversion_begins_with_the_open_model() {
    Searched sample;
    sample.search();
    QVERIFY(sample.previewing());
    sample.workspace().body(1).susc.vary = 1;
    sample.trigger("menu_invert_1");
    QCOMPARE(sample.workspace().body_count, 2);
    QVERIFY(!sample.previewing());
    QVERIFY(sample.found().models.empty());
    QCOMPARE(QString::fromStdString(sample.form->workbench().history.undo_name()),
             QString("inversion of the model"));
}

void FindTest::the_plan_and_the_other_page_come_back_to_what_was_looked_at() {
    Searched sample;
    sample.search();
    sample.key(Qt::Key_Down);
    sample.click("Command_show_plan");
    QVERIFY(sample.form->workbench().view.show_plan);
    QCOMPARE(sample.found().previewed, 1);
    QVERIFY(sample.previewing());
    sample.choose_tab(0);
    QVERIFY(!sample.previewing());
    sample.choose_tab(1);
    QCOMPARE(sample.found().previewed, 1);
    QVERIFY(sample.previewing());
    QCOMPARE(sample.cards().currentRow(), 1);
    QCOMPARE(sample.state(), sample.before);
}

void FindTest::a_change_of_the_model_forgets_the_alternatives() {
    Searched sample;
    sample.search();
    sample.trigger("menu_delete_body_1");
    QCOMPARE(sample.workspace().body_count, 1);
    QVERIFY(sample.found().models.empty());
    QVERIFY(!sample.visible("List_found"));
    QVERIFY(sample.visible("Frame_find"));
    sample.click("Command_find");
    QCOMPARE(sample.found().models.size(), std::size_t{3});
    QCOMPARE(sample.found().models[0].bodies.size(), std::size_t{4});
    sample.choose_tab(0);
    sample.form->load_locations();
    QVERIFY(sample.found().models.empty());
    QVERIFY(!sample.previewing());
}

void FindTest::while_it_searches_its_two_ends_alone_are_served() {
    Searched sample;
    sample.meanwhile([&] {
        QVERIFY(sample.visible("Frame_find_run"));
        QVERIFY(sample.find<QWidget>("Command_find_keep").isEnabled());
        QVERIFY(sample.find<QWidget>("Command_find_cancel").isEnabled());
        QVERIFY(!sample.find<QWidget>("Command_find").isEnabled());
        QVERIFY(!sample.find<QWidget>("Spin_find_most").isEnabled());
        QVERIFY(!sample.find<QAction>("menu_undo").isEnabled());
        QVERIFY(sample.find<QLabel>("Label_find_progress").text().contains("1 body so far, rms 10.0 nT"));
        QVERIFY(sample.previewing());
        QTest::keyClick(sample.form.get(), Qt::Key_Delete);
        sample.click("Command_find_cancel");
    });
    sample.search();
    QCOMPARE(sample.finder.grown, 1);
    QVERIFY(sample.found().models.empty());
    QCOMPARE(sample.find<QLabel>("Label_find_outcome").text(), QString("Cancelled: the model is as it was"));
    QVERIFY(!sample.visible("Frame_find_run"));
    QVERIFY(!sample.previewing());
    QVERIFY(sample.find<QWidget>("Command_find").isEnabled());
    QVERIFY(sample.find<QAction>("menu_undo").isEnabled());
    QVERIFY(!QApplication::overrideCursor());
    QCOMPARE(sample.state(), sample.before);
    sample.meanwhile([&] { sample.click("Command_find_keep"); });
    sample.click("Command_find");
    QCOMPARE(sample.finder.grown, 1);
    QCOMPARE(sample.cards().count(), 1);
}

void FindTest::escape_keeps_what_was_found() {
    Searched sample;
    sample.meanwhile([&] { QTest::keyClick(sample.form.get(), Qt::Key_Escape); });
    sample.search();
    QCOMPARE(sample.finder.grown, 1);
    QCOMPARE(sample.cards().count(), 1);
    QVERIFY(sample.visible("Label_find_remarks"));
    QVERIFY(sample.previewing());
    QCOMPARE(sample.state(), sample.before);
}

void FindTest::a_request_to_close_leaves_the_search_first() {
    Searched sample;
    sample.meanwhile([&] {
        sample.form->close();
        QVERIFY(sample.form->isVisible());
    });
    sample.search();
    QCOMPARE(sample.finder.grown, 1);
    QTRY_VERIFY(!sample.form->isVisible());
}

void FindTest::nothing_found_is_said() {
    Searched sample;
    sample.finder.bodies = 0;
    sample.search();
    QCOMPARE(sample.find<QLabel>("Label_find_outcome").text(), QString("Nothing stands out of the noise"));
    QCOMPARE(sample.status(1), QString("Nothing stands out of the noise"));
    QVERIFY(!sample.visible("List_found"));
    QVERIFY(!sample.find<QWidget>("Command_find_take").isEnabled());
    QCOMPARE(sample.state(), sample.before);
}

void FindTest::a_long_heading_of_a_card_takes_two_lines() {
    ModelCards cards;
    cards.resize(360, 400);
    cards.show_cards({{{}, "2 thin sheets", "rms 3.33 nT"}});
    QCOMPARE(cards.heading_lines(), 1);
    const int low = cards.sizeHintForRow(0);
    cards.show_cards(
        {{{}, "3 thick sheets and 3 thin sheets, 2 of them limited in depth, regional of degree 2", "rms"},
         {{}, "2 thin sheets", "rms"}});
    QCOMPARE(cards.heading_lines(), 2);
    QVERIFY(cards.sizeHintForRow(0) > low);
    QCOMPARE(cards.sizeHintForRow(1), cards.sizeHintForRow(0));
}

void FindTest::without_a_line_nothing_can_be_found() {
    FormSample sample;
    QVERIFY(!sample.find<QAction>("menu_find_bodies").isEnabled());
    QVERIFY(!sample.find<QWidget>("Command_find_first").isVisible());
    sample.form->find().open();
    QVERIFY(!sample.find<QWidget>("Frame_find").isVisible());
}

void FindTest::a_new_line_offers_it_as_the_next_step() {
    Searched sample(false);
    sample.choose_tab(0);
    QVERIFY(sample.visible("Command_find_first"));
    QVERIFY(sample.find<QWidget>("Command_find_first").property("chief").toBool());
    sample.click("Command_find_first");
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.finder.searches, 1);
    QVERIFY(sample.previewing());
    sample.click("Command_find_take");
    QCOMPARE(sample.workspace().body_count, 3);
    sample.choose_tab(0);
    QVERIFY(!sample.visible("Command_find_first"));
    QVERIFY(sample.find<QWidget>("Command_load_locations").property("chief").toBool());
}

}  // namespace

QObject* make_find_test() {
    return new FindTest;
}

}  // namespace anomalis::window

#include "find_test.moc"
