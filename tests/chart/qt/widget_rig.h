#pragma once

#include <map>
#include <string>

#include <QApplication>
#include <QTest>

#include "chart/qt/chart_dialogs.h"
#include "chart/qt/grapher_widget.h"
#include "sample_chart.h"

namespace anomalis::chart {

/// Counts what the chart tells its host.
class EventCount : public GrapherEvents {
  public:
    std::map<std::string, int> seen;
    double world_x = 0;
    void MouseDown(int, int, float, float) override { ++seen["MouseDown"]; }
    void MouseMove(int, int, float, float, int outside, double x, double, double, double) override {
        ++seen["MouseMove"];
        if (outside == 0) world_x = x;
    }
    void MouseUp(int, int, float, float) override { ++seen["MouseUp"]; }
    void MouseWheel(int, int, int, int) override { ++seen["MouseWheel"]; }
    void ViewChanged() override { ++seen["ViewChanged"]; }
    void ZoomCleared() override { ++seen["ZoomCleared"]; }
    void MenuRequested(float, float) override { ++seen["MenuRequested"]; }
    void GraphicSelected(int, int, double, double) override { ++seen["GraphicSelected"]; }
};

/// Answers the menu's questions by script and writes down what was said.
class ScriptedDialogs : public ChartDialogs {
  public:
    std::optional<QString> path;
    bool yes = false;
    QString printer_file;
    QStringList messages;
    QString proposal;  ///< that the last question for a path came with
    QStringList files;
    std::optional<QString> save_path(QWidget*, const SaveQuestion& question) override {
        proposal = question.proposal;
        return path;
    }
    void done(QWidget* parent, const QString& text, const QString& file) override {
        files << file;
        ChartDialogs::done(parent, text, file);
    }
    bool ask(QWidget*, const QString& question) override {
        messages << question;
        return yes;
    }
    void message(QWidget*, const QString& text) override { messages << text; }
    bool choose_printer(QWidget*, QPrinter& printer) override;
};

/// A shown widget of 900 x 300 with the sample chart.
struct WidgetRig {
    GrapherWidget widget;
    EventCount events;
    ScriptedDialogs dialogs;

    WidgetRig() {
        widget.resize(900, 300);
        widget.set_host(&events);
        widget.set_dialogs(&dialogs);
        widget.show();
        QApplication::processEvents();
        fill_sample_chart(widget.chart());
        QApplication::processEvents();
    }
    /// The pixel of a point in user units.
    QPoint pixel(double x, double y) {
        const Point at = widget.chart().UserToSurface({x, y});
        return {static_cast<int>(at.x / units_per_screen_pixel),
                static_cast<int>(300 - at.y / units_per_screen_pixel)};
    }
    void move(QPoint at, Qt::MouseButtons buttons) {
        QMouseEvent event(QEvent::MouseMove, at, widget.mapToGlobal(at), Qt::NoButton, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(&widget, &event);
    }
    void wheel(QPoint at, QPoint angle) {
        QWheelEvent event(at, widget.mapToGlobal(at), {}, angle, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
        QApplication::processEvents();
    }
};

}  // namespace anomalis::chart
