#include <cmath>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHelpEvent>
#include <QToolTip>

#include "core/body_parameters.h"
#include "edit/body_form.h"
#include "window/form_tests.h"
#include "window/modelled_form.h"
#include "window/shell/look.h"
#include "window/widgets/body_cells.h"
#include "window/widgets/body_grid_view.h"
#include "window/widgets/plain_text.h"
#include "window/widgets/sketch_tip.h"

namespace anomalis::window {

class FormGridTest : public QObject {
    Q_OBJECT

  private slots:
    void the_grid_has_18_rows_and_5_columns();
    void a_click_on_a_value_edits_it();
    void an_untouched_editor_stores_nothing();
    void bad_texts_leave_the_value();
    void an_open_editor_is_taken_over_before_a_command();
    void a_click_on_a_mark_changes_it();
    void limits_are_keyed_and_crossed_ones_refused();
    void the_type_is_chosen_over_its_cell();
    void an_interval_never_hides_its_value();
    void a_parameter_is_drawn_over_the_words_of_its_tip();
    void a_sketch_is_as_sharp_as_the_screen_and_follows_its_palette();
    void a_number_is_never_cut();
};

void FormGridTest::the_grid_has_18_rows_and_5_columns() {
    Modelled sample;
    QCOMPARE(sample.grid().model()->rowCount(), 18);
    QCOMPARE(sample.grid().model()->columnCount(), 5);
    QStringList headings;
    for (int column = 0; column < 5; ++column)
        headings << sample.grid().model()->headerData(column, Qt::Horizontal).toString();
    QCOMPARE(headings, (QStringList{"Property", "Value", "Vary", "Min", "Max"}));
    QCOMPARE(sample.shown(1, 1), QString("Thick Sheet"));
    QCOMPARE(sample.shown(4, 0), QString("Distance"));
    QCOMPARE(sample.shown(4, 1), QString("1260.0"));
    QCOMPARE(sample.cell(4, 2).data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Checked));
    QCOMPARE(sample.cell(5, 2).data(Qt::CheckStateRole).toInt(), static_cast<int>(Qt::Unchecked));
    QVERIFY(!sample.cell(2, 2).data(Qt::CheckStateRole).isValid());
    sample.body(1).type = wire;
    sample.form->news().tell(News::bodies);
    QCOMPARE(sample.shown(12, 0), QString());
    QCOMPARE(sample.shown(12, 1), QString());
    QCOMPARE(sample.shown(8, 0), QString("N/A"));
    QCOMPARE(sample.shown(8, 1), QString());
}

void FormGridTest::a_click_on_a_value_edits_it() {
    Modelled sample;
    const QString before = sample.status(7);
    sample.click_cell(param_dip, edit::grid_value);
    QVERIFY(sample.editor());
    QCOMPARE(sample.editor()->objectName(), QString("Text_edit"));
    QVERIFY(sample.editor()->toolTip().startsWith("The dip of the body"));
    QCOMPARE(sample.editor()->text(), QString("90"));
    sample.key(param_dip, edit::grid_value, "60");
    QCOMPARE(sample.body(1).dip.value, 60.0F);
    QCOMPARE(sample.shown(param_dip, edit::grid_value), QString("60.0"));
    QVERIFY(sample.status(7) != before);
    QVERIFY(sample.session.model_changed);
    QVERIFY(sample.form->windowTitle().contains('*'));
    sample.key(param_distance, edit::grid_value, "1303");
    QCOMPARE(sample.shown(edit::row_east, edit::grid_value), QString("501303.0"));
    QCOMPARE(sample.prompts.messages, std::vector<std::string>());
}

void FormGridTest::an_untouched_editor_stores_nothing() {
    Modelled sample;
    sample.body(1).distance.value = 1260.04F;
    sample.click_cell(param_distance, edit::grid_value);
    QTest::keyClick(sample.editor(), Qt::Key_Return);
    QTest::qWait(1);
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "5");
    QTest::keyClick(sample.editor(), Qt::Key_Escape);
    QTest::qWait(1);
    QCOMPARE(sample.body(1).distance.value, 1260.04F);
    QCOMPARE(sample.body(1).width.value, 100.0F);
    QVERIFY(!sample.form->workbench().unsaved);
}

