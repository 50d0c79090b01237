#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>

#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/shell/qt_prompts.h"
#include "window/widgets/entry_box.h"

namespace anomalis::window {

/// A box of the first page with a text that cannot be taken.
class WrongBoxesTest : public QObject {
    Q_OBJECT

  private slots:
    void a_wrong_box_keeps_the_second_page_closed_data();
    void a_wrong_box_keeps_the_second_page_closed();
    void a_drawing_box_that_is_wrong_takes_its_usual_value_data();
    void a_drawing_box_that_is_wrong_takes_its_usual_value();
    void a_box_that_is_not_on_show_keeps_nothing_closed();
    void what_is_read_anew_takes_the_mark_away();
    void names_of_files_are_shown_letter_by_letter();
    void a_wrong_number_of_iterations_is_told();
    void a_question_shows_its_text_letter_by_letter();
};

void WrongBoxesTest::a_wrong_box_keeps_the_second_page_closed_data() {
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* box, const char* typed, const char* message) {
        QTest::newRow(qPrintable(QString(box) + " " + typed))
            << QString(box) << QString(typed) << QString(message);
    };
    row("Text_MAGINV_sensor_offset", "-5", "The sensor offset must be non-negative");
    row("Text_MAGINV_sensor_offset", "high", "The sensor offset is invalid");
    row("Text_MAGINV_topo", "1,5", "The surface elevation is invalid");
    row("Text_residual_filter_width", "wide", "The residual filter window width is invalid");
    row("Text_VG_filter_width", "wide", "The VG filter window width is invalid");
    row("Text_VG_filter_width", "0", "The VG/TG filter window width must be positive");
    row("Text_VG_filter_width", "-3", "The VG/TG filter window width must be positive");
    row("Text_MAGINV_basemag", "low", "The data background value is invalid");
    row("Text_residual_filter_width", "-3", "Residual half-width: “-3” is not accepted");
    row("Text_smooth_filter_width", "x", "Half-width: “x” is not accepted");
    row("Text_VG_filter_step", "-1", "VG filter spacing: “-1” is not accepted");
    row("Text_MAGINV_basegrav", "low", "Gravity base level: “low” is not accepted");
    row("Text_mag_intensity", "0", "Intensity: “0” is not accepted");
    row("Text_mag_inclination", "steep", "Inclination: “steep” is not accepted");
    row("Text_mag_declination", "", "Declination: “” is not accepted");
    row("Text_MAGINV_xpos", "0", "X column: “0” is not accepted");
}

void WrongBoxesTest::a_wrong_box_keeps_the_second_page_closed() {
    QFETCH(QString, box);
    QFETCH(QString, typed);
    QFETCH(QString, message);
    Modelled sample;
    sample.choose_tab(0);
    auto& entry = sample.find<EntryBox>(qPrintable(box));
    entry.setFocus();
    entry.selectAll();
    typed.isEmpty() ? QTest::keyClick(&entry, Qt::Key_Delete) : QTest::keyClicks(&entry, typed);
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 0);
    QCOMPARE(sample.prompts.messages, (std::vector<std::string>{message.toStdString()}));
    QVERIFY(entry.hasFocus());
    QCOMPARE(entry.text(), typed);
    if (typed != "0" || box != "Text_VG_filter_width") QVERIFY(entry.refused());
    QVERIFY2(sample.workspace().station_count > 0, "the line stays");
    // Another command neither takes the text nor loses it.
    sample.trigger("menu_display_axes");
    QCOMPARE(entry.text(), typed);
    entry.selectAll();
    QTest::keyClicks(&entry, "3");
    if (box == "Text_MAGINV_xpos") return;  // another column wants another load
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 1);
    QVERIFY(!entry.refused());
}

void WrongBoxesTest::a_drawing_box_that_is_wrong_takes_its_usual_value_data() {
    QTest::addColumn<QString>("box");
    QTest::addColumn<QString>("usual");
    for (const char* box : {"Text_profile_grid_spacing", "Text_depth_grid_spacing",
                            "Text_finite_body_left_clip", "Text_finite_body_right_clip"})
        QTest::newRow(box) << QString(box) << QString("0");
    QTest::newRow("length") << QString("Text_infinite_body_length") << QString("500");
}

