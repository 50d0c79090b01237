#pragma once

#include <QTableView>

#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QComboBox;
class QHelpEvent;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class BodyGridModel;

/// `Grid_body`: 18 parameters by caption, value, mark and limits. A click on a value or a limit opens
/// `Text_edit` over it, one on the type `Combo_model_type`, one on a mark changes it.
class BodyGridView : public QTableView {
    Q_OBJECT

  public:
    BodyGridView(edit::Workbench& workbench, FormGuards& guards, ModelNews& news, QWidget* parent = nullptr);

    void fill();
    /// Takes over what stands in an open editor; an open list of types is put away.
    void commit_editor();
    /// What is said of the cell at a place of the view, as rich text: of a parameter with its sketch.
    QString tip_page(const QPoint& place) const;

  signals:
    void text_refused(const QString& caption, const QString& text);

  protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;

  private:
    using QTableView::edit;
    void lay_out();
    bool show_tip(const QHelpEvent& event);
    void cell_clicked(const QModelIndex& index);
    void show_types();
    void choose_type(int entry);
    void fill_types();

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    BodyGridModel* cells_;
    QComboBox* types_;
};

}  // namespace anomalis::window