void FormGridTest::bad_texts_leave_the_value() {
    Modelled sample;
    for (const QString& text :
         {QString("abc"), QString(), QString("   "), QString("1e999"), QString("1,5")}) {
        sample.key(param_top, edit::grid_value, text.isEmpty() ? " " : text);
        QCOMPARE(sample.body(1).top.value, 60.0F);
    }
    for (const QString& text : {QString("12\n34\r\n56"), QString(10000, 'x'), QString(10000, '9')}) {
        QApplication::clipboard()->setText(text);
        sample.click_cell(param_top, edit::grid_value);
        sample.editor()->selectAll();
        sample.editor()->paste();
        QTest::keyClick(sample.editor(), Qt::Key_Return);
        QTest::qWait(1);
        QCOMPARE(sample.body(1).top.value, 60.0F);
    }
    QVERIFY(sample.status(1).startsWith("Top: "));
    sample.key(param_dip, edit::grid_value, "181");
    QCOMPARE(sample.body(1).dip.value, 90.0F);
    QCOMPARE(sample.prompts.messages, std::vector<std::string>());
    QVERIFY(!sample.form->workbench().unsaved);
}

void FormGridTest::an_open_editor_is_taken_over_before_a_command() {
    Modelled sample;
    sample.click_cell(param_width, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "64");
    sample.trigger("menu_add_body_2");
    QCOMPARE(sample.body(1).width.value, 32.0F);
    QCOMPARE(sample.body(2).width.value, 32.0F);
    sample.click_cell(param_susc, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "777");
    sample.choose_tab(0);
    QCOMPARE(sample.body(2).susc.value, 777.0F);
}

void FormGridTest::a_click_on_a_mark_changes_it() {
    Modelled sample;
    sample.click_cell(param_strike, edit::grid_vary);
    QCOMPARE(sample.body(1).strike.vary, 1.0F);
    QVERIFY(sample.form->workbench().unsaved);
    QTest::keyClick(&sample.grid(), Qt::Key_Space);
    QCOMPARE(sample.body(1).strike.vary, 0.0F);
    sample.click_cell(edit::row_north, edit::grid_vary);
    QVERIFY(edit::change_body_type(sample.form->workbench(), wire));
    sample.form->news().tell(News::bodies);
    sample.click_cell(param_width, edit::grid_vary);
    QCOMPARE(sample.body(1).width.vary, 0.0F);
}

void FormGridTest::limits_are_keyed_and_crossed_ones_refused() {
    Modelled sample;
    sample.key(param_dip, edit::grid_max, "100");
    QCOMPARE(sample.shown(param_dip, edit::grid_max), QString("100"));
    sample.key(param_dip, edit::grid_min, "101");
    QCOMPARE(sample.prompts.messages,
             std::vector<std::string>{"The lower limit must not be above the upper limit"});
    QCOMPARE(sample.shown(param_dip, edit::grid_min), QString());
    sample.click_cell(param_dip, edit::grid_max);
    sample.editor()->selectAll();
    QTest::keyClick(sample.editor(), Qt::Key_Delete);
    QTest::keyClick(sample.editor(), Qt::Key_Return);
    QTest::qWait(1);
    QCOMPARE(sample.body(1).dip.max, unset);
    for (const QString& text : {QString("x"), QString("1e999")}) {
        sample.key(param_dip, edit::grid_min, text);
        QCOMPARE(sample.body(1).dip.min, unset);
    }
}

void FormGridTest::the_type_is_chosen_over_its_cell() {
    Modelled sample;
    auto& types = sample.find<QComboBox>("Combo_model_type");
    QVERIFY(!types.isVisible());
    sample.click_cell(edit::row_type, edit::grid_value);
    QVERIFY(types.isVisible());
    QCOMPARE(types.currentText(), QString("Thick Sheet"));
    QCOMPARE(types.count(), 4);
    types.hidePopup();
    types.setCurrentIndex(types.findData(static_cast<int>(pipe)));
    emit types.activated(types.currentIndex());
    QVERIFY(!types.isVisible());
    QVERIFY(types.isEnabled());
    QCOMPARE(sample.body(1).type, static_cast<std::int32_t>(pipe));
    QCOMPARE(sample.body(1).dip.value, 0.0F);
    QCOMPARE(sample.shown(edit::row_type, edit::grid_value), QString("Cylinder/pipe"));
    QCOMPARE(sample.shown(param_top, edit::grid_property), QString("Depth"));
    sample.body(1).type = sphere;
    sample.form->news().tell(News::bodies);
    QCOMPARE(sample.shown(edit::row_type, edit::grid_value), QString("Sphere"));
    sample.click_cell(edit::row_type, edit::grid_value);
    QCOMPARE(types.currentIndex(), -1);
    types.hidePopup();
    sample.click_cell(param_dip, edit::grid_property);
    QVERIFY2(!types.isVisible(), "a click elsewhere puts it away");
    QCOMPARE(sample.body(1).type, static_cast<std::int32_t>(sphere));
}

