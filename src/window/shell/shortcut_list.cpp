#include "window/shell/shortcut_list.h"

#include <array>

#include <QCoreApplication>
#include <QKeySequence>
#include <QSet>

#include "window/shell/menu_tree.h"

namespace anomalis::window {

namespace {

struct ControlKeys {
    const char* heading;
    const char* keys;
    const char* words;
};

/// What has the focus, or is under the pointer, takes these itself.
constexpr std::array control_keys{
    ControlKeys{"A chart that has the focus", "Arrow keys", "Move the window by a tenth"},
    ControlKeys{"", "+  −", "Zoom in, zoom out"},
    ControlKeys{"", "0  Home", "Show everything again"},
    ControlKeys{"", "Menu", "Open the menu of the chart"},
    ControlKeys{"", "Esc", "Give up the box that is being drawn"},
    ControlKeys{"The mouse on a chart", "Wheel", "Zoom about the pointer"},
    ControlKeys{"", "Left button", "Up or down: zoom about the press"},
    ControlKeys{"", "Right button", "Pan a zoomed chart"},
    ControlKeys{"", "Middle button", "The whole chart, the view as a box to move"},
    ControlKeys{"", "Shift + left button", "Measure a box"},
    ControlKeys{"", "Double click", "Show everything again"},
    ControlKeys{"", "Click", "Select the point or the body under the pointer"},
    ControlKeys{"", "Right click", "Open the menu of the chart"},
    ControlKeys{"", "Drag of a handle", "Change the current body"},
    ControlKeys{"Section or plan with the focus", "← →", "Move the current body along the line"},
    ControlKeys{"", "↑ ↓", "Move its top up, down"},
    ControlKeys{"", "Shift + arrow key", "The same finely"},
    ControlKeys{"", "Ctrl + arrow key", "Move the window by a tenth"},
    ControlKeys{"", "Shift while dragging", "A handle goes a tenth of the way"},
    ControlKeys{"", "Esc", "Put back the body that is being dragged"},
    ControlKeys{"A bar that has the focus", "← ↓ −", "One step less"},
    ControlKeys{"", "→ ↑ +", "One step more"},
    ControlKeys{"", "Shift + arrow key", "One fine step"},
    ControlKeys{"The models that were found", "↑ ↓", "Show another one in the charts"},
    ControlKeys{"", "Enter", "Take the one on show into the model"},
    ControlKeys{"", "Esc", "Leave the model as it is"},
    ControlKeys{"The results of a survey", "↑ ↓", "Choose another line of the list"},
    ControlKeys{"", "Enter", "Open the line in the workbench"},
    ControlKeys{"", "A  L  R  N", "Accept, look again, reject, no flag"},
    ControlKeys{"", "Ctrl+Z  Ctrl+Shift+Z", "Take the last flag or note back, give it again"},
    ControlKeys{"The parameters of a body", "Arrow keys", "Go from cell to cell"},
    ControlKeys{"", "Enter", "Edit the cell, take over what was typed"},
    ControlKeys{"", "Space", "Change the mark under Vary"},
    ControlKeys{"", "Esc", "Leave the value as it was"}};

QString words(const char* text) {
    return QCoreApplication::translate("Actions", text);
}

/// The tab key is called another when Shift is held.
QString shown_keys(QKeyCombination key) {
    return QKeySequence(key).toString(QKeySequence::NativeText).replace("Backtab", "Shift+Tab");
}

void add_line(ShortcutGroup& group, const ActionRow& row) {
    if (row.has_key()) group.lines.append({shown_keys(row.key), words(row.text).remove('&')});
}

/// The keys of the menus, a group each, and which actions stand in any.
QList<ShortcutGroup> menu_groups(QSet<int>& listed) {
    QList<ShortcutGroup> groups;
    int depth = 0;
    for (const MenuItem& item : menu_tree()) {
        if (item.kind == MenuItem::Kind::open && depth++ == 0)
            groups.append({words(item.text).remove('&'), {}});
        if (item.kind == MenuItem::Kind::close) --depth;
        if (item.kind != MenuItem::Kind::entry) continue;
        listed.insert(static_cast<int>(item.action));
        add_line(groups.last(), action_row(item.action));
    }
    return groups;
}

}  // namespace

QList<ShortcutGroup> shortcut_groups() {
    QSet<int> listed;
    QList<ShortcutGroup> groups = menu_groups(listed);
    ShortcutGroup window{words("Window"), {}};
    for (const ActionRow& row : action_rows())
        if (!listed.contains(static_cast<int>(row.id))) add_line(window, row);
    groups.append(window);
    groups.removeIf([](const ShortcutGroup& group) { return group.lines.isEmpty(); });
    for (const ControlKeys& key : control_keys) {
        if (key.heading[0] != '\0') groups.append({words(key.heading), {}});
        groups.last().lines.append({words(key.keys), words(key.words)});
    }
    return groups;
}

}  // namespace anomalis::window