void WrongBoxesTest::a_drawing_box_that_is_wrong_takes_its_usual_value() {
    QFETCH(QString, box);
    QFETCH(QString, usual);
    Modelled sample;
    sample.choose_tab(0);
    sample.type(qPrintable(box), "75");
    QCOMPARE(sample.text(qPrintable(box)), QString("75"));
    sample.type(qPrintable(box), "-1");
    QVERIFY(sample.find<EntryBox>(qPrintable(box)).refused());
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 1);
    QCOMPARE(sample.text(qPrintable(box)), usual);
    QVERIFY2(sample.status(1).contains("“-1” is not accepted, " + usual + " is taken"),
             qPrintable(sample.status(1)));
    sample.trigger("menu_undo");
    QCOMPARE(sample.text(qPrintable(box)), QString("75"));
}

void WrongBoxesTest::a_box_that_is_not_on_show_keeps_nothing_closed() {
    Modelled sample;
    sample.choose_tab(0);
    sample.type("Text_MAGINV_basegrav", "low");
    sample.type("Text_residual_filter_width", "9");
    QVERIFY(!sample.find<QWidget>("Text_MAGINV_basegrav").isVisible());
    sample.choose_tab(1);
    QCOMPARE(sample.tab(), 1);
}

void WrongBoxesTest::what_is_read_anew_takes_the_mark_away() {
    Modelled sample;
    sample.choose_tab(0);
    sample.type("Text_mag_intensity", "strong");
    QVERIFY(sample.find<EntryBox>("Text_mag_intensity").refused());
    sample.form->open_file(sample.folder.path("line.axm"));
    QVERIFY(!sample.find<EntryBox>("Text_mag_intensity").refused());
    QVERIFY(sample.text("Text_mag_intensity") != "strong");
}

void WrongBoxesTest::names_of_files_are_shown_letter_by_letter() {
    Modelled sample;
    const std::string odd = sample.folder.path("<b>x\x1B[*].axm");
    sample.prompts.save_paths = {odd};
    sample.trigger("menu_open_model_1");
    QCOMPARE(sample.workspace().model_file, odd);
    QVERIFY2(sample.form->windowTitle().contains("<b>x\\u{1B}[*][*].axm"),
             qPrintable(sample.form->windowTitle()));
    auto& status = sample.find<QLabel>("StatusBar_1");
    QCOMPARE(status.textFormat(), Qt::PlainText);
    QVERIFY(status.text().contains("\\u{1B}"));
    QVERIFY(status.toolTip().contains("&lt;b&gt;"));
    QVERIFY(sample.find<QAction>("menu_file_list_0").text().contains("\\u{1B}"));
}

void WrongBoxesTest::a_wrong_number_of_iterations_is_told() {
    Modelled sample;
    sample.click("Command_toggle_invert_body");
    sample.type("Text_max_iterations", "many");
    QCOMPARE(sample.text("Text_max_iterations"), QString());
    QVERIFY2(sample.status(1).contains("Iterations: “many” is not accepted, 25 is taken"),
             qPrintable(sample.status(1)));
    sample.type("Text_max_iterations", "12");
    QCOMPARE(sample.text("Text_max_iterations"), QString("12"));
}

void WrongBoxesTest::a_question_shows_its_text_letter_by_letter() {
    QtPrompts prompts;
    QString shown_label;
    Qt::TextFormat format = Qt::AutoText;
    QTimer::singleShot(0, [&] {
        auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        auto* label = dialog->findChild<QLabel*>();
        shown_label = label->text();
        format = label->textFormat();
        dialog->setTextValue("<i>75");
        dialog->accept();
    });
    QCOMPARE(prompts.input_box("Shift", "<b>Which\x1B?", "0"), std::optional<std::string>("<i>75"));
    QCOMPARE(shown_label, QString("<b>Which\\u{1B}?"));
    QCOMPARE(format, Qt::PlainText);
    QTimer::singleShot(0, [] { qobject_cast<QDialog*>(QApplication::activeModalWidget())->reject(); });
    QCOMPARE(prompts.input_box("Shift", "Which?", "0"), std::optional<std::string>());
}

QObject* make_wrong_boxes_test() {
    return new WrongBoxesTest;
}

}  // namespace anomalis::window

#include "wrong_boxes_test.moc"
