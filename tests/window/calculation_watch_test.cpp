#include "window/shell/calculation_watch.h"

#include <filesystem>

#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include "window/form_tests.h"
#include "window/modelled_form.h"

namespace anomalis::window {

namespace {

/// A model whose next calculation takes several turns and is felt from the first.
struct Heavy : Modelled {
    Heavy() { form->calculation().set_patience(0); }

    void make_heavy() {
        ModelBody& pipe_body = body(1);
        pipe_body.type = pipe;
        pipe_body.num_sectors = 20000;
        pipe_body.length.value = 300;
    }
    /// Does something in the middle of the next calculation.
    template <class Deed>
    void meanwhile(Deed deed) {
        QTimer::singleShot(0, form.get(), [this, deed] {
            bar_was_shown = find<QProgressBar>("ProgressBar_load").isVisible();
            deed();
        });
    }
    void calculate() { form->news().tell(News::parameters); }
    std::vector<float> curve() {
        const auto row = workspace().mag.data.row(row_raw, stage_calculated);
        return {row.begin(), row.end()};
    }

    bool bar_was_shown = false;
};

class CalculationWatchTest : public QObject {
    Q_OBJECT

  private slots:
    void a_calculation_that_is_felt_shows_how_far_it_has_come();
    void a_short_one_passes_unseen();
    void escape_leaves_it_and_the_curves_stay();
    void nothing_but_a_stop_gets_through();
    void a_request_to_close_leaves_it_first();
    void an_export_that_is_stopped_writes_nothing();
};

void CalculationWatchTest::a_calculation_that_is_felt_shows_how_far_it_has_come() {
    Heavy sample;
    sample.make_heavy();
    int percent = -1;
    QString text;
    sample.meanwhile([&] {
        percent = sample.find<QProgressBar>("ProgressBar_load").value();
        text = sample.status(1);
    });
    sample.calculate();
    QVERIFY(sample.bar_was_shown);
    QVERIFY(percent > 0 && percent < 100);
    QCOMPARE(text, QString("Calculating. Esc stops it"));
    QVERIFY(!sample.find<QProgressBar>("ProgressBar_load").isVisible());
    QCOMPARE(sample.status(1), QString());
    QVERIFY(sample.body(1).mag_response_valid && sample.body(1).grav_response_valid);
    QVERIFY(sample.find<QPushButton>("Command_show_plan").isEnabled());
}

void CalculationWatchTest::a_short_one_passes_unseen() {
    Heavy sample;
    sample.form->calculation().set_patience(1'000'000);
    sample.make_heavy();
    bool served = false;
    sample.meanwhile([&] { served = true; });
    sample.calculate();
    QVERIFY(!served);
}

void CalculationWatchTest::escape_leaves_it_and_the_curves_stay() {
    Heavy sample;
    const std::vector<float> before = sample.curve();
    sample.make_heavy();
    sample.meanwhile([&] { QTest::keyClick(sample.form.get(), Qt::Key_Escape); });
    sample.calculate();
    QVERIFY(sample.bar_was_shown);
    QVERIFY(sample.curve() == before);
    QVERIFY(!sample.body(1).mag_response_valid || !sample.body(1).grav_response_valid);
    QVERIFY(sample.status(1).startsWith("The calculation was stopped: the curves are those of before"));
    QVERIFY2(sample.prompts.messages.empty(), "a stop is no failure");
    QVERIFY(!sample.find<QProgressBar>("ProgressBar_load").isVisible());
    sample.trigger("menu_force_recalc");
    QVERIFY(sample.body(1).mag_response_valid && sample.body(1).grav_response_valid);
    QVERIFY(sample.curve() != before);
}

void CalculationWatchTest::nothing_but_a_stop_gets_through() {
    Heavy sample;
    sample.make_heavy();
    const float distance = sample.body(1).distance.value;
    bool enabled = true;
    sample.meanwhile([&] {
        enabled = sample.find<QPushButton>("Command_show_plan").isEnabled() ||
                  sample.find<QAction>("menu_undo").isEnabled();
        QTest::mouseClick(&sample.half("HScroll_distance", 1), Qt::LeftButton);
        QTest::keyClick(&sample.grid(), Qt::Key_5);
        sample.click("Command_show_plan");
    });
    sample.calculate();
    QVERIFY(sample.bar_was_shown);
    QVERIFY(!enabled);
    QCOMPARE(sample.body(1).distance.value, distance);
    QVERIFY(!sample.form->workbench().view.show_plan);
    QVERIFY(!sample.editor());
}

void CalculationWatchTest::a_request_to_close_leaves_it_first() {
    Heavy sample;
    sample.make_heavy();
    bool refused = false;
    sample.meanwhile([&] {
        refused = !sample.form->close();
        QVERIFY(sample.form->isVisible());
    });
    sample.calculate();
    QVERIFY(refused);
    QVERIFY2(!sample.body(1).mag_response_valid || !sample.body(1).grav_response_valid, "it was left");
    QTRY_VERIFY(!sample.form->isVisible());
}

void CalculationWatchTest::an_export_that_is_stopped_writes_nothing() {
    Heavy sample;
    sample.make_heavy();
    const std::string path = sample.folder.path("profile.csv");
    sample.prompts.save_paths.emplace_back(path);
    sample.meanwhile([&] { QTest::keyClick(sample.form.get(), Qt::Key_Escape); });
    sample.trigger("menu_export_data");
    QCOMPARE(sample.prompts.messages,
             std::vector<std::string>{"Nothing was exported: the calculation was stopped"});
    QVERIFY(!std::filesystem::exists(path));
}

}  // namespace

QObject* make_calculation_watch_test() {
    return new CalculationWatchTest;
}

}  // namespace anomalis::window

#include "calculation_watch_test.moc"
