#pragma once

#include <QWidget>

#include "workbench/qt/form_guards.h"

namespace anomalis {

struct Workbench;

/// The bars that nudge the parameters of the current body, `Frame_move_body`.
class MovePanel : public QWidget {
    Q_OBJECT

  public:
    MovePanel(Workbench& workbench, FormGuards& guards);

    /// Bars of rows that the current body has not are disabled.
    void fill();

  signals:
    void edited();
};

}  // namespace anomalis
