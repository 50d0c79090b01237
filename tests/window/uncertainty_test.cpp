#include <functional>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>

#include "core/body_parameters.h"
#include "edit/ensemble_in_force.h"
#include "support/ensemble_sample.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/shell/form_ensemble.h"
#include "window/shell/form_uncertainty.h"
#include "window/shell/uncertainty_controller.h"
#include "window/widgets/body_grid_model.h"

namespace anomalis::window {

namespace {

/// The window with a quick engine: a fit that raises the top of body 1 by 5 m, and as many models about it as
/// are asked for unless somebody stops it.
struct Explained : Modelled {
    Explained() {
        body(1).top.vary = body(1).width.vary = 1;
        form->uncertainty().desk().set_find(
            [this](const Workspace& workspace, const inversion::EnsembleRequest& asked,
                   inversion::EnsembleObserver& observer) { return find(workspace, asked, observer); });
    }

    inversion::EnsembleResult find(const Workspace& workspace, const inversion::EnsembleRequest& asked,
                                   inversion::EnsembleObserver& observer) {
        request = asked;
        Workspace fitted = workspace;
        fitted.body(1).top.value += 5;
        inversion::EnsembleResult result;
        result.bodies = {fitted.body(1), fitted.body(2)};
        result.ensemble = ensemble_about(fitted, asked.samples);
        int done = 0;
        for (; done <= asked.samples && !result.stopped; ++done) {
            observer.samples_done(done, asked.samples);
            if (on_model) on_model(done);
            result.stopped = observer.working(2e7);
        }
        result.ensemble->samples.resize(static_cast<std::size_t>(done - 1));
        return result;
    }

    Form_uncertainty* run() { return form->findChild<Form_uncertainty*>(); }
    Form_ensemble* results() { return form->findChild<Form_ensemble*>(); }
    template <class Control>
    Control& in(QWidget* parent, const char* name) {
        auto* control = parent ? parent->findChild<Control*>(name) : nullptr;
        if (!control) throw std::runtime_error(std::string("no control ") + name);
        return *control;
    }
    QPushButton& button(const char* name) { return in<QPushButton>(run(), name); }
    QString run_words() { return in<QLabel>(run(), "Label_uncertainty").text(); }
    void open_run() { QTest::keyClick(form.get(), Qt::Key_U, Qt::ControlModifier); }
    void start() {
        open_run();
        button("Command_start_uncertainty").click();
    }
    bool in_force() { return edit::ensemble_in_force(form->workbench()) != nullptr; }
    QVariantList band(int row) { return cell(row, edit::grid_value).data(BodyGridModel::band_role).toList(); }

    inversion::EnsembleRequest request;
    std::function<void(int)> on_model;
};

}  // namespace

/// How sure a model is, from the key to the page.
class UncertaintyTest : public QObject {
    Q_OBJECT

