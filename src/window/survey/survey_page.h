#pragma once

#include <vector>

#include <QWidget>

#include "core/preferences.h"
#include "survey/desk/desk_rows.h"
#include "survey/map/results_map.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace anomalis::survey {
class SurveyDesk;
}  // namespace anomalis::survey

namespace anomalis::window {

class LineCard;
class ResultsMapView;
class SurveyFilters;
class SurveyList;

/// The page of a survey that was done: its lines as a list that is sorted and filtered, the map of what was
/// found, and the chosen line with its flag. It shows the desk and holds nothing itself.
class SurveyPage : public QWidget {
    Q_OBJECT

  public:
    SurveyPage(survey::SurveyDesk& desk, SusceptibilityUnit unit, QWidget* parent = nullptr);

    /// Another folder: the map shows all of it.
    void show_survey();
    /// Rows, counts or flags are no longer as they were; zoom, scroll and choice stay.
    void show_rows();
    /// Another line is chosen.
    void show_chosen();
    /// How many results are still to be read.
    void show_progress();
    /// What could not be done, until the next thing that can be.
    void show_refused(const QString& why);
    /// Takes over a note that is being typed.
    void settle();
    LineCard& card() { return *card_; }
    ResultsMapView& map() { return *map_; }
    void take_focus();

  signals:
    void line_chosen(const QString& line);
    void step_wanted(int by);
    void open_wanted();
    void flag_wanted(survey::LineFlag flag);
    void note_given(const QString& line, const QString& note);
    void undo_wanted();
    void redo_wanted();
    void folder_wanted();
    void close_wanted();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QLayout* make_head();
    void wire();
    void show_head();
    void show_map();
    void show_trouble();
    void sort(int column, Qt::SortOrder order);

    survey::SurveyDesk& desk_;
    QLabel* title_ = nullptr;
    QLabel* counts_ = nullptr;
    QProgressBar* bar_ = nullptr;
    QPushButton* folder_ = nullptr;
    QPushButton* close_ = nullptr;
    QLabel* trouble_ = nullptr;
    SurveyFilters* filters_ = nullptr;
    SurveyList* list_ = nullptr;
    ResultsMapView* map_ = nullptr;
    LineCard* card_ = nullptr;
    QString refused_;
    std::vector<survey::StrikeTrace> strikes_;  ///< of the bodies that lines share
    std::vector<survey::LineFlag> flags_;       ///< on the map
    std::size_t on_map_ = 0;                    ///< the change of the results that the map shows
    bool all_read_ = false;                     ///< until then the map shows all of what there is
};

}  // namespace anomalis::window
