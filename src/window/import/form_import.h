#pragma once

#include <QDialog>
#include <QTimer>

class QCheckBox;
class QFrame;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace anomalis::flow {
class ImportDesk;
}  // namespace anomalis::flow

namespace anomalis::window {

class ImportCard;
class ImportPreview;
class LineList;
class SurveyMapView;

/// File, Import survey: one page that shows what was recognised of a survey file, lets everything be
/// corrected where it stands, and imports a line. It shows the desk and holds nothing itself.
class Form_import : public QDialog {
    Q_OBJECT

  public:
    Form_import(flow::ImportDesk& desk, QWidget* parent);
    ~Form_import() override;

    /// What of the desk is no longer as it was.
    void show_layout();
    void show_lines();
    void show_choice();
    void show_progress();
    /// Where a person begins: the date where the field wants one, else the list of lines.
    void take_focus();

    void accept() override;
    void reject() override;

  signals:
    void file_wanted();
    void folder_wanted();
    void import_wanted();

  private:
    QWidget* make_questions();
    QWidget* make_report();
    QWidget* make_bottom();
    void wire();
    void fill_questions();
    void show_refused(const QString& why);
    void show_report();

    flow::ImportDesk& desk_;
    ImportCard* card_ = nullptr;
    QFrame* questions_ = nullptr;
    QHBoxLayout* question_row_ = nullptr;
    ImportPreview* preview_ = nullptr;
    LineList* lines_ = nullptr;
    SurveyMapView* map_ = nullptr;
    QLabel* report_ = nullptr;
    QCheckBox* all_ = nullptr;
    QCheckBox* bodies_ = nullptr;
    QCheckBox* into_ = nullptr;
    QLineEdit* folder_ = nullptr;
    QProgressBar* bar_ = nullptr;
    QPushButton* folder_button_ = nullptr;
    QPushButton* stop_ = nullptr;
    QPushButton* import_ = nullptr;
    QPushButton* close_ = nullptr;
    QTimer poll_;
    QString refused_;  ///< why the last text was not taken
};

}  // namespace anomalis::window
