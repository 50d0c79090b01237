#include "window/import/line_list.h"

#include <algorithm>
#include <cmath>

#include <QHeaderView>
#include <QKeyEvent>

#include "flow/import_words.h"
#include "window/widgets/panel.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr double metres_a_kilometre = 1000;
constexpr int row_height = 22;  // pixels

const std::optional<intake::ValueRange>& range_of(const intake::SurveyLineInfo& line) {
    return line.mag_nT ? line.mag_nT : line.grav_mGal;
}

QString range_text(const intake::SurveyLineInfo& line) {
    const auto& range = range_of(line);
    if (!range) return {};
    const int digits = line.mag_nT ? 0 : 2;
    return LineModel::tr("%1 to %2 %3")
        .arg(range->least, 0, 'f', digits)
        .arg(range->greatest, 0, 'f', digits)
        .arg(line.mag_nT ? "nT" : "mGal");
}

/// Numbers of lines sort as numbers, other names by their letters.
bool name_before(const std::string& a, const std::string& b) {
    bool a_number = false, b_number = false;
    const double x = QString::fromStdString(a).toDouble(&a_number);
    const double y = QString::fromStdString(b).toDouble(&b_number);
    if (a_number && b_number && x != y) return x < y;
    return a_number != b_number ? a_number : a < b;
}

}  // namespace

void LineModel::show(const intake::SurveyIndex* index) {
    beginResetModel();
    index_ = index;
    rows_.clear();
    if (index_)
        for (std::size_t i = 0; i < index_->lines.size(); ++i) {
            rows_.push_back({i, {}});
            const std::size_t pieces = index_->lines[i].pieces.size();
            for (std::size_t p = 0; p < pieces && pieces > 1; ++p) rows_.push_back({i, p});
        }
    endResetModel();
}

int LineModel::row_of(std::size_t line, std::optional<std::size_t> piece) const {
    const auto found =
        std::ranges::find_if(rows_, [&](const Row& row) { return row.line == line && row.piece == piece; });
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int LineModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int LineModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QString LineModel::text(const Row& row, int column) const {
    const intake::SurveyLineInfo& line = index_->lines[row.line];
    if (row.piece) {
        const intake::LinePiece& piece = line.pieces[*row.piece];
        switch (column) {
            case name:
                return tr("    piece %1 of %2").arg(*row.piece + 1).arg(line.pieces.size());
            case stations:
                return QString::number(piece.last - piece.first + 1);
            case kind:
                return tr("  straight");
            default:
                return {};
        }
    }
    switch (column) {
        case name:
            return line.name.empty() ? tr("all rows") : shown(line.name);
        case stations:
            return QString::number(line.stations);
        case length:
            return tr("%1 km").arg(line.length_m / metres_a_kilometre, 0, 'f', 2);
        case range:
            return range_text(line);
        default:
            return "  " + shown(flow::kind_words(line));
    }
}

QVariant LineModel::data(const QModelIndex& at, int role) const {
    if (!at.isValid() || !index_) return {};
    const bool number = at.column() != name && at.column() != kind;
    if (role == Qt::DisplayRole) return text(row(at.row()), at.column());
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
    return {};
}

QVariant LineModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignVCenter |
                        (section != name && section != kind ? Qt::AlignRight : Qt::AlignLeft));
    if (role != Qt::DisplayRole) return {};
    switch (section) {
        case name:
            return tr("Line");
        case stations:
            return tr("Stations");
        case length:
            return tr("Length");
        case range:
            return tr("Field");
        default:
            return tr("  Kind");
    }
}

double LineModel::key(std::size_t line, int column) const {
    const intake::SurveyLineInfo& info = index_->lines[line];
    switch (column) {
        case stations:
            return static_cast<double>(info.stations);
        case length:
            return info.length_m;
        case range:
            return range_of(info) ? range_of(info)->greatest - range_of(info)->least : -1;
        default:
            return (info.tie ? 1e6 : 0) + static_cast<double>(info.pieces.size());
    }
}

/// Pieces stay below their line.
void LineModel::sort(int column, Qt::SortOrder order) {
    if (!index_) return;
    emit layoutAboutToBeChanged();
    const bool up = order == Qt::AscendingOrder;
    std::ranges::stable_sort(rows_, [&](const Row& a, const Row& b) {
        if (a.line == b.line) return a.piece < b.piece;
        if (column == name) {
            const std::string &x = index_->lines[a.line].name, &y = index_->lines[b.line].name;
            if (x == y) return a.line < b.line;
            return up ? name_before(x, y) : name_before(y, x);
        }
        const double x = key(a.line, column), y = key(b.line, column);
        if (x == y) return a.line < b.line;
        return up ? x < y : y < x;
    });
    emit layoutChanged();
}

LineList::LineList(QWidget* parent) : QTableView(parent), model_(new LineModel(this)) {
    name_control(*this, "Table_import_lines", tr("Lines"),
                 tr("The lines of the file. Choose the one to import here or on the map; a line that bends "
                    "can be taken in pieces"));
    setModel(model_);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(row_height);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSortIndicatorClearable(true);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    for (const auto& [column, width] : {std::pair(LineModel::name, 118),
                                        {LineModel::stations, 76},
                                        {LineModel::length, 84},
                                        {LineModel::range, 150}})
        setColumnWidth(column, width);
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& at) {
        if (showing_ || !at.isValid()) return;
        const LineModel::Row row = model_->row(at.row());
        emit line_chosen(row.line, row.piece);
    });
    connect(this, &QTableView::doubleClicked, this, &LineList::line_wanted);
}

void LineList::show_lines(const intake::SurveyIndex* index) {
    showing_ = true;
    model_->show(index);
    const int sorted = horizontalHeader()->sortIndicatorSection();
    if (sorted >= 0) model_->sort(sorted, horizontalHeader()->sortIndicatorOrder());
    showing_ = false;
}

void LineList::show_chosen(std::optional<std::size_t> line, std::optional<std::size_t> piece) {
    showing_ = true;
    const int row = line ? model_->row_of(*line, piece) : -1;
    if (row < 0)
        clearSelection();
    else if (row != currentIndex().row() || !selectionModel()->isRowSelected(row))
        selectRow(row);
    if (row >= 0) scrollTo(model_->index(row, 0));
    showing_ = false;
}

void LineList::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        emit line_wanted();
        return event->accept();
    }
    QTableView::keyPressEvent(event);
}

}  // namespace anomalis::window
