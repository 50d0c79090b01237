#pragma once

#include <string>

#include <QObject>

#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {
struct LoadResult;
}  // namespace anomalis::flow

namespace anomalis::window {

class DefinitionsPage;
class EntryGate;
class FormLoadReport;
class StatusPanels;

/// The observed data: which file they come from, how they are turned, their load, and what is left when they
/// go.
class LineController : public QObject {
    Q_OBJECT

  public:
    LineController(edit::Workbench& workbench, const EntryGate& gate, ModelNews& news, DefinitionsPage& page,
                   StatusPanels& status);

    /// Reads the data; nothing is asked at the gate.
    void load();
    /// Shows the line that stands: after a step that brought another model back with its line.
    void show_line();
    /// All that the last load has to tell, beside the window.
    void show_report();
    /// The stations are gone: no box tells of them.
    void line_dropped(WhatChanged also);

  private:
    void show(const flow::LoadResult& result);
    void choose_data();
    void define_transform();

    edit::Workbench& workbench_;
    const EntryGate& gate_;
    ModelNews& news_;
    DefinitionsPage& page_;
    StatusPanels& status_;
    FormLoadReport* report_ = nullptr;
    int transform_tab_ = 0;  ///< survives between openings of its form
};

}  // namespace anomalis::window
