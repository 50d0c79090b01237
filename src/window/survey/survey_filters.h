#pragma once

#include <QWidget>

#include "survey/desk/desk_rows.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace anomalis::window {

/// Which lines the list shows: two rows of boxes. What is in them holds together; empty ones ask for nothing.
class SurveyFilters : public QWidget {
    Q_OBJECT

  public:
    explicit SurveyFilters(QWidget* parent = nullptr);

    survey::RowFilter filter() const;
    void clear();
    /// The unit that an rms of this survey has.
    void show_unit(const QString& unit);

  signals:
    void changed();

  private:
    QLineEdit* number_box(const char* name, const QString& caption, const QString& tip);
    void wire();
    void tell();

    QLineEdit* text_ = nullptr;
    QComboBox* status_ = nullptr;
    QComboBox* flag_ = nullptr;
    QLineEdit* rms_ = nullptr;
    QLineEdit* from_ = nullptr;
    QLineEdit* to_ = nullptr;
    QLineEdit* interval_ = nullptr;
    QPushButton* clear_ = nullptr;
    QLabel* unit_ = nullptr;
    bool filling_ = false;
};

}  // namespace anomalis::window
