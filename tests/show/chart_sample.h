#pragma once

#include <array>

#include "chart/ax_grapher.h"
#include "edit/line_sample.h"
#include "flow/model_view.h"
#include "support/recording_device.h"

namespace anomalis::show {

/// A loaded line whose charts draw on recording devices, with a host that remembers what it was told.
struct ChartSample : edit::LineSample, flow::ModelViewHost {
    explicit ChartSample(int count = stations) : edit::LineSample(count) {
        for (std::size_t i = 0; i < charts.size(); ++i) {
            devices[i] = std::make_unique<chart::RecordingDevice>(15000, 3000);
            charts[i] = std::make_unique<chart::AX_Grapher>();
            charts[i]->SetSurface(devices[i].get());
        }
        std::array<chart::AX_Grapher*, edit::model_chart_count> profiles{};
        for (std::size_t i = 0; i < profiles.size(); ++i) profiles[i] = charts[i].get();
        flow::ModelViewHost& host = *this;
        view = std::make_unique<flow::ModelView>(workbench, profiles, plan(), host);
        for (int i = 0; i <= edit::model_chart_count; ++i)
            charts[static_cast<std::size_t>(i)]->SetEvents(&view->events(i));
        view->charts().set_up(true);
        view->set_on_page(true);
        load();
        workbench.view.current_body = 1;
    }

    chart::AX_Grapher& chart(int i) { return *charts.at(static_cast<std::size_t>(i)); }
    chart::AX_Grapher& plan() { return *charts.back(); }
    chart::RecordingDevice& device(int i) { return *devices.at(static_cast<std::size_t>(i)); }
    void forget() {
        for (auto& device : devices) device->forget();
    }
    /// Presses and releases the left button over a place in user units.
    void click(int i, chart::Point user) {
        const chart::Point at = chart(i).UserToSurface(user);
        const auto x = static_cast<float>(at.x);
        const auto y = static_cast<float>(device(i).height() - at.y);
        chart(i).HandleMouseDown(1, 0, x, y);
        chart(i).HandleMouseUp(1, 0, x, y);
    }
    void move(int i, chart::Point user) {
        const chart::Point at = chart(i).UserToSurface(user);
        chart(i).HandleMouseMove(0, 0, static_cast<float>(at.x),
                                 static_cast<float>(device(i).height() - at.y));
    }

    void arrange_charts(const std::array<bool, edit::model_chart_count>& shown) override { arranged = shown; }
    void show_pointer(const PointerPanels& panels) override { pointer = panels; }
    void show_misfit(const MisfitPair& pair) override {
        misfit = pair;
        ++displays;
    }
    void show_base_level(int channel, const std::string& text) override {
        (channel == channel_mag ? base_levels : grav_base_levels).push_back(text);
    }
    void show_window(const edit::ShownWindow& shown) override { window = shown; }
    void show_current_body() override { ++selections; }

    std::array<std::unique_ptr<chart::RecordingDevice>, edit::model_chart_count + 1> devices;
    std::array<std::unique_ptr<chart::AX_Grapher>, edit::model_chart_count + 1> charts;
    std::unique_ptr<flow::ModelView> view;

    std::array<bool, edit::model_chart_count> arranged{};
    PointerPanels pointer;
    MisfitPair misfit{};
    std::vector<std::string> base_levels, grav_base_levels;  ///< as the boxes were told
    edit::ShownWindow window;
    int displays = 0;
    int selections = 0;
};

}  // namespace anomalis::show
