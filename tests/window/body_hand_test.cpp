#include <memory>

#include <QClipboard>
#include <QPointingDevice>

#include "window/form_tests.h"
#include "window/in_hand.h"

namespace anomalis::window {

/// What a hand meets beside the drag itself: pointer, keys, fingers, runs, pictures.
class BodyHandTest : public QObject {
    Q_OBJECT

  private slots:
    void the_pointer_tells_what_a_press_would_do();
    void a_drag_elsewhere_zooms_and_a_press_selects_as_ever();
    void a_double_click_on_a_handle_takes_hold_and_elsewhere_shows_all();
    void there_is_no_handle_while_a_run_goes_on();
    void a_finger_takes_hold_from_further_off();
    void a_picture_shows_no_handle();
    void arrows_move_the_current_body_by_the_steps_of_its_bars();
    void arrows_with_control_move_the_window_as_ever();
    void delete_takes_the_body_away_and_undo_brings_it_back();
    void delete_in_a_box_deletes_a_letter();
};

void BodyHandTest::the_pointer_tells_what_a_press_would_do() {
    InHand sample;
    const auto shape = [&](QPoint at) {
        sample.hover(at);
        return sample.widget().cursor().shape();
    };
    QCOMPARE(shape(sample.pixel(HandleKind::place)), Qt::SizeAllCursor);
    QCOMPARE(shape(sample.pixel(HandleKind::bottom)), Qt::SizeVerCursor);
    QCOMPARE(shape(sample.pixel(HandleKind::far_corner)), Qt::SizeBDiagCursor);
    QCOMPARE(shape(sample.pixel(HandleKind::dip)), Qt::BitmapCursor);
    const ModelBody& other = sample.body(2);
    const QPoint inside =
        sample.pixel_of(sample.chart().UserToSurface({other.distance.value + 40.0, other.top.value - 30.0}));
    QCOMPARE(shape(inside), Qt::PointingHandCursor);
    QCOMPARE(shape(sample.pixel_of(sample.chart().UserToSurface({300, -40}))), Qt::ArrowCursor);
    shape(sample.pixel(HandleKind::place));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&sample.widget(), &leave);
    QCOMPARE(sample.widget().cursor().shape(), Qt::ArrowCursor);
}

void BodyHandTest::a_drag_elsewhere_zooms_and_a_press_selects_as_ever() {
    InHand sample;
    const auto before = sample.values();
    const QPoint empty = sample.pixel_of(sample.chart().UserToSurface({300, -40}));
    sample.press(empty);
    sample.move(empty + QPoint(0, 40));
    sample.release(empty + QPoint(0, 40));
    QVERIFY(sample.chart().CurrentZoom().zoom_x > 1.5);
    QTest::mouseDClick(&sample.widget(), Qt::LeftButton, {}, empty);
    QCOMPARE(sample.chart().CurrentZoom().zoom_x, 1.0);
    const ModelBody& other = sample.body(2);
    QTest::mouseClick(
        &sample.widget(), Qt::LeftButton, {},
        sample.pixel_of(sample.chart().UserToSurface({other.distance.value + 40.0, other.top.value - 30.0})));
    QCOMPARE(sample.current(), 2);
    QVERIFY(sample.values() == before);
}

void BodyHandTest::a_double_click_on_a_handle_takes_hold_and_elsewhere_shows_all() {
    InHand sample;
    sample.chart().SetZoomValues(1.2, 0.5, 1.2, 0.5);
    const auto before = sample.values();
    const QPoint at = sample.pixel(HandleKind::place);
    QMouseEvent twice(QEvent::MouseButtonDblClick, at, sample.widget().mapToGlobal(at), Qt::LeftButton,
                      Qt::LeftButton, {});
    QApplication::sendEvent(&sample.widget(), &twice);
    sample.move(at + QPoint(30, 0));
    sample.release(at + QPoint(30, 0));
    QVERIFY(sample.values() != before);
    QCOMPARE(sample.chart().CurrentZoom().zoom_x, 1.2);
}

void BodyHandTest::there_is_no_handle_while_a_run_goes_on() {
    InHand sample;
    const auto before = sample.values();
    const QPoint at = sample.pixel(HandleKind::place);
    sample.session.inversion.running = true;
    sample.form->charts().view().redraw();
    QCOMPARE(sample.marks(), std::size_t{0});
    sample.press(at);
    sample.move(at + QPoint(60, 0));
    sample.release(at + QPoint(60, 0));
    QTest::keyClick(&sample.widget(), Qt::Key_Left);
    QTest::keyClick(&sample.widget(), Qt::Key_Delete);
    QVERIFY(sample.values() == before);
    QCOMPARE(sample.workspace().body_count, 2);
    sample.session.inversion.running = false;
    sample.form->charts().view().redraw();
    QVERIFY(sample.marks() >= 4);
}

void BodyHandTest::a_finger_takes_hold_from_further_off() {
    InHand sample;
    const float before = sample.body(1).distance.value;
    const double metres = sample.metres();
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    const QPoint from = sample.pixel(HandleKind::place) - QPoint(0, 16);
    QTest::touchEvent(&sample.widget(), screen.get()).press(0, from, &sample.widget());
    QTest::touchEvent(&sample.widget(), screen.get()).move(0, from + QPoint(30, 0), &sample.widget());
    QTest::touchEvent(&sample.widget(), screen.get()).move(0, from + QPoint(60, 0), &sample.widget());
    QApplication::processEvents();
    QTest::touchEvent(&sample.widget(), screen.get()).release(0, from + QPoint(60, 0), &sample.widget());
    QVERIFY(std::abs(sample.body(1).distance.value - before - 60 * metres) < 0.1 * metres);
    // A mouse so far off takes hold of nothing.
    const auto now = sample.values();
    const QPoint beside = sample.pixel(HandleKind::place) - QPoint(0, 16);
    sample.press(beside);
    sample.move(beside + QPoint(60, 0));
    sample.release(beside + QPoint(60, 0));
    QVERIFY(sample.values() == now);
}

