#pragma once

#include <QList>
#include <QString>

namespace anomalis::window {

struct ShortcutLine {
    QString keys;
    QString words;
};

/// Keys that belong together: those of a menu, or of a control that has the focus.
struct ShortcutGroup {
    QString heading;
    QList<ShortcutLine> lines;
};

/// Every key of the action table by the menu that it stands in, then the keys of charts, bars and grid.
QList<ShortcutGroup> shortcut_groups();

}  // namespace anomalis::window
