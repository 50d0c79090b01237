#pragma once

#include <QWidget>

#include "workbench/qt/form_guards.h"

namespace anomalis {

struct Workbench;

/// The controls of the inversion, `Frame_invert`.
class InvertPanel : public QWidget {
    Q_OBJECT

  public:
    InvertPanel(Workbench& workbench, FormGuards& guards);
};

}  // namespace anomalis
