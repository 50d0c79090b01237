#include "window/shell/open_controller.h"

#include <QAction>

#include "core/text.h"
#include "edit/workbench.h"
#include "flow/recent_files.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/shell/line_controller.h"
#include "window/shell/new_line.h"
#include "window/shell/page_controller.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

bool is_workspace_file(const std::string& path) {
    constexpr std::size_t ending = 4;
    return path.size() > ending &&
           equal_ignoring_case(std::string_view(path).substr(path.size() - ending), ".axm");
}

}  // namespace

OpenController::OpenController(QObject* parent, edit::Workbench& workbench, Actions& actions,
                               const EntryGate& gate, ModelNews& news, LineController& line,
                               PageController& pages, StatusPanels& status,
                               const std::vector<flow::ExampleFile>& examples)
    : QObject(parent),
      workbench_(workbench),
      actions_(actions),
      gate_(gate),
      news_(news),
      line_(line),
      pages_(pages),
      status_(status) {
    actions.on(ActionId::read_all, [this] { open_with_dialog(flow::ReadMode::everything); });
    actions.on(ActionId::read_bodies, [this] { open_with_dialog(flow::ReadMode::bodies_alone); });
    actions.on_member(ActionId::recent_file, [this](int index) { open_recent(index); });
    actions.on_member(ActionId::example, [this, examples](int index) {
        open_copy(examples.at(static_cast<std::size_t>(index)).path);
    });
    const auto& entries = actions.family(ActionId::example);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i]->setText(shown(examples[i].title).replace("&", "&&"));
        entries[i]->setToolTip(plain_tip(tr("Open, load and show %1").arg(shown(examples[i].path))));
    }
}

void OpenController::open_with_dialog(flow::ReadMode mode) {
    show_and_load(flow::open_model(workbench_, mode), mode);
}

void OpenController::open_file(const std::string& path) {
    if (!gate_.pass()) return;
    if (are_results_(path)) return show_results_(path);
    if (!is_workspace_file(path)) return import_(path);
    show_and_load(flow::open_model_file(workbench_, flow::ReadMode::everything, path),
                  flow::ReadMode::everything);
}

void OpenController::open_recent(int index) {
    show_and_load(flow::open_recent_file(workbench_, index), flow::ReadMode::everything);
}

void OpenController::open_copy(const std::string& path) {
    if (!gate_.pass()) return;
    show_and_load(flow::open_copy(workbench_, path), flow::ReadMode::everything);
}

void OpenController::show_recovered() {
    show_opened(flow::OpenOutcome::opened, flow::ReadMode::everything);
    load_and_show();
}

void OpenController::show_and_load(flow::OpenOutcome outcome, flow::ReadMode mode) {
    show_opened(outcome, mode);
    // The bodies alone stand over the line that is defined already, and are looked at in it.
    if (outcome == flow::OpenOutcome::opened && mode == flow::ReadMode::everything) load_and_show();
}

/// A workspace that names no data file has nothing to load.
void OpenController::load_and_show() {
    if (workbench_.session.workspace.definition.data_file.empty())
        return status_.show_text(tr("%n bodies read; choose a data file and load it to see them", nullptr,
                                    workbench_.session.workspace.body_count));
    line_.load();
    if (edit::line_loaded(workbench_.session.workspace)) pages_.show_model();
}

void OpenController::show_opened(flow::OpenOutcome outcome, flow::ReadMode mode) {
    if (outcome != flow::OpenOutcome::opened) return;
    WhatChanged what = News::bodies | News::file | News::recent_files;
    if (mode == flow::ReadMode::everything) what |= News::boxes;
    pages_.show_definitions();
    begin_anew(workbench_, news_, what);
    line_.line_dropped(News::definition);
    status_.show_text(
        tr("%n bodies read; load the data to see them", nullptr, workbench_.session.workspace.body_count));
}

void OpenController::follow(WhatChanged what) {
    if (what & News::recent_files) list_recent_files();
}

void OpenController::list_recent_files() {
    const auto& entries = actions_.family(ActionId::recent_file);
    const std::vector<std::string>& paths = workbench_.recent_files;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entries[i]->setVisible(i < paths.size());
        if (i < paths.size())
            entries[i]->setText(
                QString::fromStdString(flow::recent_file_caption(static_cast<int>(i) + 1, paths[i])));
    }
}

}  // namespace anomalis::window
