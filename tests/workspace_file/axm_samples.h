#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"
#include "core/workspace.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "workspace_file/axm.h"

namespace anomalis::workspace_file {

inline std::string joined(const std::vector<std::string>& lines, std::string_view line_end = "\r\n") {
    std::string text;
    for (const std::string& line : lines) text.append(line).append(line_end);
    return text;
}

/// Lines 1 to 11 of a small survey.
inline std::vector<std::string> definition_lines() {
    return {"survey.dat",
            " 2  1  1  2  0  0  3  4  0  0  0  0 ",
            " 56000 -65 -4 ",
            " 0  5  1  0  0  0  0  0  0  0 ",
            "-99999  0  10 -99999  0  0 ",
            " 0  1  1 ",
            " 0  0 ",
            " 0  0 ",
            " 1  1 ",
            " 1  1 ",
            " 0  1 "};
}

/// The lines of one body as format 7 has them.
inline std::vector<std::string> body_lines(const std::string& name = "Sheet") {
    return {" 2  0  1  255  0  " + name,
            "a description",
            "dolerite",
            " 100.5  1000  2000 -50  1 -500  500  0 -99999 -10  80  90  4  3  18  2  15 ",
            " 10  60  80  250  0 -20  20  1  5  175  1  10  900  0 -99999 -99999 ",
            " 120  1  10  1000 ",
            " 5  0 -50  50 ",
            " 2  0 -45  45  3  1 -80  80 ",
            " 4000  0.5  10  20  1  100  9000  0  0.001  9  0 -90  90  0 -360  360  2.7  1 -1  4 "};
}

inline std::vector<std::string> display_lines() {
    return {"[AXM Display Settings]", " 1  1  0 Yes 2.5 ", " 0.25  0.5  0.625  0.75 ", " 9900  11500 "};
}

inline void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

/// A whole file of format 7 with the number of bodies given.
inline std::vector<std::string> whole_file(int bodies = 1) {
    std::vector<std::string> lines = definition_lines();
    lines.push_back(" " + std::to_string(bodies) + "  7  500  30  40 ");
    for (int i = 1; i <= bodies; ++i) append(lines, body_lines("Body no. " + std::to_string(i)));
    append(lines, display_lines());
    return lines;
}

/// A workspace and a person who refuses every question.
struct Reading {
    Reading() { initialise_workspace(workspace, prompts); }

    int read(const std::string& path, int mode = 0) {
        return read_model_parameters(mode, workspace, path, settings, prompts, damaged);
    }
    int read_text(const std::string& text, int mode = 0) {
        folder.write("survey.dat", "");
        return read(folder.write("model.axm", text), mode);
    }
    int read_lines(const std::vector<std::string>& lines, int mode = 0) {
        return read_text(joined(lines), mode);
    }

    ScriptedPrompts prompts;
    Settings settings;
    TempFolder folder;
    Workspace workspace;
    Damaged damaged = Damaged::refused;
};

}  // namespace anomalis::workspace_file
