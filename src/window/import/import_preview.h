#pragma once

#include <QTableWidget>

namespace anomalis::flow {
class ImportDesk;
}  // namespace anomalis::flow

namespace anomalis::window {

/// The first rows of a survey file under heads that name column, role, unit and null. A click on a head
/// chooses them. A file that was not recognised stands there as it is.
class ImportPreview : public QTableWidget {
    Q_OBJECT

  public:
    explicit ImportPreview(flow::ImportDesk& desk, QWidget* parent = nullptr);
    void show_layout();

  signals:
    /// Why a text was not taken.
    void refused(const QString& why);

  private:
    void fill_columns();
    void fill_column(int column);
    void fill_head();
    void open_menu(int column);

    flow::ImportDesk& desk_;
};

}  // namespace anomalis::window
