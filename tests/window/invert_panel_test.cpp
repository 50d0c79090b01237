#include "window/panels/invert_panel.h"

#include <QComboBox>
#include <QLabel>
#include <QTableWidget>

#include "core/body_parameters.h"
#include "edit/change.h"
#include "edit/fit_in_force.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/shell/form_inversion.h"
#include "window/widgets/body_grid_model.h"

namespace anomalis::window {

namespace {

/// The page of the model with the controls of the inversion on show.
struct Inverting : Modelled {
    Inverting() { click("Command_toggle_invert_body"); }
    const flow::InversionPanel& panel() { return form->inversion().desk().panel(); }
    void choose_sweep() {
        auto& methods = find<QComboBox>("Combo_inversion_method");
        methods.setFocus();
        QTest::keyClick(&methods, Qt::Key_Up);
    }
};

}  // namespace

/// What the panel of the inversion offers and tells beside a run.
class InvertPanelTest : public QObject {
    Q_OBJECT

  private slots:
    void the_method_and_the_starts_are_chosen_in_the_panel();
    void the_last_method_is_there_at_the_next_start();
    void misfits_are_told_in_the_unit_of_each_channel();
    void a_run_fills_the_results_of_the_fit();
    void a_run_says_what_it_is_at_and_serves_its_stop_there();
    void limits_that_nobody_keyed_stand_in_grey();
};

void InvertPanelTest::the_method_and_the_starts_are_chosen_in_the_panel() {
    Inverting sample;
    auto& methods = sample.find<QComboBox>("Combo_inversion_method");
    QCOMPARE(methods.currentText(), QString("Least squares"));
    QVERIFY(sample.find<QWidget>("Text_starts").isEnabled());
    QCOMPARE(sample.panel().starts(), 4);
    sample.type("Text_starts", "9");
    QCOMPARE(sample.panel().starts(), 9);
    for (const char* wrong : {"0", "-3", "many", "1e9"}) {
        sample.type("Text_starts", wrong);
        QVERIFY2(sample.status(1).contains("4 is taken"), qPrintable(sample.status(1)));
        QCOMPARE(sample.panel().starts(), 4);
    }
    sample.choose_sweep();
    QVERIFY(sample.panel().method == inversion::InversionMethod::sweep);
    QVERIFY(!sample.find<QWidget>("Text_starts").isEnabled());
}

void InvertPanelTest::the_last_method_is_there_at_the_next_start() {
    const TempFolder kept;
    const std::string settings = kept.path("settings.ini");
    {
        FormSample first({}, settings);
        QVERIFY(first.form->inversion().desk().panel().method == inversion::InversionMethod::least_squares);
        auto& methods = first.find<QComboBox>("Combo_inversion_method");
        methods.setCurrentIndex(0);
        emit methods.activated(0);
    }
    FormSample next({}, settings);
    QVERIFY(next.form->inversion().desk().panel().method == inversion::InversionMethod::sweep);
    QCOMPARE(next.find<QComboBox>("Combo_inversion_method").currentText(), QString("Sweep"));
}

void InvertPanelTest::misfits_are_told_in_the_unit_of_each_channel() {
    Inverting sample;
    auto& mag = sample.find<QLabel>("Label_rms_0");
    QVERIFY2(mag.text().startsWith("Mag rms ") && mag.text().contains(" nT, 101 stations"),
             qPrintable(mag.text()));
    QVERIFY(sample.find<QLabel>("Label_rms_1").text().contains(" mGal, 101 stations"));
    const QString tip = sample.find<QWidget>("StatusBar_7").parentWidget()->toolTip();
    QVERIFY2(tip.contains("nT over 101 stations") && tip.contains("mGal"), qPrintable(tip));
    QVERIFY(sample.status(7).startsWith("RMS: "));
    const QString before = mag.text();
    sample.workspace().body(1).susc.value *= 3;
    edit::note_change(sample.form->workbench(), {"susceptibility", "", false});
    sample.form->news().tell(News::parameters);
    QVERIFY(mag.text() != before);
}

void InvertPanelTest::limits_that_nobody_keyed_stand_in_grey() {
    Inverting sample;
    const auto limit = [&](int row, int column, int role) {
        return sample.cell(row, column).data(role).toString();
    };
    ModelBody& body = sample.workspace().body(1);
    body.width.vary = body.top.vary = 1;
    body.width.min = unset;
    body.width.max = 300;
    sample.form->news().tell(News::parameters);
    const auto grey = static_cast<int>(BodyGridModel::limit_role);
    QVERIFY(!limit(param_width, edit::grid_min, grey).isEmpty());
    QCOMPARE(limit(param_width, edit::grid_min, Qt::DisplayRole), QString());
    QVERIFY(limit(param_width, edit::grid_min, Qt::ToolTipRole).contains("physical bound"));
    QCOMPARE(limit(param_width, edit::grid_max, grey), QString());
    QCOMPARE(limit(param_width, edit::grid_max, Qt::DisplayRole), QString("300"));
    sample.choose_sweep();
    QVERIFY(limit(param_width, edit::grid_min, Qt::ToolTipRole).contains("default of the sweep"));
    QVERIFY(!limit(param_top, edit::grid_max, grey).isEmpty());
    body.width.vary = 0;
    sample.form->news().tell(News::parameters);
    QCOMPARE(limit(param_width, edit::grid_min, grey), QString());
}

void InvertPanelTest::a_run_fills_the_results_of_the_fit() {
    Inverting sample;
    sample.click("Command_invert_1");
    const FitRecord* fit = edit::fit_in_force(sample.form->workbench());
    QVERIFY(fit && !fit->parameters.empty());
    QVERIFY(sample.find<QLabel>("Label_status").isVisible());
    QVERIFY(sample.find<QLabel>("Label_status").text().startsWith(QString::fromStdString(fit->outcome)));
    sample.trigger("menu_fit_results");
    auto* table = sample.form->findChild<QTableWidget*>("Table_fit_parameters");
    QCOMPARE(table->rowCount(), static_cast<int>(fit->parameters.size()));
    sample.trigger("menu_undo");
    QVERIFY(!edit::fit_in_force(sample.form->workbench()));
    QVERIFY(!table->isVisible());
}

void InvertPanelTest::a_run_says_what_it_is_at_and_serves_its_stop_there() {
    Inverting sample;
    QStringList seen;
    bool stopped = false;
    sample.prompts.on_yield = [&] {
        QCoreApplication::processEvents();
        if (!sample.form->inversion().desk().running()) return;
        const QString words = sample.find<QLabel>("Label_inversion_progress").text();
        if (!seen.contains(words)) seen << words;
        if (stopped || words != "From 3 other starts") return;
        stopped = true;
        QVERIFY(sample.find<QWidget>("Command_stop_inversion").isEnabled());
        QTest::keyClick(sample.form.get(), Qt::Key_Escape);
    };
    sample.click("Command_invert_1");
    QVERIFY2(stopped, qPrintable(seen.join("; ")));
    QVERIFY2(seen.contains("Errors and intervals"), qPrintable(seen.join("; ")));
    QVERIFY(!sample.form->inversion().desk().running());
    QVERIFY(!sample.find<QWidget>("Frame_stop_inversion").isVisible());
    QVERIFY(sample.find<QLabel>("Label_status").isVisible());
}

QObject* make_invert_panel_test() {
    return new InvertPanelTest;
}

}  // namespace anomalis::window

#include "invert_panel_test.moc"
