#pragma once

#include <QFrame>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace anomalis::flow {
class ImportDesk;
}  // namespace anomalis::flow

namespace anomalis::window {

/// The head of the page of an import: file and format, coordinate system, date and field.
class ImportCard : public QFrame {
    Q_OBJECT

  public:
    explicit ImportCard(flow::ImportDesk& desk, QWidget* parent = nullptr);

    void show_layout();
    void show_choice();
    /// True where the field wants a date that nobody gave yet: its box has the focus then.
    bool take_focus();

  signals:
    void file_wanted();
    /// Why a text was not taken; "" when one was.
    void refused(const QString& why);

  private:
    QLayout* make_file_row();
    QLayout* make_system_row();
    QLayout* make_date_row();
    void take_reading();
    void take_system();
    void take_date();
    void show_refused(QLineEdit& box, const QString& why);

    flow::ImportDesk& desk_;
    QLineEdit* file_ = nullptr;
    QPushButton* choose_ = nullptr;
    QComboBox* format_ = nullptr;
    QComboBox* separator_ = nullptr;
    QComboBox* decimal_ = nullptr;
    QComboBox* encoding_ = nullptr;
    QLineEdit* system_ = nullptr;
    QLabel* system_words_ = nullptr;
    QLineEdit* date_ = nullptr;
    QCheckBox* field_ = nullptr;
    QLabel* field_words_ = nullptr;
    QComboBox* main_field_ = nullptr;
};

}  // namespace anomalis::window