  private slots:
    void a_key_and_enter_lead_to_the_page_and_one_undo_back();
    void what_is_chosen_is_asked_for();
    void a_run_shows_how_far_it_is_and_can_be_stopped();
    void a_cancel_leaves_the_model_and_the_form();
    void what_stands_in_the_way_is_said();
    void a_close_of_the_window_cancels_the_run_first();
    void a_bar_beside_a_value_shows_where_it_stands();
    void ghosts_and_fan_are_shown_or_not_and_that_is_kept();
    void the_page_follows_the_model();
    void the_table_goes_to_the_clipboard_and_into_a_file();
};

void UncertaintyTest::a_key_and_enter_lead_to_the_page_and_one_undo_back() {
    Explained sample;
    const float top = sample.body(1).top.value;
    sample.open_run();
    QVERIFY(sample.run() && sample.run()->isVisible() && sample.run()->isModal());
    QTest::keyClick(sample.run(), Qt::Key_Return);
    QVERIFY(!sample.run()->isVisible());
    QVERIFY(sample.results() && sample.results()->isVisible() && !sample.results()->isModal());
    QCOMPARE(sample.body(1).top.value, top + 5);
    QVERIFY(sample.in_force());
    QCOMPARE(sample.in<QListWidget>(sample.results(), "List_ensemble_words").count(), 1);
    QVERIFY(sample.in<QLabel>(sample.results(), "Label_ensemble_summary").text().startsWith("300 models"));
    QVERIFY(sample.in<QWidget>(sample.results(), "vsgraph_cross_0").isVisible());
    QVERIFY(!sample.in<QWidget>(sample.results(), "vsgraph_cross_1").isVisible());
    sample.trigger("menu_undo");
    QCOMPARE(sample.body(1).top.value, top);
    QVERIFY(!sample.in_force());
    sample.trigger("menu_redo");
    QVERIFY(sample.in_force());
}

void UncertaintyTest::what_is_chosen_is_asked_for() {
    Explained sample;
    sample.open_run();
    sample.in<QSpinBox>(sample.run(), "Text_samples").setValue(40);
    sample.in<QSpinBox>(sample.run(), "Text_strike_within").setValue(25);
    sample.in<QCheckBox>(sample.run(), "Check_vary_regional").click();
    sample.in<QCheckBox>(sample.run(), "Check_vary_bodies").click();
    sample.button("Command_start_uncertainty").click();
    QCOMPARE(sample.request.samples, 40);
    QCOMPARE(sample.request.strike_within, 25.0);
    QVERIFY(!sample.request.vary_regional && sample.request.vary_bodies);
    QCOMPARE(sample.request.channel, static_cast<std::int32_t>(channel_mag));
}

void UncertaintyTest::a_run_shows_how_far_it_is_and_can_be_stopped() {
    Explained sample;
    bool seen = false;
    sample.on_model = [&](int done) {
        if (done != 60) return;
        seen = true;
        QVERIFY(sample.form->guards().busy());
        QVERIFY(!sample.button("Command_start_uncertainty").isEnabled());
        QCOMPARE(sample.button("Command_close_uncertainty").text(), QString("Cancel"));
        QVERIFY(sample.run_words().startsWith("60 of 300 models, about "));
        QCOMPARE(sample.in<QProgressBar>(sample.run(), "Progress_uncertainty").value(), 60);
        sample.trigger("menu_delete_body_0");
        sample.button("Command_stop_uncertainty").click();
    };
    sample.start();
    QVERIFY(seen);
    QCOMPARE(sample.workspace().body_count, 2);
    QVERIFY(sample.in_force());
    QCOMPARE(sample.workspace().ensemble->samples.size(), std::size_t{60});
    QVERIFY(!sample.form->guards().busy());
}

void UncertaintyTest::a_cancel_leaves_the_model_and_the_form() {
    Explained sample;
    const float top = sample.body(1).top.value;
    sample.on_model = [&](int done) {
        if (done == 60) QTest::keyClick(sample.run(), Qt::Key_Escape);
    };
    sample.start();
    QCOMPARE(sample.body(1).top.value, top);
    QVERIFY(!sample.in_force() && !sample.results());
    QVERIFY(sample.run()->isVisible());
    QCOMPARE(sample.run_words(), QString("Cancelled: the model is as it was"));
    QCOMPARE(sample.button("Command_close_uncertainty").text(), QString("Close"));
    QTest::keyClick(sample.run(), Qt::Key_Escape);
    QVERIFY(!sample.run()->isVisible());
}

void UncertaintyTest::what_stands_in_the_way_is_said() {
    Explained sample;
    sample.body(1).vary = sample.body(2).vary = 0;
    sample.open_run();
    QVERIFY(sample.run_words().startsWith("No parameter is free"));
    QVERIFY(!sample.button("Command_start_uncertainty").isEnabled());
    sample.run()->reject();
    sample.body(1).vary = 1;
    sample.open_run();
    QVERIFY(sample.button("Command_start_uncertainty").isEnabled());
}

void UncertaintyTest::a_close_of_the_window_cancels_the_run_first() {
    Explained sample;
    const float top = sample.body(1).top.value;
    sample.on_model = [&](int done) {
        if (done == 60) QVERIFY(!sample.form->close());
    };
    sample.start();
    QCOMPARE(sample.body(1).top.value, top);
    QVERIFY(sample.form->isVisible());
    QTRY_VERIFY(!sample.form->isVisible());
}

void UncertaintyTest::a_bar_beside_a_value_shows_where_it_stands() {
    Explained sample;
    const QString shown = sample.shown(param_top, edit::grid_value);
    QVERIFY(sample.band(param_top).isEmpty());
    const QImage before = sample.grid().grab().toImage();
    sample.workspace().ensemble = std::make_shared<const Ensemble>(ensemble_about(sample.workspace()));
    sample.form->workbench().forget_marks();
    sample.form->news().tell(News::parameters);
    QCOMPARE(sample.band(param_top), (QVariantList{0.5, false, false}));
    QVERIFY(sample.band(param_dip).isEmpty());
    QCOMPARE(sample.shown(param_top, edit::grid_value), shown);
    QVERIFY(sample.cell(param_top, edit::grid_value)
                .data(Qt::ToolTipRole)
                .toString()
                .endsWith("90 % of the models: 40 to 80 m"));
    QVERIFY(sample.grid().grab().toImage() != before);
    sample.key(param_dip, edit::grid_value, "71");
    QVERIFY(sample.band(param_top).isEmpty());
}

void UncertaintyTest::ghosts_and_fan_are_shown_or_not_and_that_is_kept() {
    const TempFolder folder;
    const std::string settings = folder.path("settings.ini");
    {
        FormSample sample({}, settings);
        sample.form->open_file(write_workspace(folder));
        auto& entry = sample.find<QAction>("menu_display_uncertainty");
        QVERIFY(entry.isChecked() && sample.form->workbench().view.show_ensemble);
        entry.trigger();
        QVERIFY(!entry.isChecked() && !sample.form->workbench().view.show_ensemble);
    }
    FormSample again({}, settings);
    QVERIFY(!again.form->workbench().view.show_ensemble);
}

void UncertaintyTest::the_page_follows_the_model() {
    Explained sample;
    sample.start();
    auto& state = sample.in<QLabel>(sample.results(), "Label_ensemble_state");
    QVERIFY(!state.isVisible());
    sample.key(param_dip, edit::grid_value, "71");
    QVERIFY(state.isVisible() && state.text().startsWith("The model has changed"));
    QVERIFY(!sample.in<QPushButton>(sample.results(), "Command_copy_ensemble").isEnabled());
    sample.trigger("menu_undo");
    QVERIFY(!state.isVisible());
    sample.results()->close();
    sample.trigger("menu_uncertainty");
    QVERIFY2(sample.results()->isVisible() && !sample.run()->isVisible(), "what is known is shown");
    sample.in<QPushButton>(sample.results(), "Command_run_ensemble").click();
    QVERIFY(sample.run()->isVisible());
    sample.run()->reject();
}

void UncertaintyTest::the_table_goes_to_the_clipboard_and_into_a_file() {
    Explained sample;
    sample.start();
    sample.in<QPushButton>(sample.results(), "Command_copy_ensemble").click();
    const QString table = QApplication::clipboard()->text();
    QVERIFY(table.startsWith("sample,"));
    QCOMPARE(table.count('\n'), 301);
    sample.prompts.save_paths = {sample.folder.path("models.csv")};
    sample.in<QPushButton>(sample.results(), "Command_save_ensemble").click();
    QCOMPARE(QString::fromStdString(sample.folder.read("models.csv")), table);
}

QObject* make_uncertainty_test() {
    return new UncertaintyTest;
}

}  // namespace anomalis::window

#include "uncertainty_test.moc"
