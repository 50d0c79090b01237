#pragma once

#include <functional>
#include <string>
#include <utility>

#include <QObject>

#include "flow/examples.h"
#include "flow/open_flow.h"
#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class EntryGate;
class LineController;
class PageController;
class StatusPanels;

/// Workspaces that are read: by dialog, from the recent files, as an example, after a crash, by a drop.
class OpenController : public QObject {
    Q_OBJECT

  public:
    OpenController(QObject* parent, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                   ModelNews& news, LineController& line, PageController& pages, StatusPanels& status,
                   const std::vector<flow::ExampleFile>& examples);

    /// Reads a workspace file, loads its data and shows the model; results of a survey go to their page, a
    /// file of another kind to the import.
    void open_file(const std::string& path);
    /// Shows the results of a survey; `is_meant` tells which paths are a folder of them.
    void set_results(std::function<bool(const std::string& path)> is_meant,
                     std::function<void(const std::string& path)> show) {
        are_results_ = std::move(is_meant);
        show_results_ = std::move(show);
    }
    void set_import(std::function<void(const std::string& path)> import) { import_ = std::move(import); }
    /// The same with a copy that has no file yet.
    void open_copy(const std::string& path);
    /// A model that a crash left is back: it is shown like an opened one, and its line is loaded.
    void show_recovered();
    /// A line of a survey was imported: likewise.
    void show_imported() { show_recovered(); }
    void follow(WhatChanged what);

  private:
    void open_with_dialog(flow::ReadMode mode);
    void open_recent(int index);
    /// Shows what a read left.
    void show_opened(flow::OpenOutcome outcome, flow::ReadMode mode);
    void show_and_load(flow::OpenOutcome outcome, flow::ReadMode mode);
    void load_and_show();
    void list_recent_files();

    edit::Workbench& workbench_;
    Actions& actions_;
    const EntryGate& gate_;
    ModelNews& news_;
    LineController& line_;
    PageController& pages_;
    StatusPanels& status_;
    std::function<void(const std::string&)> import_, show_results_;
    std::function<bool(const std::string&)> are_results_;
};

}  // namespace anomalis::window
