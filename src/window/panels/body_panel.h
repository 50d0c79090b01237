#pragma once

#include <functional>
#include <optional>

#include <QColor>
#include <QWidget>

#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QCheckBox;
class QLabel;
class QToolButton;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class CommitBox;
class RisingBar;

/// Which body is edited, its name, colour and marks: `Frame_body`.
class BodyPanel : public QWidget {
    Q_OBJECT

  public:
    BodyPanel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news);

    void fill();

    /// Asks for a colour, starting with the given one; no value after a cancel. A dialog unless a test sets
    /// another way.
    using ChooseColour = std::function<std::optional<QColor>(const QColor&)>;
    void set_choose_colour(ChooseColour choose) { choose_colour_ = std::move(choose); }

  signals:
    void body_wanted(int number);

  private:
    QWidget* make_selector();
    QWidget* make_name();
    QWidget* make_marks();
    void wire();
    void mark_clicked(bool (*change)(edit::Workbench&, bool), bool on);
    void colour_clicked();
    void show_colour();

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    ChooseColour choose_colour_;
    QLabel* heading_;
    RisingBar* selector_;
    CommitBox* name_;
    QToolButton* colour_;
    std::optional<int> patch_colour_;  ///< on show; -1 without a body
    QCheckBox* fix_;
    QCheckBox* off_;
    QCheckBox* demagnetisation_;
};

}  // namespace anomalis::window