void FormGridTest::an_interval_never_hides_its_value() {
    const QFontMetrics metrics(QApplication::font());
    const QString wide = "-270142 +60115490";
    const int room = metrics.horizontalAdvance("270142.5" + wide);
    QCOMPARE(fitting_error(metrics, "±597", "44919.6", room), QString("±597"));
    QVERIFY2(fitting_error(metrics, wide, "270142.5", room) == wide, "the value gives way by its decimals");
    QCOMPARE(fitting_error(metrics, wide, "270142.5", metrics.horizontalAdvance(wide)), QString("±…"));
    QCOMPARE(fitting_error(metrics, wide, "2", room), wide);
}

void FormGridTest::a_parameter_is_drawn_over_the_words_of_its_tip() {
    Modelled sample;
    auto& grid = sample.find<BodyGridView>("Grid_body");
    const auto page = [&](int row, int column) {
        return grid.tip_page(grid.visualRect(sample.cell(row, column)).center());
    };
    const QString words = sample.cell(param_dip, edit::grid_value).data(Qt::ToolTipRole).toString();
    QVERIFY(page(param_dip, edit::grid_value).contains("<img src=\"data:image/png;base64,"));
    QVERIFY(page(param_dip, edit::grid_property).contains(words.section('\n', 0, 0)));
    QCOMPARE(page(edit::row_east, edit::grid_value),
             sample.cell(edit::row_east, edit::grid_value).data(Qt::ToolTipRole).toString());
    QVERIFY2(!page(param_dip, edit::grid_min).contains("<img"), "a limit has words alone");
    // The bars of the parameter show it too, over what they say of their steps.
    auto& bar = sample.find<QWidget>("HScroll_dip_0");
    QHelpEvent asked(QEvent::ToolTip, bar.rect().center(), bar.mapToGlobal(bar.rect().center()));
    QApplication::sendEvent(&bar, &asked);
    QVERIFY(QToolTip::text().contains("<img"));
    QVERIFY(QToolTip::text().contains("coarse steps"));
    QToolTip::hideText();
}

void FormGridTest::a_sketch_is_as_sharp_as_the_screen_and_follows_its_palette() {
    Workspace workspace;
    ModelBody body;
    body.type = thick_sheet;
    for (const double ratio : {1.0, 1.25, 2.0}) {
        const QImage light = sketch_picture(workspace, body, param_width, look_palette(false), ratio);
        const QImage dark = sketch_picture(workspace, body, param_width, look_palette(true), ratio);
        QCOMPARE(light.width(), static_cast<int>(std::ceil(sketch_size.width() * ratio)));
        QCOMPARE(light.devicePixelRatio(), ratio);
        const QPoint corner(light.width() - 1, light.height() - 1);
        QCOMPARE(light.pixelColor(corner), look_palette(false).color(QPalette::ToolTipBase));
        QCOMPARE(dark.pixelColor(corner), look_palette(true).color(QPalette::ToolTipBase));
    }
    QVERIFY(sketch_picture(workspace, body, edit::row_east, look_palette(false), 1).isNull());
}

void FormGridTest::a_number_is_never_cut() {
    const QFontMetrics metrics(QApplication::font());
    for (const QString& number : {QString("7000000.0"), QString("-73445.25"), QString("0.003978874"),
                                  QString("1.1e+08"), QString("360")})
        for (int room = metrics.horizontalAdvance("-7e-3"); room < 120; ++room) {
            const QString shown = fitting_text(metrics, number, room);
            QVERIFY2(metrics.horizontalAdvance(shown) <= room, qPrintable(shown));
            bool numeric = false;
            const double value = shown.toDouble(&numeric), whole = number.toDouble();
            QVERIFY2(numeric && std::abs(value - whole) < std::abs(whole) / 2, qPrintable(shown));
        }
    QVERIFY(fitting_text(metrics, "Cylinder/pipe", 40).contains(QChar(0x2026)));
    QCOMPARE(elided_at_word(metrics, "spacing 73445.25 m", metrics.horizontalAdvance("spacing 7344…")),
             QString("spacing…"));
}

QObject* make_form_grid_test() {
    return new FormGridTest;
}

}  // namespace anomalis::window

#include "form_grid_test.moc"
