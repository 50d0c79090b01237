#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/paths.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "flow/inversion_desk.h"
#include "inversion/line_session.h"
#include "support/temp_folder.h"

namespace anomalis::flow {

/// A desk over a straight line, and a window of a few words that records what it was asked to show. Files go
/// into a folder of its own.
class DeskLine : public ::testing::Test, private InversionDeskObserver {
  protected:
    DeskLine() {
        change_to_folder(folder.path(""));
        workbench.view.current_body = 1;
        desk.choose_method(inversion::InversionMethod::sweep);
        edit::start_history(workbench);
    }
    ~DeskLine() override { change_to_folder(folder_before); }

    const InversionPanel& panel() { return desk.panel(); }

    const std::string folder_before = current_folder();
    TempFolder folder;
    inversion::LineSession line;
    Workspace& w = line.session.workspace;
    InversionState& inversion = line.session.inversion;
    edit::Workbench workbench{line.session};
    InversionDesk desk{workbench, *this};
    std::vector<std::string> calls;
    int panel_changes = 0, chart_draws = 0;
    /// An iteration has ended; its number.
    std::function<void(int)> on_iteration;

  private:
    void panel_changed() override {
        ++panel_changes;
        const int iteration = std::atoi(desk.panel().num_iterations_text.c_str());
        if (!desk.running() || iteration == shown_iteration_) return;
        shown_iteration_ = iteration;
        if (iteration > 0 && on_iteration) on_iteration(iteration);
    }
    void bars_changed() override {}
    void run_changed() override {
        calls.push_back(desk.running() ? "begin" : "end");
        panel_changed();
    }
    void model_changed() override {
        calls.push_back("model");
        desk.show_current_misfit(model::refresh_model(line.session));
    }
    void draw_chart(int) override { ++chart_draws; }
    void close_wanted() override { calls.push_back("close"); }

    int shown_iteration_ = 0;
};

}  // namespace anomalis::flow
