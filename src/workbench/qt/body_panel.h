#pragma once

#include <QWidget>

#include "workbench/qt/form_guards.h"

namespace anomalis {

struct Workbench;

/// Which body is edited, its name and its marks: `Frame_body`.
class BodyPanel : public QWidget {
    Q_OBJECT

  public:
    BodyPanel(Workbench& workbench, FormGuards& guards);

    void fill();

  signals:
    void edited();
    /// Another body became the current one.
    void selected();
};

}  // namespace anomalis
