#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "survey/desk/desk_rows.h"

namespace anomalis::survey {
class SurveyDesk;
}  // namespace anomalis::survey

namespace anomalis::window {

/// The rows of the desk as they stand there.
class SurveyRows : public QAbstractTableModel {
    Q_OBJECT

  public:
    static constexpr int columns = static_cast<int>(survey::DeskColumn::flag) + 1;

    explicit SurveyRows(const survey::SurveyDesk& desk, QObject* parent = nullptr);
    /// The rows are other ones.
    void show_rows();
    const survey::DeskRow& row(int at) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& at, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override { emit sort_wanted(column, order); }

  signals:
    /// -1 as planned.
    void sort_wanted(int column, Qt::SortOrder order);

  private:
    const survey::SurveyDesk& desk_;
    int shown_ = 0;
};

/// The lines of a survey that was done; one is chosen.
class SurveyList : public QTableView {
    Q_OBJECT

  public:
    explicit SurveyList(const survey::SurveyDesk& desk, QWidget* parent = nullptr);
    /// What the desk shows; the view stays where it was scrolled to.
    void show_rows();
    /// The line that the desk has chosen, brought into view where `seen`.
    void show_chosen(bool seen);

  signals:
    void line_chosen(const QString& line);
    /// Twice clicked, or Enter: it is to be opened.
    void line_wanted();
    void sort_wanted(int column, Qt::SortOrder order);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    const survey::SurveyDesk& desk_;
    SurveyRows* model_;
    bool showing_ = false;
};

}  // namespace anomalis::window
