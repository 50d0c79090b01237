#pragma once

#include <string>
#include <vector>

#include "core/numbers.h"
#include "output/table_samples.h"

namespace anomalis::output {

/// A drawing taken apart: code lines and value lines in turn, as printed.
struct DxfPairs {
    explicit DxfPairs(const std::string& text) {
        const std::vector<std::string> lines = lines_of(text);
        for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
            codes.push_back(lines[i]);
            values.push_back(lines[i + 1]);
        }
        whole = lines.size() % 2 == 0 && text.ends_with("EOF\r\n");
    }
    /// The places of the entities of a kind.
    std::vector<std::size_t> places(const std::string& kind) const {
        std::vector<std::size_t> found;
        for (std::size_t i = 0; i < values.size(); ++i)
            if (values[i] == kind) found.push_back(i);
        return found;
    }
    double number(std::size_t place) const { return prefix_number(values.at(place)); }

    std::vector<std::string> codes, values;
    bool whole = false;
};

/// A body where the reference point stands at (1000, 2000) and the top at -10.
inline ModelBody& add_dxf_body(Workspace& workspace, std::int32_t type, const std::string& name) {
    ModelBody& body = workspace.body(++workspace.body_count);
    body = ModelBody();
    body.type = type;
    body.name = name;
    body.east = 1000;
    body.north = 2000;
    body.top.value = -10;
    body.dip.value = 90;
    body.width.value = 20;
    body.length.value = 100;
    body.depth_extent.value = 50;
    return body;
}

/// A fresh workspace with an extent of 400 m by 200 m around the bodies.
inline Workspace dxf_workspace() {
    Workspace workspace;
    ScriptedPrompts prompts;
    initialise_workspace(workspace, prompts);
    workspace.x_min = 800, workspace.x_max = 1200;
    workspace.y_min = 1900, workspace.y_max = 2100;
    return workspace;
}

}  // namespace anomalis::output
