#include <QPushButton>
#include <QTimer>

#include "window/form_sample.h"
#include "window/form_tests.h"

namespace anomalis::window {

class FormulasControllerTest : public QObject {
    Q_OBJECT

  private slots:
    void the_status_bar_tells_how_far_the_classic_curve_is_off();
    void a_click_changes_over_and_the_menu_follows();
    void steps_that_follow_each_other_are_compared_once();
    void a_hand_that_holds_a_body_is_let_finish_first();
    void a_dear_body_is_compared_in_pieces_that_the_next_step_ends();
    void a_body_whose_exact_curve_is_too_dear_is_not_compared();
    void the_choice_can_be_taken_back();
    void a_file_brings_its_own_choice();
    void a_fresh_installation_begins_exact_and_then_with_the_last_choice();
};

namespace {

struct Opened {
    Opened() { sample.form->open_file(write_workspace(folder)); }
    QPushButton& button() { return sample.find<QPushButton>("Command_exact_formulas"); }
    QAction& entry() { return sample.find<QAction>("menu_exact_formulas"); }
    Workspace& workspace() { return sample.session.workspace; }
    void is_quietly_exact() {
        QCOMPARE(button().text(), QString("Exact formulas"));
        QVERIFY(button().isVisible() && !button().isEnabled());
        QVERIFY(button().styleSheet().isEmpty());
    }

