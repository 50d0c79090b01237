#include <cmath>

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSplitter>
#include <QWheelEvent>

#include "window/form_sample.h"
#include "window/form_tests.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

class FormChartsTest : public QObject {
    Q_OBJECT

  private slots:
    void both_curves_ground_and_bodies_are_drawn();
    void the_plots_stand_under_each_other();
    void charts_without_data_give_their_room_away();
    void zoom_and_pan_move_all_charts();
    void a_wheel_on_one_chart_moves_the_others();
    void a_drag_that_pans_takes_the_pan_bar_along();
    void the_vertical_bars_step_one_chart();
    void the_plan_takes_the_place_of_the_section();
    void a_click_on_a_body_selects_it();
    void the_status_bar_follows_the_pointer();
    void axes_go_by_the_menu();
    void a_dropped_line_leaves_no_picture();
    void keys_recalculate_and_change_the_tab();
    void shrinking_the_window_to_nothing_does_no_harm();
};

namespace {

struct Shown : FormSample {
    Shown() {
        form->resize(1280, 800);
        form->open_file(write_workspace(folder));
        settle();
    }
    void settle() { QTest::qWait(120); }
    chart::AX_Grapher& chart(int index) { return form->charts().chart_widget(index).chart(); }
    chart::GrapherWidget& widget(int index) { return form->charts().chart_widget(index); }

    /// The pixel of a chart's widget at a place in user units.
    QPoint pixel(int index, chart::Point user) {
        const chart::Point surface = chart(index).UserToSurface(user);
        return {static_cast<int>(surface.x / chart::units_per_screen_pixel),
                static_cast<int>(widget(index).height() - surface.y / chart::units_per_screen_pixel)};
    }
    /// How many pixels lie nearer to a colour than to white, black and grey: thin lines are antialiased.
    int pixels_of(int index, QColor colour) {
        const QImage picture = widget(index).grab().toImage();
        const auto near = [&](const QColor& pixel) {
            constexpr int tolerance = 110;
            return std::abs(pixel.red() - colour.red()) < tolerance &&
                   std::abs(pixel.green() - colour.green()) < tolerance &&
                   std::abs(pixel.blue() - colour.blue()) < tolerance;
        };
        int count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) count += near(picture.pixelColor(x, y)) ? 1 : 0;
        return count;
    }

    TempFolder folder;
};

const QColor curve_green(0, 255, 0);
const QColor body_magenta(255, 0, 255);
const QColor body_blue(0, 0, 255);

}  // namespace

void FormChartsTest::both_curves_ground_and_bodies_are_drawn() {
    Shown sample;
    QCOMPARE(sample.prompts.messages, std::vector<std::string>());
    for (int i = 0; i < edit::model_chart_count; ++i) {
        QVERIFY(sample.widget(i).isVisible());
        QVERIFY(sample.chart(i).HasPlotDefined());
    }
    for (int i = 0; i < edit::profile_chart_count; ++i) {
        QVERIFY2(sample.pixels_of(i, curve_green) > 200, qPrintable(QString::number(i)));
        QVERIFY2(sample.pixels_of(i, Qt::black) > 200, qPrintable(QString::number(i)));
    }
    QVERIFY(sample.pixels_of(edit::chart_section, body_magenta) > 100);
    QVERIFY(sample.pixels_of(edit::chart_section, body_blue) > 100);
    QVERIFY(sample.status(7).startsWith("RMS: "));
}

void FormChartsTest::the_plots_stand_under_each_other() {
    Shown sample;
    const chart::Rect first = sample.chart(0).PlotRect();
    for (int i = 1; i < edit::model_chart_count; ++i) {
        QVERIFY(std::abs(sample.chart(i).PlotRect().x_low - first.x_low) < 1);
        QVERIFY(std::abs(sample.chart(i).PlotRect().x_high - first.x_high) < 1);
        QCOMPARE(sample.chart(i).ViewLimits().x_high, sample.chart(0).ViewLimits().x_high);
    }
    QCOMPARE(sample.chart(0).ViewLimits().x_high, edit::LineSample::length);
    QCOMPARE(sample.chart(edit::chart_section).XAxisLabel(), std::string("Distance (m)"));
    QCOMPARE(sample.chart(0).XAxisLabel(), std::string());
}

void FormChartsTest::charts_without_data_give_their_room_away() {
    Shown sample;
    const int before = sample.widget(edit::chart_section).height();
    sample.choose_tab(0);
    sample.type("Text_MAGINV_gravpos", "0");
    sample.click("Command_load_locations");
    sample.choose_tab(1);
    sample.settle();
    QVERIFY(!sample.find<QWidget>("Frame_grav_profiles").isVisible());
    QVERIFY(sample.find<QWidget>("Frame_mag_profiles").isVisible());
    QVERIFY(sample.widget(edit::chart_section).height() > before);
}

