#include "window/widgets/body_grid_model.h"

#include <array>
#include <utility>

#include "edit/body_grid.h"
#include "edit/ensemble_in_force.h"
#include "edit/workbench.h"

namespace anomalis::window {

namespace {

QString shown(const std::string& text) {
    return QString::fromStdString(text);
}

int grid_row(const QModelIndex& index) {
    return index.row() + 1;
}

}  // namespace

BodyGridModel::BodyGridModel(edit::Workbench& workbench, FormGuards& guards, ModelNews& news, QObject* parent)
    : QAbstractTableModel(parent), workbench_(workbench), guards_(guards), news_(news) {}

int BodyGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : edit::body_row_count;
}

int BodyGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : edit::grid_column_count;
}

QVariant BodyGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const int row = grid_row(index);
    switch (role) {
        case Qt::DisplayRole:
            return shown(edit::grid_text(workbench_, row, index.column()));
        case Qt::EditRole:
            return shown(edit::grid_edit_text(workbench_, row, index.column()));
        case Qt::ToolTipRole: {
            const std::string limit = limit_of(index).tip;
            return shown(limit.empty() ? tip_of(row, index.column()) : limit);
        }
        case limit_role:
            return shown(limit_of(index).text);
        case Qt::CheckStateRole: {
            if (index.column() != edit::grid_vary) return {};
            const edit::VaryMark mark = edit::grid_vary_mark(workbench_, row);
            if (mark == edit::VaryMark::none) return {};
            return mark == edit::VaryMark::free ? Qt::Checked : Qt::Unchecked;
        }
        case unit_role:
            return index.column() == edit::grid_value ? shown(edit::grid_unit(workbench_, row)) : QString();
        case error_role:
            return index.column() == edit::grid_value ? shown(edit::grid_error(workbench_, row)) : QString();
        case band_role:
            return index.column() == edit::grid_value ? band_of(row) : QVariant();
        case note_role:
            return shown(edit::grid_note(workbench_, row, index.column()));
        case Qt::TextAlignmentRole:
            return static_cast<int>(Qt::AlignVCenter |
                                    (index.column() == edit::grid_property ? Qt::AlignLeft : Qt::AlignRight));
        default:
            return {};
    }
}

std::string BodyGridModel::tip_of(int row, int column) const {
    const std::string tip = edit::grid_tip(workbench_, row, column);
    const std::string band = column == edit::grid_value || column == edit::grid_property
                                 ? edit::grid_band_tip(workbench_, row)
                                 : std::string();
    return band.empty() ? tip : tip + "\n" + band;
}

QVariant BodyGridModel::band_of(int row) const {
    const auto band = edit::grid_band(workbench_, row);
    return band ? QVariantList{band->place, band->open_below, band->open_above} : QVariant();
}

QVariant BodyGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array<const char*, edit::grid_column_count> captions{"Property", "Value", "Vary", "Min",
                                                                           "Max"};
    static const std::array<const char*, edit::grid_column_count> tips{
        "What the parameters of the current body are called", "Click a value to key another one",
        "Click to let the inversion change the parameter, or to hold it",
        "Lower limit of the inversion; blank takes the usual one",
        "Upper limit of the inversion; blank takes the usual one"};
    if (orientation != Qt::Horizontal || section < 0 || section >= edit::grid_column_count) return {};
    const auto column = static_cast<std::size_t>(section);
    if (role == Qt::DisplayRole) return tr(captions[column]);
    if (role == Qt::ToolTipRole) return tr(tips[column]);
    if (role == Qt::TextAlignmentRole && section == edit::grid_property)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags BodyGridModel::flags(const QModelIndex& index) const {
    const int row = grid_row(index);
    if (edit::grid_text(workbench_, row, edit::grid_property).empty()) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (edit::grid_editable(workbench_, row, index.column())) flags |= Qt::ItemIsEditable;
    const edit::VaryMark mark = edit::grid_vary_mark(workbench_, row);
    if (index.column() == edit::grid_vary && (mark == edit::VaryMark::fixed || mark == edit::VaryMark::free))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool BodyGridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || guards_.closed()) return false;
    if (role == Qt::EditRole) return enter(index, value.toString());
    if (role != Qt::CheckStateRole || index.column() != edit::grid_vary) return false;
    const bool wanted = value.toInt() == Qt::Checked;
    if (wanted == (edit::grid_vary_mark(workbench_, grid_row(index)) == edit::VaryMark::free)) return false;
    if (!edit::toggle_grid_vary(workbench_, grid_row(index))) return false;
    news_.tell(News::parameters);
    return true;
}

void BodyGridModel::toggle_vary(const QModelIndex& index) {
    if (!index.isValid() || guards_.closed()) return;
    if (edit::toggle_grid_vary(workbench_, grid_row(index))) news_.tell(News::parameters);
}

bool BodyGridModel::enter(const QModelIndex& index, const QString& text) {
    const int row = grid_row(index);
    const QString caption = shown(edit::grid_text(workbench_, row, edit::grid_property));
    const edit::GridChange change =
        edit::enter_grid_text(workbench_, row, index.column(), text.toStdString());
    if (change == edit::GridChange::refused) emit text_refused(caption, text);
    if (change == edit::GridChange::stored) news_.tell(News::parameters);
    return change == edit::GridChange::stored;
}

flow::ShownLimit BodyGridModel::limit_of(const QModelIndex& index) const {
    return flow::shown_limit(workbench_, grid_row(index), index.column(), workbench_.method);
}

BodyGridModel::Cell BodyGridModel::cell(const QModelIndex& index) const {
    return {flags(index),
            {data(index), data(index, Qt::CheckStateRole), data(index, unit_role), data(index, error_role),
             data(index, limit_role), data(index, band_role), data(index, note_role)}};
}

void BodyGridModel::refresh() {
    for (int row = 0; row < edit::body_row_count; ++row) {
        for (int column = 0; column < edit::grid_column_count; ++column) {
            const QModelIndex at = index(row, column);
            Cell now = cell(at);
            Cell& told = told_.at(static_cast<std::size_t>(row * edit::grid_column_count + column));
            if (now == told) continue;
            told = std::move(now);
            emit dataChanged(at, at);
        }
    }
}

}  // namespace anomalis::window
