#include <functional>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QSpinBox>

#include "chart/qt/picture.h"
#include "core/threads.h"
#include "flow/new_line_choice.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/modal_forms.h"
#include "window/panels/charts_panel.h"
#include "window/shell/form_preferences.h"
#include "window/shell/look.h"

namespace anomalis::window {

class PreferencesTest : public QObject {
    Q_OBJECT

  private slots:
    void preferences_work_at_once_and_cancel_puts_them_back();
    void preferences_are_kept_and_their_defaults_come_back();
    void the_legend_is_a_matter_of_the_view_menu_too();
    void charts_follow_a_dark_desktop_and_pictures_stay_on_white();
};

namespace {

struct PreferencesSample : FormSample {
    void preferences(const std::function<void(QDialog&)>& act) {
        drive([this] { find<QAction>("menu_preferences").trigger(); }, act);
    }
    TempFolder folder;
};

void spin(QDialog& dialog, const char* name, int value) {
    dialog.findChild<QSpinBox*>(name)->setValue(value);
}

}  // namespace

void PreferencesTest::preferences_work_at_once_and_cancel_puts_them_back() {
    PreferencesSample sample;
    sample.form->open_file(write_workspace(sample.folder));
    const Preferences before = sample.session.preferences;
    auto& timer = sample.find<QTimer>("Timer_recovery");
    const int all = thread_count();
    sample.preferences([&](QDialog& dialog) {
        spin(dialog, "Spin_width_calculated", 5);
        QCOMPARE(sample.session.preferences.calculated.width, 5);
        spin(dialog, "Spin_autosave", 120);
        QCOMPARE(timer.interval(), 120'000);
        spin(dialog, "Spin_threads", all + 3);
        QCOMPARE(thread_count(), all + 3);
        dialog.findChild<QCheckBox*>("Check_legend")->click();
        QVERIFY(sample.form->charts().chart_widget(edit::chart_mag).chart().DisplayLegend());
        auto& form = dynamic_cast<Form_preferences&>(dialog);
        form.set_ask_colour([](std::int32_t colour) { return colour == 0 ? 0x0000FF : 0; });
        press(dialog, "Command_colour_observed");
        QCOMPARE(sample.session.preferences.observed.colour, 0x0000FF);
        form.set_ask_colour([](std::int32_t) { return std::nullopt; });
        press(dialog, "Command_colour_observed");
        QCOMPARE(sample.session.preferences.observed.colour, 0x0000FF);
        dialog.findChild<QComboBox*>("Combo_susceptibility_unit")->setCurrentIndex(1);
        QVERIFY(sample.session.preferences.susceptibility_unit == SusceptibilityUnit::si);
        dialog.findChild<QComboBox*>("Combo_new_line_formulas")->setCurrentIndex(1);
        press(dialog, "Command_cancel_preferences");
    });
    QVERIFY(sample.session.preferences == before);
    QVERIFY(read_preferences(sample.session.settings) == before);
    QVERIFY(flow::formulas_of_new_line(sample.session.settings) == Formulas::exact);
    QCOMPARE(timer.interval(), 60'000);
    QCOMPARE(thread_count(), all);
    QVERIFY(!sample.form->charts().chart_widget(edit::chart_mag).chart().DisplayLegend());
}

void PreferencesTest::preferences_are_kept_and_their_defaults_come_back() {
    PreferencesSample sample;
    sample.preferences([](QDialog& dialog) {
        spin(dialog, "Spin_width_observed", 3);
        spin(dialog, "Spin_autosave", 5);
        dialog.findChild<QComboBox*>("Combo_new_line_formulas")->setCurrentIndex(1);
        press(dialog, "Command_keep_preferences");
    });
    Preferences wanted;
    wanted.observed.width = 3;
    wanted.autosave_seconds = 10;  // not below
    QVERIFY(read_preferences(sample.session.settings) == wanted);
    QVERIFY(flow::formulas_of_new_line(sample.session.settings) == Formulas::classic);
    QVERIFY(sample.session.workspace.formulas == Formulas::classic);
    sample.preferences([](QDialog& dialog) {
        press(dialog, "Command_default_preferences");
        press(dialog, "Command_keep_preferences");
    });
    QVERIFY(read_preferences(sample.session.settings) == Preferences());
    QVERIFY(flow::formulas_of_new_line(sample.session.settings) == Formulas::exact);
}

void PreferencesTest::the_legend_is_a_matter_of_the_view_menu_too() {
    PreferencesSample sample;
    sample.form->open_file(write_workspace(sample.folder));
    auto& legend = sample.find<QAction>("menu_display_legend");
    QVERIFY(!legend.isChecked());
    legend.trigger();
    QVERIFY(legend.isChecked());
    QVERIFY(sample.form->charts().chart_widget(edit::chart_mag).chart().DisplayLegend());
    QVERIFY(read_preferences(sample.session.settings).legend);
}

void PreferencesTest::charts_follow_a_dark_desktop_and_pictures_stay_on_white() {
    const QPalette before = QApplication::palette();
    PreferencesSample sample;
    sample.form->open_file(write_workspace(sample.folder));
    chart::GrapherWidget& widget = sample.form->charts().chart_widget(edit::chart_mag);
    const auto corner = [&] { return widget.grab().toImage().pixelColor(1, 1); };
    const auto picture_corner = [&] {
        const std::string png = chart::chart_bytes(chart::PictureFormat::png, widget.chart());
        return QImage::fromData(QByteArray(png.data(), static_cast<int>(png.size()))).pixelColor(1, 1);
    };
    QCOMPARE(corner(), QColor(Qt::white));
    const auto turn = [](const QPalette& desktop) {
        QApplication::setPalette(desktop);
        apply_look(*static_cast<QApplication*>(QCoreApplication::instance()));
        QCoreApplication::processEvents();
    };
    turn(look_palette(true));
    QCOMPARE(corner(), look_palette(true).color(QPalette::Base));
    QCOMPARE(picture_corner(), QColor(Qt::white));
    sample.preferences([&](QDialog& dialog) {
        auto* dark = dialog.findChild<QCheckBox*>("Check_dark_charts");
        QVERIFY(dark->isChecked());
        dark->click();
        QCOMPARE(corner(), QColor(Qt::white));
        press(dialog, "Command_cancel_preferences");
    });
    QCOMPARE(corner(), look_palette(true).color(QPalette::Base));
    turn(before);
    QCOMPARE(corner(), QColor(Qt::white));
}

QObject* make_preferences_test() {
    return new PreferencesTest;
}

}  // namespace anomalis::window

#include "preferences_test.moc"
