#include <functional>

#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include "edit/change.h"
#include "show/pointer_panels.h"
#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/modal_forms.h"
#include "window/panels/status_panels.h"

namespace anomalis::window {

class FieldFormTest : public QObject {
    Q_OBJECT

  private slots:
    void the_field_of_the_line_is_shown_as_it_is_keyed_and_applied_as_one_step();
    void what_is_lacking_is_said_and_cannot_be_applied();
    void a_field_that_nobody_gave_is_not_set();
    void a_keyed_field_has_no_origin();
    void igrf_goes_out_of_the_readings_and_comes_back_with_undo();
    void a_known_system_shows_longitude_and_latitude_of_the_pointer();
};

namespace {

struct Fields : FormSample {
    Fields() {
        form->open_example(write_workspace(folder));
        choose_tab(0);
    }
    Workspace& w() { return session.workspace; }
    QString remark() { return find<QLabel>("Label_field_origin").text(); }

    /// Opens the form by its button and hands it to `act`; it is closed where that does not.
    void ask(const std::function<void(QDialog&)>& act) {
        drive([this] { find<QPushButton>("Command_field_from_place").click(); }, act);
    }
    TempFolder folder;
};

void key(QDialog& dialog, const char* name, const char* words) {
    auto* box = dialog.findChild<QLineEdit*>(name);
    QVERIFY2(box, name);
    box->selectAll();
    QTest::keyClicks(box, words);
}

QString answer(QDialog& dialog) {
    return dialog.findChild<QLabel*>("Label_field_answer")->text();
}

QPushButton& apply(QDialog& dialog) {
    return *dialog.findChild<QPushButton*>("Command_apply_field");
}

}  // namespace

void FieldFormTest::the_field_of_the_line_is_shown_as_it_is_keyed_and_applied_as_one_step() {
    Fields sample;
    const EarthField before = sample.w().field;
    sample.ask([](QDialog& dialog) {
        key(dialog, "Text_field_system", "EPSG:32754");
        QCOMPARE(dialog.findChild<QLabel*>("Label_field_system")->text(), QString("WGS 84 / UTM zone 54S"));
        QVERIFY(dialog.findChild<QLineEdit*>("Text_field_latitude")->text().startsWith("-27.1"));
        QVERIFY(!apply(dialog).isEnabled());
        key(dialog, "Text_field_date", "1990-07-01");
        QVERIFY2(answer(dialog).startsWith("Intensity 5"), qPrintable(answer(dialog)));
        apply(dialog).click();
    });
    QCOMPARE(sample.w().source.field_origin, std::string("IGRF-14 at the middle of the line, 1990-07-01"));
    QCOMPARE(sample.remark(), QString("IGRF-14 at the middle of the line, 1990-07-01"));
    QVERIFY(sample.find<QLabel>("Label_field_origin").isVisible());
    QVERIFY(sample.w().field != before);
    QCOMPARE(sample.text("Text_mag_intensity").toDouble(),
             std::round(sample.w().field.intensity * 10.0) / 10);
    QVERIFY(sample.w().station_count > 0);
    sample.find<QAction>("menu_undo").trigger();
    QVERIFY(sample.w().field == before);
    QCOMPARE(sample.remark(), QString());
    QVERIFY(!sample.find<QLabel>("Label_field_origin").isVisible());
}

void FieldFormTest::what_is_lacking_is_said_and_cannot_be_applied() {
    Fields sample;
    sample.ask([](QDialog& dialog) {
        QVERIFY2(answer(dialog).contains("No coordinate system was given"), qPrintable(answer(dialog)));
        key(dialog, "Text_field_system", "EPSG:99999");
        QVERIFY(answer(dialog).contains("EPSG:99999"));
        QCOMPARE(dialog.findChild<QLabel*>("Label_field_system")->text(), QString("not known"));
        key(dialog, "Text_field_system", "EPSG:32754");
        QVERIFY(answer(dialog).contains("Give the date"));
        key(dialog, "Text_field_date", "2045");
        QVERIFY(answer(dialog).contains("1900 to 2030"));
        QVERIFY(!apply(dialog).isEnabled());
    });
    QVERIFY(sample.w().source == LineSource{});
}

void FieldFormTest::a_field_that_nobody_gave_is_not_set() {
    Fields sample;
    forget_field(sample.w());
    sample.form->news().tell(News::settings);
    for (const char* box : {"Text_mag_intensity", "Text_mag_inclination", "Text_mag_declination"})
        QCOMPARE(sample.text(box), QString("not set"));
    QVERIFY(sample.remark().startsWith("Not set: magnetics are not modelled"));
    sample.type("Text_mag_intensity", "52000");
    QVERIFY(!sample.w().source.field_missing);
    QCOMPARE(sample.text("Text_mag_declination"), QString("0.0"));
    QCOMPARE(sample.remark(), QString());
}

void FieldFormTest::a_keyed_field_has_no_origin() {
    Fields sample;
    sample.w().source.field_origin = "IGRF-14 at the middle of the line, 1990";
    sample.form->news().tell(News::settings);
    QVERIFY(!sample.remark().isEmpty());
    sample.type("Text_mag_declination", "9.25");
    QCOMPARE(sample.w().source.field_origin, std::string());
    QCOMPARE(sample.remark(), QString());
}

void FieldFormTest::igrf_goes_out_of_the_readings_and_comes_back_with_undo() {
    Fields sample;
    const float before = sample.w().mag.data(1, row_raw, stage_observed);
    sample.find<QAction>("menu_remove_igrf").trigger();
    QVERIFY(sample.prompts.told("give coordinate system and date"));
    QVERIFY(sample.w().station_count > 0);
    sample.w().source.coordinate_system = "EPSG:32754";
    sample.w().source.date = "1990";
    sample.find<QAction>("menu_remove_igrf").trigger();
    QVERIFY(sample.w().station_count > 0);
    const float removed = sample.w().mag.data(1, row_raw, stage_observed);
    QVERIFY2(before - removed > 40000 && before - removed < 70000, qPrintable(QString::number(removed)));
    QVERIFY(sample.remark().endsWith("IGRF is removed from the readings"));
    sample.find<QAction>("menu_undo").trigger();
    QCOMPARE(sample.w().mag.data(1, row_raw, stage_observed), before);
}

void FieldFormTest::a_known_system_shows_longitude_and_latitude_of_the_pointer() {
    Fields sample;
    auto& panel = sample.find<QLabel>("StatusBar_geographic");
    sample.choose_tab(1);
    QVERIFY(!panel.isVisible());
    show::PointerPanels pointer{"Plan View", "1", "2", "3", "4"};
    pointer.geographic = "141.00000 E, 27.10000 S";
    sample.find<StatusPanels>("StatusBar").show_pointer(pointer);
    QVERIFY(panel.isVisible());
    QCOMPARE(panel.text(), QString("141.00000 E, 27.10000 S"));
    pointer.geographic.clear();
    sample.find<StatusPanels>("StatusBar").show_pointer(pointer);
    QVERIFY2(panel.isVisible(), "nothing jumps while the pointer comes and goes");
    sample.form->news().tell(News::line);
    QVERIFY(!panel.isVisible());
}

QObject* make_field_form_test() {
    return new FieldFormTest;
}

}  // namespace anomalis::window

#include "field_form_test.moc"
