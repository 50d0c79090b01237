#include "chart/qt/grapher_widget.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

#include <QMenu>

#include "widget_rig.h"

namespace anomalis::chart {
namespace {

TEST(GrapherWidget, shows_the_chart) {
    WidgetRig rig;
    const QImage shown = rig.widget.grab().toImage();
    const QPoint body = rig.pixel(1250, -100);
    EXPECT_EQ(shown.pixel(body), qRgb(0x1F, 0x76, 0xB4));
    EXPECT_EQ(shown.pixel(rig.pixel(6500, 500)), qRgb(255, 255, 255));
}

TEST(GrapherWidget, the_wheel_turned_forward_zooms_in_about_the_pointer) {
    WidgetRig rig;
    const QPoint at = rig.pixel(2000, 200);
    rig.wheel(at, {0, 120});
    const Rect view = rig.widget.chart().ViewLimits();
    EXPECT_NEAR(view.x_high - view.x_low, 7400 / 1.1, 1);
    EXPECT_EQ(rig.events.seen["MouseWheel"], 1);
    rig.wheel(at, {0, -120});
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_x, 1.0, 1e-6);
}

TEST(GrapherWidget, parts_of_a_wheel_step_add_up_to_one) {
    WidgetRig rig;
    const QPoint at = rig.pixel(2000, 200);
    for (int i = 0; i < 7; ++i) rig.wheel(at, {0, 15});
    EXPECT_EQ(rig.widget.chart().CurrentZoom().zoom_x, 1.0);
    rig.wheel(at, {0, 15});
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_x, 1.1, 1e-6);
}

TEST(GrapherWidget, a_horizontal_wheel_pans_a_zoomed_chart) {
    WidgetRig rig;
    const QPoint at = rig.pixel(3700, 200);
    for (int i = 0; i < 8; ++i) rig.wheel(at, {0, 120});
    const double before = rig.widget.chart().ViewLimits().x_low;
    rig.wheel(at, {-120, 0});
    EXPECT_GT(rig.widget.chart().ViewLimits().x_low, before) << "to the right is negative";
    rig.wheel(at, {120, 0});
    EXPECT_NEAR(rig.widget.chart().ViewLimits().x_low, before, 1e-6);
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_x, std::pow(1.1, 8), 1e-4);
}

TEST(GrapherWidget, dragging_with_the_left_button_zooms_by_the_way_travelled) {
    WidgetRig rig;
    const QPoint at = rig.pixel(5500, 400);
    QTest::mousePress(&rig.widget, Qt::LeftButton, {}, at);
    rig.move(at + QPoint(0, 52), Qt::LeftButton);
    QTest::mouseRelease(&rig.widget, Qt::LeftButton, {}, at + QPoint(0, 52));
    EXPECT_GT(rig.widget.chart().CurrentZoom().zoom_x, 1.2);
    EXPECT_GE(rig.events.seen["ViewChanged"], 1);
}

TEST(GrapherWidget, moves_within_one_turn_of_the_event_loop_are_one) {
    WidgetRig rig;
    QApplication::processEvents();
    rig.events.seen.clear();
    for (int i = 0; i < 50; ++i) rig.move(rig.pixel(3000, 100) + QPoint(i, 0), Qt::NoButton);
    EXPECT_EQ(rig.events.seen["MouseMove"], 0);
    QApplication::processEvents();
    EXPECT_EQ(rig.events.seen["MouseMove"], 1);
    EXPECT_GT(rig.events.world_x, 3300);
}

TEST(GrapherWidget, turns_of_the_wheel_within_one_turn_of_the_event_loop_are_one) {
    WidgetRig rig;
    const QPoint at = rig.pixel(3000, 100);
    for (int i = 0; i < 30; ++i) {
        QWheelEvent event(at, rig.widget.mapToGlobal(at), {}, {0, 12}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&rig.widget, &event);
    }
    EXPECT_EQ(rig.events.seen["ViewChanged"], 0);
    QApplication::processEvents();
    EXPECT_EQ(rig.events.seen["ViewChanged"], 1);
    EXPECT_EQ(rig.events.seen["MouseWheel"], 1);
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_x, std::pow(1.1, 3), 1e-6);
}

