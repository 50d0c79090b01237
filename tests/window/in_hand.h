#pragma once

#include <cmath>

#include <QApplication>

#include "edit/change.h"
#include "show/handles/handle_marks.h"
#include "show/handles/plan_handles.h"
#include "show/handles/section_handles.h"
#include "window/modelled_form.h"
#include "window/panels/charts_panel.h"

namespace anomalis::window {

using show::HandleKind;

/// Two sheets on show, the first one in the hand.
struct InHand : Modelled {
    explicit InHand(bool plan = false) : plan_(plan) {
        QTest::qWait(90);  // a resize draws once more
        form->activateWindow();
        if (plan) {
            body(1).length.value = 400;
            told();
            form->charts().show_plan(true);
            QTest::qWait(90);
        }
    }
    /// The body was changed by nobody's hand.
    void told() {
        edit::note_change(form->workbench(), {"test", "", false});
        form->news().tell(News::parameters);
    }
    chart::GrapherWidget& widget() {
        return plan_ ? form->charts().plan_widget() : form->charts().chart_widget(edit::chart_section);
    }
    chart::AX_Grapher& chart() { return widget().chart(); }
    show::HandleView view() {
        return {chart().ViewLimits(), chart().XAxisScale(), chart().YAxisScale(), chart().YAxisMin(),
                form->workbench().view.profile_window_max};
    }
    std::vector<show::Handle> handles() {
        return plan_ ? show::plan_handles(workspace(), body(current()), view())
                     : show::section_handles(workspace(), body(current()), view());
    }
    show::Handle handle(HandleKind kind) {
        for (const show::Handle& h : handles())
            if (h.kind == kind) return h;
        throw std::runtime_error("no such handle");
    }
    QPoint pixel_of(chart::Point surface) {
        return {static_cast<int>(std::lround(surface.x / chart::units_per_screen_pixel)),
                static_cast<int>(std::lround(widget().height() - surface.y / chart::units_per_screen_pixel))};
    }
    QPoint pixel(HandleKind kind) { return pixel_of(show::handle_place(chart(), handle(kind))); }
    void press(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QTest::mousePress(&widget(), Qt::LeftButton, keys, at);
    }
    void move(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(QEvent::MouseMove, at, widget().mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                          keys);
        QApplication::sendEvent(&widget(), &event);
        QApplication::processEvents();
    }
    void hover(QPoint at) {
        QTest::mouseMove(&widget(), at);
        QApplication::processEvents();
    }
    void release(QPoint at, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseRelease(&widget(), Qt::LeftButton, keys, at);
    }
    void drag(HandleKind kind, QPoint by, Qt::KeyboardModifiers keys = {}) {
        const QPoint from = pixel(kind);
        press(from, keys);
        move(from + by / 2, keys);
        move(from + by, keys);
        release(from + by, keys);
    }
    std::vector<float> values() {
        std::vector<float> all;
        for (const BodyParameter& row : body_parameters()) all.push_back((body(1).*row.slot).value);
        return all;
    }
    std::vector<float> curves() {
        std::vector<float> all;
        for (const int row : {row_residual, row_gradient})
            for (const float value : workspace().mag.data.row(row, stage_calculated)) all.push_back(value);
        return all;
    }
    std::size_t steps() { return form->workbench().history.steps(); }
    std::size_t marks() { return chart().ShownTopMarks().marks.size(); }
    /// Metres a pixel.
    double metres() { return chart::units_per_screen_pixel / chart().XAxisScale(); }

  private:
    bool plan_;
};

}  // namespace anomalis::window
