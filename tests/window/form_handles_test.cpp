#include "edit/body_grid.h"
#include "window/form_tests.h"
#include "window/in_hand.h"

namespace anomalis::window {

/// Bodies as a hand drags them, in the section and in the plan.
class FormHandlesTest : public QObject {
    Q_OBJECT

  private slots:
    void the_current_body_alone_has_handles();
    void a_drag_of_the_top_moves_the_body_and_is_one_step();
    void every_handle_of_the_section_works();
    void every_handle_of_the_plan_works();
    void escape_puts_everything_back_bit_for_bit();
    void another_button_gives_the_drag_up();
    void shift_makes_a_tenth_of_the_way();
    void grid_and_curves_follow_while_it_is_dragged();
    void a_note_tells_the_values_with_their_units();
    void the_section_stays_while_a_body_is_in_the_hand();
    void a_click_on_a_handle_changes_nothing();
    void a_fixed_body_is_moved_by_hand_all_the_same();
    void an_undo_in_the_middle_takes_the_drag_back();
    void what_is_half_typed_is_taken_over_first();
};

void FormHandlesTest::the_current_body_alone_has_handles() {
    InHand sample;
    QVERIFY(sample.marks() >= 3);
    const auto first = sample.chart().ShownTopMarks();
    sample.form->charts().view().select_body(2);
    QVERIFY(sample.marks() >= 3);
    QVERIFY(!(sample.chart().ShownTopMarks() == first));
    sample.form->charts().show_plan(true);
    QCOMPARE(sample.marks(), std::size_t{0});
    QVERIFY(!sample.form->charts().plan_widget().chart().ShownTopMarks().marks.empty());
    sample.form->charts().show_plan(false);
    sample.trigger("menu_delete_body_0");
    QCOMPARE(sample.marks(), std::size_t{0});
}

void FormHandlesTest::a_drag_of_the_top_moves_the_body_and_is_one_step() {
    InHand sample;
    const float distance = sample.body(1).distance.value, top = sample.body(1).top.value;
    const std::size_t steps = sample.steps();
    const double metres = sample.metres();
    const double metres_up = chart::units_per_screen_pixel / sample.chart().YAxisScale();
    sample.drag(HandleKind::place, {60, 20});
    QVERIFY(std::abs(sample.body(1).distance.value - distance - 60 * metres) < 0.01 * metres);
    QVERIFY(std::abs(sample.body(1).top.value - top + 20 * metres_up) < 0.01 * metres_up);
    QCOMPARE(sample.steps(), steps + 1);
    QCOMPARE(sample.form->workbench().history.undo_name(), std::string("place of body 1"));
    QVERIFY(sample.form->workbench().unsaved);
    sample.trigger("menu_undo");
    QCOMPARE(sample.body(1).distance.value, distance);
    QCOMPARE(sample.body(1).top.value, top);
    QCOMPARE(sample.steps(), steps);
    QCOMPARE(sample.prompts.messages, std::vector<std::string>());
}

void FormHandlesTest::every_handle_of_the_section_works() {
    InHand sample;
    sample.body(1).dip.value = 70;
    sample.body(1).width.value = 300;
    sample.told();
    const auto all = sample.handles();
    QCOMPARE(all.size(), std::size_t{7});
    for (const show::Handle& handle : all) {
        const auto before = sample.values();
        const std::size_t steps = sample.steps();
        sample.drag(handle.kind, {9, 8});
        QVERIFY2(sample.values() != before, qPrintable(QString::number(static_cast<int>(handle.kind))));
        QCOMPARE(sample.steps(), steps + 1);
        sample.trigger("menu_undo");
        QVERIFY(sample.values() == before);
    }
}

void FormHandlesTest::every_handle_of_the_plan_works() {
    InHand sample(true);
    for (const show::Handle& handle : sample.handles()) {
        const auto before = sample.values();
        sample.drag(handle.kind, {12, 12});
        QVERIFY2(sample.values() != before, qPrintable(QString::number(static_cast<int>(handle.kind))));
        sample.trigger("menu_undo");
        QVERIFY(sample.values() == before);
    }
    QCOMPARE(sample.handles().size(), std::size_t{4});
}

void FormHandlesTest::escape_puts_everything_back_bit_for_bit() {
    for (const bool plan : {false, true}) {
        InHand sample(plan);
        sample.form->news().tell(News::parameters);
        const auto before = sample.values();
        const auto curves = sample.curves();
        const double east = sample.body(1).east;
        const std::size_t steps = sample.steps();
        const bool unsaved = sample.form->workbench().unsaved;
        const QPoint from = sample.pixel(HandleKind::place);
        sample.press(from);
        sample.move(from + QPoint(70, 15));
        QVERIFY(sample.values() != before);
        QVERIFY(sample.curves() != curves);
        QTest::keyClick(&sample.widget(), Qt::Key_Escape);
        QVERIFY(sample.values() == before);
        QVERIFY(sample.curves() == curves);
        QCOMPARE(sample.body(1).east, east);
        sample.move(from + QPoint(90, 15));
        sample.release(from + QPoint(90, 15));
        QVERIFY2(sample.values() == before, "the hand let go");
        QCOMPARE(sample.steps(), steps);
        QCOMPARE(sample.form->workbench().unsaved, unsaved);
    }
}

void FormHandlesTest::another_button_gives_the_drag_up() {
    InHand sample;
    const auto before = sample.values();
    const QPoint from = sample.pixel(HandleKind::place);
    sample.press(from);
    sample.move(from + QPoint(50, 0));
    QTest::mousePress(&sample.widget(), Qt::RightButton, {}, from + QPoint(50, 0));
    QVERIFY(sample.values() == before);
    QVERIFY(!sample.widget().menu()->isVisible());
}

void FormHandlesTest::shift_makes_a_tenth_of_the_way() {
    InHand sample;
    const float before = sample.body(1).distance.value;
    const double metres = sample.metres();
    sample.drag(HandleKind::place, {100, 0}, Qt::ShiftModifier);
    QVERIFY(std::abs(sample.body(1).distance.value - before - 10 * metres) < 0.01 * metres);
    // Shift in the middle of a drag slows it from there on, without a jump.
    const float now = sample.body(1).distance.value;
    const QPoint from = sample.pixel(HandleKind::place);
    sample.press(from);
    sample.move(from + QPoint(50, 0));
    sample.move(from + QPoint(150, 0), Qt::ShiftModifier);
    sample.release(from + QPoint(150, 0), Qt::ShiftModifier);
    QVERIFY(std::abs(sample.body(1).distance.value - now - 60 * metres) < 0.01 * metres);
}

void FormHandlesTest::grid_and_curves_follow_while_it_is_dragged() {
    InHand sample;
    const auto curves = sample.curves();
    const QString shown = sample.shown(param_distance, edit::grid_value);
    const QString misfit = sample.status(7);
    const QPoint from = sample.pixel(HandleKind::place);
    sample.press(from);
    sample.move(from + QPoint(80, 0));
    QVERIFY(sample.shown(param_distance, edit::grid_value) != shown);
    QCOMPARE(sample.shown(param_distance, edit::grid_value),
             QString::number(static_cast<double>(sample.body(1).distance.value), 'f', 1));
    QVERIFY(sample.curves() != curves);
    QVERIFY(sample.status(7) != misfit);
    sample.release(from + QPoint(80, 0));
}

void FormHandlesTest::a_note_tells_the_values_with_their_units() {
    InHand sample;
    const QPoint from = sample.pixel(HandleKind::place);
    QVERIFY(!sample.chart().ShownTopMarks().note);
    sample.press(from);
    sample.move(from + QPoint(40, 10));
    const auto note = sample.chart().ShownTopMarks().note;
    QVERIFY(note.has_value());
    QCOMPARE(note->lines.size(), std::size_t{2});
    QCOMPARE(QString::fromStdString(note->lines[0]),
             "Distance " + sample.shown(param_distance, edit::grid_value) + " m");
    QCOMPARE(QString::fromStdString(note->lines[1]),
             "Top " + sample.shown(param_top, edit::grid_value) + " m");
    QCOMPARE(sample.marks(), std::size_t{1});
    sample.release(from + QPoint(40, 10));
    QVERIFY(!sample.chart().ShownTopMarks().note);
}

void FormHandlesTest::the_section_stays_while_a_body_is_in_the_hand() {
    InHand sample;
    const double low = sample.chart().ViewLimits().y_low;
    const QPoint from = sample.pixel(HandleKind::place);
    sample.press(from);
    const chart::Rect plot = sample.chart().PlotRect();
    const QPoint to(from.x(), sample.pixel_of({0, plot.y_low + 300}).y());
    sample.move(to);
    QVERIFY(std::abs(sample.chart().ViewLimits().y_low - low) < 1);
    const QPoint handle = sample.pixel(HandleKind::place);
    QVERIFY2((handle - to).manhattanLength() <= 2, "the handle is under the pointer");
    sample.release(to);
    QVERIFY(!sample.form->workbench().view.body_held);
}

void FormHandlesTest::a_click_on_a_handle_changes_nothing() {
    InHand sample;
    const auto before = sample.values();
    const std::size_t steps = sample.steps();
    sample.session.model_changed = false;
    const QPoint at = sample.pixel(HandleKind::dip);
    sample.press(at + QPoint(1, 1));
    sample.move(at + QPoint(2, 1));
    sample.release(at + QPoint(2, 1));
    QVERIFY(sample.values() == before);
    QCOMPARE(sample.steps(), steps);
    QVERIFY(!sample.session.model_changed);
}

void FormHandlesTest::a_fixed_body_is_moved_by_hand_all_the_same() {
    InHand sample;
    sample.body(1).vary = 0;
    sample.body(1).distance.vary = 0;
    sample.body(1).distance.min = sample.body(1).distance.value - 1;
    const float before = sample.body(1).distance.value;
    sample.drag(HandleKind::place, {40, 0});
    QVERIFY(sample.body(1).distance.value > before + 10);
    QCOMPARE(sample.body(1).distance.vary, 0.0F);
    QCOMPARE(sample.body(1).vary, 0);
}

void FormHandlesTest::an_undo_in_the_middle_takes_the_drag_back() {
    InHand sample;
    const auto before = sample.values();
    const std::size_t steps = sample.steps();
    const QPoint from = sample.pixel(HandleKind::place);
    sample.press(from);
    sample.move(from + QPoint(60, 0));
    sample.trigger("menu_undo");
    QVERIFY(sample.values() == before);
    QCOMPARE(sample.steps(), steps);
    sample.move(from + QPoint(120, 0));
    sample.release(from + QPoint(120, 0));
    QVERIFY2(sample.values() == before, "the hand is empty");
    QVERIFY(!sample.form->workbench().view.body_held);
}

void FormHandlesTest::what_is_half_typed_is_taken_over_first() {
    InHand sample;
    sample.click_cell(param_dip, edit::grid_value);
    sample.editor()->selectAll();
    QTest::keyClicks(sample.editor(), "80");
    const QPoint at = sample.pixel(HandleKind::place);
    sample.press(at);
    QCOMPARE(sample.body(1).dip.value, 80.0F);
    sample.move(at + QPoint(30, 0));
    sample.release(at + QPoint(30, 0));
    QCOMPARE(sample.body(1).dip.value, 80.0F);
    sample.trigger("menu_undo");
    QCOMPARE(sample.body(1).dip.value, 80.0F);
}

QObject* make_form_handles_test() {
    return new FormHandlesTest;
}

}  // namespace anomalis::window

#include "form_handles_test.moc"
