#include "window/shell/actions.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>

#include "flow/kept_models.h"
#include "flow/recent_files.h"
#include "window/shell/entry_gate.h"

namespace anomalis::window {

namespace {

int member_count(const ActionRow& row, int example_count) {
    switch (row.family) {
        case Family::single:
            return 1;
        case Family::recent_files:
            return flow::most_recent_files;
        case Family::examples:
            return example_count;
        case Family::kept_models:
            return flow::most_kept_models;
    }
    return 1;
}

}  // namespace

Actions::Actions(QWidget& window, const edit::Workbench& workbench, const FormGuards& guards,
                 const EntryGate& gate, int example_count)
    : QObject(&window), workbench_(workbench), guards_(guards), gate_(gate) {
    for (const ActionRow& row : action_rows()) {
        families_.emplace_back();
        for (int member = 0; member < member_count(row, example_count); ++member)
            families_.back().push_back(make(window, row, member));
    }
    handlers_.resize(families_.size());
    auto* modes = new QActionGroup(this);
    for (const ActionId mode : {ActionId::show_section, ActionId::show_plan})
        action(mode).setActionGroup(modes);
    refresh();
}

QAction* Actions::make(QWidget& window, const ActionRow& row, int member) {
    auto* action = new QAction(tr(row.text), &window);
    action->setObjectName(row.family == Family::single ? QString(row.name)
                                                       : QString("%1_%2").arg(row.name).arg(member));
    action->setToolTip(tr(row.tip));
    action->setCheckable(row.mark != Mark::none);
    if (row.has_key()) action->setShortcut(QKeySequence(row.key));
    connect(action, &QAction::triggered, this, [this, &row, member] { trigger(row, member); });
    window.addAction(action);  // its key works whether or not it stands in a menu
    return action;
}

void Actions::on(ActionId id, std::function<void()> handler) {
    on_member(id, [handler = std::move(handler)](int) { handler(); });
}

void Actions::on_member(ActionId id, std::function<void(int)> handler) {
    handlers_.at(static_cast<std::size_t>(id)) = std::move(handler);
}

const std::vector<QAction*>& Actions::family(ActionId id) const {
    return families_.at(static_cast<std::size_t>(id));
}

void Actions::trigger(const ActionRow& row, int member) {
    const auto& handler = handlers_.at(static_cast<std::size_t>(row.id));
    const bool open = row.when == When::running    ? guards_.busy()
                      : row.when == When::any_time ? true
                                                   : gate_.pass();
    if (open && handler) handler(member);
    refresh();  // also the mark of one that was turned away
}

void Actions::only_if(ActionId id, std::function<bool()> possible) {
    possible_[id] = std::move(possible);
}

bool Actions::can_do(const ActionRow& row) const {
    const auto possible = possible_.find(row.id);
    return holds(row.when, workbench_) && (possible == possible_.end() || possible->second());
}

void Actions::refresh() {
    for (const ActionRow& row : action_rows())
        for (QAction* action : family(row.id)) {
            if (row.mark != Mark::none) action->setChecked(is_set(row.mark, workbench_));
            if (guards_.busy() || row.when == When::pointed) continue;
            action->setEnabled(can_do(row));
        }
}

void put_first(QMenu& menu, const std::vector<QAction*>& entries) {
    QAction* first = menu.actions().constFirst();
    for (QAction* entry : entries) menu.insertAction(first, entry);
    menu.insertSeparator(first);
}

}  // namespace anomalis::window
