#pragma once

#include <optional>
#include <vector>

#include <QAbstractTableModel>
#include <QTableView>

namespace anomalis::intake {
struct SurveyIndex;
}  // namespace anomalis::intake

namespace anomalis::window {

/// The lines of a survey, and the pieces of those that bend, as rows that can be sorted.
class LineModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    struct Row {
        std::size_t line = 0;
        std::optional<std::size_t> piece;
    };
    enum Column { name, stations, length, range, kind, columns };

    using QAbstractTableModel::QAbstractTableModel;
    /// The index must live as long as it is shown; null for none.
    void show(const intake::SurveyIndex* index);
    const Row& row(int at) const { return rows_[static_cast<std::size_t>(at)]; }
    int row_of(std::size_t line, std::optional<std::size_t> piece) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& at, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

  private:
    QString text(const Row& row, int column) const;
    double key(std::size_t line, int column) const;

    const intake::SurveyIndex* index_ = nullptr;
    std::vector<Row> rows_;
};

/// The list itself; one row is chosen.
class LineList : public QTableView {
    Q_OBJECT

  public:
    explicit LineList(QWidget* parent = nullptr);
    void show_lines(const intake::SurveyIndex* index);
    void show_chosen(std::optional<std::size_t> line, std::optional<std::size_t> piece);
    LineModel& lines() { return *model_; }

  signals:
    void line_chosen(std::size_t line, std::optional<std::size_t> piece);
    /// Twice clicked, or Enter: it is the one that is wanted.
    void line_wanted();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    LineModel* model_;
    bool showing_ = false;
};

}  // namespace anomalis::window