    TempFolder folder;
    FormSample sample;
};

}  // namespace

void FormulasControllerTest::the_status_bar_tells_how_far_the_classic_curve_is_off() {
    Opened opened;
    QVERIFY(!opened.entry().isChecked());
    QTRY_VERIFY(opened.button().text().contains("%"));
    QVERIFY(opened.button().isVisible() && opened.button().isEnabled());
    QVERIFY(opened.button().property("notable").toBool());
    QVERIFY(!opened.button().styleSheet().isEmpty());
}

void FormulasControllerTest::a_click_changes_over_and_the_menu_follows() {
    Opened opened;
    QTRY_VERIFY(opened.button().text().contains("%"));
    const float classic = opened.workspace().mag.data(50, row_raw, stage_calculated);
    opened.sample.click("Command_exact_formulas");
    QCOMPARE(opened.workspace().formulas, Formulas::exact);
    QVERIFY(opened.entry().isChecked());
    opened.is_quietly_exact();
    QVERIFY(opened.workspace().mag.data(50, row_raw, stage_calculated) != classic);
    QVERIFY(opened.sample.form->workbench().unsaved);
    opened.entry().trigger();
    QCOMPARE(opened.workspace().formulas, Formulas::classic);
    QTRY_VERIFY(opened.button().text().contains("%"));
    QCOMPARE(opened.workspace().mag.data(50, row_raw, stage_calculated), classic);
}

void FormulasControllerTest::steps_that_follow_each_other_are_compared_once() {
    Opened opened;
    QTRY_VERIFY(opened.button().text().contains("%"));
    const QString before = opened.button().text();
    const auto& rest = opened.sample.find<QTimer>("Timer_formulas");
    for (int step = 0; step < 5; ++step) {
        opened.workspace().body(1).dip.value -= 5;
        opened.sample.form->news().tell(News::parameters);
        QVERIFY(rest.isActive());
        QCOMPARE(opened.button().text(), before);
    }
    QTRY_VERIFY(opened.button().text() != before);
    QVERIFY(!rest.isActive());
}

void FormulasControllerTest::a_hand_that_holds_a_body_is_let_finish_first() {
    Opened opened;
    QTRY_VERIFY(opened.button().text().contains("%"));
    auto& rest = opened.sample.find<QTimer>("Timer_formulas");
    rest.setInterval(1);
    bool& held = opened.sample.form->workbench().view.body_held;
    held = true;
    opened.workspace().body(1).dip.value -= 5;
    opened.sample.form->news().tell(News::parameters);
    const QString before = opened.button().text();
    int looks = 0;
    connect(&rest, &QTimer::timeout, &rest, [&] { ++looks; });
    QTRY_VERIFY(looks >= 3);
    QCOMPARE(opened.button().text(), before);
    held = false;
    QTRY_VERIFY(opened.button().text() != before);
    QVERIFY(!rest.isActive());
}

void FormulasControllerTest::a_dear_body_is_compared_in_pieces_that_the_next_step_ends() {
    Opened opened;
    QTRY_VERIFY(opened.button().text().contains("%"));
    ModelBody& body = opened.workspace().body(1);
    body.type = pipe;
    body.length.value = 400;
    body.num_sectors = 400;
    auto& rest = opened.sample.find<QTimer>("Timer_formulas");
    auto& pieces = opened.sample.find<QTimer>("Timer_formulas_pieces");
    rest.setInterval(1);
    opened.sample.form->news().tell(News::parameters);
    const QString before = opened.button().text();
    QTRY_VERIFY(pieces.isActive());
    QVERIFY(!rest.isActive());
    body.dip.value -= 5;
    opened.sample.form->news().tell(News::parameters);
    QVERIFY(!pieces.isActive() && rest.isActive());
    QCOMPARE(opened.button().text(), before);
    int served = 0;
    connect(&pieces, &QTimer::timeout, &pieces, [&] { ++served; });
    QTRY_VERIFY(!pieces.isActive() && !rest.isActive());
    QVERIFY(served > 0);
    QVERIFY(opened.button().text() != before);
}

void FormulasControllerTest::a_body_whose_exact_curve_is_too_dear_is_not_compared() {
    Opened opened;
    QTRY_VERIFY(opened.button().text().contains("%"));
    const QString usual_tip = opened.button().toolTip();
    ModelBody& body = opened.workspace().body(1);
    // Endless, it is a sheet to the classic formulas, which have no need of its sectors.
    body.type = pipe;
    body.length.value = 0;
    body.dip.value = 60;
    body.density.value = 0;
    body.num_sectors = 10'000'000;
    opened.sample.form->news().tell(News::parameters);
    QTRY_COMPARE(opened.button().text(), QString("Classic formulas: not compared"));
    QVERIFY(opened.button().toolTip().contains("40000000 facets, the limit is 2000000"));
    QVERIFY(opened.button().styleSheet().isEmpty());
    QVERIFY2(opened.sample.prompts.messages.empty(), "the model as it stands is calculated");
    body.num_sectors = 12;
    opened.sample.form->news().tell(News::parameters);
    QTRY_VERIFY(opened.button().text().contains("%"));
    QCOMPARE(opened.button().toolTip(), usual_tip);
}

void FormulasControllerTest::the_choice_can_be_taken_back() {
    Opened opened;
    opened.entry().trigger();
    QCOMPARE(opened.workspace().formulas, Formulas::exact);
    opened.sample.find<QAction>("menu_undo").trigger();
    QCOMPARE(opened.workspace().formulas, Formulas::classic);
    QVERIFY(!opened.entry().isChecked());
    QTRY_VERIFY(opened.button().text().contains("%"));
}

void FormulasControllerTest::a_file_brings_its_own_choice() {
    Opened opened;
    opened.entry().trigger();
    const std::string path = opened.folder.path("exact.axm");
    QCOMPARE(workspace_file::write_model_parameters(0, path, opened.workspace(), opened.sample.prompts), 0);
    opened.entry().trigger();
    opened.sample.form->open_file(path);
    QVERIFY(opened.entry().isChecked());
    opened.is_quietly_exact();
}

void FormulasControllerTest::a_fresh_installation_begins_exact_and_then_with_the_last_choice() {
    const TempFolder kept;
    const std::string settings = kept.path("settings.ini");
    {
        FormSample fresh({}, settings);
        QCOMPARE(fresh.session.workspace.formulas, Formulas::exact);
        QCOMPARE(fresh.find<QPushButton>("Command_exact_formulas").text(), QString("Exact formulas"));
        QVERIFY(fresh.find<QPushButton>("Command_exact_formulas").isVisible());
        QVERIFY(!fresh.form->workbench().unsaved);
        // A workspace file says its own, which is no choice for new lines.
        fresh.form->open_file(write_workspace(kept));
        QCOMPARE(fresh.session.workspace.formulas, Formulas::classic);
    }
    {
        FormSample next({}, settings);
        QCOMPARE(next.session.workspace.formulas, Formulas::exact);
        next.session.workspace.definition = edit::LineSample().workspace().definition;
        next.session.workspace.definition.data_file = kept.write("new.dat", edit::east_line_text(51));
        next.form->load_locations();
        QVERIFY(next.session.workspace.station_count > 0);
        QCOMPARE(next.session.workspace.formulas, Formulas::exact);
        next.find<QAction>("menu_exact_formulas").trigger();
        QCOMPARE(next.session.workspace.formulas, Formulas::classic);
    }
    FormSample last({}, settings);
    QCOMPARE(last.session.workspace.formulas, Formulas::classic);
    QCOMPARE(last.find<QPushButton>("Command_exact_formulas").text(), QString("Classic formulas"));
}

QObject* make_formulas_controller_test() {
    return new FormulasControllerTest;
}

}  // namespace anomalis::window

#include "formulas_controller_test.moc"
