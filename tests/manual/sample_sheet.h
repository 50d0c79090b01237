#pragma once

#include "manual/writers.h"

namespace anomalis::manual {

/// A program of one command with an option of each kind.
inline Sheet sample_sheet() {
    Sheet dig;
    dig.name = "dig";
    dig.purpose = "Dig a hole; deep: or not";
    dig.paragraphs = {".starts with a point", "It's a back\\slash"};
    dig.arguments = {{file("PLACE", {".axm"}), "Where"}};
    dig.options = {
        {"-o", "--output", file("FILE", {".png", ".svg"}), "Write [it] here; not there", "", true},
        {"", "--into", folder("FOLDER"), "Into: this"},
        {"", "--tool", one_of({"spade", "pick"}, "TOOL"), "With it", "spade"},
        {"", "--role", ValueForm{.name = "ROLE=X", .choices = {"mag=", "grav="}}, "Role", "", false, true},
        {"-h", "--help", {}, "Help", "", false, false, false, true}};
    dig.examples = {{"prog dig a.axm -o b.png", "Dig with --tool spade"}};
    Sheet program;
    program.name = "prog-x";
    program.purpose = "Digs";
    program.options = {{"-h", "--help", {}, "Help"}};
    program.statuses = {{"0", "Done"}};
    program.commands = {dig};
    return program;
}

}  // namespace anomalis::manual