void FormChartsTest::zoom_and_pan_move_all_charts() {
    Shown sample;
    auto& zoom = sample.find<QComboBox>("Combo_zoom");
    auto& pan = sample.find<QScrollBar>("HScroll_pan");
    QVERIFY(!pan.isEnabled());
    zoom.setCurrentIndex(5);
    emit zoom.activated(5);
    QVERIFY(pan.isEnabled());
    QCOMPARE(pan.maximum(), 80);
    for (int i = 0; i < edit::model_chart_count; ++i)
        QCOMPARE(sample.chart(i).ViewLimits().width(), edit::LineSample::length / 4);
    pan.setValue(80);
    for (int i = 0; i < edit::model_chart_count; ++i)
        QVERIFY(std::abs(sample.chart(i).ViewLimits().x_high - edit::LineSample::length) < 0.01);
    sample.click("Command_reset_graph_scale");
    QCOMPARE(zoom.currentIndex(), 0);
    QVERIFY(!pan.isEnabled());
    QCOMPARE(sample.chart(2).ViewLimits().width(), edit::LineSample::length);
}

void FormChartsTest::a_wheel_on_one_chart_moves_the_others() {
    Shown sample;
    const QPoint place = sample.pixel(edit::chart_mag, {800, sample.chart(edit::chart_mag).YAxisMin() + 1});
    QWheelEvent wheel(place, sample.widget(edit::chart_mag).mapToGlobal(place), {}, {0, 240}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&sample.widget(edit::chart_mag), &wheel);
    sample.settle();
    const chart::Rect led = sample.chart(edit::chart_mag).ViewLimits();
    QVERIFY(led.width() < edit::LineSample::length * 0.9);
    for (int i = 1; i < edit::model_chart_count; ++i) {
        QVERIFY(std::abs(sample.chart(i).ViewLimits().x_low - led.x_low) < 0.5);
        QVERIFY(std::abs(sample.chart(i).ViewLimits().x_high - led.x_high) < 0.5);
    }
    // Behind the factors of the list stands the one that the hand has made.
    const auto& zoom = sample.find<QComboBox>("Combo_zoom");
    QCOMPARE(zoom.currentIndex(), zoom.count() - 1);
    QVERIFY(std::abs(zoom.currentText().chopped(2).toDouble() - edit::LineSample::length / led.width()) <
            0.01);
    QTest::mouseDClick(
        &sample.widget(edit::chart_grav), Qt::LeftButton, {},
        sample.pixel(edit::chart_grav, {1000, sample.chart(edit::chart_grav).YAxisMin() + 0.01}));
    sample.settle();
    QCOMPARE(sample.chart(edit::chart_mag).ViewLimits().width(), edit::LineSample::length);
    QCOMPARE(sample.find<QComboBox>("Combo_zoom").currentIndex(), 0);
}

