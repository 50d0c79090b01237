#pragma once

#include <QObject>

#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class DefinitionsPage;
class EntryGate;
class LineController;
class StatusPanels;

/// The earth's field from place and date, and IGRF out of the readings or back into them.
class FieldController : public QObject {
    Q_OBJECT

  public:
    FieldController(edit::Workbench& workbench, Actions& actions, const EntryGate& gate, ModelNews& news,
                    DefinitionsPage& page, LineController& line, StatusPanels& status);

    /// Says after a load that there is no field.
    void follow(WhatChanged what);

  private:
    void ask();
    void change_readings(int step);

    edit::Workbench& workbench_;
    ModelNews& news_;
    DefinitionsPage& page_;
    LineController& line_;
    StatusPanels& status_;
};

}  // namespace anomalis::window
