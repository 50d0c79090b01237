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
    if (family && menu.isEmpty()) family_menus_.emplace_back(&menu, id);
    if (family && !menu.isEmpty()) lines_above_families_.emplace_back(menu.actions().constLast(), id);
    for (QAction* action : actions_.family(id)) menu.addAction(action);
}

void Menus::refresh() {
    for (const auto& [menu, when] : bar_) menu->menuAction()->setVisible(holds(when, workbench_));
    // There may be no examples, no kept models, no recent files.
    const auto any_shown = [this](ActionId id) {
        const auto& family = actions_.family(id);
        return std::any_of(family.begin(), family.end(), [](QAction* a) { return a->isVisible(); });
    };
    for (const auto& [line, id] : lines_above_families_) line->setVisible(any_shown(id));
    for (const auto& [menu, id] : family_menus_) menu->menuAction()->setVisible(any_shown(id));
}

}  // namespace anomalis::window