void BodyHandTest::a_picture_shows_no_handle() {
    InHand sample;
    sample.body(1).colour = 0x00AA00;  // what is there without handle and highlight
    sample.told();
    sample.widget().repaint();
    const auto shown = [&](const QImage& picture, QPoint at) { return picture.pixelColor(at); };
    const QPoint at = sample.pixel(HandleKind::place);
    const QImage with = sample.widget().grab().toImage();
    QCOMPARE(shown(with, at), QColor(Qt::white));
    sample.click("Command_Save_Screenshot_0");
    const QImage saved = QApplication::clipboard()->image();
    const QPoint in_picture = sample.widget().mapTo(&sample.find<QWidget>("Image_splitter"), at);
    QVERIFY(shown(saved, in_picture) != QColor(Qt::white));
    QVERIFY2(sample.marks() >= 4, "they are back");
}

void BodyHandTest::arrows_move_the_current_body_by_the_steps_of_its_bars() {
    for (const bool plan : {false, true}) {
        InHand sample(plan);
        const float distance = sample.body(1).distance.value, top = sample.body(1).top.value;
        const std::size_t steps = sample.steps();
        sample.widget().setFocus();
        QTest::keyClick(&sample.widget(), Qt::Key_Right);
        QCOMPARE(sample.body(1).distance.value, distance + 10);
        QTest::keyClick(&sample.widget(), Qt::Key_Left, Qt::ShiftModifier);
        QCOMPARE(sample.body(1).distance.value, distance + 9);
        QCOMPARE(sample.steps(), steps + 1);
        QTest::keyClick(&sample.widget(), Qt::Key_Down);
        QVERIFY(sample.body(1).top.value < top);
        const float lower = sample.body(1).top.value;
        QTest::keyClick(&sample.widget(), Qt::Key_Up, Qt::ShiftModifier);
        QVERIFY(sample.body(1).top.value > lower && sample.body(1).top.value < top);
        QCOMPARE(sample.steps(), steps + 2);
        sample.trigger("menu_undo");
        sample.trigger("menu_undo");
        QCOMPARE(sample.body(1).distance.value, distance);
        QCOMPARE(sample.body(1).top.value, top);
    }
}

void BodyHandTest::arrows_with_control_move_the_window_as_ever() {
    InHand sample;
    const auto before = sample.values();
    sample.chart().SetZoomValues(4, 0.5, 4, 0.5);
    const double low = sample.chart().ViewLimits().x_low;
    QTest::keyClick(&sample.widget(), Qt::Key_Right, Qt::ControlModifier);
    QVERIFY(sample.chart().ViewLimits().x_low > low);
    QVERIFY(sample.values() == before);
    // On a chart of curves the bare arrows do it too.
    chart::GrapherWidget& curves = sample.form->charts().chart_widget(edit::chart_mag);
    const double now = curves.chart().ViewLimits().x_low;
    QTest::keyClick(&curves, Qt::Key_Left);
    QVERIFY(curves.chart().ViewLimits().x_low < now);
    QVERIFY(sample.values() == before);
    // Without a body they do so everywhere.
    sample.trigger("menu_delete_body_0");
    sample.chart().SetZoomValues(4, 0.5, 4, 0.5);
    const double bare = sample.chart().ViewLimits().x_low;
    QTest::keyClick(&sample.widget(), Qt::Key_Right);
    QVERIFY(sample.chart().ViewLimits().x_low > bare);
}

void BodyHandTest::delete_takes_the_body_away_and_undo_brings_it_back() {
    InHand sample;
    const auto before = sample.values();
    QTest::keyClick(&sample.widget(), Qt::Key_Delete);
    QCOMPARE(sample.workspace().body_count, 1);
    QTest::keyClick(&sample.widget(), Qt::Key_Delete);
    QCOMPARE(sample.workspace().body_count, 0);
    QTest::keyClick(&sample.widget(), Qt::Key_Delete);
    sample.trigger("menu_undo");
    sample.trigger("menu_undo");
    QCOMPARE(sample.workspace().body_count, 2);
    QVERIFY(sample.values() == before);
    auto& curves = sample.form->charts().chart_widget(edit::chart_mag);
    curves.setFocus();
    QTest::keyClick(&curves, Qt::Key_Delete);
    QCOMPARE(sample.workspace().body_count, 2);
}

void BodyHandTest::delete_in_a_box_deletes_a_letter() {
    InHand sample;
    auto& box = sample.find<QLineEdit>("Text_body_name");
    box.setFocus();
    box.setCursorPosition(0);
    QTest::keyClick(sample.form->windowHandle(), Qt::Key_Delete);
    QCOMPARE(box.text(), QString("yke"));
    QCOMPARE(sample.workspace().body_count, 2);
}

QObject* make_body_hand_test() {
    return new BodyHandTest;
}

}  // namespace anomalis::window

#include "body_hand_test.moc"
