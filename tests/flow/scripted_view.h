#pragma once

#include <functional>
#include <string>
#include <vector>

#include "flow/run_control.h"

namespace anomalis::flow {

/// A window of a few words: it records what it was asked to show.
class ScriptedView : public InversionView {
  public:
    int current_body() const override { return current; }
    void display_body_parameters() override { calls.push_back("parameters"); }
    void display_model() override {
        calls.push_back("model");
        if (on_display_model) on_display_model();
    }
    void display_charts() override { calls.push_back("charts"); }
    void display_iteration() override { calls.push_back("iteration"); }
    void panel_changed() override { ++panel_changes; }
    void progress(const inversion::InversionProgress& state) override {
        if (on_progress) on_progress(state);
    }
    void save_recovery_model(const std::string& path) override {
        calls.push_back("save " + path);
        if (on_save) on_save();
    }

    int current = 1;
    int panel_changes = 0;
    std::vector<std::string> calls;
    std::function<void()> on_display_model, on_save;
    std::function<void(const inversion::InversionProgress&)> on_progress;
};

}  // namespace anomalis::flow
