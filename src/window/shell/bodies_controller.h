#pragma once

#include <functional>

#include <QObject>

#include "edit/add_bodies.h"
#include "edit/body_colours.h"
#include "edit/body_flags.h"
#include "window/shell/action_table.h"
#include "window/shell/model_news.h"

namespace anomalis::window {

class Actions;
class PageController;
class StatusPanels;

/// The commands on the list of bodies.
class BodiesController : public QObject {
    Q_OBJECT

  public:
    BodiesController(QObject* parent, edit::Workbench& workbench, Actions& actions, ModelNews& news,
                     PageController& pages, StatusPanels& status);

    /// A new body with its top at a point of the section.
    void add_body_here(double distance, double elevation);
    void delete_current();

  private:
    /// A command returns true when it changed the model.
    using Command = std::function<bool(edit::Workbench&)>;

    void wire_list(Actions& actions);
    void wire_marks(Actions& actions);
    void on(Actions& actions, ActionId id, Command command);
    void run(const Command& command);
    void add(const Command& command);
    void save_defaults();

    edit::Workbench& workbench_;
    ModelNews& news_;
    PageController& pages_;
    StatusPanels& status_;
};

}  // namespace anomalis::window
