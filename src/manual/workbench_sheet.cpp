#include "manual/workbench_sheet.h"

namespace anomalis::manual {

Sheet workbench_sheet() {
    Sheet sheet;
    sheet.name = "anomalis";
    sheet.purpose = "Explain magnetic and gravity anomalies along a survey profile by simple bodies";
    sheet.paragraphs = {
        "It shows observed and calculated curves over a depth section, in which sheets, prisms, pipes and "
        "wires are "
        "moved, fitted to the data, and reported with their errors. F1 in the window opens the guide.",
        "Options of the window system, such as -platform and -style, are taken as well."};
    sheet.arguments = {
        {file("FILE", {".axm", ".csv", ".dat", ".txt", ".xyz", ".dfn", ".gz"}),
         "What is opened: a workspace (.axm), a survey file, which goes to the import, or the folder of "
         "a survey's results. One that cannot be opened is told in the window",
         false}};
    sheet.options = {{"-h", "--help", {}, "Show this help and leave"},
                     {"-v", "--version", {}, "Show the version and leave"}};
    sheet.examples = {{"anomalis", "Begin with the first page, which offers examples"},
                      {"anomalis line_1030.axm", "Open a workspace"},
                      {"anomalis results", "Look at the results of a survey"}};
    sheet.statuses = {{"0", "The window was closed, or help or version were shown"},
                      {"2", "Wrong usage: an option that is not known, more than one file"}};
    sheet.environment = {{"XDG_CONFIG_HOME", "Where settings are kept, otherwise ~/.config"},
                         {"XDG_DATA_HOME", "Where the program's own data are, otherwise ~/.local/share"},
                         {"XDG_STATE_HOME", "Where unsaved models are kept, otherwise ~/.local/state"},
                         {"TMPDIR", "Folder for temporary files"},
                         {"QT_QPA_PLATFORM", "How Qt reaches the screen, such as wayland or xcb"}};
    sheet.files = {
        {"~/.config/brightfold/anomalis.conf",
         "Settings: preferences, the files last opened, places of windows"},
        {"~/.local/state/anomalis/recovery", "Unsaved models, offered at the next start after a crash"},
        {"~/.local/state/anomalis/before-writing",
         "What a file held that could not be replaced and is written in place, until that is done"},
        {"axm_logging.dat", "In the current folder: the log of a session, while logging is turned on"}};
    sheet.see_also = {"anomalis-batch"};
    return sheet;
}

}  // namespace anomalis::manual
