#pragma once

#include <string>

#include <QString>

namespace anomalis {

/// What the workbench was started with.
struct WindowArguments {
    int status = -1;   ///< 0 or above: it ends with this and shows no window
    std::string told;  ///< then: what it says
    QString file;      ///< what is opened; "" for nothing
};

/// Reads a command line before there is a display; options of Qt are left to it.
WindowArguments read_window_arguments(int argc, char** argv);

}  // namespace anomalis
