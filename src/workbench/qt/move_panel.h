#pragma once

#include <vector>

#include <QWidget>

#include "workbench/qt/form_guards.h"

class QGridLayout;
class QLabel;

namespace anomalis {

class ParameterStepper;
struct ParameterBar;
struct Workbench;

/// The bars that nudge the parameters of the current body, coarse and fine: `Frame_move_body`.
class MovePanel : public QWidget {
    Q_OBJECT

  public:
    MovePanel(Workbench& workbench, FormGuards& guards);

    /// Captions follow the type; bars of rows that the current body has not are disabled.
    void fill();

  signals:
    void edited();

  private:
    struct Row {
        const ParameterBar* bar;
        QLabel* caption;
        ParameterStepper* coarse;
        ParameterStepper* fine;
    };
    ParameterStepper* make_stepper(const ParameterBar& bar, bool fine);
    void add_headings(QGridLayout& grid, int first_column);
    void step(const ParameterBar& bar, bool fine, int direction);

    Workbench& workbench_;
    FormGuards& guards_;
    std::vector<Row> rows_;
};

}  // namespace anomalis
