#pragma once

#include <cstddef>

#include <QMenu>

namespace anomalis::flow {
class ImportDesk;
}  // namespace anomalis::flow

namespace anomalis::window {

/// What a click on the head of a column offers: its role, its unit, the values that stand for none.
class ColumnMenu : public QMenu {
    Q_OBJECT

  public:
    ColumnMenu(flow::ImportDesk& desk, std::size_t column, QWidget* parent);

  signals:
    /// A text is none; why.
    void refused(const QString& why);

  private:
    void add_roles();
    void add_units();
    void add_nulls();

    flow::ImportDesk& desk_;
    std::size_t column_;
};

}  // namespace anomalis::window
