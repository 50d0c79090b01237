#pragma once

#include <array>

#include <QAbstractTableModel>
#include <QVariant>

#include "edit/body_grid.h"
#include "flow/shown_limits.h"
#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

/// The parameters of the current body as a table: row r - 1 and column c of the view are row r and column c
/// of the grid.
class BodyGridModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    /// `band_role` holds a list of three where an ensemble knows the value: its place in the 90 % band from 0
    /// to 1, and whether the band is open below and above.
    enum Role { unit_role = Qt::UserRole, error_role, limit_role, band_role, note_role };

    BodyGridModel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Text into a value or limit, a mark into "Vary". False when nothing was stored.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Changes the mark of a row as a click on it does.
    void toggle_vary(const QModelIndex& index);
    /// The cells that are not as they were last told are shown anew.
    void refresh();

  signals:
    void text_refused(const QString& caption, const QString& text);

  private:
    /// What a cell shows.
    struct Cell {
        Qt::ItemFlags flags;
        std::array<QVariant, 7> shown;  ///< text, mark, unit, error, limit, band, note
        bool operator==(const Cell&) const = default;
    };
    Cell cell(const QModelIndex& index) const;
    flow::ShownLimit limit_of(const QModelIndex& index) const;
    std::string tip_of(int row, int column) const;
    QVariant band_of(int row) const;
    bool enter(const QModelIndex& index, const QString& text);

    edit::Workbench& workbench_;
    FormGuards& guards_;
    ModelNews& news_;
    std::array<Cell, static_cast<std::size_t>(edit::body_row_count) * edit::grid_column_count> told_;
};

}  // namespace anomalis::window
