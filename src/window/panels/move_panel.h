#pragma once

#include <vector>

#include <QWidget>

#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QGridLayout;
class QLabel;

namespace anomalis::edit {
struct ParameterBar;
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class ParameterStepper;

/// The bars that nudge the parameters of the current body, coarse and fine: `Frame_move_body`.
class MovePanel : public QWidget {
    Q_OBJECT

  public:
    MovePanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);

    /// Captions follow the type; bars of rows that the current body has not are disabled.
    void fill();

  private:
    struct Row {
        const edit::ParameterBar* bar;
        QLabel* caption;
        ParameterStepper* coarse;
        ParameterStepper* fine;
    };
    ParameterStepper* make_stepper(const edit::ParameterBar& bar, bool fine);
    void add_headings(QGridLayout& grid, int first_column);
    void step(const edit::ParameterBar& bar, bool fine, int direction);

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    std::vector<Row> rows_;
};

}  // namespace anomalis::window
