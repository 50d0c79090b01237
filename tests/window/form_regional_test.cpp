#include <QAction>
#include <QComboBox>
#include <QLabel>

#include "core/settings.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

/// Regional and noise of each channel beside the base levels.
class FormRegionalTest : public QObject {
    Q_OBJECT

  private slots:
    void a_regional_is_chosen_by_key_and_taken_back();
    void a_residual_filter_switches_regionals_off_and_says_so();
    void the_dashed_curve_can_be_switched_off_and_stays_off();
    void the_rows_of_the_processing_stand_evenly();
    void noise_is_a_number_above_0_or_estimated();
};

void FormRegionalTest::a_regional_is_chosen_by_key_and_taken_back() {
    Modelled sample;
    sample.choose_tab(0);
    auto& list = sample.find<QComboBox>("Combo_mag_regional");
    QCOMPARE(list.currentText(), QString("none"));
    QVERIFY(list.toolTip().contains("unit of the channel"));
    list.setFocus();
    for (int i = 0; i < 2; ++i) QTest::keyClick(&list, Qt::Key_Down);
    QCOMPARE(list.currentText(), QString("slope"));
    QCOMPARE(sample.workspace().mag.regional_degree, 1);
    QCOMPARE(sample.workspace().grav.regional_degree, no_regional);
    sample.choose_tab(1);
    QCOMPARE(sample.workspace().mag.regional.degree, 1);
    sample.choose_tab(0);
    sample.trigger("menu_undo");
    QCOMPARE(list.currentText(), QString("level"));
    sample.trigger("menu_undo");
    QCOMPARE(list.currentText(), QString("none"));
    QCOMPARE(sample.workspace().mag.regional_degree, no_regional);
}

void FormRegionalTest::a_residual_filter_switches_regionals_off_and_says_so() {
    Modelled sample;
    sample.choose_tab(0);
    auto& list = sample.find<QComboBox>("Combo_grav_regional");
    list.setCurrentIndex(3);
    QCOMPARE(sample.workspace().grav.regional_degree, 2);
    QVERIFY(!sample.find<QLabel>("Label_residual_filter").isVisible());
    sample.type("Text_residual_filter_width", "20");
    QVERIFY(!list.isEnabled());
    QVERIFY(list.toolTip().contains("residual filter"));
    QVERIFY(sample.find<QLabel>("Label_residual_filter").isVisible());
    QCOMPARE(sample.workspace().grav.regional_degree, 2);
    sample.choose_tab(1);
    QCOMPARE(sample.workspace().grav.regional.degree, no_regional);
    sample.choose_tab(0);
    sample.type("Text_residual_filter_width", "0");
    QVERIFY(list.isEnabled());
    QVERIFY(!sample.find<QLabel>("Label_residual_filter").isVisible());
}

void FormRegionalTest::the_dashed_curve_can_be_switched_off_and_stays_off() {
    const TempFolder kept;
    const std::string settings = kept.path("settings.ini");
    {
        FormSample sample({}, settings);
        QVERIFY(sample.form->workbench().view.show_regional);
        auto& entry = sample.find<QAction>("menu_display_regional");
        QVERIFY(entry.isChecked());
        sample.form->open_file(write_workspace(kept));
        sample.form->load_locations();
        entry.trigger();
        QVERIFY(!entry.isChecked());
        QVERIFY(!sample.form->workbench().view.show_regional);
    }
    FormSample next({}, settings);
    QVERIFY(!next.form->workbench().view.show_regional);
    QVERIFY(!next.find<QAction>("menu_display_regional").isChecked());
}

void FormRegionalTest::noise_is_a_number_above_0_or_estimated() {
    Modelled sample;
    sample.choose_tab(0);
    auto& box = sample.find<EntryBox>("Text_mag_noise");
    const auto [stated, estimate] =
        std::pair(box.placeholderText().startsWith("est"), box.placeholderText().section(' ', 1).toDouble());
    QVERIFY2(stated && estimate >= 0, qPrintable(box.placeholderText()));
    for (const char* text : {"0", "-2", "loud"}) {
        sample.type("Text_mag_noise", text);
        QVERIFY(box.refused());
        QVERIFY2(sample.status(1).contains("nT above 0"), qPrintable(sample.status(1)));
        QCOMPARE(sample.workspace().mag.noise, unset);
    }
    sample.type("Text_mag_noise", "2.5");
    QVERIFY(!box.refused());
    QCOMPARE(sample.workspace().mag.noise, 2.5F);
    sample.trigger("menu_undo");
    QCOMPARE(box.text(), QString());
    QCOMPARE(sample.workspace().mag.noise, unset);
}

void FormRegionalTest::the_rows_of_the_processing_stand_evenly() {
    Modelled sample;
    sample.choose_tab(0);
    QTest::qWait(20);
    const auto top = [&](const char* name) {
        auto& box = sample.find<QWidget>(name);
        return box.mapTo(sample.form.get(), QPoint(0, 0)).y();
    };
    const int step = top("Text_MAGINV_topo") - top("Text_mag_noise");
    QCOMPARE(top("Text_MAGINV_basemag") - top("Text_VG_filter_width"), step);
    QCOMPARE(top("Text_mag_noise") - top("Combo_mag_regional"), step);
    QVERIFY(top("Combo_mag_regional") - top("Text_MAGINV_basemag") >= 2 * step - 4);
}

QObject* make_form_regional_test() {
    return new FormRegionalTest;
}

}  // namespace anomalis::window

#include "form_regional_test.moc"
