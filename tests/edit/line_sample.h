#pragma once

#include <cmath>
#include <string>

#include "core/body_defaults.h"
#include "core/session.h"
#include "edit/workbench.h"
#include "flow/open_flow.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis::edit {

/// The text of a straight line due east: line, east, north, sensor, ground, magnetics, gravity. One header
/// line, `count` stations 25 m apart, an anomaly in the middle of both channels.
inline std::string east_line_text(int count) {
    std::string text = "line east north sensor ground mag grav\n";
    for (int i = 0; i < count; ++i) {
        const double from_middle = 25.0 * i - 12.5 * (count - 1);
        const double bell = std::exp(-from_middle * from_middle / 4e4);
        text += "1 " + std::to_string(500000 + 25 * i) + " 7000000 " + std::to_string(180 + i % 7) + " " +
                std::to_string(100 + i % 5) + " " + std::to_string(51000 + 300 * bell) + " " +
                std::to_string(12 + 2 * bell) + "\n";
    }
    return text;
}

/// A session with a line in a folder of its own, as someone at work would have it.
struct LineSample {
    static constexpr int stations = 101;
    static constexpr double length = 2500;  // m

    explicit LineSample(int count = stations)
        : session(prompts, Settings()),
          workbench(session),
          data_path(folder.write("line.dat", east_line_text(count))) {
        session.start();
        Workspace& w = session.workspace;
        w.definition = {};
        w.definition.data_file = data_path;
        w.definition.z_column = 4;
        w.definition.dtm_column = 5;
        w.definition.mag_column = 6;
        w.definition.grav_column = 7;
    }

    Workspace& workspace() { return session.workspace; }
    flow::LoadResult load() { return flow::load_line(workbench); }

    /// A thick sheet across the line, upright, 100 m wide, its top at `top` m.
    ModelBody& add_body(double distance, double top, std::int32_t type = thick_sheet) {
        Workspace& w = session.workspace;
        reserve_next_body(w);
        const int number = ++w.body_count;
        ModelBody& body = w.body(number);
        body.type = type;
        initialise_body(w, number, session.settings, prompts);
        body.distance.value = static_cast<float>(distance);
        body.top.value = static_cast<float>(top);
        body.length.value = 0;
        body.name = "Body " + std::to_string(number);
        return body;
    }

    ScriptedPrompts prompts;
    TempFolder folder;
    Session session;
    Workbench workbench;
    std::string data_path;
};

}  // namespace anomalis::edit