TEST(GrapherWidget, two_fingers_zoom_and_drag) {
    WidgetRig rig;
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const QPoint middle = rig.pixel(3700, 200);
    const auto fingers = [&](QPoint about, int apart) {
        QTest::touchEvent(&rig.widget, screen.get())
            .move(0, about - QPoint(apart / 2, 0), &rig.widget)
            .move(1, about + QPoint(apart / 2, 0), &rig.widget);
    };
    QTest::touchEvent(&rig.widget, screen.get())
        .press(0, middle - QPoint(40, 0), &rig.widget)
        .press(1, middle + QPoint(40, 0), &rig.widget);
    for (int apart = 80; apart <= 240; apart += 20) fingers(middle, apart);
    const Rect zoomed = rig.widget.chart().ViewLimits();
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_x, 3.0, 0.6);
    EXPECT_NEAR((zoomed.x_low + zoomed.x_high) / 2, 3700, 200);
    for (int way = 10; way <= 60; way += 10) fingers(middle + QPoint(way, 0), 240);
    const double dragged = 60 * units_per_screen_pixel / rig.widget.chart().XAxisScale();
    EXPECT_NEAR(zoomed.x_low - rig.widget.chart().ViewLimits().x_low, dragged, dragged / 4);
    QTest::touchEvent(&rig.widget, screen.get())
        .release(0, middle, &rig.widget)
        .release(1, middle, &rig.widget);
}

TEST(GrapherWidget, a_press_delivers_the_move_before_it) {
    WidgetRig rig;
    rig.events.seen.clear();
    rig.move(rig.pixel(3000, 100), Qt::NoButton);
    QTest::mousePress(&rig.widget, Qt::LeftButton, {}, rig.pixel(3000, 100));
    EXPECT_EQ(rig.events.seen["MouseMove"], 1);
    EXPECT_EQ(rig.events.seen["MouseDown"], 1);
    QTest::mouseRelease(&rig.widget, Qt::LeftButton, {}, rig.pixel(3000, 100));
}

TEST(GrapherWidget, a_double_click_clears_the_zoom) {
    WidgetRig rig;
    rig.wheel(rig.pixel(2000, 200), {0, 240});
    QTest::mouseDClick(&rig.widget, Qt::LeftButton, {}, rig.pixel(6000, 500));
    EXPECT_EQ(rig.widget.chart().CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.events.seen["ZoomCleared"], 1);
}

TEST(GrapherWidget, a_right_click_that_stays_opens_the_menu) {
    WidgetRig rig;
    float x = 0;
    rig.widget.set_menu_opening([&](float at, float) { x = at; });
    const QPoint at = rig.pixel(3000, 300);
    QTest::mousePress(&rig.widget, Qt::RightButton, {}, at);
    QTest::mouseRelease(&rig.widget, Qt::RightButton, {}, at + QPoint(2, 0));
    EXPECT_TRUE(rig.widget.menu()->isVisible());
    EXPECT_NEAR(x / units_per_screen_pixel, at.x(), 3);
    rig.widget.menu()->close();
}

TEST(GrapherWidget, keys_pan_zoom_and_reset) {
    WidgetRig rig;
    rig.widget.setFocus();
    QTest::keyClick(&rig.widget, Qt::Key_Plus);
    QTest::keyClick(&rig.widget, Qt::Key_Plus);
    EXPECT_NEAR(rig.widget.chart().CurrentZoom().zoom_x, 1.21, 1e-4);
    const double before = rig.widget.chart().ViewLimits().x_low;
    QTest::keyClick(&rig.widget, Qt::Key_Right);
    EXPECT_GT(rig.widget.chart().ViewLimits().x_low, before);
    QTest::keyClick(&rig.widget, Qt::Key_Home);
    EXPECT_EQ(rig.widget.chart().CurrentZoom().zoom_x, 1.0);
}

