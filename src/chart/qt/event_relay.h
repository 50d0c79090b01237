#pragma once

#include "chart/grapher_events.h"

namespace anomalis::chart {

/// Hands every event of a chart on to a host, if there is one.
class EventRelay : public GrapherEvents {
  public:
    void set_host(GrapherEvents* host) { host_ = host; }
    GrapherEvents* host() const { return host_; }

    void Click() override {
        tell([](auto& h) { h.Click(); });
    }
    void DblClick() override {
        tell([](auto& h) { h.DblClick(); });
    }
    void KeyDown(int& code, int shift) override {
        tell([&](auto& h) { h.KeyDown(code, shift); });
    }
    void KeyPress(int& ascii) override {
        tell([&](auto& h) { h.KeyPress(ascii); });
    }
    void KeyUp(int& code, int shift) override {
        tell([&](auto& h) { h.KeyUp(code, shift); });
    }
    void ZoomCleared() override {
        tell([](auto& h) { h.ZoomCleared(); });
    }
    void MouseDown(int button, int shift, float x, float y) override {
        tell([&](auto& h) { h.MouseDown(button, shift, x, y); });
    }
    void MouseMove(int button, int shift, float x, float y, int outside, double world_x, double world_y,
                   double delta_x, double delta_y) override {
        tell([&](auto& h) { h.MouseMove(button, shift, x, y, outside, world_x, world_y, delta_x, delta_y); });
    }
    void MouseUp(int button, int shift, float x, float y) override {
        tell([&](auto& h) { h.MouseUp(button, shift, x, y); });
    }
    void MouseWheel(int keys, int delta, int x, int y) override {
        tell([&](auto& h) { h.MouseWheel(keys, delta, x, y); });
    }
    void PointSelected(int button, int group, int series, int point) override {
        tell([&](auto& h) { h.PointSelected(button, group, series, point); });
    }
    void GraphicSelected(int button, int index, double world_x, double world_y) override {
        tell([&](auto& h) { h.GraphicSelected(button, index, world_x, world_y); });
    }
    bool HoldPress(int button, int shift, float x, float y) override {
        return host_ && host_->HoldPress(button, shift, x, y);
    }
    void HeldMoved(int shift, float x, float y) override {
        tell([&](auto& h) { h.HeldMoved(shift, x, y); });
    }
    void HeldEnded(bool given_up) override {
        tell([&](auto& h) { h.HeldEnded(given_up); });
    }
    void PointerLeft() override {
        tell([](auto& h) { h.PointerLeft(); });
    }
    void ChartReset() override {
        tell([](auto& h) { h.ChartReset(); });
    }
    void ViewChanged() override {
        tell([](auto& h) { h.ViewChanged(); });
    }
    void MenuRequested(float x, float y) override {
        tell([&](auto& h) { h.MenuRequested(x, y); });
    }
    void Failed(const std::string& text) override {
        tell([&](auto& h) { h.Failed(text); });
    }

  private:
    template <class Call>
    void tell(Call&& call) {
        if (host_) call(*host_);
    }
    GrapherEvents* host_ = nullptr;
};

}  // namespace anomalis::chart
