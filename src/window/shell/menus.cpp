#include "window/shell/menus.h"

#include <algorithm>

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "window/shell/actions.h"
#include "window/shell/menu_tree.h"

namespace anomalis::window {

Menus::Menus(QMainWindow& window, Actions& actions, const edit::Workbench& workbench)
    : QObject(&window), actions_(actions), workbench_(workbench) {
    std::vector<QMenu*> open;
    for (const MenuItem& item : menu_tree()) {
        QMenu* menu = open.empty() ? nullptr : open.back();
        switch (item.kind) {
            case MenuItem::Kind::open:
                open.push_back(open_menu(window, menu, item));
                if (!menu) bar_.emplace_back(open.back(), item.when);
                break;
            case MenuItem::Kind::close:
                menu->menuAction()->setVisible(!menu->isEmpty());  // there may be no examples
                open.pop_back();
                break;
            case MenuItem::Kind::entry:
                add_entries(*menu, item.action);
                break;
            case MenuItem::Kind::separator:
                menu->addSeparator()->setObjectName(item.name);
                break;
        }
    }
    refresh();
}

QMenu* Menus::open_menu(QMainWindow& window, QMenu* above, const MenuItem& item) {
    QMenu* menu = above ? above->addMenu(tr(item.text)) : window.menuBar()->addMenu(tr(item.text));
    menu->setObjectName(item.name);
    menu->setToolTipsVisible(true);
    // What a file brought, or a flow changed without a word, is right when it is looked at.
    connect(menu, &QMenu::aboutToShow, &actions_, &Actions::refresh);
    connect(menu, &QMenu::aboutToShow, this, &Menus::opening);
    connect(menu, &QMenu::aboutToHide, this, &Menus::closing);
    return menu;
}

void Menus::add_entries(QMenu& menu, ActionId id) {
    const bool family = action_row(id).family != Family::single;
    if (family && !menu.isEmpty()) lines_above_families_.emplace_back(menu.actions().constLast(), id);
    for (QAction* action : actions_.family(id)) menu.addAction(action);
}

void Menus::refresh() {
    for (const auto& [menu, when] : bar_) menu->menuAction()->setVisible(holds(when, workbench_));
    for (const auto& [line, id] : lines_above_families_) {
        const auto& family = actions_.family(id);
        line->setVisible(
            std::any_of(family.begin(), family.end(), [](QAction* a) { return a->isVisible(); }));
    }
}

}  // namespace anomalis::window