TEST(GrapherWidget, every_key_reaches_the_host_and_what_nobody_uses_goes_on) {
    class KeyHost : public GrapherEvents {
      public:
        void KeyDown(int& key, int) override { down.push_back(key); }
        void KeyPress(int& key) override { typed.push_back(key); }
        void KeyUp(int& key, int) override { up.push_back(key); }
        std::vector<int> down, typed, up;
    } host;
    class Behind : public QWidget {
      public:
        std::vector<int> keys;

      protected:
        void keyPressEvent(QKeyEvent* event) override { keys.push_back(event->key()); }
    } behind;
    auto* widget = new GrapherWidget(&behind);
    widget->set_host(&host);
    for (const Qt::Key key :
         {Qt::Key_A, Qt::Key_F1, Qt::Key_PageDown, Qt::Key_Tab, Qt::Key_Escape, Qt::Key_Left})
        QTest::keyClick(widget, key);
    QTest::keyClick(widget, Qt::Key_7, Qt::KeypadModifier);
    EXPECT_EQ(host.down, (std::vector<int>{65, 112, 34, 9, 27, 37, 103}));
    EXPECT_EQ(host.up, (std::vector<int>{65, 112, 34, 9, 27, 37, 103}));
    EXPECT_EQ(host.typed, (std::vector<int>{97, 9, 27, 55}));
    EXPECT_TRUE(std::find(behind.keys.begin(), behind.keys.end(), Qt::Key_F1) != behind.keys.end());
    EXPECT_TRUE(std::find(behind.keys.begin(), behind.keys.end(), Qt::Key_Escape) == behind.keys.end());
    widget->set_host(nullptr);
}

TEST(GrapherWidget, clicking_a_body_tells_its_number) {
    WidgetRig rig;
    QTest::mouseClick(&rig.widget, Qt::LeftButton, {}, rig.pixel(1250, -100));
    EXPECT_EQ(rig.events.seen["GraphicSelected"], 1);
}

TEST(GrapherWidget, a_resize_redraws_and_none_leaves_the_picture) {
    WidgetRig rig;
    const QImage small = rig.widget.grab().toImage();
    rig.widget.resize(1200, 400);
    QApplication::processEvents();
    const QImage large = rig.widget.grab().toImage();
    EXPECT_EQ(large.size(), QSize(1200, 400));
    rig.widget.resize(900, 300);
    QApplication::processEvents();
    EXPECT_EQ(rig.widget.grab().toImage(), small);
}

TEST(GrapherWidget, its_own_border_hides_no_line_of_the_chart) {
    WidgetRig rig;
    rig.widget.chart().DisplayAxes(false);
    rig.widget.chart().Title("");
    rig.widget.chart().BorderStyle(1);
    rig.widget.chart().DisplayChart();
    QApplication::processEvents();
    const QImage shown = rig.widget.grab().toImage();
    EXPECT_EQ(shown.size(), QSize(900, 300));
    const QRgb mid = rig.widget.palette().color(QPalette::Mid).rgb();
    for (const QPoint corner : {QPoint(0, 0), QPoint(899, 0), QPoint(899, 299), QPoint(0, 299)})
        EXPECT_EQ(shown.pixel(corner), mid);
    for (const QPoint corner : {QPoint(1, 1), QPoint(898, 1), QPoint(898, 298), QPoint(1, 298)})
        EXPECT_EQ(shown.pixel(corner), qRgb(0, 0, 0));
    // The pointer is read where the picture stands.
    rig.move({1, 1}, Qt::NoButton);
    QApplication::processEvents();
    EXPECT_NEAR(rig.events.world_x, 0.0, 1e-3);
    rig.move({899, 1}, Qt::NoButton);
    QApplication::processEvents();
    EXPECT_NEAR(rig.events.world_x, 7400.0, 1e-3);
}

TEST(GrapherWidget, a_chart_without_a_ground_shows_the_windows) {
    WidgetRig rig;
    rig.widget.chart().BackStyle(0);
    rig.widget.chart().DisplayChart();
    QApplication::processEvents();
    const QImage shown = rig.widget.grab().toImage();
    EXPECT_EQ(shown.pixel(rig.pixel(6500, 500)), rig.widget.palette().color(QPalette::Window).rgb());
    EXPECT_EQ(shown.pixel(rig.pixel(1250, -100)), qRgb(0x1F, 0x76, 0xB4));
}

TEST(GrapherWidget, a_pane_without_room_does_no_harm) {
    WidgetRig rig;
    for (const QSize size : {QSize(900, 0), QSize(0, 300), QSize(1, 1), QSize(40, 12)}) {
        rig.widget.resize(size);
        QApplication::processEvents();
        rig.widget.chart().DisplayChart();
        rig.wheel(QPoint(0, 0), {0, 120});
    }
    rig.widget.resize(900, 300);
    QApplication::processEvents();
    rig.widget.chart().clear_zoom_values();
    EXPECT_EQ(rig.widget.chart().DisplayChart(), 0);
}

}  // namespace
}  // namespace anomalis::chart
