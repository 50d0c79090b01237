#pragma once

#include <vector>

#include <QWidget>

#include "edit/body_form.h"
#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"
#include "window/widgets/panel.h"

class QGridLayout;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class CommitBox;

/// The solid of a pipe, `Frame_cylinder`: wall, ends, how finely its surface is cut.
class PipePanel : public QWidget {
    Q_OBJECT

  public:
    PipePanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);
    void fill();

  signals:
    void text_refused(const QString& caption, const QString& text);

  private:
    void add_box(QGridLayout& grid, int row, int pair, edit::PipeBox box, const ControlText& text);

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    std::vector<CommitBox*> boxes_;
};

/// A line on what the rows of a wire mean, `Frame_wire`.
QWidget* make_wire_frame();

}  // namespace anomalis::window
