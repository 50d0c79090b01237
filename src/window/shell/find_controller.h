#pragma once

#include <QObject>

#include "flow/find_desk.h"
#include "window/shell/model_news.h"

class QMainWindow;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class BusyInput;
class ChartsPanel;
class DefinitionsPanel;
class EntryGate;
class FindPanel;
struct FormGuards;
class ModelPage;
class PageController;
class StatusPanels;

/// The parts of the window that a search for bodies shows itself in.
struct FindParts {
    QMainWindow& window;
    DefinitionsPanel& definitions;
    ModelPage& page;
    ChartsPanel& charts;
    StatusPanels& status;
};

/// The search for bodies in the window: its panel in the right column, the charts that follow it, and what is
/// served while it goes on. A model that is merely looked at leaves the charts before anything else is done;
/// it comes back with the page, the plan or the axes as long as nothing changes the open model.
class FindController : public QObject, private flow::FindDeskObserver {
    Q_OBJECT

  public:
    FindController(const FindParts& parts, edit::Workbench& workbench, Actions& actions, EntryGate& gate,
                   FormGuards& guards, ModelNews& news, PageController& pages);
    ~FindController() override;

    flow::FindDesk& desk() { return desk_; }
    /// The panel, on the page of the model.
    void open();
    /// The same, and a search with what is chosen there.
    void find_at_once();
    /// False while a search goes on: it is left, and the window closes after it.
    bool may_close() { return desk_.may_close(); }
    void follow(WhatChanged what);

  private:
    void panel_changed() override;
    void run_changed() override;
    void show_model(const Workspace* model) override;
    void model_taken(int found, bool first_bodies) override;
    void close_wanted() override;

    void wire_panel();
    bool is_open() const;
    void close();
    void preview(int index);
    void take(int index);
    void put_back();
    void show_again();

    FindParts parts_;
    edit::Workbench& workbench_;
    const EntryGate& gate_;
    ModelNews& news_;
    PageController& pages_;
    FindPanel* panel_;
    flow::FindDesk desk_;
    BusyInput* busy_ = nullptr;
    int wanted_ = -1;  ///< the alternative that was looked at last
};

}  // namespace anomalis::window
