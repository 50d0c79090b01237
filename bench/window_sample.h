#pragma once

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <unistd.h>

#include <QAction>
#include <QApplication>

#include "core/body_defaults.h"
#include "core/body_parameters.h"
#include "core/session.h"
#include "edit/body_list.h"
#include "edit/parameter_bars.h"
#include "quiet_prompts.h"
#include "window/panels/charts_panel.h"
#include "window/shell/form_anomalis.h"
#include "workspace_file/axm.h"

namespace anomalis {

/// Resident memory of this process, MB.
inline double resident_megabytes() {
    std::ifstream file("/proc/self/statm");
    double pages = 0, resident = 0;
    file >> pages >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

/// A folder that goes away with the object.
class WorkFolder {
  public:
    WorkFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "anomalis_bench_XXXXXX").string();
        if (!::mkdtemp(name.data())) throw std::runtime_error("no folder to work in");
        path_ = name;
    }
    ~WorkFolder() {
        std::error_code failure;
        std::filesystem::remove_all(path_, failure);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    std::string file(const char* name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

/// A line due east with both channels, and thick sheets spread under it, as a workspace file with its data.
/// `shape` may make something else of each.
inline std::string write_line(
    const WorkFolder& folder, int stations, int sheets,
    const std::function<void(Workspace&, ModelBody&)>& shape = [](Workspace&, ModelBody&) {}) {
    constexpr double spacing = 5;
    std::ofstream data(folder.file("line.dat"));
    data << "east north mag grav\n";
    for (int i = 0; i < stations; ++i) {
        const double x = i * spacing;
        data << std::to_string(500000 + x) << " 7000000 " << std::to_string(200 * std::sin(x / 900)) << " "
             << std::to_string(2 * std::cos(x / 1300)) << "\n";
    }
    data.close();
    QuietPrompts prompts;
    Session session(prompts, Settings());
    session.start();
    Workspace& w = session.workspace;
    w.definition.data_file = folder.file("line.dat");
    w.definition.x_column = 1;
    w.definition.y_column = 2;
    w.definition.mag_column = 3;
    w.definition.grav_column = 4;
    w.sensor_offset = 30;
    for (int i = 1; i <= sheets; ++i) {
        reserve_next_body(w);
        ModelBody& body = w.body(++w.body_count);
        body.type = thick_sheet;
        initialise_body(w, i, session.settings, prompts);
        body.name = "Sheet " + std::to_string(i);
        body.distance.value = static_cast<float>((i - 0.5) * stations * spacing / sheets);
        body.top.value = -40;
        body.dip.value = 70;
        body.length.value = 0;
        body.strike.value = 0;
        shape(w, body);
    }
    const std::string path = folder.file("line.axm");
    if (workspace_file::write_model_parameters(0, path, w, prompts) != 0)
        throw std::runtime_error("no workspace file");
    return path;
}

/// The window with a workspace on show.
struct ShownWindow {
    QuietPrompts prompts;
    Session session{prompts, Settings()};
    std::unique_ptr<window::Form_anomalis> form;

    explicit ShownWindow(const std::string& path, QSize size = {1280, 800}) {
        form = std::make_unique<window::Form_anomalis>(session, std::vector<flow::ExampleFile>{});
        form->resize(size);
        form->show();
        form->open_example(path);
        settle();
        if (!edit::line_loaded(session.workspace)) throw std::runtime_error("the line was not loaded");
    }
    /// Lets the window paint what waits to be painted.
    static void settle() {
        for (int turn = 0; turn < 3; ++turn) QApplication::processEvents();
    }
    flow::ModelView& view() { return form->charts().view(); }

    const edit::ParameterBar& bar(ParamCode code) const {
        for (const edit::ParameterBar& candidate : edit::parameter_bars())
            if (candidate.code == code) return candidate;
        throw std::runtime_error("no such bar");
    }
    /// The last step taken back, up to the painted picture.
    void undo() {
        form->findChild<QAction*>("menu_undo")->trigger();
        settle();
    }
    /// What a click on a bar does, up to the painted picture.
    void scroll(ParamCode code, int direction) {
        edit::step_parameter(form->workbench(), bar(code), true, direction);
        form->news().tell(window::News::parameters);
        settle();
    }
};

}  // namespace anomalis
