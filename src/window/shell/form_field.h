#pragma once

#include <QDialog>

#include "flow/field_question.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace anomalis::window {

struct ControlText;

/// Field from place and date: what the main field is at a place on a day, shown at every keystroke. Accepted
/// when the field is to be taken over.
class Form_field : public QDialog {
    Q_OBJECT

  public:
    /// The workspace outlives the form and is only read.
    explicit Form_field(const Workspace& workspace, QWidget* parent = nullptr);

    flow::FieldQuestion question() const;

  private:
    QLineEdit* add_box(int row, int pair, const ControlText& text, const std::string& value);
    void make_boxes(const flow::FieldQuestion& question);
    QWidget* make_buttons();
    void show_answer();
    void show_system();

    const Workspace& workspace_;
    QGridLayout* grid_;
    QLineEdit* system_ = nullptr;
    QLabel* system_name_ = nullptr;
    QCheckBox* middle_ = nullptr;
    QLineEdit* latitude_ = nullptr;
    QLineEdit* longitude_ = nullptr;
    QLineEdit* height_ = nullptr;
    QLineEdit* date_ = nullptr;
    QLabel* answer_ = nullptr;
    QPushButton* apply_ = nullptr;
};

}  // namespace anomalis::window
