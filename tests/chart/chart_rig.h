#pragma once

#include <functional>
#include <string>
#include <vector>

#include "chart/ax_grapher.h"
#include "support/recording_device.h"

// The charts of the tests: a surface of 900 x 300 pixels and a text in which every character is 90 wide and
// 165 high, so that every figure can be reckoned by hand.
namespace anomalis::chart {

using Kind = RecordingDevice::Kind;
using Layer = DrawingDevice::Layer;

/// Writes down what a chart tells its host, as "Name(arguments)".
class EventLog : public GrapherEvents {
  public:
    struct Move {
        int outside = 0;
        double x = 0.0, y = 0.0, dx = 0.0, dy = 0.0;
    };
    void Click() override { note("Click"); }
    void DblClick() override { note("DblClick"); }
    void KeyDown(int& key, int shift) override {
        note("KeyDown", key, shift);
        if (swallow_keys) key = 0;
    }
    void KeyPress(int& key) override { note("KeyPress", key); }
    void KeyUp(int& key, int shift) override { note("KeyUp", key, shift); }
    void ZoomCleared() override { note("ZoomCleared"); }
    void MouseDown(int button, int shift, float, float) override { note("MouseDown", button, shift); }
    void MouseMove(int, int, float, float, int outside, double x, double y, double dx, double dy) override {
        note("MouseMove");
        last_move = {outside, x, y, dx, dy};
    }
    void MouseUp(int button, int shift, float, float) override { note("MouseUp", button, shift); }
    void MouseWheel(int keys, int delta, int, int) override { note("MouseWheel", keys, delta); }
    void PointSelected(int button, int group, int series, int point) override {
        note("PointSelected", button, group, series, point);
        if (on_selection) on_selection();
    }
    void GraphicSelected(int button, int index, double x, double y) override {
        note("GraphicSelected", button, index);
        last_world = {x, y};
        if (on_selection) on_selection();
    }
    void ChartReset() override { note("ChartReset"); }
    void ViewChanged() override {
        note("ViewChanged");
        if (on_view) on_view();
    }
    void MenuRequested(float, float) override { note("MenuRequested"); }
    void Failed(const std::string& text) override { failures.push_back(text); }

    int count(const std::string& name) const {
        int found = 0;
        for (const std::string& text : names) found += text.substr(0, text.find('(')) == name ? 1 : 0;
        return found;
    }
    bool has(const std::string& text) const {
        for (const std::string& name : names)
            if (name == text) return true;
        return false;
    }
    void forget() {
        names.clear();
        failures.clear();
    }

    std::vector<std::string> names;
    std::vector<std::string> failures;
    Move last_move;
    Point last_world;
    bool swallow_keys = false;
    std::function<void()> on_selection;
    std::function<void()> on_view;

  private:
    template <class... Numbers>
    void note(const char* name, Numbers... numbers) {
        std::string text = name;
        std::string separator = "(";
        ((text += separator + std::to_string(numbers), separator = ", "), ...);
        names.push_back(sizeof...(numbers) == 0 ? text : text + ")");
    }
};

/// A chart on its surface with a log of its events.
struct Rig {
    RecordingDevice device{13500.0, 4500.0};
    EventLog log;
    AX_Grapher chart;

    Rig() {
        chart.SetSurface(&device);
        chart.SetEvents(&log);
        chart.BackColor(white);
        chart.ForeColor(black);
    }
    Rig(const Rig&) = delete;
    Rig& operator=(const Rig&) = delete;

    /// Titles, numbers outside on both sides, linear.
    void make_a() {
        chart.XAxisMin(0.0);
        chart.XAxisMax(7400.0);
        chart.XTickInterval(1000.0);
        chart.YAxisMin(-300.0);
        chart.YAxisMax(700.0);
        chart.YTickInterval(100.0);
        chart.Title("Residual");
        chart.XAxisLabel("Distance");
        chart.YAxisLabel("nT");
    }
    /// The same with numbers at the bottom and the left only.
    void make_b() {
        make_a();
        chart.XAxisLabellingPosition(0);
        chart.YAxisLabellingPosition(0);
    }
    /// Without axes, border and titles: the plot is the whole surface.
    void make_plain() {
        make_a();
        chart.Title("");
        chart.XAxisLabel("");
        chart.YAxisLabel("");
        chart.DisplayAxes(false);
        chart.DisplayBorder(false);
    }
    void set_limits(double x_low, double x_high, double y_low, double y_high) {
        chart.XAxisMin(x_low);
        chart.XAxisMax(x_high);
        chart.YAxisMin(y_low);
        chart.YAxisMax(y_high);
    }
    /// One X row and one row of values with a style code.
    void register_series(const std::vector<double>& xs, const std::vector<double>& ys,
                         double code = chart_type_series) {
        const std::vector<ChartRow> rows{{x_row, xs}, {code, ys}};
        chart.RegisterData(rows);
    }
    /// Where a place of the surface (y up) is for the mouse (y down).
    static float down(double y) { return static_cast<float>(4500.0 - y); }

    void press(int button, double x, double y, int shift = 0) {
        chart.HandleMouseDown(button, shift, static_cast<float>(x), down(y));
    }
    void move(int buttons, double x, double y, int shift = 0) {
        chart.HandleMouseMove(buttons, shift, static_cast<float>(x), down(y));
    }
    void release(int button, double x, double y, int shift = 0) {
        chart.HandleMouseUp(button, shift, static_cast<float>(x), down(y));
    }
};

}  // namespace anomalis::chart