void FormChartsTest::a_drag_that_pans_takes_the_pan_bar_along() {
    Shown sample;
    auto& widget = sample.widget(edit::chart_mag);
    const auto& pan = sample.find<QScrollBar>("HScroll_pan");
    const QPoint place = widget.rect().center();
    QWheelEvent wheel(place, widget.mapToGlobal(place), {}, {0, 480}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
    sample.settle();
    const int before = pan.value();
    QVERIFY(pan.isEnabled());
    const QPoint there = place - QPoint(widget.width() / 4, 0);
    QTest::mousePress(&widget, Qt::RightButton, {}, place);
    QMouseEvent moved(QEvent::MouseMove, there, widget.mapToGlobal(there), Qt::NoButton, Qt::RightButton, {});
    QApplication::sendEvent(&widget, &moved);
    sample.settle();
    const int meanwhile = pan.value();
    QVERIFY2(meanwhile > before, "while the button is held");
    QTest::mouseRelease(&widget, Qt::RightButton, {}, there);
    sample.settle();
    QCOMPARE(pan.value(), meanwhile);
    // The bar goes on from there.
    const double low = sample.chart(edit::chart_section).ViewLimits().x_low;
    sample.find<QScrollBar>("HScroll_pan").setValue(meanwhile - 5);
    QVERIFY(sample.chart(edit::chart_section).ViewLimits().x_low < low);
}

void FormChartsTest::the_vertical_bars_step_one_chart() {
    Shown sample;
    const chart::Rect before = sample.chart(edit::chart_mag).ViewLimits();
    const chart::Rect other = sample.chart(edit::chart_grav).ViewLimits();
    auto& zoom = sample.find<StepperBar>("VScroll_zoom_0");
    emit zoom.stepped(1);
    QVERIFY(std::abs(sample.chart(edit::chart_mag).ViewLimits().height() - before.height() / 1.25) < 1e-3);
    QCOMPARE(sample.chart(edit::chart_grav).ViewLimits(), other);
    emit zoom.stepped(-1);
    QVERIFY(std::abs(sample.chart(edit::chart_mag).ViewLimits().height() - before.height()) < 1e-3);
    emit sample.find<StepperBar>("VScroll_pan_0").stepped(1);
    QVERIFY(sample.chart(edit::chart_mag).ViewLimits().y_low < before.y_low);
    const double top = sample.chart(edit::chart_section).ViewLimits().y_high;
    emit sample.find<StepperBar>("VScroll_zoom_4").stepped(1);
    QVERIFY2(std::abs(sample.chart(edit::chart_section).ViewLimits().y_high - top) < 1e-2, "the top stays");
}

void FormChartsTest::the_plan_takes_the_place_of_the_section() {
    Shown sample;
    auto& button = sample.find<QPushButton>("Command_show_plan");
    QCOMPARE(button.text(), QString("Show Plan"));
    sample.click("Command_show_plan");
    sample.settle();
    QCOMPARE(button.text(), QString("Show Section"));
    QVERIFY(sample.find<QWidget>("Frame_plan").isVisible());
    QVERIFY(!sample.find<QWidget>("Frame_section").isVisible());
    QVERIFY(sample.find<QAction>("menu_view_mode_1").isChecked());
    QVERIFY(sample.find<QAction>("menu_display_axes").isChecked());
    chart::AX_Grapher& plan = sample.form->charts().plan_widget().chart();
    QVERIFY(plan.HasPlotDefined());
    QVERIFY2(std::abs(plan.XAxisScale() / plan.YAxisScale() - 1) < 1e-3, "north is as long as east");
    QCOMPARE(plan.PolygonCount(), 4);
    QVERIFY2(sample.chart(edit::chart_grav_gradient).XAxisLabel() == "Distance (m)",
             "the lowest curve has the distances");
    sample.find<QAction>("menu_view_mode_0").trigger();
    QVERIFY(sample.find<QWidget>("Frame_section").isVisible());
    QCOMPARE(button.text(), QString("Show Plan"));
}

void FormChartsTest::a_click_on_a_body_selects_it() {
    Shown sample;
    QCOMPARE(sample.form->workbench().view.current_body, 1);
    const ModelBody& body = sample.session.workspace.body(2);
    const chart::Point inside{body.distance.value + 40.0, body.top.value - 30.0};
    QTest::mouseClick(&sample.widget(edit::chart_section), Qt::LeftButton, {},
                      sample.pixel(edit::chart_section, inside));
    sample.settle();
    QCOMPARE(sample.form->workbench().view.current_body, 2);
    const QImage picture = sample.widget(edit::chart_section).grab().toImage();
    QCOMPARE(picture.pixelColor(sample.pixel(edit::chart_section, inside)), body_magenta);
}

void FormChartsTest::the_status_bar_follows_the_pointer() {
    Shown sample;
    const QPoint place = sample.pixel(edit::chart_section, {1000, 0});
    QTest::mouseMove(&sample.widget(edit::chart_section), place);
    sample.settle();
    QVERIFY(sample.status(2).startsWith("Model (Vertical stretch "));
    QVERIFY(std::abs(sample.status(3).toDouble() - 1000) < 5);
    QVERIFY(std::abs(sample.status(5).toDouble() - 501000) < 20);
    QCOMPARE(sample.status(6), QString("7000000.00"));
    QTest::mouseMove(&sample.widget(edit::chart_mag), {3, 3});
    sample.settle();
    QCOMPARE(sample.status(2), QString("Residual Mag Data"));
    QCOMPARE(sample.status(3), QString());
}

void FormChartsTest::axes_go_by_the_menu() {
    Shown sample;
    sample.find<QAction>("menu_display_axes").trigger();
    for (int i = 0; i < edit::model_chart_count; ++i) QVERIFY(!sample.chart(i).DisplayAxes());
    QVERIFY(sample.form->charts().plan_widget().chart().DisplayAxes());
    sample.find<QAction>("menu_display_axes").trigger();
    QVERIFY(sample.chart(4).DisplayAxes());
}

void FormChartsTest::a_dropped_line_leaves_no_picture() {
    Shown sample;
    sample.choose_tab(0);
    sample.type("Text_MAGINV_nhead", "3");
    QVERIFY(!sample.chart(edit::chart_section).HasPlotDefined());
    QCOMPARE(sample.chart(edit::chart_section).PolygonCount(), 0);
    QCOMPARE(sample.status(7), QString());
}

void FormChartsTest::keys_recalculate_and_change_the_tab() {
    Shown sample;
    QTest::keyClick(sample.form.get(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(sample.tab(), 0);
    QTest::keyClick(sample.form.get(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(sample.tab(), 1);
    sample.session.workspace.body(1).susc.value *= 3;
    const QString before = sample.status(7);
    QTest::keyClick(sample.form.get(), Qt::Key_F5);
    QVERIFY(sample.status(7) != before);
}

void FormChartsTest::shrinking_the_window_to_nothing_does_no_harm() {
    Shown sample;
    sample.form->setMinimumSize(0, 0);
    for (const QSize size : {QSize(200, 100), QSize(1, 1), QSize(1280, 800)}) {
        sample.form->resize(size);
        sample.settle();
    }
    for (const char* name : {"Image_splitter", "Image_splitter_mag"}) {
        sample.find<QSplitter>(name).setSizes({0, 900, 0});
        sample.settle();
    }
    sample.click("Command_reset_graph_scale");
    QVERIFY(sample.chart(edit::chart_mag_gradient).HasPlotDefined());
    QCOMPARE(sample.prompts.messages, std::vector<std::string>());
}

QObject* make_form_charts_test() {
    return new FormChartsTest;
}

}  // namespace anomalis::window

#include "form_charts_test.moc"
