#include <QPushButton>

#include "window/form_sample.h"
#include "window/form_tests.h"

namespace anomalis::window {

class FormFormulasTest : public QObject {
    Q_OBJECT

  private slots:
    void the_status_bar_tells_how_far_the_classic_curve_is_off();
    void a_click_changes_over_and_the_menu_follows();
    void the_choice_can_be_taken_back();
    void a_file_brings_its_own_choice();
};

namespace {

struct Opened {
    Opened() { sample.form->open_example(write_workspace(folder)); }
    QPushButton& button() { return sample.find<QPushButton>("Command_exact_formulas"); }
    QAction& entry() { return sample.find<QAction>("menu_exact_formulas"); }
    Workspace& workspace() { return sample.session.workspace; }

    TempFolder folder;
    FormSample sample;
};

}  // namespace

void FormFormulasTest::the_status_bar_tells_how_far_the_classic_curve_is_off() {
    Opened opened;
    QVERIFY(!opened.entry().isChecked());
    QVERIFY(opened.button().isVisible());
    QVERIFY(opened.button().text().contains("%"));
    QVERIFY(opened.button().property("notable").toBool());
    QVERIFY(!opened.button().styleSheet().isEmpty());
}

void FormFormulasTest::a_click_changes_over_and_the_menu_follows() {
    Opened opened;
    const float classic = opened.workspace().mag.data(50, row_raw, stage_calculated);
    opened.sample.click("Command_exact_formulas");
    QCOMPARE(opened.workspace().formulas, Formulas::exact);
    QVERIFY(opened.entry().isChecked());
    QVERIFY(!opened.button().isVisible());
    QVERIFY(opened.workspace().mag.data(50, row_raw, stage_calculated) != classic);
    QVERIFY(opened.sample.form->workbench().unsaved);
    opened.entry().trigger();
    QCOMPARE(opened.workspace().formulas, Formulas::classic);
    QVERIFY(opened.button().isVisible());
    QCOMPARE(opened.workspace().mag.data(50, row_raw, stage_calculated), classic);
}

void FormFormulasTest::the_choice_can_be_taken_back() {
    Opened opened;
    opened.entry().trigger();
    QCOMPARE(opened.workspace().formulas, Formulas::exact);
    opened.sample.find<QAction>("menu_undo").trigger();
    QCOMPARE(opened.workspace().formulas, Formulas::classic);
    QVERIFY(!opened.entry().isChecked());
    QVERIFY(opened.button().isVisible());
}

void FormFormulasTest::a_file_brings_its_own_choice() {
    Opened opened;
    opened.entry().trigger();
    const std::string path = opened.folder.path("exact.axm");
    QCOMPARE(workspace_file::write_model_parameters(0, path, opened.workspace(), opened.sample.prompts), 0);
    opened.entry().trigger();
    opened.sample.form->open_example(path);
    QVERIFY(opened.entry().isChecked());
    QVERIFY(!opened.button().isVisible());
}

QObject* make_form_formulas_test() {
    return new FormFormulasTest;
}

}  // namespace anomalis::window

#include "form_formulas_test.moc"
