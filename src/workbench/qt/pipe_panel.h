#pragma once

#include <vector>

#include <QWidget>

#include "workbench/body_form.h"
#include "workbench/qt/form_guards.h"
#include "workbench/qt/panel.h"

class QGridLayout;

namespace anomalis {

class CommitBox;
struct Workbench;

/// The solid of a pipe, `Frame_cylinder`: wall, ends, how finely its surface is cut.
class PipePanel : public QWidget {
    Q_OBJECT

  public:
    PipePanel(Workbench& workbench, FormGuards& guards);
    void fill();

  signals:
    void edited();
    void text_refused(const QString& caption, const QString& text);

  private:
    void add_box(QGridLayout& grid, int row, int pair, PipeBox box, const ControlText& text);

    Workbench& workbench_;
    FormGuards& guards_;
    std::vector<CommitBox*> boxes_;
};

/// A line on what the rows of a wire mean, `Frame_wire`.
QWidget* make_wire_frame();

}  // namespace anomalis
