#pragma once

#include <optional>
#include <string>

#include <QFrame>

#include "core/preferences.h"
#include "show/section_thumbnail.h"
#include "survey/results/line_flags.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace anomalis::survey {
struct LineResult;
class SurveyDesk;
}  // namespace anomalis::survey

namespace anomalis::window {

/// A section at a glance, or nothing.
class SectionPicture : public QWidget {
    Q_OBJECT

  public:
    explicit SectionPicture(QWidget* parent = nullptr);
    void show_section(std::optional<show::SectionThumbnail> section);
    bool has_section() const { return section_.has_value(); }
    double aspect() const;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::optional<show::SectionThumbnail> section_;
};

/// The chosen line of a survey: what was found under it, its flag and the note.
class LineCard : public QFrame {
    Q_OBJECT

  public:
    LineCard(const survey::SurveyDesk& desk, SusceptibilityUnit unit, QWidget* parent = nullptr);

    void show_line();
    /// Takes over a note that is being typed.
    void settle();
    SectionPicture& picture() { return *picture_; }
    void show_unit(SusceptibilityUnit unit);

  signals:
    void step_wanted(int by);
    void open_wanted();
    void flag_wanted(survey::LineFlag flag);
    void note_given(const QString& line, const QString& note);
    void undo_wanted();
    void redo_wanted();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QLayout* make_head();
    QLayout* make_middle();
    QLayout* make_flags();
    QLayout* make_note();
    void show_facts();
    void show_bodies(const survey::LineResult* result);
    void show_flag();

    const survey::SurveyDesk& desk_;
    SusceptibilityUnit unit_;
    std::string line_;  ///< that the note is of
    QLabel* title_ = nullptr;
    QLabel* facts_ = nullptr;
    QPushButton* previous_ = nullptr;
    QPushButton* next_ = nullptr;
    QPushButton* open_ = nullptr;
    SectionPicture* picture_ = nullptr;
    QTableWidget* bodies_ = nullptr;
    std::vector<QPushButton*> flags_;  ///< by LineFlag
    QLineEdit* note_ = nullptr;
    QPushButton* undo_ = nullptr;
    QPushButton* redo_ = nullptr;
};

}  // namespace anomalis::window
